// SPDX-License-Identifier: GPL-2.0-or-later
// What was read and written once comes back equal from then on.
#include "score/Score.h"
#include "score/SngFile.h"
#include "sound/SetupState.h"

#include <cstdlib>

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kNumNotes = 40; // at least 4, so that the search for keys reaches all four
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Score first(kNumNotes);
    SetupState firstSetup;
    parseSng(bytes, openingReader(bytes), first, firstSetup);
    const std::string text = serializePoliFile(first, firstSetup);

    Score second(kNumNotes);
    SetupState secondSetup;
    parseSng(text, openingReader(text), second, secondSetup);
    bool same = formOf(text) == SngForm::Newest && serializePoliFile(second, secondSetup) == text &&
                second.SongEnd == first.SongEnd && second.Tempo == first.Tempo &&
                second.ChannelInstrument == first.ChannelInstrument &&
                secondSetup.TxBeats == firstSetup.TxBeats && secondSetup.TxtMeter == firstSetup.TxtMeter &&
                secondSetup.NoteX == firstSetup.NoteX;
    // Every cell up to the last note of its channel; behind it nothing is kept.
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        for (int position = 0; position <= first.lastFilledPosition(channel, kNumNotes); ++position)
            same &=
                first.NoteCell.at(channel, position) == second.NoteCell.at(channel, position) &&
                first.NoteInstrument.at(channel, position) == second.NoteInstrument.at(channel, position) &&
                first.Volume.at(channel, position + 1) == second.Volume.at(channel, position + 1);
    }
    if (!same)
        std::abort();
    return 0;
}
