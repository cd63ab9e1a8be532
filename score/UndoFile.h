// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>

namespace velmora {

class KeptLayers;

/// The file of the one undo step. A large score is written on a thread of its own, while the user goes on.
/// It is not flushed to the disk, for no step is wanted after a crash and this runs before each stroke.
class UndoFile {
public:
    explicit UndoFile(std::filesystem::path path);
    ~UndoFile();
    UndoFile(const UndoFile&) = delete;
    UndoFile& operator=(const UndoFile&) = delete;

    /// Takes the old file's place; false, and `failed`, if it can't be written.
    bool write(std::string_view text);
    /// The same for the whole score. A large one may still be being written, and fail, after this.
    bool write(const std::shared_ptr<const KeptLayers>& layers);

    /// Waits until nothing is being written.
    void finish();
    /// Whether the writing has failed, as far as it has come.
    [[nodiscard]] bool failed() const { return state_ == State::Failed; }
    /// The text; nothing if the file is gone or no longer what was written.
    [[nodiscard]] std::optional<std::string> text();
    /// Whether there is such a text. A large file that bears the marks of the one that was written counts as
    /// that without being read, and so does one that is still being written.
    [[nodiscard]] bool isThere();

private:
    enum class State : std::uint8_t { Failed, Writing, Written };

    bool open();
    void put(std::string_view text, const std::stop_token& stop);
    void putLayers(const KeptLayers& layers, const std::stop_token& stop);

    std::filesystem::path path_;
    struct stat opened_ {}; ///< the file when it was opened
    // The thread's while it is being written.
    int descriptor_ = -1;
    struct stat marks_ {};    ///< the file when it had been written
    std::size_t written_ = 0; ///< a hash of the text
    std::atomic<State> state_ = State::Failed;
    std::jthread thread_;
};

} // namespace velmora
