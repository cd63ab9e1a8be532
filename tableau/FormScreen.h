// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/PlaybackView.h"
#include "tableau/TableauScreen.h"

#include <functional>
#include <string_view>

namespace velmora {

class Picmain;
class TextLine;
class TopBarOverlay;

/// What gestures and playing ask of the composing window, handed on to its strips.
class FormScreen final : public TableauScreen, public PlaybackView {
public:
    FormScreen(Picmain& picmain, TextLine& textLine, TopBarOverlay& readOuts);

    static constexpr int kNoColumn = -1; ///< for `showNote`: nothing is marked in `Pic2a`

    // What no strip can answer by itself.
    std::function<void(int channel)> onTrackSel;
    std::function<void(std::string_view popup)> onMenu;
    std::function<void(Box)> onTip;
    std::function<void()> onSongEnd;
    std::function<void()> onPainted; ///< after `DrawNoteArray`
    std::function<void(int head)> onApplyEffects;
    std::function<void(int modulation, int pan, int reverb, int chorus)> onEffects;
    std::function<void(int position)> onNotemod;
    std::function<void()> onModgraph;
    std::function<void(bool enabled)> onControls;

    // Both
    void DrawNoteArray() override;
    void DrawBeatArray() override;
    void showSongEnd() override;

    // Gestures
    [[nodiscard]] int width(Box box) const override;
    void drawPolynoteBar() override;
    void GetRow(Box box, int row) override;
    void PutRow(Box box, int row) override;
    void GetBox() override;
    void PutBox() override;
    void drawPressBall(int row, int column) override;
    void drawBand(Box box, int row, int fromColumn, int toColumn) override;
    void drawSelectEdge(int column) override;
    void blendSelectStrip() override;
    void drawSelectDrag(int fromColumn, int toColumn) override;
    void setPointer(Box box, Pointer pointer) override;
    void setToolText(std::string_view caption, std::string_view text) override;
    void showEffects(int modulation, int pan, int reverb, int chorus) override;
    void doNotemod(int position) override;
    void showNote(const NoteReadout& note, int column) override;
    void advanceScroll(int columns) override;
    void setScrollMaximum(int maximum) override;
    void openEditMenu() override;
    void openFileMenu() override;
    void showTip(Box box) override;
    void TrackSel_Click(int channel) override;
    void applyNoteEffects(int position) override;

    // Playing
    void DisableControls() override;
    void EnableControls() override;
    void clearMusicBox() override;
    void drawBars() override;
    void followView() override;
    void GetColumn(int column) override;
    void PutColumn() override;
    void drawPlayLine(int column) override;
    void domodgraph() override;

private:
    Picmain& picmain_;
    TextLine& textLine_;
    TopBarOverlay& readOuts_;
};

} // namespace velmora
