// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakePlayer.h"

#include "tests/support/Walks.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr double kTick = 0.012;

/// Keeps what sounds, with the moment in ticks.
struct TakePlayerTest : testing::Test, TakeSound {
    std::vector<std::string> heard;
    std::vector<int> positions;
    double now = 0;
    TakePlayer player{*this};
    std::function<void()> whenEnded = [] {};

    void strikeRow(int row) override { note("on " + std::to_string(row)); }
    void releaseRow(int row) override { note("off " + std::to_string(row)); }
    void showPosition(int position) override { positions.push_back(position); }
    void playingEnded() override {
        note("end");
        whenEnded();
    }

    void note(const std::string& what) {
        const double ticks = now / kTick;
        EXPECT_NEAR(ticks, std::round(ticks), 1e-6);
        heard.push_back(std::to_string(std::lround(ticks)) + " " + what);
    }
    void start(PlayList list) {
        player.start(std::move(list), now, kTick);
        runUntil(now / kTick); // the first round is due at once
    }
    /// Up to a moment, in ticks; what is due then is done.
    void runUntil(double ticks) {
        for (auto due = player.nextDue(); due && *due <= ticks * kTick + 1e-9; due = player.nextDue()) {
            now = *due;
            player.proceed(now);
        }
        now = ticks * kTick;
    }
    std::vector<std::string> played(PlayList list) {
        start(std::move(list));
        runUntil(100'000);
        EXPECT_FALSE(player.isPlaying());
        return heard;
    }
};
} // namespace

TEST_F(TakePlayerTest, ANoteLastsTwoTicksLongerThanItsRun) {
    // Behind it comes the tick that ends a round.
    EXPECT_THAT(played({70, 70, 70}), ElementsAre("0 on 70", "5 off 70", "6 end"));
    EXPECT_THAT(positions, ElementsAre(0));
}

TEST_F(TakePlayerTest, ASingleTickIsANoteToo) {
    EXPECT_THAT(played({70}), ElementsAre("0 on 70", "3 off 70", "4 end"));
}

TEST_F(TakePlayerTest, ARestBehindANoteIsOfItsRound) {
    EXPECT_THAT(played({70, 70, kRest, kRest, kRest, 72}),
                ElementsAre("0 on 70", "4 off 70", "8 on 72", "11 off 72", "12 end"));
    EXPECT_THAT(positions, ElementsAre(0, 5));
}

TEST_F(TakePlayerTest, TheNextRowFollowsATickLater) {
    EXPECT_THAT(played({70, 72, 72}), ElementsAre("0 on 70", "3 off 70", "4 on 72", "8 off 72", "9 end"));
    EXPECT_THAT(positions, ElementsAre(0, 1));
}

TEST_F(TakePlayerTest, ARestAtTheBeginningIsARoundOfItsOwn) {
    EXPECT_THAT(played({kRest, kRest, 70}), ElementsAre("3 on 70", "6 off 70", "7 end"));
    EXPECT_THAT(positions, ElementsAre(0, 2));
}

TEST_F(TakePlayerTest, RestsAloneTakeTheirTime) {
    EXPECT_THAT(played({kRest, kRest, kRest}), ElementsAre("4 end"));
}

TEST_F(TakePlayerTest, ARunThatIsNeitherNoteNorRestIsPassedInSilence) {
    // Two steps to its last item and a tick; a round for that item and a tick.
    EXPECT_THAT(played({0, 0, 0, 70}), ElementsAre("4 on 70", "7 off 70", "8 end"));
    EXPECT_THAT(positions, ElementsAre(0, 2, 3));
    heard.clear();
    now = 0;
    EXPECT_THAT(played({-5, 70}), ElementsAre("1 on 70", "4 off 70", "5 end"));
}

TEST_F(TakePlayerTest, AnEmptyTraceEndsAtOnce) {
    start({});
    EXPECT_THAT(heard, ElementsAre("0 end"));
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(player.nextDue(), std::nullopt);
    player.stop();
    EXPECT_THAT(heard, ElementsAre("0 end"));
}

TEST_F(TakePlayerTest, ALoopWaitsATickAndBeginsAnew) {
    player.Check5 = true;
    start({70, kRest});
    runUntil(12);
    EXPECT_THAT(heard, ElementsAre("0 on 70", "3 off 70", "6 on 70", "9 off 70", "12 on 70"));
    player.Check5 = false;
    runUntil(100);
    EXPECT_EQ(heard.back(), "17 end");
}

TEST_F(TakePlayerTest, AnEmptyTraceLoopsWithoutBlockingAnything) {
    player.Check5 = true;
    start({});
    EXPECT_TRUE(player.isPlaying());
    EXPECT_DOUBLE_EQ(player.nextDue().value_or(0), kTick);
    runUntil(5);
    player.stop();
    EXPECT_THAT(heard, ElementsAre("5 end"));
}

TEST_F(TakePlayerTest, StopReleasesWhatSoundsAndEnds) {
    start({70, 70, 70, 72});
    runUntil(2);
    player.stop();
    EXPECT_THAT(heard, ElementsAre("0 on 70", "2 off 70", "2 end"));
    EXPECT_EQ(player.nextDue(), std::nullopt);
    player.stop();
    EXPECT_EQ(heard.size(), 3U);
}

