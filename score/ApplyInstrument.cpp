// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ApplyInstrument.h"

#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Instruments.h"

#include <algorithm>

namespace velmora {

namespace {
int applyToSelection(Score& score, std::int16_t code, const ViewState& view,
                     const std::function<void()>& beforeChange) {
    if (view.SelectStart < 0)
        return 0;
    const int channel = score.ActiveChannel;
    bool asked = !beforeChange;
    int taken = 0;
    const int last = std::min(view.SelectEnd, score.NumNotes);
    for (int position = view.SelectStart; position <= last; ++position) {
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Empty)
            continue;
        if (!asked && score.NoteInstrument.valueOr(channel, position, code) != code) {
            beforeChange();
            asked = true;
        }
        taken += score.NoteInstrument.set(channel, position, code) ? 1 : 0;
    }
    return taken;
}

} // namespace

int applyMelodyInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                          const ViewState& view, const std::function<void()>& beforeChange) {
    if (chosen.MelodyInstrumentName.empty())
        chosen.MelodyInstrument = storedCode;
    const int taken = applyToSelection(score, chosen.MelodyInstrument, view, beforeChange);
    if (score.ActiveChannel < kFirstPercussion)
        score.ChannelInstrument[score.ActiveChannel] = chosen.MelodyInstrument;
    return taken;
}

int applyPercussionInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                              const ViewState& view, const std::function<void()>& beforeChange) {
    if (chosen.PercussionInstrumentName.empty())
        chosen.PercussionInstrument = storedCode;
    const int taken = applyToSelection(score, chosen.PercussionInstrument, view, beforeChange);
    if (score.ActiveChannel >= kFirstPercussion)
        score.ChannelInstrument[score.ActiveChannel] = chosen.PercussionInstrument;
    return taken;
}

} // namespace velmora
