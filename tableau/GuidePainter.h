// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/ViewState.h"

#include <QString>

#include <array>
#include <cstdint>

class QPainter;
class QRect;

namespace velmora {

/// Rows of the staff lines, from the top: "6F" to "5E" and "4A" to "3G".
inline constexpr std::array<int, 5> kTrebleRows{50, 53, 56, 60, 63};
inline constexpr std::array<int, 5> kBassRows{70, 74, 77, 80, 84};
/// The y on `MusicBox` of the line through a row, in view or not.
[[nodiscard]] double staffLineY(int row, int topRow, int lineHeight);
[[nodiscard]] inline double staffLineY(int row, const ViewState& view) {
    return staffLineY(row, view.ViewTopRow, view.Line_Height);
}

/// `RowIsSharp`: the row's name ends in "#". Most black keys carry flat names, so only C# and F# do.
[[nodiscard]] bool isSharpRow(int row);

/// How large the names of rows are, in pixels: two sizes, or as large as suits high rows.
enum class RowNames : std::uint8_t { OfTwoSizes, Growing };
[[nodiscard]] int rowNameSize(int lineHeight, RowNames names);

/// Names of the rows on the guide `PicX`.
void paintGuide(QPainter& painter, const QRect& picX, const ViewState& view,
                RowNames names = RowNames::OfTwoSizes);
/// The same names, as `SideBar` holds them, a line each.
[[nodiscard]] QString sideBarText(const ViewState& view);

} // namespace velmora
