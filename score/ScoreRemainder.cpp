// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ScoreRemainder.h"

#include "score/KeptLayers.h"
#include "sound/SetupState.h"

#include <algorithm>

namespace velmora {

ScoreRemainder::ScoreRemainder(const Score& score, const SetupState& setup)
    : numNotes_(score.NumNotes)
    , inUse_(score.ChannelInUse)
    , shown_(score.ChannelShown)
    , instruments_(score.ChannelInstrument)
    , beatMemo_(score.BeatMemo)
    , tempo_(score.Tempo)
    , notesPerMeasure_(score.NotesPerMeasure)
    , activeChannel_(score.ActiveChannel)
    , topChannel_(score.TopChannel)
    , topMelodyHint_(score.TopMelodyHint)
    , topDrumHint_(score.TopDrumHint)
    , file_(score.currentFile)
    , meter_{setup.TxBeats, setup.TxtMeter, setup.NoteX}
    , chords_(setup.Ch)
    , strums_(setup.Chkstrum) {}

void ScoreRemainder::putBack(const KeptLayers& layers, Score& score, SetupState& setup) const {
    if (score.NumNotes < numNotes_)
        score.resizeNotes(numNotes_);
    layers.putBack(score);
    score.ChannelInstrument = instruments_;
    score.Tempo = tempo_;
    score.NotesPerMeasure = notesPerMeasure_;
    setup.TxBeats = meter_[0];
    setup.TxtMeter = meter_[1];
    setup.NoteX = meter_[2];
    score.BeatMemo = beatMemo_;
    score.ChannelInUse = inUse_;
    score.ChannelShown = shown_;
    score.TopChannel = std::max(score.TopChannel, topChannel_); // it never falls but in a clearing
    score.TopMelodyHint = std::max(score.TopMelodyHint, topMelodyHint_);
    score.TopDrumHint = std::max(score.TopDrumHint, topDrumHint_);
    score.FindEndOfSong();
}

void ScoreRemainder::putBackWhole(const KeptLayers& layers, Score& score, SetupState& setup) const {
    score.ActiveChannel = activeChannel_;
    score.currentFile = file_;
    putBack(layers, score, setup);
    score.TopChannel = topChannel_;
    score.TopMelodyHint = topMelodyHint_;
    score.TopDrumHint = topDrumHint_;
    setup.Ch = chords_;
    setup.Chkstrum = strums_;
}

} // namespace velmora
