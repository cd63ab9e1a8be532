// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <cstdint>

namespace velmora {

/// What the fields and boxes of the editing toolbars hold, and what the last copy left.
struct EditState {
    std::int16_t CycleNotes = 0; ///< playable notes in a cycle; the field written last wins
    std::int16_t CycleBeats = 0; ///< from one stamp of a cycle to the next
    std::int16_t TotalNotes = 0; ///< over which a cycle is repeated
    std::int16_t Txtspc = 0;     ///< spaces to insert
    std::int16_t txtStart = 1;   ///< "Start at X" of the Melody Maker

    PerChannel<bool, kUsedChannels> ChannelPicked{}; ///< the ticked boxes `chkChannel`, by channel
    bool Check2 = false;                             ///< "Edit All Tracks"
    bool Check3 = false;                             ///< "Percussion", of the Score Editor
    bool Check5 = false;                             ///< "Melody", likewise

    int SelectSpan = 0;  ///< `SelectEnd` - `SelectStart` of the last copy; it outlives the marks
    int ClipChannel = 0; ///< active when a single channel was copied; in careful manners the first copied one
    PerChannel<bool, kUsedChannels> ClipHeld{}; ///< channels that the last copy took
};

/// What the selectors of Single Note Effects stand on.
struct EffectSelectors {
    std::int16_t NoteInstrumentPick = 24; ///< instrument code
    std::int16_t Combo3 = 0;              ///< list index of the chord, 0 to 7
    std::int16_t vol3 = 127;
    std::int16_t T1 = 0; ///< modulation
    std::int16_t T2 = 0; ///< pan as shown, -64 to 63
    std::int16_t T3 = 0; ///< reverb
    std::int16_t T4 = 0; ///< chorus
};

} // namespace velmora
