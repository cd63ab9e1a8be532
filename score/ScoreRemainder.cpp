// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ScoreRemainder.h"

#include "score/SngFile.h"
#include "score/SngText.h"
#include "sound/SetupState.h"

#include <algorithm>

namespace velmora {

namespace {
/// The indices of the effect rows' end, as `serializePoliFile` cuts them.
int effectEndOf(const Score& score) {
    int last = 0;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        last = std::max(last, score.lastFilledPosition(channel, score.NumNotes));
    return std::min(last + 2, score.Volume.positions());
}

/// As after a clearing, so that nothing of today shows through where the file's rows end.
void clearLayers(Score& score) {
    score.ClearNoteArrays();
    score.Polyphonics.fillRow(0, 0);
    for (const EffectSection& section : kEffectSections) {
        for (int channel = 0; channel < kUsedChannels; ++channel)
            (score.*section.grid).fillRow(channel, section.cleared);
    }
}
} // namespace

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
    , strums_(setup.Chkstrum) {
    const int effectEnd = effectEndOf(score);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        const int end = std::max(score.lastFilledPosition(channel, score.NumNotes), 0) + 1;
        keepOutside(score, &Score::NoteCell, channel, 0, end, kEmptyCell);
        keepOutside(score, &Score::NoteInstrument, channel, 0, end, 0);
        for (const EffectSection& section : kEffectSections)
            keepOutside(score, section.grid, channel, 1, effectEnd, section.cleared);
    }
    for (int row = 0; row <= kUsedChannels; ++row)
        keepOutside(score, &Score::Polyphonics, row, 0, row < kPolyphonicsRows ? effectEnd : 0, 0);
}

/// The file holds the cells from @p first to before @p end.
void ScoreRemainder::keepOutside(const Score& score, ChannelGrid Score::*grid, int row, int first, int end,
                                 std::int16_t cleared) {
    const auto cells = (score.*grid).row(row);
    const auto changed = [cleared](std::int16_t cell) { return cell != cleared; };
    const auto before = cells.first(static_cast<std::size_t>(first));
    const auto after = cells.subspan(static_cast<std::size_t>(end));
    if (std::ranges::any_of(before, changed))
        runs_.push_back({grid, row, 0, {before.begin(), before.end()}});
    if (std::ranges::any_of(after, changed))
        runs_.push_back({grid, row, end, {after.begin(), after.end()}});
}

void ScoreRemainder::putBack(std::string_view text, Score& score, SetupState& setup) const {
    if (score.NumNotes < numNotes_)
        score.resizeNotes(numNotes_);
    clearLayers(score);
    parseSng(text, SngReader::OpenPoliFile, score, setup);
    for (const Run& run : runs_) {
        auto row = (score.*run.grid).row(run.row);
        std::ranges::copy(run.cells, row.begin() + run.first);
    }
    // These the file does hold, but its reader may end before them or guess.
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

void ScoreRemainder::putBackWhole(std::string_view text, Score& score, SetupState& setup) const {
    score.ActiveChannel = activeChannel_;
    score.currentFile = file_;
    putBack(text, score, setup);
    score.TopChannel = topChannel_;
    score.TopMelodyHint = topMelodyHint_;
    score.TopDrumHint = topDrumHint_;
    setup.Ch = chords_;
    setup.Chkstrum = strums_;
}

} // namespace velmora
