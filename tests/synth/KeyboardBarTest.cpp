// SPDX-License-Identifier: GPL-2.0-or-later
// The sliders of the keyboard: what each writes, sends, shows and returns to.
#include "SynthFixture.h"
#include "composition/Workspace.h"
#include "shell/Slider.h"

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
/// A slider dragged to a share of its way.
struct Dragged {
    int page;
    const char* bar;
    const char* readOut;
    KeyboardSlider slider;
    double share;
    double value;
    const char* shown;
    const char* shownAtRest;
    double rest;
};
constexpr auto kDragged = std::to_array<Dragged>({
    {4, "LblCh", "LblChannel", KeyboardSlider::Channel, 1, 8, " Ch 08", " Ch 00", 0},
    {3, "LblOct", "LblOctave", KeyboardSlider::Octave, 1, 10, "5", "0", 0},
    {3, "LblOct", "LblOctave", KeyboardSlider::Octave, 0, 0, "-5", "0", 0},
    {3, "LblCrd", "LblChord", KeyboardSlider::Chord, 1, 10, " Octave", " Note", 0},
    {3, "LblCrd", "LblChord", KeyboardSlider::Chord, 0.75, 7, " Dominant 7th", " Note", 0},
    {3, "LblStrum", "Text1", KeyboardSlider::Strum, 1, 11, "11", "1", 1},
    {4, "lblVolume", "Label11", KeyboardSlider::Volume, 0, 0, "0", "127", 127},
    {4, "LblMod", "LMod", KeyboardSlider::Modulation, 1, 127, "127", "0", 0},
    {4, "LblReverb", "LReverb", KeyboardSlider::Reverb, 1, 127, "127", "0", 0},
    {4, "LblChorus", "LChorus", KeyboardSlider::Chorus, 1, 127, "127", "0", 0},
    {4, "LblPan", "LPan", KeyboardSlider::Pan, 0, -64, "-64", "0", 0},
    {2, "LblSpeed", "Text2", KeyboardSlider::Speed, 1, 1, "1", "9", 9},
    {2, "LblSpeed", "Text2", KeyboardSlider::Speed, 0, 13, "13", "9", 9},
    {2, "LblPauses", "Text11", KeyboardSlider::Pauses, 1, 1, "1", "1", 1},
    {2, "LblFileSpeed", "Text12", KeyboardSlider::Compression, 1, 7, "7", "2.5", 2.5},
    {2, "LblTempo", "Text8", KeyboardSlider::Tempo, 1, 500, "500", "200", 200},
});

class KeyboardBarTest : public SynthFixture {
protected:
    const Tip& tipAt(QWidget& bar, int x) {
        QTest::mouseMove(&bar, {x, 10});
        return *tips.toolTip(bar);
    }
};
} // namespace

TEST_F(KeyboardBarTest, EachGoesWhereItIsDraggedAndToItsRestByARightClick) {
    for (const Dragged& row : kDragged) {
        opened(row.page);
        auto& bar = control<Slider>(row.bar);
        dragTo(bar, 0.5);
        dragTo(bar, row.share);
        EXPECT_NEAR(window().keyboard().value(row.slider), row.value, 0.06) << row.bar;
        EXPECT_EQ(shownIn(row.readOut), row.shown) << row.bar;
        QTest::mouseClick(&bar, Qt::RightButton, {}, QPoint(20, 10));
        EXPECT_EQ(window().keyboard().value(row.slider), row.rest) << row.bar;
        EXPECT_EQ(shownIn(row.readOut), row.shownAtRest) << row.bar;
    }
}

TEST_F(KeyboardBarTest, TheSlidersOfSoundSendWhatTheyStandFor) {
    opened(4);
    dragTo(control("LblReverb"), 1);
    EXPECT_THAT(sent(), ElementsAre(shortmessage::controller(0, 91, 127)));
    QTest::mouseClick(&control("LblPan"), Qt::RightButton, {}, QPoint(20, 10));
    EXPECT_THAT(sent(), ElementsAre(shortmessage::controller(0, 10, 64)));
}

