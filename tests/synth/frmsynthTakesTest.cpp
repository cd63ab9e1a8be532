// SPDX-License-Identifier: GPL-2.0-or-later
#include "SynthFixture.h"

#include <QCheckBox>

#include <filesystem>
#include <system_error>

namespace velmora {
namespace {

using ::testing::ElementsAre;

class frmsynthTakesTest : public SynthFixture {
protected:
    void record(const HandKey& key) {
        click(button(4));
        down(key);
        pass(0.2);
        up(key);
        pass(0.1);
        click(button(4));
    }
    Keyboard& keyboard() { return window().keyboard(); }
};

TEST_F(frmsynthTakesTest, ACountInIsABarOfBeatsBeforeARecording) {
    opened(2);
    click(control("countIn"));
    click(button(4));
    EXPECT_EQ(keyboard().recording(), TakeRecorder::State::Off);
    EXPECT_TRUE(keyboard().metronome().isRunning());
    EXPECT_TRUE(button(4).isChecked());
    pass(2.2); // four beats of half a second
    EXPECT_EQ(keyboard().recording(), TakeRecorder::State::Off);
    loop.serveUntil(2.25);
    window().runDue();
    EXPECT_EQ(keyboard().recording(), TakeRecorder::State::WaitsForKey);
    click(button(4));
    EXPECT_EQ(keyboard().recording(), TakeRecorder::State::Off);
}

TEST_F(frmsynthTakesTest, ASecondPressGivesTheCountInUp) {
    opened(2);
    click(control("countIn"));
    click(button(4));
    pass(0.6);
    click(button(4));
    EXPECT_FALSE(button(4).isChecked());
    pass(5);
    window().runDue();
    EXPECT_EQ(keyboard().recording(), TakeRecorder::State::Off);
}

TEST_F(frmsynthTakesTest, AnOlderTakeIsHeardAndIsTheOneToBeSaved) {
    opened(2);
    record(kZ);
    const Take first = keyboard().take;
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "yes"); });
    record(kX);
    ASSERT_NE(keyboard().take, first);
    sent();
    window().chooseTake(1);
    EXPECT_EQ(keyboard().take, first);
    pass(0.01);
    EXPECT_THAT(sent(), ElementsAre(on(36)));
}

TEST_F(frmsynthTakesTest, ATakeThatGoesOnIsOnTheDisk) {
    opened(2);
    click(button(4));
    down(kZ);
    pass(0.5);
    ASSERT_EQ(keyboard().recording(), TakeRecorder::State::On);
    const auto written = [this] {
        std::error_code error;
        return !std::filesystem::is_empty(desk().folders.takes(), error) && !error;
    };
    EXPECT_TRUE(QTest::qWaitFor(written, 5000));
    up(kZ);
    click(button(4));
}

TEST_F(frmsynthTakesTest, OverdubWritesWhatIsPlayedWhileTheScorePlays) {
    beCareful();
    opened(2);
    click(control("overdub"));
    ASSERT_TRUE(control<QCheckBox>("overdub").isChecked());
    for (int position = 0; position < 32; ++position)
        score().NoteCell.set(1, position, static_cast<std::int16_t>(position % 2 == 0 ? 60 : 1060));
    score().TopChannel = 1;
    score().FindEndOfSong();
    loop.onWait = [this](int wait) {
        if (wait == 5)
            down(kZ);
        if (wait == 9)
            up(kZ);
    };
    player().PlayAndStop_Click(false);
    loop.onWait = {};
    int heads = 0;
    for (int position = 0; position < 32; ++position)
        heads += score().NoteCell.at(0, position) == std::optional<std::int16_t>(91) ? 1 : 0;
    EXPECT_EQ(heads, 1);
    EXPECT_EQ(workspace().undoStep(), "Overdub");
}

} // namespace
} // namespace velmora
