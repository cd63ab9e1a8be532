// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ApplyInstrument.h"

#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Instruments.h"

#include <algorithm>

namespace velmora {

namespace {
int applyToSelection(Score& score, std::int16_t code, const ViewState& view) {
    if (view.SelectStart < 0)
        return 0;
    int changed = 0;
    const int last = std::min(view.SelectEnd, score.NumNotes);
    for (int position = view.SelectStart; position <= last; ++position) {
        if (cellClass(score.NoteCell.valueOr(score.ActiveChannel, position, kEmptyCell)) == CellClass::Empty)
            continue;
        changed += score.NoteInstrument.set(score.ActiveChannel, position, code) ? 1 : 0;
    }
    return changed;
}

void applyToChannel(Score& score, std::int16_t code) {
    if (static_cast<unsigned>(score.ActiveChannel) < score.ChannelInstrument.size())
        score.ChannelInstrument[static_cast<std::size_t>(score.ActiveChannel)] = code;
}
} // namespace

int applyMelodyInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                          const ViewState& view) {
    if (chosen.MelodyInstrumentName.empty())
        chosen.MelodyInstrument = storedCode;
    if (score.ActiveChannel < kFirstPercussion)
        applyToChannel(score, chosen.MelodyInstrument);
    return applyToSelection(score, chosen.MelodyInstrument, view);
}

int applyPercussionInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                              const ViewState& view) {
    if (chosen.PercussionInstrumentName.empty())
        chosen.PercussionInstrument = storedCode;
    if (score.ActiveChannel >= kFirstPercussion)
        applyToChannel(score, chosen.PercussionInstrument);
    return applyToSelection(score, chosen.PercussionInstrument, view);
}

} // namespace velmora