TEST_F(KeyboardBarTest, ThePointerOfTheOctaveRestsInTheMiddle) {
    opened(3);
    auto& bar = control<Slider>("LblOct");
    EXPECT_EQ(bar.value(), 5);
    dragTo(bar, 1);
    EXPECT_EQ(bar.value(), 10);
    QTest::mouseClick(&bar, Qt::RightButton, {}, QPoint(20, 10));
    EXPECT_EQ(bar.value(), 5) << "the pointer stands in the middle";
    EXPECT_EQ(window().keyboard().controls().OctaveShift, 0);
}

TEST_F(KeyboardBarTest, ItsTipHasAReckoningOfItsOwn) {
    opened(3);
    auto& bar = control<Slider>("LblOct");
    EXPECT_THAT(tipAt(bar, 0).text.toStdString(), testing::StartsWith("-6 Oct  "));
    const int middle = (bar.width() - 6) / 2;
    EXPECT_THAT(tipAt(bar, middle - 10).text.toStdString(), testing::StartsWith("-2 Oct  "));
    EXPECT_THAT(tipAt(bar, middle + 10).text.toStdString(), testing::StartsWith("0 Oct  "));
}

TEST_F(KeyboardBarTest, TheTipTellsTheValueUnderTheMouse) {
    opened(4);
    auto& bar = control<Slider>("lblVolume");
    EXPECT_THAT(tipAt(bar, bar.width() - 1).text.toStdString(), testing::StartsWith("127\n"));
    EXPECT_THAT(tipAt(bar, 0).text.toStdString(), testing::StartsWith("0\n"));
    EXPECT_EQ(window().keyboard().value(KeyboardSlider::Volume), 127) << "and nothing else";
    window().Lmnu_Click(3);
    auto& chord = control<Slider>("LblCrd");
    EXPECT_THAT(tipAt(chord, chord.width() - 1).text.toStdString(), testing::StartsWith("Octave\n"));
}

TEST_F(KeyboardBarTest, AChannelShowsItsOwnSound) {
    opened(4);
    dragTo(control("LblReverb"), 1);
    dragTo(control("LblCh"), 1);
    EXPECT_EQ(shownIn("LReverb"), "0");
    click(control("ChkSustain"));
    dragTo(control("LblCh"), 0);
    EXPECT_EQ(shownIn("LReverb"), "127");
    EXPECT_FALSE(control<QCheckBox>("ChkSustain").isChecked());
}

TEST_F(KeyboardBarTest, TheFileTempoIsTheTempoOfTheOpenScoreAtOnceAndOneStepOfUndo) {
    beCareful();
    opened(2);
    const auto before = score().Tempo;
    auto& bar = control("LblTempo");
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, 10));
    QTest::mouseMove(&bar, QPoint(bar.width() / 2 + 20, 10));
    const int shown = control<QLabel>("Text8").text().toInt();
    EXPECT_EQ(score().Tempo, shown);
    EXPECT_EQ(shown % 4, 0);
    QTest::mouseMove(&bar, QPoint(bar.width() - 2, 10));
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(bar.width() - 2, 10));
    EXPECT_EQ(score().Tempo, 500);
    EXPECT_TRUE(workspace().undoLast().done);
    EXPECT_EQ(score().Tempo, before);
    EXPECT_FALSE(workspace().undoLast().done);
}

TEST_F(KeyboardBarTest, TheArrowsMoveThem) {
    opened(4);
    auto& bar = control("LblMod");
    bar.setFocus();
    QTest::keyClick(&bar, Qt::Key_Right);
    QTest::keyClick(&bar, Qt::Key_Right);
    EXPECT_EQ(shownIn("LMod"), "2");
    EXPECT_THAT(sent(), ElementsAre(shortmessage::controller(0, 1, 1), shortmessage::controller(0, 1, 2)));
}
