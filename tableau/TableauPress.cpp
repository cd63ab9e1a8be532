// SPDX-License-Identifier: GPL-2.0-or-later
// What a press on a Tableau begins, and what the right button does to the notes it meets.
#include "tableau/TableauInput.h"

#include "composition/NoteEffects.h"
#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "score/NotePlayer.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kCentredPan = 64; ///< shown as 0

Pointer pointerOf(Stroke::Kind kind) {
    switch (kind) {
    case Stroke::Kind::Mark:
        return Pointer::Cursor;
    case Stroke::Kind::Select:
        return Pointer::Select;
    case Stroke::Kind::Draw:
    case Stroke::Kind::Erase:
        return Pointer::Pencil;
    default:
        return Pointer::Arrow;
    }
}
} // namespace

void TableauInput::press(Box box, MouseButton button, int x, int y) {
    rememberChannel();
    if (finishing_ || button == MouseButton::None)
        return;
    if (stroke_.PressActive && button != stroke_.button && box == stroke_.box)
        return; // a second button does not disturb a stroke
    cancel();
    if (button == MouseButton::Right && workspace_.view.RightClickMode == RightClick::Tips)
        return screen_.showTip(box);
    if (!takeChannel(box) || workspace_.play.Playing)
        return;
    begin(box, button, x, y);
    if (button == MouseButton::Left)
        pressLeft();
    else
        pressRight();
}

bool TableauInput::takeChannel(Box box) {
    Score& score = workspace_.score;
    const auto belongs = [&] { return (score.ActiveChannel < kMelodyChannels) == (box == Box::MusicBox); };
    if (belongs())
        return true;
    chooseChannel(workspace_, box == Box::MusicBox ? LastMelodyChannel : LastDrumChannel);
    rememberChannel();
    if (box == Box::Beatbox && belongs()) {
        const int channel = score.ActiveChannel;
        const std::int16_t instrument = workspace_.instruments.PercussionInstrument;
        score.ChannelInstrument[channel] = instrument;
        player_.ChangeInstrument(instrument, channel);
        score.ChannelIsDrum[channel] = true;
    }
    return belongs();
}

void TableauInput::begin(Box box, MouseButton button, int x, int y) {
    const ViewState& view = workspace_.view;
    stroke_ = Stroke{};
    act_.emplace(workspace_);
    stroke_.PressActive = true;
    stroke_.box = box;
    stroke_.button = button;
    stroke_.kind = kindOf(button);
    stroke_.channel = workspace_.score.ActiveChannel;
    stroke_.ViewCol = stroke_.PressCol = stroke_.rightMost = columnAt(x);
    stroke_.PressRow = y / rowHeight(box);
    stroke_.firstColumn = view.ViewFirstColumn;
    stroke_.topRow = view.ViewTopRow;
    stroke_.lastX = x;
}

Stroke::Kind TableauInput::kindOf(MouseButton button) const {
    const ViewState& view = workspace_.view;
    const bool left = button == MouseButton::Left;
    if (view.Check4) // the test comes before the mode
        return left ? Stroke::Kind::Listen : Stroke::Kind::None;
    switch (view.MouseMode) {
    case Mouse::Cursor:
        return Stroke::Kind::Mark;
    case Mouse::Select:
        return Stroke::Kind::Select;
    case Mouse::Draw:
        break;
    }
    return left ? Stroke::Kind::Draw : Stroke::Kind::Erase;
}

void TableauInput::pressLeft() {
    const int row = workspace_.view.ViewTopRow + stroke_.PressRow;
    // A view may reach past the pitches. Percussion rows are only places, but never negative ones.
    if (stroke_.kind == Stroke::Kind::Draw && (row < 0 || (stroke_.box == Box::MusicBox && row > kLastRow)))
        stroke_.kind = Stroke::Kind::None;
    const bool sounds = stroke_.kind == Stroke::Kind::Draw || stroke_.kind == Stroke::Kind::Listen;
    if (sounds) // before everything else: the ear is the first to be served
        sound_.press(stroke_.channel, row, pressPosition());
    screen_.setPointer(stroke_.box, pointerOf(stroke_.kind));
    switch (stroke_.kind) {
    case Stroke::Kind::Draw:
        return pressDraw();
    case Stroke::Kind::Listen:
        return pressListen();
    case Stroke::Kind::Mark:
        return pressMark();
    case Stroke::Kind::Select:
        return pressSelect();
    default:
        return;
    }
}