TEST_F(TakePlayerTest, StopInARestReleasesNothing) {
    start({70, kRest, kRest, 72});
    runUntil(4);
    player.stop();
    EXPECT_THAT(heard, ElementsAre("0 on 70", "3 off 70", "4 end"));
}

TEST_F(TakePlayerTest, APauseHoldsAtTheHeadOfARound) {
    start({70, 70, kRest, 72});
    runUntil(1);
    player.Check6 = true;
    runUntil(50); // the note and its rest come to their end
    EXPECT_THAT(heard, ElementsAre("0 on 70", "4 off 70"));
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(player.nextDue(), std::nullopt);
    player.Check6 = false;
    player.resume(now);
    runUntil(100);
    EXPECT_THAT(heard, ElementsAre("0 on 70", "4 off 70", "50 on 72", "53 off 72", "54 end"));
}

TEST_F(TakePlayerTest, APauseThatIsTakenBackInTimeChangesNothing) {
    start({70, 70, kRest, 72});
    runUntil(1);
    player.Check6 = true;
    runUntil(4);
    player.Check6 = false;
    player.resume(now);
    runUntil(100);
    EXPECT_THAT(heard, ElementsAre("0 on 70", "4 off 70", "6 on 72", "9 off 72", "10 end"));
}

TEST_F(TakePlayerTest, APauseBeforeTheStartHoldsTheFirstNote) {
    player.Check6 = true;
    start({70});
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_TRUE(player.isPlaying());
    now = 3 * kTick;
    player.Check6 = false;
    player.resume(now);
    runUntil(100);
    EXPECT_THAT(heard, ElementsAre("3 on 70", "6 off 70", "7 end"));
}

TEST_F(TakePlayerTest, StopEndsAPauseToo) {
    player.Check6 = true;
    start({70});
    player.stop();
    EXPECT_THAT(heard, ElementsAre("0 end"));
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(TakePlayerTest, APauseDoesNotHoldTheEnd) {
    start({70});
    player.Check6 = true;
    runUntil(100);
    EXPECT_THAT(heard, ElementsAre("0 on 70", "3 off 70", "4 end"));
}

TEST_F(TakePlayerTest, TheTickIsReadAtEachWait) {
    start({70, 70, 70});
    runUntil(1);
    player.setTick(2 * kTick); // the tick that is waited for keeps its length
    runUntil(100);
    EXPECT_THAT(heard, ElementsAre("0 on 70", "8 off 70", "10 end"));
}

TEST_F(TakePlayerTest, ALateStepDoesNotShiftThoseThatFollow) {
    start({70, 70, 70});
    player.proceed(1.4 * kTick);
    EXPECT_DOUBLE_EQ(player.nextDue().value_or(0), 2 * kTick);
}

TEST_F(TakePlayerTest, StartingAnewReleasesTheOldNote) {
    start({70, 70});
    runUntil(1);
    start({72});
    EXPECT_THAT(heard, ElementsAre("0 on 70", "1 off 70", "1 on 72"));
}

TEST_F(TakePlayerTest, WhoIsToldOfTheEndMayBeginAgain) {
    whenEnded = [&] {
        if (heard.size() == 3)
            start({72});
    };
    EXPECT_THAT(played({70}), ElementsAre("0 on 70", "3 off 70", "4 end", "4 on 72", "7 off 72", "8 end"));
}

namespace {
/// The same as a plain loop that waits, each item read where the loop stands.
std::vector<std::string> playedByALoop(const PlayList& list) {
    std::vector<std::string> heard;
    long time = 0;
    std::size_t i = 0;
    const auto is = [&](int row) { return i < list.size() && list[i] == row; };
    const auto note = [&](const std::string& what) { heard.push_back(std::to_string(time) + " " + what); };
    while (i < list.size()) {
        const std::size_t began = i;
        if (list[i] > 0) {
            const int row = list[i];
            note("on " + std::to_string(row));
            time += 1;
            while (is(row)) {
                ++i;
                time += 1;
            }
            time += 1;
            note("off " + std::to_string(row));
        }
        if (i == began && list[i] != kRest) {
            while (i + 1 < list.size() && list[i] == list[i + 1]) {
                time += 1;
                ++i;
            }
        } else {
            while (is(kRest)) {
                time += 1;
                ++i;
            }
        }
        time += 1;
        if (i == began)
            ++i;
    }
    note("end");
    return heard;
}
} // namespace

TEST_F(TakePlayerTest, AnyTraceIsPlayedAsByALoopThatWaits) {
    std::mt19937 random(5);
    for (int n = 0; n < stepsOfWalk(2000); ++n) {
        PlayList list;
        const unsigned kinds = 2 + random() % 5;
        const std::int32_t items[]{kRest, 70, 71, 0, 72, -4};
        while (list.size() < random() % 60)
            list.insert(list.end(), 1 + random() % (n % 2 == 0 ? 8 : 2), items[random() % kinds]);
        now = 0;
        heard.clear();
        ASSERT_EQ(played(list), playedByALoop(list)) << n;
    }
}
