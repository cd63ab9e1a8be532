// SPDX-License-Identifier: GPL-2.0-or-later
// The command strip of the keyboard's window.
#include "SynthFixture.h"
#include "synth/Commands.h"

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
struct Face {
    const char* tip;
    const char* label;
};
constexpr std::array<Face, 15> kFaces{{
    {"Open Keyboard File (key)", "Open"},
    {"Save Keyboard File (key)", "Save"},
    {"Edit or Create Keyboard File", "Edit"},
    {"Start Keyboard Recording", "Record/"},
    {"Save Recording as SNG file", "Save"},
    {"Play Continuous Loop", "Loop"},
    {"Play Keyboard Recording", "Play"},
    {"Pause Playback", "Pause"},
    {"Stop Playback", "Stop"},
    {"", ""},
    {"Show/Hide Editing Toolbar", "Editing Toolbar"},
    {"Open Recording Studio", "Recording Studio"},
    {"Stop All Sound", "No Sound"},
    {"Open Help File", "Help"},
    {"Close Keyboard", "Close"},
}};

class frmsynthCommandsTest : public SynthFixture {
protected:
    std::string lamp() { return control("Label8").accessibleName().toStdString(); }
    /// Z for three tenths of a second, recorded.
    void recordANote() {
        click(button(4));
        down(kZ);
        pass(0.3);
        up(kZ);
        click(button(4));
        sent();
    }
};
} // namespace

TEST_F(frmsynthCommandsTest, EachButtonHasItsTipAndItsLabel) {
    opened();
    for (int index = 1; index <= 15; ++index) {
        const Face& face = kFaces[static_cast<std::size_t>(index - 1)];
        EXPECT_EQ(button(index).text(), face.label) << index;
        const Tip* tip = tips.toolTip(button(index));
        ASSERT_TRUE(tip) << index;
        EXPECT_EQ(tip->title, face.tip) << index;
        EXPECT_FALSE(button(index).accessibleName().isEmpty()) << index;
    }
}

TEST_F(frmsynthCommandsTest, TheLampAndTheButtonsTellOfARecording) {
    opened();
    EXPECT_EQ(lamp(), "OFF");
    click(button(4));
    EXPECT_EQ(lamp(), "ON");
    EXPECT_EQ(button(4).text(), "Stop");
    EXPECT_EQ(tips.toolTip(button(4))->title, "Stop Keyboard Recording");
    EXPECT_TRUE(button(4).isChecked());
    for (int index = 5; index <= 9; ++index)
        EXPECT_FALSE(button(index).isEnabled()) << index;
    click(button(4));
    EXPECT_EQ(lamp(), "OFF");
    EXPECT_EQ(button(4).text(), "Record/");
    EXPECT_FALSE(button(4).isChecked());
    for (int index = 5; index <= 9; ++index)
        EXPECT_TRUE(button(index).isEnabled()) << index;
}

TEST_F(frmsynthCommandsTest, WhatWasRecordedIsPlayed) {
    opened();
    recordANote();
    click(button(7));
    EXPECT_TRUE(button(7).isChecked());
    pass(1);
    const auto words = sent();
    ASSERT_EQ(words.size(), 3U);
    EXPECT_THAT(words, ElementsAre(on(36), off(36), RecordingPort::kReset));
    EXPECT_FALSE(button(7).isChecked());
    EXPECT_GT(window().keyboard().take.size(), 10);
}

TEST_F(frmsynthCommandsTest, PlayingIsPausedGoesOnAndIsStopped) {
    opened(2);
    recordANote();
    click(button(6));
    click(button(7));
    click(button(8));
    EXPECT_TRUE(button(8).isChecked());
    pass(0.5);
    EXPECT_TRUE(window().keyboard().isPlaying());
    click(button(8));
    EXPECT_FALSE(button(8).isChecked());
    pass(1);
    EXPECT_TRUE(window().keyboard().isPlaying()) << "it loops";
    click(button(9));
    EXPECT_FALSE(window().keyboard().isPlaying());
    for (const int index : {6, 7, 8})
        EXPECT_FALSE(button(index).isChecked()) << index;
}

TEST_F(frmsynthCommandsTest, ThePositionOfPlayingIsShown) {
    opened(2);
    click(button(4));
    for (const HandKey& key : {kZ, kX, kQ}) {
        down(key);
        pass(0.3);
        up(key);
    }
    click(button(4));
    click(button(7));
    std::set<std::string> seen;
    for (int step = 0; step < 40; ++step) {
        pass(0.05);
        seen.insert(shownIn("Text9"));
    }
    EXPECT_EQ(seen.size(), 3U) << "one for each note";
}

TEST_F(frmsynthCommandsTest, AnUnsavedTakeIsAskedAbout) {
    opened();
    recordANote();
    const Take before = window().keyboard().take;
    for (const char* answer : {"no", "yes"}) {
        driver.in<QWidget>([answer](QWidget& box) {
            EXPECT_EQ(box.windowTitle(), "Erase Recording");
            EXPECT_EQ(wordsOf(box), "Recording has not been saved. Overwrite?");
            pressIn(box, answer);
        });
        click(button(4));
        EXPECT_EQ(lamp(), answer == std::string("yes") ? "ON" : "OFF");
        EXPECT_EQ(window().keyboard().take == before, answer == std::string("no"));
    }
}

TEST_F(frmsynthCommandsTest, ResetAndNoSoundSendAReset) {
    opened();
    for (const int index : {10, 13}) {
        click(button(index));
        EXPECT_THAT(sent(), ElementsAre(RecordingPort::kReset)) << index;
    }
}

TEST_F(frmsynthCommandsTest, TheRecordingStudioIsOpenedWhereThereIsOne) {
    opened();
    EXPECT_FALSE(button(12).isEnabled());
    end();
    windows.present.insert(Windows::Name::Record);
    opened();
    click(button(12));
    EXPECT_THAT(windows.opened, testing::Contains(Windows::Name::Record));
}

TEST_F(frmsynthCommandsTest, HelpAndCloseAreCommandsToo) {
    opened();
    click(button(14));
    QTest::keyClick(&window(), Qt::Key_F1);
    EXPECT_THAT(windows.pages, ElementsAre("keyboard", "keyboard"));
    click(button(15));
    EXPECT_FALSE(window().isVisible());
}

TEST_F(frmsynthCommandsTest, EditTogglesTheBoxOfThePageSetup) {
    opened(1);
    click(button(3));
    EXPECT_TRUE(control<QCheckBox>("Check1").isChecked());
    EXPECT_TRUE(button(3).isChecked());
    click(control("Check1"));
    EXPECT_FALSE(button(3).isChecked());
    EXPECT_FALSE(window().keyboard().controls().Check1);
}
