// SPDX-License-Identifier: GPL-2.0-or-later
// Playing, and the MIDI port.
#include "form1Fixture.h"
#include "tests/support/RecordingWatcher.h"

#include <QLabel>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr std::uint32_t kDrumBank = 201;

class form1PlayTest : public form1Fixture {
protected:
    form1PlayTest() { putNotes(score(), 0, 60, 2); }
    std::vector<std::uint32_t> noteWords() {
        std::vector<std::uint32_t> words;
        for (const auto& sent : port.notes())
            words.push_back(sent.word);
        return words;
    }
    void activate(bool active) {
        if (active)
            window().activateWindow();
        else
            bystander.show(), bystander.activateWindow();
        QApplication::processEvents();
        ASSERT_EQ(window().isActiveWindow(), active);
    }
    QWidget bystander;
};

constexpr std::uint32_t on(int note) {
    return 0x90U | static_cast<std::uint32_t>(note) << 8 | 127U << 16;
}
} // namespace

TEST_F(form1PlayTest, TheScoreSoundsAndEndsInSilence) {
    shown();
    port.sent.clear();
    window().Cmd2_Click(3);
    const auto words = noteWords();
    ASSERT_EQ(words.size(), 5U);
    EXPECT_EQ(words[0], on(67));
    EXPECT_EQ(words[1] & 0xFFFFU, 0x80U | 67U << 8);
    EXPECT_EQ(words[2], on(67));
    EXPECT_EQ(words[3] & 0xFFFFU, 0x80U | 67U << 8);
    EXPECT_EQ(words[4], RecordingPort::kReset);
    EXPECT_NEAR(port.notes()[2].moment - port.notes()[0].moment, 2 * 0.138, 0.001);
    EXPECT_FALSE(workspace().play.Playing);
}

TEST_F(form1PlayTest, WhileItPlaysTheTableauxAreDisabledAndCommandsAreNot) {
    shown();
    bool looked = false;
    loop.onWait = [&](int waits) {
        if (waits != 2)
            return;
        looked = true;
        EXPECT_TRUE(workspace().play.Playing);
        EXPECT_FALSE(child("MusicBox").isEnabled());
        EXPECT_FALSE(child("Beatbox").isEnabled());
        EXPECT_TRUE(button("Cmd2", 6).isEnabled());
        EXPECT_TRUE(button("Cmd2", 3).isChecked());
        EXPECT_TRUE(square(0).isEnabled());
    };
    window().Cmd2_Click(3);
    EXPECT_TRUE(looked);
    EXPECT_FALSE(button("Cmd2", 3).isChecked());
    EXPECT_TRUE(child("MusicBox").isEnabled());
    EXPECT_TRUE(child("Beatbox").isEnabled());
}

TEST_F(form1PlayTest, StopEndsItInTheStep) {
    putNotes(score(), 0, 60, 50);
    shown();
    loop.onWait = [this](int waits) {
        if (waits == 5)
            QTest::mouseClick(&button("Cmd2", 6), Qt::LeftButton);
    };
    window().Cmd2_Click(3);
    EXPECT_LE(loop.waits, 7);
    EXPECT_FALSE(workspace().play.Playing);
    EXPECT_EQ(port.sent.back().word, RecordingPort::kReset);
}

TEST_F(form1PlayTest, SpaceStopsWhatItStarted) {
    putNotes(score(), 0, 60, 50);
    shown();
    loop.onWait = [this](int waits) {
        if (waits == 5)
            QTest::keyClick(&window(), Qt::Key_Space);
    };
    QTest::keyClick(&window(), Qt::Key_Space);
    EXPECT_GE(loop.waits, 5);
    EXPECT_LE(loop.waits, 7);
    EXPECT_FALSE(workspace().play.Playing);
}

TEST_F(form1PlayTest, PauseKeepsThePlaceForTheNextPlay) {
    putNotes(score(), 0, 60, 50);
    shown();
    loop.onWait = [this](int waits) {
        if (waits == 5)
            window().Cmd2_Click(5);
    };
    window().Cmd2_Click(3);
    EXPECT_EQ(workspace().view.PlayMark, 4);
    EXPECT_TRUE(child("MusicBox").isEnabled());
    loop.onWait = [this](int) {
        EXPECT_GE(workspace().play.PlayPosition, 4);
        window().Cmd2_Click(6);
    };
    window().Cmd2_Click(3);
}

TEST_F(form1PlayTest, PauseWhileNothingPlaysHasTheNextPlayStartAtTheMark) {
    putNotes(score(), 0, 60, 50);
    shown();
    workspace().view.PlayMark = 7;
    window().Cmd2_Click(5);
    window().Cmd2_Click(5);
    std::vector<int> positions;
    loop.onWait = [&](int) {
        positions.push_back(workspace().play.PlayPosition);
        window().Cmd2_Click(6);
    };
    window().Cmd2_Click(3);
    ASSERT_FALSE(positions.empty());
    EXPECT_EQ(positions.front(), 7);
}

