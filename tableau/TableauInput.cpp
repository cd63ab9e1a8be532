// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TableauInput.h"

#include "composition/NoteReadout.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "score/NotePlayer.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
constexpr int kEdge = 24;           ///< pixels before the right edge that scroll
constexpr int kEndMargin = 10;      ///< the view's last column keeps this far from the Score's end
constexpr int kColumnsOfAPage = 5;  ///< what a right drag at the edge scrolls by
constexpr int kFirstDrumCode = 128; ///< what `BeatMemo` leaves out of an instrument drawn with the mouse
} // namespace

TableauInput::TableauInput(Workspace& workspace, NotePlayer& player, MidiPort& port, TableauScreen& screen)
    : workspace_(workspace)
    , player_(player)
    , screen_(screen)
    , sound_(workspace.score, workspace.play, player, port)
    , watching_(workspace.watchers.join(*this)) {}

void TableauInput::changed(Changes changes) {
    if (changes.any(Change::Channels))
        rememberChannel();
}

void TableauInput::MusicBox_MouseDown(MouseButton button, int /*shift*/, int x, int y) {
    press(Box::MusicBox, button, x, y);
}
void TableauInput::MusicBox_MouseMove(MouseButton button, int /*shift*/, int x, int y) {
    move(Box::MusicBox, button, x, y);
}
void TableauInput::MusicBox_MouseUp(MouseButton button, int /*shift*/, int x, int /*y*/) {
    release(Box::MusicBox, button, x);
}
void TableauInput::Beatbox_MouseDown(MouseButton button, int /*shift*/, int x, int y) {
    press(Box::Beatbox, button, x, y);
}
void TableauInput::Beatbox_MouseMove(MouseButton button, int /*shift*/, int x, int y) {
    move(Box::Beatbox, button, x, y);
}
void TableauInput::Beatbox_MouseUp(MouseButton button, int /*shift*/, int x, int /*y*/) {
    release(Box::Beatbox, button, x);
}

void TableauInput::cancel() {
    rememberChannel();
    if (stroke_.PressActive)
        release(stroke_.box, stroke_.button, stroke_.lastX);
}

void TableauInput::rememberChannel() {
    const int channel = workspace_.score.ActiveChannel;
    (channel < kMelodyChannels ? LastMelodyChannel : LastDrumChannel) = channel;
}

// The drag

void TableauInput::move(Box box, MouseButton button, int x, int y) {
    rememberChannel();
    if (button == MouseButton::None) {
        cancel(); // its release was lost
        return hover(box, x);
    }
    if (!stroke_.PressActive || box != stroke_.box || button != stroke_.button || workspace_.play.Playing)
        return;
    followScroll();
    stroke_.lastX = x;
    if (endAtEdge(x))
        return;
    if (stroke_.kind == Stroke::Kind::Draw)
        dragDraw(x, y);
    else if (stroke_.kind == Stroke::Kind::Erase)
        eraseAt(x);
    else if (stroke_.kind == Stroke::Kind::Select)
        dragSelect(x);
}

bool TableauInput::endAtEdge(int x) {
    const Stroke::Kind kind = stroke_.kind;
    const bool left = kind == Stroke::Kind::Draw || kind == Stroke::Kind::Listen;
    if ((!left && kind != Stroke::Kind::Erase) || x <= screen_.width(stroke_.box) - kEdge)
        return false;
    screen_.setToolText("", left ? "Scroll ahead " : "Scroll to next page");
    release(stroke_.box, stroke_.button, x);
    screen_.advanceScroll(left ? 1 : kColumnsOfAPage);
    return true;
}

