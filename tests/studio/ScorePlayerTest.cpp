// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ScorePlayer.h"

#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiDevices.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingPort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace velmora {
namespace {

/// A virtual clock on which a hand may act at each step of playing.
class SteppedLoop : public VirtualLoop {
public:
    void serveUntil(double moment) override {
        VirtualLoop::serveUntil(moment);
        onWait(++waits);
    }
    std::function<void(int)> onWait = [](int) {};
    int waits = 0;
};

class ScorePlayerTest : public WorkspaceFixture {
protected:
    ScorePlayerTest() { putNotes(score(), 0, 60, 4); }
    SessionPlayer::End play() {
        loop.waits = 0;
        return recorded.playNotes(true, [this](double share) { shares.push_back(share); });
    }
    void atSecondWait(std::function<void()> hand) {
        loop.onWait = [hand = std::move(hand)](int wait) {
            if (wait == 2)
                hand();
        };
    }

    SteppedLoop loop;
    RecordingPort port{loop};
    int stored = MidiPort::kMapper;
    DeviceChooser devices{port,
                          {.read = [this] { return std::optional<int>(stored); },
                           .write = [this](int device) { stored = device; }}};
    Player player{workspace(), port, loop};
    ScorePlayer recorded{workspace(), player, port, devices};
    std::vector<double> shares;
};

TEST_F(ScorePlayerTest, PlaysTheSongAndTellsHowFarItIs) {
    EXPECT_EQ(play(), SessionPlayer::End::Over);
    ASSERT_EQ(shares.size(), static_cast<std::size_t>(score().SongEnd + 1));
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_FALSE(workspace().play.RecordAtEnd);
}

TEST_F(ScorePlayerTest, ShowsThePositionAsAskedAndAsBeforeAfterwards) {
    workspace().play.ShowPlayLine = true;
    bool shown = true;
    loop.onWait = [&](int) { shown = workspace().play.ShowPlayLine; };
    recorded.playNotes(false, {});
    EXPECT_FALSE(shown);
    EXPECT_TRUE(workspace().play.ShowPlayLine);
}

TEST_F(ScorePlayerTest, ASongThatWasPausedIsRecordedFromItsBeginning) {
    atSecondWait([this] { player.pause(); });
    player.PlayAndStop_Click(false);
    ASSERT_FALSE(workspace().play.Playing);
    loop.onWait = [](int) {};
    EXPECT_EQ(play(), SessionPlayer::End::Over);
    EXPECT_EQ(shares.size(), static_cast<std::size_t>(score().SongEnd + 1));
}

TEST_F(ScorePlayerTest, ASongThatIsPausedMeanwhileTellsOfItsEndLater) {
    int ends = 0;
    recorded.onEnded = [&ends] { ++ends; };
    atSecondWait([this] { player.pause(); });
    EXPECT_EQ(play(), SessionPlayer::End::Paused);
    EXPECT_EQ(ends, 0);
    loop.onWait = [](int) {};
    player.PlayAndStop_Click(false);
    EXPECT_EQ(ends, 1);
}

TEST_F(ScorePlayerTest, StoppingEndsTheSong) {
    atSecondWait([this] { recorded.stopNotes(); });
    EXPECT_EQ(play(), SessionPlayer::End::Over);
    EXPECT_LT(shares.size(), 3U);
    EXPECT_FALSE(workspace().play.Playing);
}

} // namespace
} // namespace velmora