TEST_F(form1PlayTest, TheLoopPlaysOnUntilItIsStopped) {
    shown();
    window().Cmd2_Click(9);
    EXPECT_TRUE(button("Cmd2", 9).isChecked());
    loop.onWait = [this](int waits) {
        if (waits == 30)
            window().Cmd2_Click(6);
    };
    window().Cmd2_Click(3);
    EXPECT_GE(loop.waits, 30);
    EXPECT_LE(loop.waits, 32);
    window().Cmd2_Click(9);
    EXPECT_FALSE(workspace().play.LoopOn);
    EXPECT_FALSE(button("Cmd2", 9).isChecked());
}

TEST_F(form1PlayTest, NoCommandHasASegmentPlayOnToTheSongsEnd) {
    putNotes(score(), 0, 60, 50);
    shown();
    workspace().edit.ChannelPicked.fill(true);
    const std::vector<std::function<void()>> commands{
        [this] { window().copyIt(); },
        [this] { window().OpenforUndo(); },
        [this] { window().toggleMuted(3); },
    };
    for (const auto& command : commands) {
        ViewState& view = workspace().view;
        view.SelectStart = view.PlayMark = 4;
        view.SelectEnd = workspace().play.SegmentEnd = 9;
        workspace().keepForUndo("a step");
        loop.waits = 0;
        loop.onWait = [&](int waits) {
            if (waits == 2)
                command();
        };
        window().PlaySelection_Click();
        EXPECT_EQ(loop.waits, 7) << "positions 4 to 9 and the last one's time";
        EXPECT_EQ(score().SongEnd, 100);
    }
}

TEST_F(form1PlayTest, ClosingWhileItPlaysEndsBoth) {
    putNotes(score(), 0, 60, 50);
    shown();
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "no"); });
    loop.onWait = [this](int waits) {
        if (waits == 5)
            window().close();
    };
    window().Cmd2_Click(3);
    EXPECT_LE(loop.waits, 7);
    EXPECT_EQ(windows.quits, 1);
    EXPECT_GE(port.closed, 1);
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(workspace().play.Playing);
}

TEST_F(form1PlayTest, AKeptWindowStaysWithItsScoreAfterAStoppedPlay) {
    putNotes(score(), 0, 60, 50);
    shown();
    driver.in<QWidget>([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    loop.onWait = [this](int waits) {
        if (waits == 5)
            window().close();
    };
    window().Cmd2_Click(3);
    EXPECT_EQ(windows.quits, 0);
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(score().SongEnd, 100);
}

TEST_F(form1PlayTest, TheFirstActivationOpensThePortSendsTheDrumBankAndResetsTheControllers) {
    store("Devices", "2");
    window();
    EXPECT_THAT(port.opened, IsEmpty());
    shown();
    EXPECT_THAT(port.opened, ElementsAre(2));
    std::vector<std::uint32_t> words{kDrumBank};
    for (std::uint32_t channel = 0; channel < 16; ++channel)
        words.push_back(0x79B0 + channel); // the controllers are reset
    EXPECT_EQ(port.words(), words);
    EXPECT_EQ(settings::read(settings, settings::form1_left), float(window().x() * 15));
}

TEST_F(form1PlayTest, WithoutAStoredDeviceItIsTheMapper) {
    shown();
    EXPECT_THAT(port.opened, ElementsAre(MidiPort::kMapper));
}

TEST_F(form1PlayTest, LaterActivationsReopenOnlyAnotherDevice) {
    store("Devices", "0");
    shown();
    activate(false);
    activate(true);
    EXPECT_THAT(port.opened, ElementsAre(0));
    store("Devices", "1");
    activate(false);
    activate(true);
    EXPECT_THAT(port.opened, ElementsAre(0, 1));
    EXPECT_THAT(port.words(), testing::Contains(kDrumBank).Times(2));
}

TEST_F(form1PlayTest, AChosenDeviceThatFailsGivesWayToTheMapperAndTheToolbarSaysSo) {
    store("Devices", "0");
    shown();
    store("Devices", "1");
    port.refused = {1};
    workspace().beginHistory();
    RecordingWatcher watcher(workspace());
    activate(false);
    EXPECT_THAT(watcher.told, IsEmpty());
    activate(true);
    EXPECT_THAT(watcher.told, ElementsAre(Changes(Change::Device)));
    EXPECT_EQ(port.opened.back(), MidiPort::kMapper);
}

TEST_F(form1PlayTest, WhatPlaysIsNotTornFromItsDevice) {
    putNotes(score(), 0, 60, 50);
    shown();
    loop.onWait = [this](int waits) {
        if (waits == 5) {
            activate(false);
            store("Devices", "1");
            activate(true);
            EXPECT_EQ(port.opened.size(), 1U);
            window().Cmd2_Click(6);
        }
    };
    window().Cmd2_Click(3);
    activate(false);
    activate(true);
    EXPECT_EQ(port.opened.size(), 2U);
}

TEST_F(form1PlayTest, StopAllSoundSilencesThePort) {
    shown();
    port.sent.clear();
    window().Command32_Click();
    EXPECT_THAT(port.words(), ElementsAre(RecordingPort::kReset));
}
