// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QSocketNotifier;

namespace velmora {

/// In the environment of a program that the user has started from another: what `HandedOver::activation` is.
inline constexpr const char* kActivationVariable = "XDG_ACTIVATION_TOKEN";

/// What a second start asks of the program that runs.
struct HandedOver {
    std::filesystem::path file; ///< to be opened
    std::string activation;     ///< by which the platform lets the window come to the front; blank for none
    bool operator==(const HandedOver&) const = default;
};

/// One packet of text, and the reverse; nothing comes back for what is no such packet.
[[nodiscard]] std::string packetOf(const HandedOver& handed);
[[nodiscard]] std::optional<HandedOver> parsePacket(std::string_view packet);

/// Where the program that holds the lock listens: beside its lock file.
[[nodiscard]] std::filesystem::path handOverSocket(const std::filesystem::path& lockFile);

/// Takes what second starts hand over, as long as it lives. Only the holder of the lock makes one: a socket
/// that stands there already is one that a crash left, and goes. Processes of other users are turned away.
/// Where no socket can be had, nothing is ever handed over.
///
/// Everything is told in the message loop. Thread-safe: no. Realtime-safe: no.
class HandOverServer {
public:
    HandOverServer(std::filesystem::path socket, std::function<void(const HandedOver&)> take);
    ~HandOverServer();
    HandOverServer(const HandOverServer&) = delete;
    HandOverServer& operator=(const HandOverServer&) = delete;

    [[nodiscard]] bool listens() const { return descriptor_ >= 0; }

private:
    struct Caller;

    void accept();
    void read(Caller& caller);
    void hangUp(const Caller& caller);

    std::filesystem::path socket_;
    std::function<void(const HandedOver&)> take_;
    int descriptor_ = -1;
    std::unique_ptr<QSocketNotifier> incoming_;
    std::vector<std::unique_ptr<Caller>> callers_;
    QObject guard_; ///< ends what has been put off
};

/// Hands over to the program that listens at that socket, which must be one of the same user. False if it
/// didn't take it within @p seconds: the socket may be stale, or the program hang.
[[nodiscard]] bool handOver(const std::filesystem::path& socket, const HandedOver& handed,
                            double seconds = 3);

} // namespace velmora
