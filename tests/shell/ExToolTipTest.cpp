// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ExToolTip.h"

#include "TipFixture.h"

#include <QLabel>

#include <optional>

using namespace velmora;

namespace {
class ExToolTipTest : public TipFixture {};
} // namespace

TEST_F(ExToolTipTest, ANewObjectHoldsTheStartValues) {
    EXPECT_EQ(tips.Shadow(), 0);
    EXPECT_EQ(tips.Font(), QString());
    EXPECT_EQ(tips.IconSize(), 16);
    EXPECT_EQ(tips.ToolTipStyle(), 0);
    EXPECT_EQ(tips.TextColor(), 0x80000012U);
    EXPECT_EQ(tips.GradientColorStart(), 0x80000018U);
    EXPECT_EQ(tips.GradientColorEnd(), 0x80000001U);
    EXPECT_EQ(tips.BackColor(), 0x80000018U);
    EXPECT_EQ(tips.BackStyle(), 1);
    EXPECT_EQ(tips.DelayTime(), 10);
    EXPECT_EQ(tips.KillTime(), 500);
    EXPECT_TRUE(tips.Picture().isNull());
}

TEST_F(ExToolTipTest, EveryPropertyIsSetAndRead) {
    const auto keeps = [this](auto set, auto get, auto value) {
        (tips.*set)(value);
        EXPECT_EQ((tips.*get)(), value);
    };
    using T = ExToolTip;
    keeps(&T::SetAlive, &T::Alive, -1);
    keeps(&T::SetAlive, &T::Alive, 0);
    keeps(&T::SetShadow, &T::Shadow, -1);
    keeps(&T::SetFont, &T::Font, QString("Tahoma"));
    keeps(&T::SetIconSize, &T::IconSize, 32);
    keeps(&T::SetToolTipStyle, &T::ToolTipStyle, std::int16_t{2});
    keeps(&T::SetTextColor, &T::TextColor, TipColour{1});
    keeps(&T::SetGradientColorStart, &T::GradientColorStart, TipColour{2});
    keeps(&T::SetGradientColorEnd, &T::GradientColorEnd, TipColour{3});
    keeps(&T::SetBackColor, &T::BackColor, TipColour{4});
    keeps(&T::SetBackStyle, &T::BackStyle, 0);
    keeps(&T::SetDelayTime, &T::DelayTime, 7);
    keeps(&T::SetKillTime, &T::KillTime, 8);
    const QPixmap picture(16, 16);
    tips.SetPicture(picture);
    EXPECT_EQ(tips.Picture().cacheKey(), picture.cacheKey());
}

TEST_F(ExToolTipTest, ConfiguringGivesTheSetValuesAndKeepsThePictureAndTheIconSize) {
    tips.SetIconSize(24);
    tips.SetPicture(QPixmap(16, 16));
    tips.SetTextColor(0);
    tips.SetGradientColorStart(0);
    tips.SetGradientColorEnd(0);
    tips.SetBackColor(0);
    tips.SetBackStyle(0);
    tips.ConfigureToolTip();
    EXPECT_EQ(tips.Shadow(), -1);
    EXPECT_EQ(tips.Font(), "Arial");
    EXPECT_EQ(tips.IconSize(), 24);
    EXPECT_EQ(tips.ToolTipStyle(), 1); // an empty store gives the balloon
    EXPECT_EQ(tips.TextColor(), 0x80000012U);
    EXPECT_EQ(tips.GradientColorStart(), 0x80000018U);
    EXPECT_EQ(tips.GradientColorEnd(), 0x80000001U);
    EXPECT_EQ(tips.BackColor(), 0x80000018U);
    EXPECT_EQ(tips.BackStyle(), 1);
    EXPECT_EQ(tips.DelayTime(), 15);
    EXPECT_EQ(tips.KillTime(), 200);
    EXPECT_FALSE(tips.Picture().isNull());
}

TEST(ToolTextStyleTest, OnlyThreeTextsSetTheStyle) {
    EXPECT_EQ(toolTextStyle("0", 2), 0);
    EXPECT_EQ(toolTextStyle("1", 2), 1);
    EXPECT_EQ(toolTextStyle("2", 1), 2);
    for (const char* text : {"", "3", "-1", " 1", "1 ", "01", "1.0", "True"})
        EXPECT_EQ(toolTextStyle(text, 2), 2) << text;
}

