// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/clsFileIo.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace velmora {

namespace {
/// Little-endian, one behind the other.
class HeaderBytes {
public:
    void text(std::string_view word) {
        for (const char letter : word)
            bytes_[used_++] = static_cast<unsigned char>(letter);
    }
    void number(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes_[used_++] = static_cast<unsigned char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU);
    }
    [[nodiscard]] const auto& all() const { return bytes_; }

private:
    std::array<unsigned char, kWavHeaderSize> bytes_{};
    std::size_t used_ = 0;
};

HeaderBytes wavHeader(std::uint32_t dataSize) {
    HeaderBytes header;
    header.text("RIFF");
    header.number(dataSize + 36, 4);
    header.text("WAVEfmt ");
    header.number(16, 4); // of what "fmt " has
    header.number(1, 2);  // plain samples
    header.number(2, 2);  // channels
    header.number(44100, 4);
    header.number(176400, 4); // bytes a second
    header.number(4, 2);      // bytes a frame
    header.number(16, 2);     // bits a sample
    header.text("data");
    header.number(dataSize, 4);
    return header;
}

/// Calls until no signal comes between.
template<typename Call>
auto untilDone(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}
} // namespace

clsFileIo::~clsFileIo() {
    CloseFile();
}

int clsFileIo::told(bool succeeded) {
    lastResult_ = succeeded ? 0 : errno;
    return succeeded ? kDone : kFailed;
}

int clsFileIo::OpenFile(const std::filesystem::path& path) {
    CloseFile();
    const int opened = untilDone([&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666); });
    if (opened < 0)
        return told(false);
    // Where the file's system knows no locks, nothing is shared by agreement alone.
    if (flock(opened, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        const int result = told(false);
        ::close(opened);
        return result;
    }
    handle_ = opened;
    isOwner_ = true;
    name_ = path;
    return told(true);
}

int clsFileIo::OpenFile(int descriptor, const std::filesystem::path& name) {
    CloseFile();
    if (descriptor < 0 || name.empty()) {
        errno = EBADF;
        return told(false);
    }
    handle_ = descriptor;
    isOwner_ = false;
    name_ = name;
    return told(true);
}

int clsFileIo::CloseFile() {
    if (!isOpen())
        return kFailed;
    name_.clear();
    const int handle = std::exchange(handle_, kInvalid);
    return told(!isOwner_ || ::close(handle) == 0);
}

int clsFileIo::FlushBuffers() {
    return isOpen() ? told(untilDone([this] { return fdatasync(handle_); }) == 0) : kFailed;
}

int clsFileIo::writeWavHeader(std::int32_t dataSize) {
    constexpr auto kMost =
        std::numeric_limits<std::int32_t>::max() - static_cast<std::int32_t>(kWavHeaderSize);
    if (dataSize < 0 || dataSize > kMost)
        throw std::overflow_error("a WAV file of 44 bytes more than that has a length beyond 31 bits");
    const HeaderBytes header = wavHeader(static_cast<std::uint32_t>(dataSize));
    return WriteBytes(header.all().data(), header.all().size()) == kDone ? FlushBuffers() : kFailed;
}

int clsFileIo::WriteBytes(const void* address, std::size_t count) {
    count_ = 0;
    if (!isOpen())
        return kFailed;
    const auto* bytes = static_cast<const unsigned char*>(address);
    while (count_ < count) {
        const ssize_t wrote = untilDone([&] { return ::write(handle_, bytes + count_, count - count_); });
        if (wrote == 0)
            errno = ENOSPC;
        if (wrote <= 0)
            return told(false);
        count_ += static_cast<std::size_t>(wrote);
    }
    return told(true);
}

int clsFileIo::ReadBytes(void* address, std::size_t count) {
    count_ = 0;
    if (!isOpen())
        return kFailed;
    auto* bytes = static_cast<unsigned char*>(address);
    while (count_ < count) {
        const ssize_t got = untilDone([&] { return ::read(handle_, bytes + count_, count - count_); });
        if (got < 0)
            return told(false);
        if (got == 0)
            break;
        count_ += static_cast<std::size_t>(got);
    }
    return told(true);
}

} // namespace velmora