void TableauInput::pressDraw() {
    clearMarks();
    screen_.GetRow(stroke_.box, stroke_.PressRow);
    reach(stroke_.ViewCol);
    if (stroke_.box == Box::MusicBox && workspace_.view.Notationstyle == 0)
        screen_.drawPressBall(stroke_.PressRow, stroke_.PressCol);
    markEdited();
    showPressedEffects();
    keepForUndo();
}

void TableauInput::showPressedEffects() {
    const Score& score = workspace_.score;
    const int shifted = pressPosition() + 1;
    screen_.showEffects(score.Modulation_Change.valueOr(stroke_.channel, shifted, kClearedEffect),
                        score.Pan_Change.valueOr(stroke_.channel, shifted, kClearedPan) - kCentredPan,
                        score.Reverb_Change.valueOr(stroke_.channel, shifted, kClearedEffect),
                        score.Chorus_Change.valueOr(stroke_.channel, shifted, kClearedEffect));
}

void TableauInput::pressListen() {
    sound_.audition(stroke_.channel, pressPosition(), workspace_.view.NoteEffectsOn);
}

void TableauInput::pressMark() {
    const Edit edit(workspace_, Change::Marks);
    workspace_.view.PlayMark = pressPosition();
}

void TableauInput::pressSelect() {
    ViewState& view = workspace_.view;
    const int before = view.SelectStart;
    const auto showMarks = [this] { announce(workspace_, Change::Marks); };
    view.SelectStart = view.PlayMark = pressPosition();
    workspace_.play.SegmentBase = view.ViewFirstColumn;
    if (before < 0 || view.SelectStart < before) {
        screen_.GetBox();
        screen_.drawSelectEdge(stroke_.PressCol);
        showMarks();
    } else {
        showMarks();
        screen_.GetBox();
        screen_.blendSelectStrip();
    }
}

void TableauInput::pressRight() {
    screen_.setPointer(stroke_.box, pointerOf(stroke_.kind));
    switch (stroke_.kind) {
    case Stroke::Kind::Mark:
        return openMenu();
    case Stroke::Kind::Select:
        openMenu();
        return clearMarks();
    case Stroke::Kind::Erase:
        clearMarks();
        return eraseAt(stroke_.lastX);
    default:
        return;
    }
}

void TableauInput::openMenu() {
    const Box box = stroke_.box;
    const bool draw = stroke_.kind == Stroke::Kind::Erase;
    stroke_.PressActive = false; // the menu takes the release
    act_.reset();
    if (draw)
        screen_.setPointer(box, Pointer::Arrow);
    if (draw && box == Box::Beatbox)
        screen_.openFileMenu();
    else
        screen_.openEditMenu();
}

void TableauInput::eraseAt(int x) {
    stroke_.ViewCol = columnAt(x);
    if (workspace_.view.RightClickMode == RightClick::Menu)
        return openMenu();
    const int position = workspace_.view.ViewFirstColumn + stroke_.ViewCol;
    if (stroke_.ViewCol < 0 || !answersRightClick(workspace_.score, stroke_.channel, position))
        return;
    changeByRightClick(position);
}

void TableauInput::changeByRightClick(int position) {
    const ViewState& view = workspace_.view;
    Score& score = workspace_.score;
    Edit edit(workspace_);
    const bool chords = view.RightClickMode == RightClick::Polyphonic;
    keepForUndo();
    markEdited();
    bool changed =
        chords && setChord(score, workspace_.manners, stroke_.channel, position, listedChord(workspace_));
    const int head =
        chords ? headOf(score, stroke_.channel, position) : walkToHead(score, stroke_.channel, position);
    stroke_.ViewCol = head - view.ViewFirstColumn;
    if (view.NoteEffectsOn) {
        stroke_.effectsHeard = true;
        applyNoteEffects(workspace_, player_, head);
        return;
    }
    if (!chords) {
        eraseNote(score, stroke_.channel, head);
        changed = true;
    }
    if (changed)
        edit.add(changeOfNotes(stroke_.channel));
}

} // namespace velmora
