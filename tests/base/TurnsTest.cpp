// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Turns.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace velmora;

namespace {

/// Work of three waits, in each of which a hand may come in between.
class Work {
public:
    explicit Work(Turns& turns) : turns_(turns) {}

    void run(
        const std::string& name, const std::function<void(int wait)>& hand = [](int) {}) {
        const Turn turn(turns_);
        for (int wait = 1; wait <= 3; ++wait) {
            hand(wait);
            if (turn.isOver()) {
                log += name + " gives way.";
                return;
            }
        }
        log += name + " ends.";
    }

    std::string log;

private:
    Turns& turns_;
};

} // namespace

TEST(TurnsTest, WorkThatNobodyDisplacesRunsToItsEnd) {
    Turns turns;
    Work work(turns);
    work.run("one");
    work.run("two");
    EXPECT_EQ(work.log, "one ends.two ends.");
}

TEST(TurnsTest, NewerWorkIsDoneFirstAndTheOlderThenGivesWay) {
    Turns turns;
    Work work(turns);
    work.run("old", [&](int wait) {
        if (wait == 2)
            work.run("new");
    });
    EXPECT_EQ(work.log, "new ends.old gives way.");
}

TEST(TurnsTest, OfManyOnlyTheNewestGoesOn) {
    Turns turns;
    Work work(turns);
    work.run("1", [&](int) { work.run("2", [&](int) { work.run("3"); }); });
    EXPECT_EQ(work.log, "3 ends.2 gives way.1 gives way.");
}

TEST(TurnsTest, ATurnStaysOverThoughTheNewerWorkHasEnded) {
    Turns turns;
    const Turn old(turns);
    { const Turn newer(turns); }
    EXPECT_TRUE(old.isOver());
}

TEST(TurnsTest, WorkOfAnotherKindDisplacesNothing) {
    Turns plays;
    Turns pauses;
    Work play(plays);
    Work pause(pauses);
    play.run("play", [&](int) { pause.run("pause"); });
    EXPECT_EQ(pause.log, "pause ends.pause ends.pause ends.");
    EXPECT_EQ(play.log, "play ends.");
}

TEST(TurnsTest, WorkIsUnderWayUntilTheOldestHasComeToItsEnd) {
    Turns turns;
    EXPECT_FALSE(turns.underWay());
    {
        const Turn old(turns);
        { const Turn newer(turns); }
        EXPECT_TRUE(turns.underWay());
    }
    EXPECT_FALSE(turns.underWay());
}
