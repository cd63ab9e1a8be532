// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/PolynoteDrag.h"

#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
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
    const int chord = view.RightClickMode == RightClick::Polyphonic ? listedChord(workspace) : combo3;
    const int position = view.ViewFirstColumn + column;
    if (!score.Polyphonics.contains(score.ActiveChannel + 1, position))
        return std::nullopt;
    if (!act_)
        act_.emplace(workspace);
    const Edit edit(workspace, Change::Cells);
    workspace.history.name("Chord");
    if (workspace.manners.storesChordType)
        setChord(score, workspace.manners, score.ActiveChannel, position, chord);
    else
        score.Polyphonics.set(score.ActiveChannel + 1, position, static_cast<std::int16_t>(chord));
    return column;
}

} // namespace velmora
