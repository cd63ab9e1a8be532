// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeStack.h"

#include "base/Files.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {
namespace fs = std::filesystem;

struct TakeStackTest : testing::Test {
    QTemporaryDir home;
    fs::path folder = home.filePath("a/takes").toStdString();
    double wall = 1'000;
    std::unique_ptr<TakeStack> stack = open();
    Take take;
    Take chosen;

    std::unique_ptr<TakeStack> open() const {
        return std::make_unique<TakeStack>(folder, [this] { return wall; });
    }
    /// The program ends and starts again.
    void startAnew() {
        stack.reset();
        stack = open();
    }
    void grow(int ticks, int row) {
        for (int tick = 0; tick < ticks; ++tick) {
            take.List1.push_back(tick + 1);
            take.List3.push_back(row);
        }
        wall += ticks * 0.01;
    }
    /// A whole take, with a look at its beginning and one at its end.
    void record(int ticks, int row) {
        take.clear();
        stack->look(take, true, 0.01);
        grow(ticks, row);
        stack->look(take, false, 0.01);
    }
    std::vector<int> ticksOfTakes() const {
        std::vector<int> ticks;
        for (const TakeStack::Entry& entry : stack->takes())
            ticks.push_back(entry.ticks);
        return ticks;
    }
    std::ptrdiff_t files() const {
        return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    }
};
} // namespace

TEST_F(TakeStackTest, NothingIsMadeBeforeATakeIsThere) {
    EXPECT_THAT(stack->takes(), IsEmpty());
    EXPECT_EQ(stack->look(take, false, 0.01), std::nullopt);
    stack->look(take, true, 0.01);
    EXPECT_EQ(stack->look(take, false, 0.01), std::nullopt);
    stack->finish();
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_NE(stack->choose(0, chosen), "");
}

TEST_F(TakeStackTest, ATakeIsKeptWhenItEndsAndChosenAgain) {
    record(50, 70);
    const Take first = take;
    record(30, 72);
    take.clear(); // saved, say
    ASSERT_THAT(ticksOfTakes(), ElementsAre(30, 50));
    EXPECT_EQ(stack->choose(1, chosen), "");
    EXPECT_EQ(chosen, first);
    EXPECT_EQ(stack->choose(0, chosen), "");
    EXPECT_EQ(chosen.List3.front(), 72);
}

TEST_F(TakeStackTest, WhenAndHowLongIsToldToTheMillisecond) {
    record(50, 70);
    EXPECT_EQ(stack->takes().front().when, 1'000'000);
    EXPECT_EQ(stack->takes().front().length, 500);
    wall = 5'000;
    record(30, 70);
    startAnew();
    EXPECT_EQ(stack->takes().front().when, 5'000'000);
    EXPECT_EQ(stack->takes().front().length, 300);
    EXPECT_EQ(stack->takes().back().when, 1'000'000);
}

TEST_F(TakeStackTest, ATakeThatCouldNotBeSavedIsNotKept) {
    record(1, 70);
    EXPECT_THAT(stack->takes(), IsEmpty());
    record(2, 70);
    EXPECT_THAT(ticksOfTakes(), ElementsAre(2));
}

TEST_F(TakeStackTest, TheTakeThatGoesOnIsOnTheDiskAsItWasLookedAt) {
    EXPECT_EQ(stack->look(take, true, 0.01), TakeStack::kPeriod);
    grow(50, 70);
    EXPECT_EQ(stack->look(take, true, 0.01), TakeStack::kPeriod);
    grow(50, 71);
    stack->look(take, true, 0.01);
    grow(20, 72); // not looked at any more
    stack->finish();
    TakeStack other(folder, [] { return 0.0; }); // after a crash
    ASSERT_EQ(other.takes().size(), 1U);
    EXPECT_EQ(other.takes().front().ticks, 100);
    EXPECT_EQ(other.choose(0, chosen), "");
    EXPECT_EQ(chosen.List3[99], 71);
    EXPECT_EQ(other.takes().front().length, 1000);
}

