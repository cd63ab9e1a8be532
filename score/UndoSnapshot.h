// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

struct Score;
struct SetupState;

/// The one undo step: the channel that an edit is about to change, kept as a file of its own.
class UndoSnapshot {
public:
    /// @p path names "temp.sng" in the folder of songs.
    explicit UndoSnapshot(std::filesystem::path path);

    int UndoChannel = -1; ///< channel of the snapshot, -1 while there is nothing to undo
    int snapshots = 0;    ///< how many edits have asked for one so far, written or not

    /// Keeps the active channel before an edit. If the file can't be written there is nothing to undo.
    void SaveforUndo(const Score& score, const SetupState& setup);
    /// Puts the snapshot back; there is none after that. `FindEndOfSong` runs at the end.
    /// @return whether something was undone, so that the window shows the tempo and paints the score anew;
    /// with nothing to undo, or no file to read, everything stays as it was
    bool OpenforUndo(Score& score, SetupState& setup);

private:
    std::filesystem::path path_;
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
