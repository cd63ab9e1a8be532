// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ByteSource.h"

#include "base/ReadAt.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace velmora {

std::size_t MemoryBytes::read(std::uint64_t offset, std::span<std::uint8_t> to) {
    if (offset >= bytes_.size())
        return 0;
    const auto there = bytes_.subspan(static_cast<std::size_t>(offset));
    const std::size_t count = std::min(there.size(), to.size());
    std::copy_n(there.begin(), count, to.begin());
    return count;
}

namespace {
class FileBytes : public ByteSource {
public:
    FileBytes(int descriptor, std::uint64_t size) : ByteSource(size), descriptor_(descriptor) {}
    ~FileBytes() override { close(descriptor_); }
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> to) override {
        return readAt(descriptor_, offset, std::as_writable_bytes(to));
    }

private:
    int descriptor_;
};
} // namespace

OpenedBytes openBytes(const std::filesystem::path& file) {
    // Without O_NONBLOCK a pipe that nobody writes to would hold the caller here.
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return {nullptr, std::generic_category().message(errno)};
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return {nullptr, "it is no regular file"};
    }
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    return {std::make_unique<FileBytes>(descriptor, static_cast<std::uint64_t>(status.st_size)), {}};
}

ByteWindow::ByteWindow(ByteSource& source) : source_(source), held_(kReach) {}

std::span<const std::uint8_t> ByteWindow::at(std::uint64_t offset, std::size_t count) {
    if (offset >= size())
        return {};
    count = static_cast<std::size_t>(std::min<std::uint64_t>(std::min(count, kReach), size() - offset));
    if (offset < start_ || offset + count > start_ + length_) {
        start_ = offset;
        length_ = source_.read(offset, held_);
    }
    const auto skipped = static_cast<std::size_t>(offset - start_);
    return std::span(held_).subspan(skipped, std::min(count, length_ - skipped));
}

} // namespace velmora
