// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of the undo snapshot: any bytes, into any channel; the other channels keep their notes.
#include "score/Score.h"
#include "score/UndoSnapshot.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <cstdlib>

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kNumNotes = 30;
    if (size == 0)
        return 0;
    const int undone = data[0] % 15 - 1; // -1 and 13 name no channel
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    Score score(kNumNotes);
    SetupState setup;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        score.NoteCell.fillRow(channel, 60);
    parseUndo(bytes, undone, score, setup);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (channel != undone &&
            !std::ranges::all_of(score.NoteCell.row(channel), [](int cell) { return cell == 60; }))
            std::abort();
    }
    // A snapshot of what was read brings the same notes back.
    if (undone < 0 || undone >= kUsedChannels)
        return 0;
    score.ActiveChannel = undone;
    Score again = score;
    parseUndo(serializeUndo(score, setup), undone, again, setup);
    if (serializeUndo(again, setup) != serializeUndo(score, setup))
        std::abort();
    return 0;
}
