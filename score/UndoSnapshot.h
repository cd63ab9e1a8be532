// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/ScoreRemainder.h"
#include "score/UndoFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

struct Score;
struct SetupState;

/// What a step changes, and with it what undoing it brings back.
enum class StepScope : std::uint8_t {
    Cells, ///< the whole score under its name of today, the active channel staying
    Score, ///< another score takes its place: name and active channel, too
};

/// The one undo step, kept as a file of its own in one of two forms: the channel that is about to be drawn
/// on, or the whole Score before anything that reaches further. A new step takes the old one's place.
/// The whole Score is kept in memory, too, and comes back from there. A file that is gone takes its step
/// along; one that could not be written does not.
class UndoSnapshot {
public:
    static constexpr std::string_view kNoteStep = "Last note";

    /// @p path names "temp.sng" in the folder of songs.
    explicit UndoSnapshot(std::filesystem::path path);

    int UndoChannel = -1; ///< channel of a snapshot of one, -1 while there is none
    int snapshots = 0;    ///< how many edits have asked for one so far, written or not

    /// Keeps the active channel before an edit.
    /// @param step names the edit to the user; the text must last as long as the program
    void SaveforUndo(const Score& score, const SetupState& setup, std::string_view step = kNoteStep);
    /// Likewise keeps the whole score, in the newest form of the score file.
    void keepWhole(const Score& score, const SetupState& setup, std::string_view step, StepScope scope);
    /// Puts back what is kept, in whichever form; there is none after that. `FindEndOfSong` runs at the end.
    /// @return whether something was undone, so that the window shows the tempo and paints the score anew;
    /// with nothing to undo, or a file that is gone or no longer what was written, everything stays as it was
    bool OpenforUndo(Score& score, SetupState& setup);

    /// Waits for the file: a large one is written while the user goes on.
    void finishWriting() { file_.finish(); }
    /// What undoing would take back, in the user's words; blank while there is nothing.
    [[nodiscard]] std::string_view step() const { return step_; }
    /// Whether the step is another score's taking the place of one with notes.
    [[nodiscard]] bool bringsScoreBack() const;

    /// There is nothing to undo any more.
    void forget();

    /// Until it ends, nothing takes the place of the step: for what a command sets off on its own.
    class Hold {
    public:
        explicit Hold(UndoSnapshot& undo) : undo_(undo) { ++undo_.holds_; }
        ~Hold() { --undo_.holds_; }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        UndoSnapshot& undo_;
    };

private:
    struct Whole {
        ScoreRemainder remainder;
        std::shared_ptr<const KeptLayers> layers;
        StepScope scope;
    };

    UndoFile file_;
    std::optional<Whole> whole_; ///< for the whole form
    std::string unwritten_;      ///< the other, if the disk has no room for it
    std::string_view step_;
    int holds_ = 0;
};

/// The snapshot's text: the score file's layout with the rows of the active channel alone.
///
/// The row of `Polyphonics` in it is the one whose index equals the channel, which belongs to the channel
/// before; there is none for channels above 8. That is meant, and the reader does the same. The one
/// instrument of a channel comes back for channel 0 only.
[[nodiscard]] std::string serializeUndo(const Score& score, const SetupState& setup);

/// Clears channel @p channel and reads it back from a snapshot's text.
void parseUndo(std::string_view bytes, int channel, Score& score, SetupState& setup);

} // namespace velmora
