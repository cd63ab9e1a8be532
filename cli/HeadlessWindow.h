// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "composition/Workspace.h"
#include "sound/MidiPort.h"
#include "tableau/TableauInput.h"
#include "tableau/TableauScreen.h"

#include <string_view>

namespace velmora {
class ProgramFolders;
class SettingsStore;
} // namespace velmora

namespace velmora::cli {

/// A port to nowhere.
class SilentPort : public MidiPort {
public:
    int deviceCount() override { return 0; }
    std::string deviceName(int /*device*/) override { return {}; }
    int open(int /*device*/) override { return kOk; }
    int close() override { return kOk; }
    void reset() override {}
    void send(std::uint32_t /*word*/) override {}
};

/// A composing window that nobody sees: gestures and commands on one score, in the view of a fresh window,
/// which is never scrolled.
class HeadlessWindow : private TableauScreen {
public:
    /// @param folders where the step to undo is kept
    HeadlessWindow(const SettingsStore& settings, const ProgramFolders& folders);

    /// A cell of the view, as the Score counts.
    struct Cell {
        int position;
        int row;
    };
    [[nodiscard]] static bool showsPosition(int position);
    [[nodiscard]] static bool showsRow(int row);

    void TrackSel_Click(int channel);
    /// A whole stroke in Draw mode on the active channel's Tableau: pressed, dragged and released.
    void draw(Cell from, Cell to);
    /// A press of the right button there, and its release.
    void rightClick(Cell at);
    /// The press and release that a command simulates, at (1, 1) on `MusicBox`.
    void pressCorner();
    /// Tells the user something that ends nothing.
    void tell(std::string_view words) const;

    Workspace workspace;
    int ViewCol = 0;       ///< column of the latest press or release
    std::string_view step; ///< that is carried out, for what is told

private:
    using Handler = void (TableauInput::*)(MouseButton, int shift, int x, int y);
    void send(Handler melody, Handler percussion, MouseButton button, Cell cell);

    [[nodiscard]] int width(Box box) const override;
    void GetRow(Box /*box*/, int /*row*/) override {}
    void PutRow(Box /*box*/, int /*row*/) override {}
    void GetBox() override {}
    void PutBox() override {}
    void drawPressBall(int /*row*/, int /*column*/) override {}
    void drawBand(Box /*box*/, int /*row*/, int /*fromColumn*/, int /*toColumn*/) override {}
    void drawSelectEdge(int /*column*/) override {}
    void blendSelectStrip() override {}
    void drawSelectDrag(int /*fromColumn*/, int /*toColumn*/) override {}
    void setPointer(Box /*box*/, Pointer /*pointer*/) override {}
    void setToolText(std::string_view /*caption*/, std::string_view /*text*/) override {}
    void showEffects(int /*modulation*/, int /*pan*/, int /*reverb*/, int /*chorus*/) override {}
    void doNotemod(int /*position*/) override {}
    void showNote(const NoteReadout& /*note*/, int /*column*/) override {}
    void advanceScroll(int /*columns*/) override {}
    void setScrollMaximum(int /*maximum*/) override {}
    void openEditMenu() override {}
    void openFileMenu() override {}
    void showTip(Box /*box*/) override {}

    VirtualLoop loop_;
    SilentPort port_;
    Player player_;
    TableauInput input_;
};

} // namespace velmora::cli
