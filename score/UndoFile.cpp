// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/UndoFile.h"

#include "base/Files.h"
#include "score/KeptLayers.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <new>
#include <system_error>
#include <utility>

namespace velmora {

namespace {
constexpr std::size_t kManyFields = 250'000; ///< of what is written beside: more than a few milliseconds
constexpr off_t kLargeFile = 1 << 20;
constexpr std::size_t kPiece = 1 << 20;

std::size_t hashOf(std::string_view text) {
    return std::hash<std::string_view>{}(text);
}

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isSameTime(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool isUntouched(const struct stat& one, const struct stat& other) {
    return isSameFile(one, other) && one.st_size == other.st_size && isSameTime(one.st_mtim, other.st_mtim) &&
           isSameTime(one.st_ctim, other.st_ctim);
}

/// In pieces, so that it soon stops.
bool writeAll(int descriptor, std::string_view text, const std::stop_token& stop) {
    while (!text.empty() && !stop.stop_requested()) {
        const ssize_t count = ::write(descriptor, text.data(), std::min(text.size(), kPiece));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return text.empty();
}
} // namespace

UndoFile::UndoFile(std::filesystem::path path) : path_(std::move(path)) {}

UndoFile::~UndoFile() {
    thread_.request_stop();
}

bool UndoFile::open() {
    thread_.request_stop(); // what it writes is wanted no more
    finish();
    state_ = State::Failed;
    // The old one is deleted because file systems do flush a file that is cut to nothing and written anew.
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return descriptor_ >= 0 && fstat(descriptor_, &opened_) == 0;
}

void UndoFile::put(std::string_view text, const std::stop_token& stop) {
    written_ = hashOf(text);
    const bool done = writeAll(descriptor_, text, stop) && fstat(descriptor_, &marks_) == 0;
    const bool closed = close(std::exchange(descriptor_, -1)) == 0;
    state_ = done && closed ? State::Written : State::Failed;
}

void UndoFile::putLayers(const KeptLayers& layers, const std::stop_token& stop) {
    std::string text;
    try {
        text = serialize(layers.contents(), stop);
    } catch (const std::bad_alloc&) {
        close(std::exchange(descriptor_, -1));
        state_ = State::Failed;
        return;
    }
    put(text, stop);
}

bool UndoFile::write(std::string_view text) {
    if (!open())
        return false;
    put(text, {});
    return !failed();
}

bool UndoFile::write(const std::shared_ptr<const KeptLayers>& layers) {
    if (!open())
        return false;
    if (layers->fields() > kManyFields) {
        state_ = State::Writing;
        try {
            thread_ = std::jthread([this, layers](const std::stop_token& stop) { putLayers(*layers, stop); });
            return true;
        } catch (const std::system_error&) { // no thread to be had now
        }
    }
    putLayers(*layers, {});
    return !failed();
}

void UndoFile::finish() {
    if (thread_.joinable())
        thread_.join();
}

std::optional<std::string> UndoFile::text() {
    finish();
    if (failed())
        return std::nullopt;
    auto text = readWholeFile(path_);
    if (text && hashOf(*text) != written_)
        text.reset();
    return text;
}

bool UndoFile::isThere() {
    struct stat now {};
    const State state = state_;
    if (state == State::Failed || stat(path_.c_str(), &now) != 0)
        return false;
    if (state == State::Written && now.st_size >= kLargeFile && isUntouched(now, marks_))
        return true;
    return state == State::Writing ? isSameFile(now, opened_) : text().has_value();
}

} // namespace velmora
