// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FormScreen.h"

#include "base/QtText.h"
#include "composition/NoteEffects.h"
#include "composition/NoteReadout.h"
#include "composition/Workspace.h"
#include "parts/CommandBank.h"
#include "shell/Frmmenu.h"
#include "shell/frminfo.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
#include "tableau/EffectsPage.h"
#include "tableau/Pointers.h"
#include "tableau/TextLine.h"
#include "tableau/TopBarOverlay.h"
#include "tableau/ViewGeometry.h"

#include <QCursor>

namespace velmora {

namespace {
/// A press of the right button on each surface, in Tips mode.
struct SurfaceTip {
    Picmain::Surface surface;
    int tip;
};
constexpr std::array<SurfaceTip, 5> kSurfaceTips{{
    {Picmain::Surface::MusicBox, 1},
    {Picmain::Surface::Beatbox, 2},
    {Picmain::Surface::Guide, 3},
    {Picmain::Surface::Pic2a, 4},
    {Picmain::Surface::Pic3, 5},
}};

Picmain::Surface surfaceOf(Box box) {
    return box == Box::MusicBox ? Picmain::Surface::MusicBox : Picmain::Surface::Beatbox;
}
} // namespace

FormScreen::FormScreen(const FormStrips& strips, const Workspace& workspace)
    : strips_(strips)
    , workspace_(workspace) {}

void FormScreen::showChannels() {
    const Score& score = workspace_.score;
    strips_.channels.show(score);
    strips_.readOuts.showTrack(score.ActiveChannel,
                               toQString(trackOf(score.ActiveChannel, workspace_.manners)));
    strips_.readOuts.setField(TopBarOverlay::LblNumnotes, toQString(noteCountText(score.SongEnd)));
    strips_.picmain.showHint(score.SongEnd == 0 && score.usedChannels().empty());
    setScrollMaximum(columnRange(workspace_.view, score.SongEnd).maximum);
}

void FormScreen::showNextNote() {
    const Score& score = workspace_.score;
    NoteReadout note;
    note.number = std::to_string(workspace_.view.ViewFirstColumn + 1);
    note.name = " -";
    note.chord = "-";
    note.vol = std::to_string(kClearedVolume);
    note.inst = nameOfCode(score.ChannelInstrument[score.ActiveChannel]);
    showReadOut(note);
    strips_.picmain.drawIndicatorBar();
}

void FormScreen::showReadOut(const NoteReadout& note) {
    const auto set = [this](TopBarOverlay::Field field, const std::string& text) {
        strips_.readOuts.setField(field, toQString(text));
    };
    set(TopBarOverlay::LblNote, note.number);
    set(TopBarOverlay::LblNoteName, note.name);
    set(TopBarOverlay::Label7, note.chord);
    set(TopBarOverlay::LblVol, note.vol);
    set(TopBarOverlay::LblInst, note.inst);
}

void FormScreen::showTip(Picmain::Surface surface) {
    for (const SurfaceTip& row : kSurfaceTips) {
        if (row.surface != surface)
            continue;
        if (surface == Picmain::Surface::MusicBox)
            strips_.tips.showForTableau(strips_.window, strips_.picmain.musicBoxTop());
        else
            strips_.tips.showBeside(*strips_.picmain.surface(surface), row.tip);
    }
}

// Gestures

int FormScreen::width(Box box) const {
    return strips_.picmain.width(box);
}
void FormScreen::GetRow(Box box, int row) {
    strips_.picmain.GetRow(box, row);
}
void FormScreen::PutRow(Box box, int row) {
    strips_.picmain.PutRow(box, row);
}
void FormScreen::GetBox() {
    strips_.picmain.GetBox();
}
void FormScreen::PutBox() {
    strips_.picmain.PutBox();
}
void FormScreen::drawPressBall(int row, int column) {
    strips_.picmain.drawPressBall(row, column);
}
void FormScreen::drawBand(Box box, int row, int fromColumn, int toColumn) {
    strips_.picmain.drawBand(box, row, fromColumn, toColumn);
}
void FormScreen::drawSelectEdge(int column) {
    strips_.picmain.drawSelectEdge(column);
}
void FormScreen::blendSelectStrip() {
    strips_.picmain.blendSelectStrip();
}
void FormScreen::drawSelectDrag(int fromColumn, int toColumn) {
    strips_.picmain.drawSelectDrag(fromColumn, toColumn);
}
void FormScreen::setPointer(Box box, Pointer pointer) {
    strips_.picmain.surface(surfaceOf(box))->setCursor(cursorOf(pointer));
}
void FormScreen::setToolText(std::string_view caption, std::string_view text) {
    mentions_ = false;
    strips_.textLine.setText(toQString(caption), toQString(text));
}
void FormScreen::mention(std::string_view text) {
    setToolText({}, text);
    mentions_ = true;
}
void FormScreen::dropMention() {
    if (mentions_)
        setToolText({}, {});
}
void FormScreen::showEffects(int modulation, int pan, int reverb, int chorus) {
    strips_.effects.showEffects(modulation, pan, reverb, chorus);
}
void FormScreen::doNotemod(int position) {
    const EffectPlaces places = velmora::doNotemod(workspace_.score, position, ToolPage::kHeight);
    showEffects(places[0].shown, places[1].shown, places[2].shown, places[3].shown);
}
void FormScreen::showNote(const NoteReadout& note, int column) {
    showReadOut(note);
    strips_.picmain.drawIndicatorBar(column);
}
void FormScreen::advanceScroll(int columns) {
    strips_.picmain.advanceScroll(columns);
}
void FormScreen::setScrollMaximum(int maximum) {
    strips_.picmain.setScrollMaximum(maximum);
}
void FormScreen::openEditMenu() {
    strips_.menu.popup("mnupopup7").exec(QCursor::pos());
}
void FormScreen::openFileMenu() {
    strips_.menu.popup("mnupopup6").exec(QCursor::pos());
}
void FormScreen::showTip(Box box) {
    showTip(surfaceOf(box));
}

// Playing

void FormScreen::DisableControls() {
    setEditable(false);
}
void FormScreen::EnableControls() {
    setEditable(true);
}
void FormScreen::setEditable(bool editable) {
    strips_.picmain.setEditable(editable);
    strips_.Cmd2.setOn(cmd2("play"), !editable);
    strips_.Cmd2.setOn(cmd2("line"), workspace_.play.ShowPlayLine);
}
void FormScreen::clearMusicBox() {
    strips_.picmain.clearMusicBox();
}
void FormScreen::DrawNoteArray() {
    strips_.picmain.DrawNoteArray();
}
void FormScreen::DrawBeatArray() {
    strips_.picmain.DrawBeatArray();
}
void FormScreen::drawBars() {
    strips_.picmain.drawIndicatorBar();
    strips_.picmain.drawPolynoteBar();
}
void FormScreen::followView() {
    strips_.picmain.followView();
}
void FormScreen::showSongEnd() {
    showChannels();
}
void FormScreen::GetColumn(int column) {
    strips_.picmain.GetColumn(column);
}
void FormScreen::PutColumn() {
    strips_.picmain.PutColumn();
}
void FormScreen::drawPlayLine(int column) {
    strips_.picmain.drawPlayLine(column);
}
void FormScreen::domodgraph() {
    if (!workspace_.view.NoteEffectsOn)
        return;
    const EffectPlaces places =
        velmora::domodgraph(workspace_.score, workspace_.play.PlayPosition, ToolPage::kHeight);
    strips_.effects.showGraph(places[0].shown, places[1].shown, places[2].shown, places[3].shown);
}

} // namespace velmora
