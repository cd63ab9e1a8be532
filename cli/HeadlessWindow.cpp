// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/HeadlessWindow.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace velmora::cli {

namespace {
constexpr ViewState kFreshView;
} // namespace

HeadlessWindow::HeadlessWindow(const SettingsStore& settings, const ProgramFolders& folders)
    : workspace(settings, folders)
    , player_(workspace, port_, loop_)
    , input_(workspace, player_.notes(), port_, *this) {}

bool HeadlessWindow::showsPosition(int position) {
    return position >= kFreshView.ViewFirstColumn &&
           position <= kFreshView.ViewFirstColumn + kFreshView.ViewColumns;
}

bool HeadlessWindow::showsRow(int row) {
    return row >= kFreshView.ViewTopRow && row <= kFreshView.ViewBottomRow();
}

void HeadlessWindow::TrackSel_Click(int channel) {
    workspace.selectChannel(channel);
}

void HeadlessWindow::draw(Cell from, Cell to) {
    workspace.view.MouseMode = Mouse::Draw;
    const auto left = MouseButton::Left;
    send(&TableauInput::MusicBox_MouseDown, &TableauInput::Beatbox_MouseDown, left, from);
    send(&TableauInput::MusicBox_MouseMove, &TableauInput::Beatbox_MouseMove, left, to);
    send(&TableauInput::MusicBox_MouseUp, &TableauInput::Beatbox_MouseUp, left, to);
}

void HeadlessWindow::rightClick(Cell at) {
    workspace.view.MouseMode = Mouse::Draw;
    const auto right = MouseButton::Right;
    send(&TableauInput::MusicBox_MouseDown, &TableauInput::Beatbox_MouseDown, right, at);
    send(&TableauInput::MusicBox_MouseUp, &TableauInput::Beatbox_MouseUp, right, at);
}

void HeadlessWindow::send(Handler melody, Handler percussion, MouseButton button, Cell cell) {
    const ViewState& view = workspace.view;
    const bool onMusicBox = workspace.score.ActiveChannel < kMelodyChannels;
    const int height = onMusicBox ? view.Line_Height : kBeatRowHeight;
    const int x = (cell.position - view.ViewFirstColumn) * kColumnWidth + kColumnWidth / 2;
    const int y = (cell.row - view.ViewTopRow) * height + height / 2;
    (input_.*(onMusicBox ? melody : percussion))(button, 0, x, y);
    ViewCol = input_.stroke().ViewCol;
}

void HeadlessWindow::pressCorner() {
    input_.MusicBox_MouseDown(MouseButton::Left, 0, 1, 1);
    input_.MusicBox_MouseUp(MouseButton::Left, 0, 1, 1);
    ViewCol = input_.stroke().ViewCol;
}

void HeadlessWindow::tell(std::string_view words) const {
    std::fprintf(stderr, "velmora-cli: \"%.*s\": %.*s\n", static_cast<int>(step.size()), step.data(),
                 static_cast<int>(words.size()), words.data());
}

int HeadlessWindow::width(Box /*box*/) const {
    return std::numeric_limits<int>::max(); // no stroke ends at the edge
}

} // namespace velmora::cli
