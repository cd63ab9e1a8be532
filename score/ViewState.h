// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// Which part of the Score the composing window shows, and what is marked in it. Columns are positions.
struct ViewState {
    int ViewFirstColumn = 0; ///< position at the left edge
    int ViewLastColumn = 99; ///< last position painted
    int ViewColumns = 99;    ///< columns in view less one
    int SelectStart = -1;    ///< -1 for no selection
    int SelectEnd = -1;
    int PlayMark = 0; ///< the play-from mark; also where a pause leaves the position
};

} // namespace velmora
