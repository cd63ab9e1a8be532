// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Picmain.h"

#include "score/Score.h"
#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "tests/shell/MemorySettings.h"

#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using Surface = Picmain::Surface;

namespace {
class PicmainTest : public testing::Test {
protected:
    PicmainTest() { layOut({}); }
    void layOut(const FormParts& parts) {
        layout = formLayout({1366, 768}, parts);
        origin = {0, layout.pic3.top() - 1};
        area.setGeometry(0, 0, 1366, layout.textLine.top() - origin.y());
        area.layOut(layout, origin);
        area.setVisible(true);
    }
    QPoint inside(const QRect& rect) const { return rect.center() - origin; }
    QColor pixel(const char* name, int x, int y) {
        return area.findChild<QWidget*>(name)->grab().toImage().pixelColor(x, y);
    }

    MemorySettings settings;
    ExToolTip tips{settings};
    Appearance look;
    FormLayout layout;
    QPoint origin;
    Picmain area{look, tips, nullptr};
};
const QColor kCell(237, 237, 237);
const QColor kMeasure(68, 204, 255);
} // namespace

TEST_F(PicmainTest, TheBarsShowColumnsAndTheScoresMeasures) {
    Score score(1000);
    for (const int measure : {16, 12}) {
        score.NotesPerMeasure = static_cast<std::int16_t>(measure);
        area.show(score);
        for (const char* bar : {"Pic3", "Pic2a"}) {
            EXPECT_EQ(pixel(bar, 12, 5), kCell) << bar;
            EXPECT_EQ(pixel(bar, 13, 5), QColor(Qt::white)) << bar;
            EXPECT_EQ(pixel(bar, 12 * measure, 5), kMeasure) << bar;
            EXPECT_EQ(pixel(bar, 12 * (measure + 1), 5), kCell) << bar;
            EXPECT_EQ(pixel(bar, 0, 5), kCell) << "the score's beginning is no measure line";
        }
    }
}

TEST_F(PicmainTest, TheTableauxAreWhitePaperAndTheGuideHasItsGround) {
    for (const char* paper : {"MusicBox", "Beatbox"})
        EXPECT_EQ(pixel(paper, 12, 5), QColor(Qt::white));
    EXPECT_EQ(pixel("PicX", 6, 50), QColor(131, 186, 182)) << "SideBar";
    EXPECT_EQ(pixel("PicX", 12, 50), QColor(102, 122, 121));
}

TEST_F(PicmainTest, ARightPressTellsWhichSurfaceItMet) {
    std::vector<Surface> met;
    area.onRightPress = [&](Surface which, QPoint) { met.push_back(which); };
    for (const QPoint at : {inside(layout.musicBox), inside(layout.beatbox), inside(layout.guide),
                            inside(layout.pic2a), inside(layout.pic3), QPoint(20, 10)})
        QTest::mousePress(&area, Qt::RightButton, {}, at);
    EXPECT_THAT(met, testing::ElementsAre(Surface::MusicBox, Surface::Beatbox, Surface::Guide, Surface::Pic2a,
                                          Surface::Pic3, Surface::None));
    QTest::mousePress(&area, Qt::LeftButton, {}, inside(layout.musicBox));
    EXPECT_EQ(met.size(), 6U);
}

TEST_F(PicmainTest, WhereBeatboxIsHiddenMusicBoxIsMet) {
    const QPoint at = inside(layout.beatbox);
    layOut({.percussion = false});
    std::vector<Surface> met;
    area.onRightPress = [&](Surface which, QPoint) { met.push_back(which); };
    QTest::mousePress(&area, Qt::RightButton, {}, at);
    EXPECT_THAT(met, testing::ElementsAre(Surface::MusicBox));
    EXPECT_FALSE(area.surface(Surface::Beatbox)->isVisible());
    EXPECT_EQ(area.musicBoxTop(), 236);
}

TEST_F(PicmainTest, TheGripStandsInTheMiddleOfTheGap) {
    const QColor grip = area.grab().toImage().pixelColor(layout.splitter.center().x(),
                                                         layout.splitter.top() + 1 - origin.y());
    const Rgb dim = look.skin().dim;
    EXPECT_EQ(grip, QColor(dim.red, dim.green, dim.blue));
}

TEST_F(PicmainTest, PlayingGreysTheTableaux) {
    area.setEditable(false);
    EXPECT_FALSE(area.surface(Surface::MusicBox)->isEnabled());
    EXPECT_FALSE(area.surface(Surface::Beatbox)->isEnabled());
    area.setEditable(true);
    EXPECT_TRUE(area.surface(Surface::MusicBox)->isEnabled());
    EXPECT_TRUE(area.surface(Surface::Beatbox)->isEnabled());
}

TEST_F(PicmainTest, TheScrollBarReachesAsFarAsTheScore) {
    area.show(Score(500));
    EXPECT_EQ(area.findChild<QScrollBar*>("HScroll1")->maximum(), 490);
    area.show(Score(5));
    EXPECT_EQ(area.findChild<QScrollBar*>("HScroll1")->maximum(), 0);
}
