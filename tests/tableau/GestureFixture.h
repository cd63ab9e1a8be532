// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/VirtualLoop.h"
#include "score/NotePlayer.h"
#include "sound/ShortMessage.h"
#include "tableau/TableauInput.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingPort.h"
#include "tests/tableau/RecordingScreen.h"

#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace velmora {

/// Channel and note of what a list of messages leaves sounding.
inline std::set<std::pair<int, int>> soundingAfter(const std::vector<std::uint32_t>& words) {
    std::set<std::pair<int, int>> sounding;
    for (const std::uint32_t word : words) {
        const std::pair note{shortmessage::channel(word), shortmessage::data1(word)};
        if (word == RecordingPort::kReset)
            sounding.clear();
        else if (shortmessage::status(word) == 0x90 && shortmessage::data2(word) > 0)
            sounding.insert(note);
        else if (shortmessage::status(word) == 0x80)
            sounding.erase(note);
    }
    return sounding;
}

/// A workspace of 200 positions, a port that listens, and a hand that points at columns and rows of the view.
class GestureFixture : public WorkspaceFixture {
protected:
    GestureFixture() { store("NumNotes", "200"); }

    static constexpr int x(int column) { return column * 12 + 5; }
    int y(int row) { return row * view().Line_Height + 3; }

    ViewState& view() { return workspace().view; }
    TableauInput& input() { return rig().input; }
    RecordingScreen& screen() { return rig().screen; }
    RecordingPort& port() { return rig().port; }
    std::set<std::pair<int, int>> sounding() { return soundingAfter(port().words()); }

    int cell(int channel, int position) { return score().NoteCell.valueOr(channel, position, -9); }
    /// Cells of a channel from position 0 on.
    std::vector<int> cells(int channel, int count) {
        std::vector<int> list;
        for (int position = 0; position < count; ++position)
            list.push_back(cell(channel, position));
        return list;
    }

    void press(int column, int row, MouseButton button = MouseButton::Left) {
        input().MusicBox_MouseDown(button, 0, x(column), y(row));
    }
    void drag(int column, int row = 0, MouseButton button = MouseButton::Left) {
        input().MusicBox_MouseMove(button, 0, x(column), y(row));
    }
    void release(int column, int row = 0, MouseButton button = MouseButton::Left) {
        input().MusicBox_MouseUp(button, 0, x(column), y(row));
    }
    void draw(int from, int to, int row) {
        press(from, row);
        drag(to, row);
        release(to, row);
    }
    void rightClick(int column) {
        press(column, 0, MouseButton::Right);
        release(column, 0, MouseButton::Right);
    }

private:
    struct Rig {
        explicit Rig(Workspace& workspace)
            : player(workspace.score, workspace.setup, workspace.play, workspace.chords, port, loop)
            , screen(workspace)
            , input(workspace, player, port, screen) {}
        VirtualLoop loop;
        RecordingPort port{loop};
        NotePlayer player;
        RecordingScreen screen;
        TableauInput input;
    };
    Rig& rig() {
        if (!rig_)
            rig_ = std::make_unique<Rig>(workspace());
        return *rig_;
    }
    std::unique_ptr<Rig> rig_;
};

} // namespace velmora
