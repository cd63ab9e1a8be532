// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/PolynoteDrag.h"

#include "composition/Workspace.h"
#include "tableau/Stroke.h"

#include <cstdlib>

namespace velmora {

namespace {
constexpr int kSlack = 2; ///< pixels that are no move
}

std::optional<int> PolynoteDrag::move(Workspace& workspace, MouseButton button, int x, int combo3) {
    if (button == MouseButton::None) {
        lastX_.reset();
        act_.reset();
        return std::nullopt;
    }
    const int column = columnAt(x);
    const int left = column * kColumnWidth;
    if (lastX_ && std::abs(left - *lastX_) <= kSlack)
        return std::nullopt;
    lastX_ = left;
    Score& score = workspace.score;
    const ViewState& view = workspace.view;
    if (column < 0 || score.ActiveChannel >= kMelodyChannels)
        return std::nullopt;
    if (!act_)
        act_.emplace(workspace);
    const Edit edit(workspace);
    workspace.history.name("Chord");
    const int chord = view.RightClickMode == RightClick::Polyphonic ? workspace.setup.Combo3 : combo3;
    if (!score.Polyphonics.set(score.ActiveChannel + 1, view.ViewFirstColumn + column,
                               static_cast<std::int16_t>(chord)))
        return std::nullopt;
    announce(workspace, Change::Cells);
    return column;
}

} // namespace velmora
