// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/FileCopy.h"

#include "base/PendingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

namespace velmora {

namespace {
constexpr std::size_t kBlock = std::size_t{1} << 20;

/// The file that is copied, closed at the end.
class SourceFile {
public:
    explicit SourceFile(const std::filesystem::path& file)
        : descriptor_(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~SourceFile() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    /// How many bytes there were; 0 at the end, -1 for a failure.
    ssize_t read(std::span<std::byte> room) const {
        ssize_t count = 0;
        do
            count = ::read(descriptor_, room.data(), room.size());
        while (count < 0 && errno == EINTR);
        return count;
    }

private:
    int descriptor_;
};

std::string unreadable(const std::filesystem::path& file) {
    return "Reading " + file.string() + " failed: " + std::strerror(errno) + ".";
}
} // namespace

std::string copyFile(const std::filesystem::path& source, const std::filesystem::path& target,
                     const std::function<void()>& between) {
    const SourceFile from(source);
    if (!from.isOpen())
        return unreadable(source);
    PendingFile to(target);
    if (std::string error = to.open(); !error.empty())
        return error;
    std::vector<std::byte> block(kBlock);
    while (true) {
        const ssize_t count = from.read(block);
        if (count < 0)
            return unreadable(source);
        if (count == 0)
            return to.commit();
        if (std::string error = to.write({block.data(), static_cast<std::size_t>(count)}); !error.empty())
            return error;
        if (between)
            between();
    }
}

} // namespace velmora
