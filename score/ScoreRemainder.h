// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

struct SetupState;

/// What the newest form of the score file leaves out of a Score: cells behind the end of its rows that are
/// not as a clearing leaves them, and the records beside the cells. With the file it makes the Score whole.
class ScoreRemainder {
public:
    ScoreRemainder(const Score& score, const SetupState& setup);

    /// Puts the score back that @p text, a file in the newest form, and this hold together. The score grows
    /// to its old length if it must and is never shortened; what is not of it (copy buffers, mutes, what is
    /// played) stays. `FindEndOfSong` runs at the end.
    void putBack(std::string_view text, Score& score, SetupState& setup) const;
    /// The same for a score that another one had taken the place of: its name and its active channel, too.
    void putBackWhole(std::string_view text, Score& score, SetupState& setup) const;

private:
    struct Run {
        ChannelGrid Score::*grid;
        int row;
        int first;
        std::vector<std::int16_t> cells;
    };
    void keepOutside(const Score& score, ChannelGrid Score::*grid, int row, int first, int last,
                     std::int16_t cleared);

    std::vector<Run> runs_;
    int numNotes_;
    PerChannel<bool, kUsedChannels> inUse_;
    PerChannel<bool> shown_;
    PerChannel<std::int16_t> instruments_;
    std::array<std::array<std::int16_t, 16>, 5> beatMemo_;
    std::int16_t tempo_;
    std::int16_t notesPerMeasure_;
    int activeChannel_;
    int topChannel_;
    int topMelodyHint_;
    int topDrumHint_;
    std::string file_;
    std::array<std::int16_t, 3> meter_; ///< `TxBeats`, `TxtMeter`, `NoteX`
    PerChannel<bool, kMelodyChannels> chords_;
    PerChannel<bool> strums_;
};

} // namespace velmora
