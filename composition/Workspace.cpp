// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Workspace.h"

#include "base/ProgramFolders.h"
#include "base/Settings.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kEndMargin = 10; ///< the view's last column keeps this far from the score's end
}

static_assert(settings::NumNotes.range.most == kMostNotes);
static_assert(settings::Line_Height.range.least == kLeastLineHeight &&
              settings::Line_Height.range.most == kMostLineHeight);

Workspace::Workspace(const SettingsStore& store, const ProgramFolders& folders)
    : score(settings::read(store, settings::NumNotes))
    , undo(folders.undoFile())
    , manners(Manners::of(settings::read(store, settings::Classic) != 0))
    , CopyonlyOneTrack(settings::read(store, settings::CopyonlyOneTrack)) {
    folders.makeSongs();
    score.ClearAll();
    score.NotesPerMeasure = settings::read(store, settings::Notes_per_measure);
    setup.TxBeats = score.NotesPerMeasure;
    setup.TxtMeter = settings::read(store, settings::Beats_per_measure);
    setup.NoteX = settings::read(store, settings::Type_of_note);
    setup.ChTreble = settings::read(store, settings::Show_Treble_staff) != 0;
    setup.ChBass = settings::read(store, settings::Show_Bass_staff) != 0;
    view.Line_Height = settings::read(store, settings::Line_Height);
    view.Show_Sharp_guides = settings::read(store, settings::Show_Sharp_guides) == 1;
    view.Notationstyle = settings::read(store, settings::Notationstyle) == 1 ? 1 : 0;
    view.Accidentals = settings::read(store, settings::Accidentals);
    play.ShowPlayLine = settings::read(store, settings::Playing_position);

    instruments.MelodyInstrument = settings::read(store, settings::Intrumentval);
    instruments.PercussionInstrument = settings::read(store, settings::Intrumentval2);
    instruments.MelodyInstrumentName = nameOfCode(instruments.MelodyInstrument);
    instruments.PercussionInstrumentName = nameOfCode(instruments.PercussionInstrument);
    for (int channel = 0; channel < kUsedChannels; ++channel)
        score.ChannelInstrument[channel] =
            channel < kMelodyChannels ? instruments.MelodyInstrument : instruments.PercussionInstrument;
    selectChannel(0);
}

void Workspace::setManners(const Manners& chosen) {
    const Edit scope(*this, Change::Manners | Change::Undo);
    manners = chosen;
}

void Workspace::selectChannel(int channel) {
    if (!isChannel(channel))
        return;
    const Edit scope(*this, Change::Channels | Change::Instruments);
    score.ActiveChannel = channel;
    score.ChannelInUse[channel] = true;
    score.ChannelShown[channel] = true;
    if (channel < kMelodyChannels)
        score.TopChannel = std::max(score.TopChannel, channel);
    else
        score.TopDrumHint = std::max(1, channel - kFirstPercussion);
}

void Workspace::toggleMuted(int channel) {
    if (!isChannel(channel))
        return;
    const Edit scope(*this, Change::Channels);
    bool& muted = score.ChannelMuted[channel];
    muted = !muted;
    score.FindEndOfSong();
}

bool Workspace::holdsNotes() {
    score.FindEndOfSong();
    return score.SongEnd > 0 || !score.usedChannels().empty();
}

void Workspace::clear() {
    const Edit scope(*this, kAnotherScore);
    keepReplaced("Clear all notes");
    view.Check4 = view.NoteEffectsOn = false;
    edit.CycleNotes = edit.CycleBeats = edit.TotalNotes = 0;
    edit.txtStart = 1;
    score.ClearAll();
    setup.Ch.fill(false);
    setup.Chkstrum.fill(false);
    selectChannel(0);
    score.TopChannel = 1;
    showFromStart();
}

void Workspace::showFromStart() {
    const Edit scope(*this, Change::Marks);
    view.ViewFirstColumn = 0;
    view.ViewLastColumn = std::min(view.ViewColumns, score.NumNotes - kEndMargin);
    view.SelectStart = view.SelectEnd = -1;
    view.PlayMark = 0;
}

void Workspace::keepChannelForUndo(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    undo.SaveforUndo(score, setup, step);
}

void Workspace::keepForUndo(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    undo.keepWhole(score, setup, step, StepScope::Cells);
}

void Workspace::keepReplaced(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    if (!undo.bringsScoreBack() || !score.usedChannels().empty())
        undo.keepWhole(score, setup, step, StepScope::Score);
}

bool Workspace::undoLast() {
    if (!undo.OpenforUndo(score, setup))
        return false;
    const Edit scope(*this, kAnotherScore);
    showFromStart();
    return true;
}

std::string topBarText(const Score& score, const SetupState& setup) {
    const int beats = std::max<int>(1, setup.TxtMeter);
    const int division = score.NotesPerMeasure / beats * setup.NoteX;
    return std::to_string(score.Tempo) + " BPM" + "  1/" + std::to_string(setup.NoteX) +
           " Note per Beat    (" + std::to_string(score.NotesPerMeasure) + " Divisions -   1/" +
           std::to_string(division) + " Note per Division)";
}

} // namespace velmora
