// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <array>
#include <cstdint>
#include <string>

namespace velmora {

class KeptLayers;
struct SetupState;

/// What belongs to a Score beside its cells. With those it makes the Score whole.
class ScoreRemainder {
public:
    ScoreRemainder(const Score& score, const SetupState& setup);

    /// Puts the score back that @p layers and this hold together. The score grows to its old length if it
    /// must and is never shortened; what is not of it (copy buffers, mutes, what is played) stays.
    /// `FindEndOfSong` runs at the end.
    void putBack(const KeptLayers& layers, Score& score, SetupState& setup) const;
    /// The same for a score that another one had taken the place of: its name and its active channel, too.
    void putBackWhole(const KeptLayers& layers, Score& score, SetupState& setup) const;

private:
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
