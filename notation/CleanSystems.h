// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanInk.h"
#include "notation/CleanWords.h"

#include <span>
#include <vector>

namespace velmora::notation {

/// One line of all staves, each with its own marks.
struct CleanSystem {
    std::vector<CleanInk> staves;
    std::vector<double> tops; ///< of the staves, from the first one's; as near as they may stand
    std::vector<double> barLines;
    double left = 0, right = 0;
    bool last = false; ///< ends with the thick line

    [[nodiscard]] const Skyline& upper() const { return staves.front().sky; }
    [[nodiscard]] const Skyline& lower() const { return staves.back().sky; }
};

/// The least width of a line's bars and where it breaks.
struct CleanBreak {
    std::size_t end; ///< the bar behind the line's last
    bool ragged;     ///< not stretched
};

/// Where lines end: those breaks that leave all lines as even as can be.
/// @param widths,least of the bars in spaces, as they stand and pressed together
/// @param first,other the room of the first line and of the others
/// @param toEnd whether the last bar is the score's
[[nodiscard]] std::vector<CleanBreak> breakLines(std::span<const CleanBar> bars, double first, double other,
                                                 bool toEnd);

/// Sets a line: spaces it and draws all staves.
[[nodiscard]] CleanSystem setSystem(CleanLine& line, bool ragged, const CleanMusic& music,
                                    const CleanStyle& style, const CleanWords& words, double stretch);

/// Puts systems on a page, the first one's upper edge at @p top. Where the page is nearly full, or @p fill is
/// set, they reach down to @p bottom.
void placeSystems(EngravedPage& page, std::vector<CleanSystem>& systems, const WrittenScore& score,
                  const CleanStyle& style, double top, double bottom, bool fill);

/// How far down systems reach that stand as near as they may.
[[nodiscard]] double heightOf(const std::vector<CleanSystem>& systems, const CleanStyle& style);

} // namespace velmora::notation