TEST_F(TakeStackTest, ATakeThatWasBegunAnewBetweenTwoLooksIsAnotherOne) {
    stack->look(take, true, 0.01);
    grow(50, 70);
    stack->look(take, true, 0.01);
    take.clear();
    grow(20, 71);
    stack->look(take, true, 0.01);
    stack->look(take, false, 0.01);
    EXPECT_THAT(ticksOfTakes(), ElementsAre(20, 50));
}

TEST_F(TakeStackTest, AChosenTakeIsNoNewOne) {
    record(50, 70);
    EXPECT_EQ(stack->choose(0, take), "");
    stack->look(take, false, 0.01);
    EXPECT_EQ(stack->takes().size(), 1U);
}

TEST_F(TakeStackTest, TheLastTwentyStay) {
    for (int n = 1; n <= 25; ++n)
        record(n + 1, 70);
    ASSERT_EQ(stack->takes().size(), TakeStack::kMost);
    EXPECT_EQ(stack->takes().front().ticks, 26);
    EXPECT_EQ(stack->takes().back().ticks, 7);
    stack->finish();
    EXPECT_EQ(files(), 20);
    startAnew();
    EXPECT_EQ(ticksOfTakes().front(), 26);
    EXPECT_EQ(ticksOfTakes().back(), 7);
    record(40, 70);
    stack->finish();
    EXPECT_EQ(files(), 20);
    EXPECT_EQ(ticksOfTakes().back(), 8);
}

TEST_F(TakeStackTest, FilesThatMakeNoSenseAreLeftAloneAndTold) {
    record(50, 70);
    stack->finish();
    const fs::path damaged = folder / "take-1.take";
    ASSERT_EQ(replaceFile(damaged, "Velmora take\nWhen=1\n"), "");
    ASSERT_EQ(replaceFile(folder / "note to myself", "x"), "");
    fs::create_directory(folder / "take-2.take");
    startAnew();
    EXPECT_THAT(ticksOfTakes(), ElementsAre(50));
    EXPECT_THAT(stack->unreadable(), ElementsAre(HasSubstr("take-1.take"), HasSubstr("take-2.take")));
    for (int n = 0; n < 25; ++n)
        record(5, 70);
    stack->finish();
    EXPECT_EQ(readWholeFile(damaged), "Velmora take\nWhen=1\n");
    EXPECT_EQ(files(), 23);
}

TEST_F(TakeStackTest, WhatAKillLeftHalfWrittenIsCleanedUp) {
    fs::create_directories(folder);
    ASSERT_EQ(replaceFile(folder / ".velmora-abc", "x"), "");
    EXPECT_THAT(stack->takes(), IsEmpty());
    EXPECT_EQ(files(), 0);
}

TEST_F(TakeStackTest, ATakeThatIsGoneOrDamagedLeavesThePresentOne) {
    record(50, 70);
    stack->finish();
    const fs::path file = stack->takes().front().file;
    fs::remove(file);
    chosen = {{1}, {99}};
    EXPECT_THAT(stack->choose(0, chosen), HasSubstr(file.string()));
    EXPECT_THAT(stack->choose(1, chosen), HasSubstr("no such take"));
    EXPECT_EQ(chosen, (Take{{1}, {99}}));
}

TEST_F(TakeStackTest, WhatCannotBeWrittenIsSaidOnceKeptAndWrittenLater) {
    ASSERT_EQ(replaceFile(home.filePath("a").toStdString(), "in the way"), "");
    std::mutex mutex;
    std::vector<std::string> told;
    stack->onTrouble = [&](const std::string& words) {
        const std::scoped_lock lock(mutex);
        told.push_back(words);
    };
    record(50, 70);
    record(30, 71);
    EXPECT_EQ(stack->choose(1, chosen), "");
    EXPECT_EQ(chosen.size(), 50);
    {
        const std::scoped_lock lock(mutex);
        EXPECT_THAT(told, ElementsAre(HasSubstr("take-")));
    }
    fs::remove(home.filePath("a").toStdString());
    record(20, 72);
    startAnew();
    EXPECT_THAT(ticksOfTakes(), ElementsAre(20, 30, 50));
}
