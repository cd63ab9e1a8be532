// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ScoreScalars.h"

#include "sound/SetupState.h"

namespace velmora {

ScoreScalars::ScoreScalars(const Score& score, const SetupState& setup)
    : NumNotes(score.NumNotes)
    , SongEnd(score.SongEnd)
    , ActiveChannel(score.ActiveChannel)
    , TopChannel(score.TopChannel)
    , TopMelodyHint(score.TopMelodyHint)
    , TopDrumHint(score.TopDrumHint)
    , Tempo(score.Tempo)
    , NotesPerMeasure(score.NotesPerMeasure)
    , TxBeats(setup.TxBeats)
    , TxtMeter(setup.TxtMeter)
    , NoteX(setup.NoteX)
    , ChannelInstrument(score.ChannelInstrument)
    , BeatMemo(score.BeatMemo)
    , ChannelInUse(score.ChannelInUse)
    , ChannelShown(score.ChannelShown)
    , Ch(setup.Ch)
    , Chkstrum(setup.Chkstrum) {}

void ScoreScalars::putBack(Score& score, SetupState& setup) const {
    score.SongEnd = SongEnd;
    score.ActiveChannel = ActiveChannel;
    score.TopChannel = TopChannel;
    score.TopMelodyHint = TopMelodyHint;
    score.TopDrumHint = TopDrumHint;
    score.Tempo = Tempo;
    score.NotesPerMeasure = NotesPerMeasure;
    score.ChannelInstrument = ChannelInstrument;
    score.BeatMemo = BeatMemo;
    score.ChannelInUse = ChannelInUse;
    score.ChannelShown = ChannelShown;
    setup.TxBeats = TxBeats;
    setup.TxtMeter = TxtMeter;
    setup.NoteX = NoteX;
    setup.Ch = Ch;
    setup.Chkstrum = Chkstrum;
}

bool ScoreScalars::savesLike(const ScoreScalars& other) const {
    return NumNotes == other.NumNotes && Tempo == other.Tempo && NotesPerMeasure == other.NotesPerMeasure &&
           TxBeats == other.TxBeats && TxtMeter == other.TxtMeter && NoteX == other.NoteX &&
           ChannelInstrument == other.ChannelInstrument;
}

} // namespace velmora
