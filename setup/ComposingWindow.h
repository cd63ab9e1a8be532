// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/ViewState.h"

#include <functional>
#include <utility>

namespace velmora {

/// What the setup toolbar asks of the composing window. What isn't given isn't asked.
struct ComposingWindow {
    std::function<void(int channel)> TrackSel_Click; ///< makes the channel the active one
    std::function<void()> DrawNoteArray, DrawBeatArray, PrintTopBar;
    std::function<void(int channel)> drawChordMarks; ///< `DrawPolynote`, column by column
    std::function<void()> layOut;                    ///< the line spacing has changed
    std::function<void()> NumNotesChanged;           ///< the score's length has: `HScroll1` and all pictures
    std::function<void(RightClick)> setRightClickMode; ///< the tool mode
    std::function<void(int channel)> toggleMuted;      ///< mutes the channel, and silences it, or the reverse
    std::function<void()> showInstruments;             ///< other instruments are picked
    std::function<void()> showChannels;                ///< other channels are active, in use or muted
    std::function<void()> showUndo;                    ///< there may be another step to take back
};

template<class... Arguments, class... Values>
void ask(const std::function<void(Arguments...)>& routine, Values&&... values) {
    if (routine)
        routine(std::forward<Values>(values)...);
}

} // namespace velmora