TEST(TipColourTest, SystemColoursAreTheTipsOwnAndOthersAreTheirBytes) {
    EXPECT_EQ(tipColour(kButtonText, TipStyle::Balloon), QColor(32, 30, 24));
    EXPECT_EQ(tipColour(kTipBackground, TipStyle::Rectangular), QColor(255, 253, 236));
    EXPECT_EQ(tipColour(kTipBackground, TipStyle::Plain), QColor(255, 255, 225));
    EXPECT_EQ(tipColour(kDesktop, TipStyle::Rectangular), QColor(250, 240, 206));
    EXPECT_EQ(tipColour(0x00030201, TipStyle::Balloon), QColor(1, 2, 3));
}

TEST_F(ExToolTipTest, TheWindowIsHiddenAtFirstAndNeverTakesTheFocus) {
    const QWidget& tip = tips.tipWindow();
    EXPECT_TRUE(tip.isHidden());
    EXPECT_TRUE(tip.isWindow());
    EXPECT_EQ(tip.windowTitle(), "NQV-EXTOOLTIP");
    EXPECT_EQ(tip.windowType(), Qt::ToolTip);
    EXPECT_TRUE(tip.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(tip.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(tip.windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(tip.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(ExToolTipTest, ShowingStoresTheFiveValuesMeasuresThemAndIsAlive) {
    tips.ConfigureToolTip();
    tips.SetAlive(0);
    QPixmap picture(16, 16);
    tips.ShowToolTip(window, "Play notes from Start", "Play", picture, "play");
    EXPECT_EQ(tips.content().text, "Play notes from Start");
    EXPECT_EQ(tips.content().title, "Play");
    EXPECT_EQ(tips.content().icon, "play");
    EXPECT_EQ(tips.content().picture.cacheKey(), picture.cacheKey());
    EXPECT_EQ(tips.size(), tipSize(tips.content()));
    EXPECT_EQ(tips.Alive(), -1);
    EXPECT_TRUE(tips.tipWindow().isHidden()); // until the mouse has rested
}

TEST_F(ExToolTipTest, AControlHasItsTipAndALaterOneReplacesIt) {
    ASSERT_TRUE(tips.toolTip(play));
    EXPECT_EQ(tips.toolTip(play)->title, "Play");
    EXPECT_EQ(tips.toolTip(window), nullptr);
    tips.SetToolTip(play, {"Pause", "Wait here", "pause"});
    EXPECT_EQ(tips.toolTip(play)->title, "Pause");
    EXPECT_EQ(play.accessibleName(), "Pause");
    EXPECT_EQ(play.accessibleDescription(), "Wait here");
}

TEST_F(ExToolTipTest, AScreenReaderSaysTheSameWords) {
    EXPECT_EQ(play.accessibleName(), "Play");
    EXPECT_EQ(play.accessibleDescription(), "Play notes from Start");
    QLabel rail;
    tips.SetToolTip(rail, {"", "Click to scroll", ""});
    EXPECT_EQ(rail.accessibleName(), "Click to scroll");
}

TEST_F(ExToolTipTest, ANameOfItsOwnStays) {
    QLabel named;
    named.setAccessibleName("Channel 1");
    for (const char* text : {"one", "two"}) {
        tips.SetToolTip(named, {"Left Click to activate Channel ", text, ""});
        EXPECT_EQ(named.accessibleName(), "Channel 1");
        EXPECT_EQ(named.accessibleDescription(), text);
    }
}

TEST_F(ExToolTipTest, AControlThatIsGoneIsForgotten) {
    std::optional<QPushButton> button(&window);
    tips.SetToolTip(*button, {"Gone", "", ""});
    window.show();
    tips.hover(window, &*button);
    EXPECT_EQ(tips.content().title, "Gone");
    button.emplace(&window); // the next one stands in the same place of the memory
    EXPECT_EQ(tips.content().title, "");
    EXPECT_EQ(tips.toolTip(*button), nullptr);
}

TEST_F(ExToolTipTest, AChangedStyleTakesEffectAtTheNextTip) {
    window.show();
    tips.hover(window, &play);
    EXPECT_EQ(tips.content().style, TipStyle::Balloon);
    settings.SaveSetting("Settings", "ToolText type", "2");
    EXPECT_EQ(tips.content().style, TipStyle::Balloon);
    tips.hover(window, &stop);
    EXPECT_EQ(tips.content().style, TipStyle::Plain);
    EXPECT_EQ(tips.ToolTextStyle(), 2);
    settings.SaveSetting("Settings", "ToolText type", "fancy");
    tips.hover(window, &play);
    EXPECT_EQ(tips.content().style, TipStyle::Plain);
    settings.SaveSetting("Settings", "ToolText type", "0");
    tips.hover(window, &stop);
    EXPECT_EQ(tips.content().style, TipStyle::Rectangular);
}