void TableauInput::dragDraw(int x, int y) {
    const ViewState& view = workspace_.view;
    if (stroke_.box == Box::Beatbox && stroke_.onPressRow && y / kBeatRowHeight != stroke_.PressRow) {
        stroke_.onPressRow = false;
        screen_.setPointer(stroke_.box, Pointer::Arrow);
    }
    stroke_.DragCol = std::max(columnAt(x), 0);
    reach(stroke_.DragCol);
    if (stroke_.DragCol == stroke_.DragColPrev)
        return;
    stroke_.DragColPrev = stroke_.DragCol;
    stroke_.DragCol = std::max(std::min(stroke_.DragCol, view.ViewColumns), stroke_.PressCol);
    screen_.PutRow(stroke_.box, stroke_.PressRow);
    screen_.drawBand(stroke_.box, stroke_.PressRow, stroke_.PressCol, stroke_.DragCol);
    if (stroke_.box == Box::MusicBox && view.Notationstyle == 0)
        screen_.drawPressBall(stroke_.PressRow, stroke_.PressCol);
    // A drawn note displaces the first cells of an earlier copy; that is meant.
    copyFiveCells(workspace_.score, stroke_.channel, view.ViewFirstColumn + stroke_.ViewCol);
}

void TableauInput::dragSelect(int x) {
    if (stroke_.button != MouseButton::Left)
        return;
    if (x > screen_.width(stroke_.box) - kEdge) {
        screen_.advanceScroll(1);
        followScroll();
    }
    stroke_.DragCol = std::max(columnAt(x), 0);
    if (stroke_.DragCol == stroke_.DragColPrev)
        return;
    stroke_.DragColPrev = stroke_.DragCol;
    screen_.PutBox();
    screen_.drawSelectDrag(stroke_.PressCol, stroke_.DragCol);
}

void TableauInput::hover(Box box, int x) {
    const Score& score = workspace_.score;
    const bool own = (score.ActiveChannel < kMelodyChannels) == (box == Box::MusicBox);
    const int position = workspace_.view.ViewFirstColumn + columnAt(x);
    screen_.setToolText("Note-Instrument", own ? cellText(score, position) : std::string());
}

void TableauInput::followScroll() {
    const ViewState& view = workspace_.view;
    const int columns = view.ViewFirstColumn - stroke_.firstColumn;
    const int rows = view.ViewTopRow - stroke_.topRow;
    if (columns == 0 && rows == 0)
        return;
    stroke_.firstColumn = view.ViewFirstColumn;
    stroke_.topRow = view.ViewTopRow;
    stroke_.ViewCol -= columns;
    stroke_.PressCol -= columns;
    stroke_.PressRow -= rows;
    stroke_.DragColPrev = -1;
    // The scrolled picture is a fresh one.
    if (stroke_.kind == Stroke::Kind::Draw)
        screen_.GetRow(stroke_.box, stroke_.PressRow);
    else if (stroke_.kind == Stroke::Kind::Select)
        screen_.GetBox();
}

void TableauInput::reach(int column) {
    ViewState& view = workspace_.view;
    stroke_.rightMost = std::max(stroke_.rightMost, column);
    const int last =
        std::min(view.ViewFirstColumn + stroke_.rightMost, workspace_.score.NumNotes - kEndMargin);
    view.ViewLastColumn = std::max(view.ViewLastColumn, last);
}

// The release

void TableauInput::release(Box box, MouseButton button, int x) {
    rememberChannel();
    const bool listens = workspace_.view.Check4 && workspace_.score.ActiveChannel < kMelodyChannels;
    if (listens || workspace_.view.NoteEffectsOn)
        sound_.silence();
    if (!stroke_.PressActive || finishing_ || box != stroke_.box || button != stroke_.button)
        return;
    followScroll();
    stroke_.lastX = x;
    stroke_.PressActive = false;
    finishing_ = true;
    {
        const Edit edit(workspace_);
        finish();
    }
    finishing_ = false;
    act_.reset();
}

void TableauInput::finish() {
    if (workspace_.play.Playing) { // which has the Score to itself
        sound_.release();
        return screen_.setPointer(stroke_.box, pointerAtRest(workspace_.view.MouseMode));
    }
    screen_.doNotemod(pressPosition());
    switch (stroke_.kind) {
    case Stroke::Kind::Draw:
        finishDraw();
        break;
    case Stroke::Kind::Listen:
        sound_.release();
        sound_.silence();
        break;
    case Stroke::Kind::Erase:
        leaveView();
        if (stroke_.effectsHeard)
            sound_.silence();
        announce(workspace_, changeOfNotes(stroke_.channel));
        break;
    case Stroke::Kind::Select:
        return finishSelect();
    default:
        return;
    }
    screen_.setPointer(stroke_.box, pointerAtRest(workspace_.view.MouseMode));
}

