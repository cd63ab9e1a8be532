// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/ScoreImage.h"

#include <cstdint>
#include <filesystem>
#include <future>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct Score;
struct SetupState;
struct Workspace;

/// A score that a run of the program left behind because it did not end properly.
struct LeftScore {
    std::filesystem::path file; ///< where it is kept
    std::string score;          ///< in the newest form
    std::string currentFile;    ///< the file that it came from; blank for one that was never saved
};

/// What a recovery file holds: the score, and a last line with a checksum of everything and the name of the
/// score's own file.
[[nodiscard]] std::string recoveryText(std::string_view score, std::string_view currentFile);
/// The reverse; nothing comes back for a text that isn't whole.
[[nodiscard]] std::optional<LeftScore> parseRecovery(std::string_view text);

/// Puts a left score in the place of the current one, which gets longer if that is needed. The file that it
/// came from is not touched.
void restore(const LeftScore& left, Workspace& workspace);

/// The current score, kept on disk for the case that the program does not end properly. Each run has a file
/// of its own in the folder, so that a score that waits for an answer is never written over. Nothing here
/// fails aloud: without room on the disk there is an older file or none, and the next call tries again.
///
/// The calling thread compares and copies; text, writing and flushing are a thread's own. Thread-safe: no.
/// Realtime-safe: no.
class RecoveryFile {
public:
    explicit RecoveryFile(std::filesystem::path folder);
    /// Waits for what is being written. The file stays.
    ~RecoveryFile();
    RecoveryFile(const RecoveryFile&) = delete;
    RecoveryFile& operator=(const RecoveryFile&) = delete;

    /// What earlier runs left, the newest first. A damaged file is put aside under another name, one whose
    /// score stands in its own file just so is removed.
    [[nodiscard]] std::vector<LeftScore> left() const;
    /// This run goes on with a score that was left: its file is this run's own from now on.
    void adopt(const LeftScore& left);
    /// The user doesn't want it.
    void drop(const LeftScore& left) const;

    enum class Kept : std::uint8_t {
        Unchanged, ///< the file has it already, or there is nothing to keep
        Begun,     ///< the score has changed and is being written
        Busy       ///< what was begun before is still being written: to be called again
    };
    /// Keeps the score if it has changed since the last call. One without notes needs no file.
    Kept keep(const Score& score, const SetupState& setup);
    /// Waits for what is being written.
    void finish();
    /// The program ends properly, and nothing is to be left.
    void remove();

private:
    [[nodiscard]] std::filesystem::path newPath() const;
    [[nodiscard]] bool isWriting();
    void begin();
    void removeOwn();

    std::filesystem::path folder_;
    std::filesystem::path own_; ///< blank until something was kept
    ScoreImage image_;          ///< the thread's while it writes
    std::future<bool> writing_;
    bool written_ = false; ///< `image_` is on the disk
};

} // namespace velmora
