// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string_view>

namespace velmora {

/// What a right click in Tips mode tells about a part of the composing window.
struct LongTip {
    std::string_view title;
    std::string_view text; ///< UTF-8
};

inline constexpr int kLongTipCount = 11;

/// The tip of an index, 1 to 11; blank for any other.
///
/// | Index | Control             | Index | Control                              |
/// |-------|---------------------|-------|--------------------------------------|
/// | 1     | `MusicBox`          | 7     | `CmdInst`, `Text5`                   |
/// | 2     | `Beatbox`           | 8     | `Combo3`                             |
/// | 3     | `PicX`, `SideBar`   | 9     | the strips from `lblVolume` to `LblChorus` |
/// | 4     | `Pic2a`             | 10    | `Lb1`(20), `CmdUndo`                 |
/// | 5     | `Pic3`              | 11    | `Lb1`(21), `Check4`                  |
/// | 6     | `Label8`            |       |                                      |
[[nodiscard]] const LongTip& dotips(int index);

} // namespace velmora