void TableauInput::leaveView() {
    ViewState& view = workspace_.view;
    clearMarks();
    stroke_.ViewCol = columnAt(stroke_.lastX);
    stroke_.rightMost = std::max({stroke_.rightMost, stroke_.ViewCol, view.ViewColumns});
    view.ViewLastColumn =
        std::min(view.ViewFirstColumn + stroke_.rightMost, workspace_.score.NumNotes - kEndMargin);
}

void TableauInput::finishDraw() {
    ViewState& view = workspace_.view;
    Score& score = workspace_.score;
    leaveView();
    sound_.release();
    stroke_.ViewCol = std::max(std::min(stroke_.ViewCol, view.ViewColumns), stroke_.PressCol);
    const int first = view.ViewFirstColumn + stroke_.PressCol;
    writeDrawn(first, view.ViewFirstColumn + stroke_.ViewCol);
    screen_.showNote(readNote(score, first), stroke_.PressCol);
    score.FindEndOfSong();
    // A single note in position 0 leaves its channel unused, but the active channel is in use at any rate.
    score.ChannelInUse[stroke_.channel] = true;
    score.ChannelShown[stroke_.channel] = true;
    view.SelectEnd = stroke_.ViewCol; // a column of the view; that is meant
}

void TableauInput::writeDrawn(int first, int last) {
    const Edit edit(workspace_, changeOfNotes(stroke_.channel));
    const ViewState& view = workspace_.view;
    Score& score = workspace_.score;
    writeNote(score, {stroke_.channel, view.ViewTopRow + stroke_.PressRow, first, last});
    screen_.setScrollMaximum(view.ViewColumns * 2 + score.SongEnd);
    sound_.silenceAt(last);
    splitAfter(score, stroke_.channel, last);
    if (stroke_.box == Box::Beatbox)
        score.rememberBeat(
            stroke_.channel, first,
            static_cast<std::int16_t>(score.ChannelInstrument[stroke_.channel] - kFirstDrumCode));
}

void TableauInput::finishSelect() {
    ViewState& view = workspace_.view;
    stroke_.ViewCol = std::max(std::min(columnAt(stroke_.lastX), view.ViewColumns), stroke_.PressCol);
    const Edit edit(workspace_, Change::Marks);
    view.SelectEnd = workspace_.play.SegmentEnd = view.ViewFirstColumn + stroke_.ViewCol;
}

// What all of them need

int TableauInput::pressPosition() const {
    return workspace_.view.ViewFirstColumn + stroke_.ViewCol;
}

int TableauInput::rowHeight(Box box) const {
    return box == Box::MusicBox ? std::max(workspace_.view.Line_Height, 1) : kBeatRowHeight;
}

void TableauInput::clearMarks() {
    ViewState& view = workspace_.view;
    const bool shown = view.SelectStart >= 0 || view.PlayMark != 0;
    const Edit edit(workspace_, shown ? Change::Marks : Changes());
    view.SelectStart = view.SelectEnd = -1;
    view.PlayMark = 0;
}

void TableauInput::keepForUndo() {
    if (std::exchange(stroke_.keptForUndo, true))
        return;
    const bool draws = stroke_.button == MouseButton::Left;
    workspace_.history.name(draws ? "Draw note" : "Change notes by right click");
    if (stroke_.box == Box::Beatbox)
        return; // the one step of classic manners knows no percussion strokes; that is meant
    if (draws)
        workspace_.keepChannelForUndo();
    else // undoing the form of one channel would cost that channel its chords
        workspace_.keepForUndo(UndoSnapshot::kNoteStep);
}

void TableauInput::markEdited() {
    Score& score = workspace_.score;
    if (stroke_.box == Box::MusicBox) {
        score.TopChannel = std::max(score.TopChannel, stroke_.channel + 1);
        score.TopMelodyHint = std::max(score.TopMelodyHint, stroke_.channel);
    } else {
        score.TopChannel = std::max(score.TopChannel, stroke_.channel);
        score.TopDrumHint = std::max(1, stroke_.channel - kFirstPercussion);
    }
}

} // namespace velmora
