// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Workspace.h"

#include "base/ProgramFolders.h"
#include "base/Settings.h"

#include <algorithm>
#include <utility>

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
    beginHistory();
    selectChannel(0);
}

void Workspace::setManners(const Manners& chosen) {
    const Edit scope(*this, Change::Manners | Change::Undo);
    if (manners != chosen)
        undo.forget(); // it knows nothing of what has been done meanwhile
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

void Workspace::beginHistory() {
    history.restart(score, setup);
}

void Workspace::keepChannelForUndo(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    history.name(step);
    if (!manners.undoesEverything)
        undo.SaveforUndo(score, setup, step);
}

void Workspace::keepForUndo(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    history.name(step);
    if (!manners.undoesEverything)
        undo.keepWhole(score, setup, step, StepScope::Cells);
}

void Workspace::keepReplaced(std::string_view step) {
    const Edit scope(*this, Change::Undo);
    history.name(step);
    if (!manners.undoesEverything && (!undo.bringsScoreBack() || !score.usedChannels().empty()))
        undo.keepWhole(score, setup, step, StepScope::Score);
}

Workspace::Undone Workspace::undoLast() {
    if (manners.undoesEverything)
        return step(&UndoHistory::undo);
    if (!undo.OpenforUndo(score, setup))
        return {};
    const Edit scope(*this, kAnotherScore);
    history.name("Undo");
    showFromStart();
    return {.done = true};
}

Workspace::Undone Workspace::redoLast() {
    return manners.undoesEverything ? step(&UndoHistory::redo) : Undone{};
}

/// What an act that goes on has changed so far is a step, too.
Workspace::Undone Workspace::step(std::optional<UndoHistory::Changed> (UndoHistory::*go)(Score&,
                                                                                         SetupState&)) {
    history.commit(score, setup);
    const auto changed = (history.*go)(score, setup);
    if (!changed)
        return {};
    Edit scope(*this, Change::Undo | Change::Channels | Change::Instruments | Change::Effects);
    const std::pair<bool, Changes> rows[]{{changed->melody, Change::Cells},
                                          {changed->percussion, Change::Beats},
                                          {changed->length, Change::Length | Change::Marks},
                                          {changed->name, Change::Name | Change::File},
                                          {changed->meter, Change::Meter}};
    for (const auto& [has, changes] : rows)
        if (has)
            scope.add(changes);
    scope.keepChannelsInUse();
    keepMarksWithin();
    return {true, *changed};
}

void Workspace::keepMarksWithin() {
    if (view.SelectStart > score.NumNotes)
        view.SelectStart = view.SelectEnd = -1;
    view.SelectEnd = std::min(view.SelectEnd, score.NumNotes);
    view.PlayMark = std::min(view.PlayMark, score.NumNotes);
}

std::string_view Workspace::undoStep() const {
    return manners.undoesEverything ? history.undoName() : undo.step();
}

std::string_view Workspace::redoStep() const {
    return manners.undoesEverything ? history.redoName() : std::string_view();
}

bool Workspace::isUnsaved() const {
    return !history.isSaved() && (!score.currentFile.empty() || !score.usedChannels().empty());
}

void Workspace::markSaved() {
    const Edit scope(*this, Change::Undo);
    history.markSaved();
}

std::string topBarText(const Score& score, const SetupState& setup) {
    const int beats = std::max<int>(1, setup.TxtMeter);
    const int division = score.NotesPerMeasure / beats * setup.NoteX;
    return std::to_string(score.Tempo) + " BPM" + "  1/" + std::to_string(setup.NoteX) +
           " Note per Beat    (" + std::to_string(score.NotesPerMeasure) + " Divisions -   1/" +
           std::to_string(division) + " Note per Division)";
}

} // namespace velmora
