// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpWindow.h"

#include "WindowFixture.h"

using namespace velmora;

namespace {
class HelpWindowTest : public WindowFixture {
protected:
    HelpWindowTest() {
        composing.setGeometry(40, 40, 600, 500);
        composing.show();
    }
    [[nodiscard]] std::unique_ptr<HelpWindow> opened() {
        auto help = std::make_unique<HelpWindow>(*skins, tips, settings, HelpLibrary());
        help->open("index", &composing);
        return help;
    }

    ExToolTip tips{settings};
    TestWindow composing{*skins};
};
} // namespace

TEST_F(HelpWindowTest, AtFirstItLeavesTheMenusSeen) {
    const auto help = opened();
    const QRect menus(40, 40, 600, 52);
    EXPECT_FALSE(help->geometry().intersects(menus));
    EXPECT_TRUE(help->screen()->availableGeometry().contains(help->geometry()));
}

TEST_F(HelpWindowTest, ItComesUpWhereTheUserHasPutIt) {
    const QRect put(90, 70, 600, 420);
    {
        const auto help = opened();
        help->setGeometry(put);
        help->close();
        help->open("index", &composing);
        EXPECT_EQ(help->geometry(), put);
    }
    EXPECT_EQ(opened()->geometry(), put) << "at the next start, too";
}

TEST_F(HelpWindowTest, APlaceThatNoScreenHasIsBroughtBack) {
    settings.SaveSetting("Settings", "help left", "9000000");
    settings.SaveSetting("Settings", "help top", "-9000000");
    settings.SaveSetting("Settings", "help Width", "9000000");
    settings.SaveSetting("Settings", "help Height", "15");
    const auto help = opened();
    EXPECT_TRUE(help->screen()->availableGeometry().contains(help->geometry().topLeft()));
    EXPECT_GE(help->height(), help->minimumHeight());
}
