// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/HandOver.h"

#include "base/SteadyClock.h"

#include <QSocketNotifier>
#include <QTimer>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kGreeting = "velmora 1";
constexpr std::string_view kTaken = "taken";
constexpr std::size_t kLargestPacket = std::size_t{16} * 1024; ///< a path has 4096 bytes at most
constexpr int kWaiting = 8;                                    ///< callers at a time
constexpr std::chrono::seconds kPatience(5);                   ///< with a caller that says nothing

/// The address of a socket. The system allows it some hundred characters only, so a folder with a longer name
/// is opened, and named by its descriptor.
class Address {
public:
    explicit Address(const fs::path& socket) {
        std::string name = socket.string();
        if (name.size() >= sizeof address_.sun_path) {
            folder_ = ::open(socket.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
            name = "/proc/self/fd/" + std::to_string(folder_) + "/" + socket.filename().string();
        }
        fits_ = name.size() < sizeof address_.sun_path;
        address_.sun_family = AF_UNIX;
        if (fits_)
            std::memcpy(address_.sun_path, name.c_str(), name.size() + 1);
    }
    ~Address() {
        if (folder_ >= 0)
            ::close(folder_);
    }
    Address(const Address&) = delete;
    Address& operator=(const Address&) = delete;

    [[nodiscard]] bool fits() const { return fits_; }
    [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
    [[nodiscard]] static socklen_t size() { return sizeof(sockaddr_un); }

private:
    sockaddr_un address_{};
    int folder_ = -1;
    bool fits_ = false;
};

/// Packets come whole or not at all.
int newSocket(int more) {
    return ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | more, 0);
}

bool isOfSameUser(int descriptor) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
}

bool send(int descriptor, std::string_view packet) {
    return ::send(descriptor, packet.data(), packet.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(packet.size());
}

/// Nothing if none has come, and a blank one if none will.
std::optional<std::string> receive(int descriptor) {
    std::string packet(kLargestPacket, '\0');
    const ssize_t count = ::recv(descriptor, packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return std::nullopt;
    const bool whole = count > 0 && static_cast<std::size_t>(count) <= packet.size();
    packet.resize(whole ? static_cast<std::size_t>(count) : 0);
    return packet;
}

/// Removes a socket, and nothing else of that name.
void removeSocket(const fs::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode))
        ::unlink(path.c_str());
}

/// -1 where there is none to be had.
int listenAt(const fs::path& path) {
    const Address address(path);
    const int descriptor = address.fits() ? newSocket(SOCK_NONBLOCK) : -1;
    if (descriptor < 0)
        return -1;
    removeSocket(path);
    // Nobody can connect before it listens, so that the permissions come in time.
    if (::bind(descriptor, address.get(), Address::size()) == 0 && ::chmod(path.c_str(), 0600) == 0 &&
        ::listen(descriptor, kWaiting) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int get() const { return number_; }

private:
    int number_;
};
} // namespace

std::string packetOf(const HandedOver& handed) {
    std::string packet(kGreeting);
    packet.append(1, '\0').append(handed.file.string()).append(1, '\0').append(handed.activation);
    return packet;
}

std::optional<HandedOver> parsePacket(std::string_view packet) {
    const std::size_t first = packet.find('\0');
    const std::size_t second = first == packet.npos ? first : packet.find('\0', first + 1);
    if (second == packet.npos || packet.substr(0, first) != kGreeting)
        return std::nullopt;
    HandedOver handed{fs::path(packet.substr(first + 1, second - first - 1)),
                      std::string(packet.substr(second + 1))};
    if (!handed.file.is_absolute() || handed.activation.find('\0') != std::string::npos)
        return std::nullopt;
    return handed;
}

fs::path handOverSocket(const fs::path& lockFile) {
    return lockFile.empty() ? fs::path() : lockFile.parent_path() / "velmora.socket";
}

/// A process that has connected and hasn't said yet what it wants.
struct HandOverServer::Caller {
    explicit Caller(int descriptor) : connection(descriptor), notifier(descriptor, QSocketNotifier::Read) {}

    Descriptor connection;
    QSocketNotifier notifier; ///< goes first
};

HandOverServer::HandOverServer(fs::path socket, std::function<void(const HandedOver&)> take)
    : socket_(std::move(socket))
    , take_(std::move(take))
    , descriptor_(socket_.empty() ? -1 : listenAt(socket_)) {
    if (descriptor_ < 0)
        return;
    incoming_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    QObject::connect(incoming_.get(), &QSocketNotifier::activated, &guard_, [this] { accept(); });
}

HandOverServer::~HandOverServer() {
    incoming_.reset();
    if (descriptor_ < 0)
        return;
    ::close(descriptor_);
    removeSocket(socket_);
}

void HandOverServer::accept() {
    const int connection = ::accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (connection < 0)
        return;
    auto caller = std::make_unique<Caller>(connection);
    if (!isOfSameUser(connection) || callers_.size() >= kWaiting)
        return;
    Caller* const one = caller.get();
    QObject::connect(&one->notifier, &QSocketNotifier::activated, &guard_, [this, one] { read(*one); });
    QTimer::singleShot(kPatience, &one->notifier, [this, one] { hangUp(*one); });
    callers_.push_back(std::move(caller));
}

void HandOverServer::read(Caller& caller) {
    const auto packet = receive(caller.connection.get());
    if (!packet)
        return;
    const auto handed = parsePacket(*packet);
    if (handed)
        static_cast<void>(send(caller.connection.get(), kTaken));
    hangUp(caller);
    if (handed && take_) // last: it may wait in a message loop of its own
        take_(*handed);
}

void HandOverServer::hangUp(const Caller& caller) {
    const auto gone = std::ranges::find(callers_, &caller, &std::unique_ptr<Caller>::get);
    if (gone == callers_.end())
        return;
    // Its notifier may be telling us just now.
    (*gone)->notifier.setEnabled(false);
    QTimer::singleShot(0, &guard_, [last = std::shared_ptr<Caller>(std::move(*gone))] {});
    callers_.erase(gone);
}

bool handOver(const fs::path& socket, const HandedOver& handed, double seconds) {
    const double end = steadySeconds() + seconds;
    const Address address(socket);
    const Descriptor connection(address.fits() ? newSocket(SOCK_NONBLOCK) : -1);
    while (::connect(connection.get(), address.get(), Address::size()) != 0) {
        if (errno != EAGAIN || steadySeconds() > end) // too many others have connected and wait
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (!isOfSameUser(connection.get()) || !send(connection.get(), packetOf(handed)))
        return false;
    pollfd answer{connection.get(), POLLIN, 0};
    const int left = static_cast<int>(std::max(0.0, end - steadySeconds()) * 1000);
    return ::poll(&answer, 1, left) == 1 && receive(connection.get()) == kTaken;
}

} // namespace velmora
