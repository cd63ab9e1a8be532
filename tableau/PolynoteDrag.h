// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "tableau/TableauScreen.h"

#include <optional>

namespace velmora {

struct Workspace;

/// The drag along `Pic3`: gives each column that it crosses the chord that the list shows.
class PolynoteDrag {
public:
    /// A move with the left or right button down; without one the drag is over.
    /// @param combo3 list index of the composing window's `Combo3`; the setup toolbar's counts in mode 2
    /// @return the column of the view to be marked, if one took a chord; percussion has none
    std::optional<int> move(Workspace& workspace, MouseButton button, int x, int combo3);
    /// The columns that are marked stay so until it is over.
    [[nodiscard]] bool goesOn() const { return lastX_.has_value(); }

private:
    std::optional<Act> act_;
    std::optional<int> lastX_;
};

} // namespace velmora
