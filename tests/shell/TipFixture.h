// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/ExToolTip.h"
#include "tests/support/MemorySettings.h"

#include <QPushButton>

#include <gmock/gmock.h>

namespace velmora {

/// A window with two buttons side by side, 100 by 50 each, and bare ground below them.
class TipFixture : public testing::Test {
protected:
    TipFixture() {
        window.setGeometry(200, 100, 200, 100);
        play.setGeometry(0, 0, 100, 50);
        stop.setGeometry(100, 0, 100, 50);
        tips.Attach(window);
        tips.SetToolTip(play, {"Play", "Play notes from Start", "play"});
        tips.SetToolTip(stop, {"Stop", "Stop playing", "stop"});
    }
    /// Ticks with the mouse at rest on a place of the window; whether the tip stands then.
    bool rest(QPoint place, int ticks = 17) {
        for (int i = 0; i < ticks; ++i)
            tips.tick(window.mapToGlobal(place));
        return tips.tipWindow().isVisible();
    }

    static constexpr QPoint kPlay{50, 25};
    static constexpr QPoint kStop{150, 25};
    static constexpr QPoint kGround{100, 80};

    MemorySettings settings;
    ExToolTip tips{settings};
    QWidget window;
    QPushButton play{&window};
    QPushButton stop{&window};
};

} // namespace velmora
