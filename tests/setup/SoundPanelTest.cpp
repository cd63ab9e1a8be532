// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/SoundPanel.h"

#include "SetupFixture.h"
#include "composition/SetupRules.h"
#include "shell/Slider.h"
#include "sound/ShortMessage.h"

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using SoundPanelTest = SetupFixture;

TEST_F(SoundPanelTest, TheVolumeIsTheActiveChannels) {
    opened(2);
    auto& bar = control<Slider>("lblVolume");
    drag(bar, bar.width() / 2, bar.width() / 2);
    EXPECT_EQ(score().ChannelVelocity[0], 63);
    EXPECT_TRUE(holds(score().Volume, 0, 63));
    EXPECT_TRUE(holds(score().Volume, 1, 127));
    EXPECT_EQ(shownIn("Label15"), "63");
    EXPECT_EQ(shownIn("Label2"), "63");
}

TEST_F(SoundPanelTest, AtTheBarsStartTheVolumeIsFull) {
    opened(2);
    auto& bar = control<Slider>("lblVolume");
    drag(bar, 100, 2);
    EXPECT_EQ(score().ChannelVelocity[0], 127);
    EXPECT_EQ(shownIn("Label15"), "127");
}

TEST_F(SoundPanelTest, WithNoButtonPressedTheNotesKeepTheirVolume) {
    opened(2);
    score().ActiveChannel = 4; // whose button nobody has told
    QTest::keyClick(&control("lblVolume"), Qt::Key_Left);
    EXPECT_EQ(score().ChannelVelocity[4], 126);
    EXPECT_TRUE(holds(score().Volume, 4, 127));
}

TEST_F(SoundPanelTest, AControllerIsKeptShownAndSentAtOnce) {
    workspace().selectChannel(2);
    opened(2);
    port.sent.clear();
    struct Row {
        const char* bar;
        const char* label;
        int number;
        std::int16_t PlaybackChannelSetup::*value;
    };
    for (const Row& row : {Row{"LblMod", "LMod", 1, &PlaybackChannelSetup::modulation},
                           Row{"LblReverb", "LReverb", 91, &PlaybackChannelSetup::reverb},
                           Row{"LblChorus", "LChorus", 93, &PlaybackChannelSetup::chorus}}) {
        port.sent.clear();
        QTest::keyClick(&control(row.bar), Qt::Key_End);
        EXPECT_EQ(workspace().setup.channels[2].*row.value, 127);
        EXPECT_EQ(shownIn(row.label), "127");
        EXPECT_THAT(port.words(), ElementsAre(shortmessage::controller(2, row.number, 127)));
    }
}

TEST_F(SoundPanelTest, ThePanIsShownFromItsMiddle) {
    opened(2);
    port.sent.clear();
    EXPECT_EQ(shownIn("LPan"), "0");
    QTest::keyClick(&control("LblPan"), Qt::Key_Left);
    EXPECT_EQ(shownIn("LPan"), "-1");
    EXPECT_EQ(workspace().setup.channels[0].pan, 63);
    EXPECT_THAT(port.words(), ElementsAre(shortmessage::controller(0, 10, 63)));
    QTest::keyClick(&control("LblPan"), Qt::Key_End);
    EXPECT_EQ(shownIn("LPan"), "63");
}

TEST_F(SoundPanelTest, AControllerFillsTheScoreOnlyWithTheNextChannelChange) {
    opened(2);
    QTest::keyClick(&control("LblReverb"), Qt::Key_End);
    EXPECT_TRUE(holds(score().Reverb_Change, 0, 0));
    chooseChannel(workspace(), 0);
    EXPECT_TRUE(holds(score().Reverb_Change, 0, 127));
}

TEST_F(SoundPanelTest, AChannelsValuesAreShownWhenItIsSelected) {
    workspace().setup.channels[3].pan = 100;
    workspace().setup.channels[3].chorus = 9;
    opened(1);
    port.sent.clear();
    click(control("TrackSel", 3));
    EXPECT_EQ(shownIn("LPan"), "36");
    EXPECT_EQ(shownIn("LChorus"), "9");
    EXPECT_TRUE(holds(score().Pan_Change, 3, 100));
    EXPECT_THAT(port.words(), IsEmpty()); // showing sends nothing
}

TEST_F(SoundPanelTest, ClosedItFillsNoEffects) {
    workspace().setup.channels[0].pan = 100;
    chooseChannel(workspace(), 0);
    EXPECT_TRUE(holds(score().Pan_Change, 0, 64));
}

// In careful manner

namespace {
class CarefulSoundTest : public SetupFixture {
protected:
    CarefulSoundTest() { store("Classic", "0"); }
};
} // namespace

TEST_F(CarefulSoundTest, TheSlidersShowTheNoteAtThePlayMarkAndWhereNotesDiffer) {
    putNotes(score(), 2, 60, 2, 3);
    score().Pan_Change.set(2, 1, 54);
    score().Pan_Change.set(2, 4, 74);
    opened(2);
    click(control("TrackSel", 2));
    EXPECT_EQ(shownIn("LPan"), "-10 \u2026");
    EXPECT_EQ(shownIn("LReverb"), "0");
    EXPECT_EQ(control<Slider>("LblPan").value(), -10);
    EXPECT_TRUE(control("varies").isVisible());
    {
        const Edit edit(workspace(), Change::Marks);
        workspace().view.PlayMark = 3;
    }
    EXPECT_EQ(shownIn("LPan"), "10 \u2026");
    EXPECT_EQ(score().Pan_Change.at(2, 1), 54) << "looking changes nothing";
}

TEST_F(CarefulSoundTest, AMovedSliderGivesAllNotesItsValueAndSendsIt) {
    putNotes(score(), 2, 60, 2, 3);
    score().Pan_Change.set(2, 1, 54);
    score().Reverb_Change.set(2, 1, 9);
    workspace().selectChannel(2);
    opened(2);
    port.sent.clear();
    QTest::keyClick(&control("LblPan"), Qt::Key_End);
    EXPECT_TRUE(holds(score().Pan_Change, 2, 127));
    EXPECT_EQ(score().Reverb_Change.at(2, 1), 9);
    EXPECT_EQ(shownIn("LPan"), "63");
    EXPECT_THAT(port.words(), ElementsAre(shortmessage::controller(2, 10, 127)));
    EXPECT_TRUE(control("varies").isVisible()) << "the reverb still differs";
}

TEST_F(CarefulSoundTest, TheVolumeShownIsTheNotes) {
    putNotes(score(), 0, 60, 1);
    score().Volume.set(0, 1, 80);
    opened(2);
    EXPECT_EQ(shownIn("Label15"), "80");
    EXPECT_EQ(shownIn("Label2"), "80");
    EXPECT_FALSE(control("varies").isVisible());
}
