// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FormScreen.h"

#include "base/QtText.h"
#include "composition/NoteReadout.h"
#include "tableau/Picmain.h"
#include "tableau/Pointers.h"
#include "tableau/TextLine.h"
#include "tableau/TopBarOverlay.h"

namespace velmora {

FormScreen::FormScreen(Picmain& picmain, TextLine& textLine, TopBarOverlay& readOuts)
    : picmain_(picmain)
    , textLine_(textLine)
    , readOuts_(readOuts) {}

void FormScreen::DrawNoteArray() {
    picmain_.DrawNoteArray();
    if (onPainted)
        onPainted();
}
void FormScreen::DrawBeatArray() {
    picmain_.DrawBeatArray();
}
void FormScreen::showSongEnd() {
    if (onSongEnd)
        onSongEnd();
}

int FormScreen::width(Box box) const {
    return picmain_.width(box);
}
void FormScreen::drawPolynoteBar() {
    picmain_.drawPolynoteBar();
}
void FormScreen::GetRow(Box box, int row) {
    picmain_.GetRow(box, row);
}
void FormScreen::PutRow(Box box, int row) {
    picmain_.PutRow(box, row);
}
void FormScreen::GetBox() {
    picmain_.GetBox();
}
void FormScreen::PutBox() {
    picmain_.PutBox();
}
void FormScreen::drawPressBall(int row, int column) {
    picmain_.drawPressBall(row, column);
}
void FormScreen::drawBand(Box box, int row, int fromColumn, int toColumn) {
    picmain_.drawBand(box, row, fromColumn, toColumn);
}
void FormScreen::drawSelectEdge(int column) {
    picmain_.drawSelectEdge(column);
}
void FormScreen::blendSelectStrip() {
    picmain_.blendSelectStrip();
}
void FormScreen::drawSelectDrag(int fromColumn, int toColumn) {
    picmain_.drawSelectDrag(fromColumn, toColumn);
}

void FormScreen::setPointer(Box box, Pointer pointer) {
    const auto which = box == Box::MusicBox ? Picmain::Surface::MusicBox : Picmain::Surface::Beatbox;
    picmain_.surface(which)->setCursor(cursorOf(pointer));
}

void FormScreen::setToolText(std::string_view caption, std::string_view text) {
    textLine_.setText(toQString(caption), toQString(text));
}

void FormScreen::showNote(const NoteReadout& note, int column) {
    const auto set = [this](TopBarOverlay::Field field, const std::string& text) {
        readOuts_.setField(field, toQString(text));
    };
    set(TopBarOverlay::LblNote, note.number);
    set(TopBarOverlay::LblNoteName, note.name);
    set(TopBarOverlay::Label7, note.chord);
    set(TopBarOverlay::LblVol, note.vol);
    set(TopBarOverlay::LblInst, note.inst);
    picmain_.drawIndicatorBar(column == kNoColumn ? std::nullopt : std::optional(column));
}

void FormScreen::showEffects(int modulation, int pan, int reverb, int chorus) {
    if (onEffects)
        onEffects(modulation, pan, reverb, chorus);
}
void FormScreen::doNotemod(int position) {
    if (onNotemod)
        onNotemod(position);
}
void FormScreen::domodgraph() {
    if (onModgraph)
        onModgraph();
}
void FormScreen::applyNoteEffects(int position) {
    if (onApplyEffects)
        onApplyEffects(position);
}

void FormScreen::advanceScroll(int columns) {
    picmain_.advanceScroll(columns);
}
void FormScreen::setScrollMaximum(int maximum) {
    picmain_.setScrollMaximum(maximum);
}
void FormScreen::openEditMenu() {
    if (onMenu)
        onMenu("mnupopup7"); // the Edit menu
}
void FormScreen::openFileMenu() {
    if (onMenu)
        onMenu("mnupopup6"); // the File menu
}
void FormScreen::showTip(Box box) {
    if (onTip)
        onTip(box);
}
void FormScreen::TrackSel_Click(int channel) {
    if (onTrackSel)
        onTrackSel(channel);
}

void FormScreen::DisableControls() {
    picmain_.setEditable(false);
    if (onControls)
        onControls(false);
}
void FormScreen::EnableControls() {
    picmain_.setEditable(true);
    if (onControls)
        onControls(true);
}
void FormScreen::clearMusicBox() {
    picmain_.clearMusicBox();
}
void FormScreen::drawBars() {
    picmain_.drawIndicatorBar();
    picmain_.drawPolynoteBar();
}
void FormScreen::followView() {
    picmain_.followView();
}
void FormScreen::GetColumn(int column) {
    picmain_.GetColumn(column);
}
void FormScreen::PutColumn() {
    picmain_.PutColumn();
}
void FormScreen::drawPlayLine(int column) {
    picmain_.drawPlayLine(column);
}

} // namespace velmora
