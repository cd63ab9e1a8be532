// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FormLayout.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kTitle = 28;
constexpr int kMenu = 24;
constexpr int kBar = 40;
constexpr int kPanel = 60;
constexpr int kPanelAndGap = 64;
constexpr int kGuide = 48;       ///< pitch guide and left edge
constexpr int kGuideAndBar = 70; ///< both sides of `MusicBox`: guide, scroll bar and edges
constexpr int kBeatbox = 72;
constexpr int kLowBeatbox = 48;
constexpr int kLowWindow = 700;
constexpr int kLeastMusicBox = 60;
constexpr int kGap = 3;   ///< the splitter
constexpr int kFoot = 52; ///< scroll bar, text line and edge under `MusicBox`
constexpr int kBeatRow = 12;

/// Whole rows: as many as the user wants, or as suit the window, where it has room for them.
int beatboxHeight(int wanted, int windowHeight, int top) {
    const int suits = windowHeight < kLowWindow ? kLowBeatbox : kBeatbox;
    const int room = windowHeight - kFoot - kLeastMusicBox - kGap - top;
    return std::min(wanted > 0 ? wanted : suits, std::max(1, room / kBeatRow) * kBeatRow);
}
} // namespace

FormWidth formWidth(int width) {
    if (width < 1000)
        return FormWidth::Small;
    return width < 1280 ? FormWidth::Compact : FormWidth::Full;
}

FormLayout formLayout(QSize window, const FormParts& parts) {
    const int width = window.width();
    const int height = window.height();
    const int inner = width - kGuideAndBar;
    FormLayout layout;
    layout.menuStrip = {0, kTitle, width, kMenu};
    layout.buttonBar = {kMargin, kTitle + kMenu, width - 2 * kMargin, kBar};
    int y = kTitle + kMenu + kBar;
    if (parts.editingToolbar) {
        layout.toolPanel = {kMargin, y, width - 2 * kMargin, kPanel};
        y += kPanelAndGap;
    }
    const int readOutsLeft = formWidth(width) == FormWidth::Full ? 384 : 324;
    layout.channelStrip = {kMargin, y, readOutsLeft - kMargin, 30};
    layout.readOuts = {readOutsLeft, y + 2, width - 22 - readOutsLeft, 24};
    layout.pic3 = {kGuide, y + 31, inner, 18};
    layout.pic2a = {kGuide, y + 50, inner, 26};
    y += 80;
    if (parts.percussion) {
        layout.beatbox = {kGuide, y, inner, beatboxHeight(parts.beatboxHeight, height, y)};
        layout.splitter = {kGuide, layout.beatbox.bottom() + 1, inner, kGap};
        y = layout.splitter.bottom() + 1;
    }
    layout.musicBox = {kGuide, y, inner, std::max(0, height - kFoot - y)};
    layout.guide = {0, y, kGuide - 1, layout.musicBox.height()};
    layout.verticalBar = {kGuide + inner + 2, y - 1, 14, layout.musicBox.height() + 2};
    layout.horizontalBar = {kGuide - 1, height - 48, inner + 2, 16};
    layout.textLine = {0, height - 28, width, 24};
    return layout;
}

} // namespace velmora
