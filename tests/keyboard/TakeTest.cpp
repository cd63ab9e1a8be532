// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Take.h"

#include "tests/keyboard/TakeModel.h"
#include "tests/support/Walks.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {
using Cells = std::vector<std::int16_t>;

/// Ticks that show the same.
struct Run {
    int length;
    std::int32_t row;
    bool strikesFirstKey = false; ///< its first tick is a fresh strike of the take's first key
};

/// A take, the item before all that the passes read included.
Take takeOf(std::initializer_list<Run> runs) {
    Take take;
    take.List1.push_back(1);
    take.List3.push_back(runs.size() == 0 ? 60 : runs.begin()->row);
    for (const Run& run : runs) {
        for (int tick = 0; tick < run.length; ++tick) {
            take.List1.push_back(run.strikesFirstKey ? tick + 1 : 0);
            take.List3.push_back(run.row);
        }
    }
    return take;
}

/// The same items so many times.
template<typename Item>
void add(std::vector<Item>& list, int count, int item) {
    list.insert(list.end(), static_cast<std::size_t>(count), static_cast<Item>(item));
}
struct Items {
    int count;
    int item;
};
template<typename Item = std::int32_t>
std::vector<Item> listOf(std::initializer_list<Items> items) {
    std::vector<Item> list;
    for (const Items& one : items)
        add(list, one.count, one.item);
    return list;
}
Cells cellsOf(std::initializer_list<Items> items) {
    return listOf<std::int16_t>(items);
}

std::vector<std::string> textsOf(const auto& list) {
    std::vector<std::string> texts;
    for (const auto item : list)
        texts.push_back(std::to_string(item));
    return texts;
}
} // namespace

// The trace that is played

TEST(TakeTest, PlainPlayingShowsEveryTickButTheFirst) {
    EXPECT_EQ(plainPlayList(takeOf({{3, 70}, {2, 71}})), listOf({{3, 70}, {2, 71}}));
}

TEST(TakeTest, AFreshStrikeOfTheFirstKeyIsATickOfRest) {
    EXPECT_EQ(plainPlayList(takeOf({{3, 70}, {3, 70, true}, {1, 70, true}})),
              listOf({{3, 70}, {1, kRest}, {2, 70}, {1, kRest}}));
}

TEST(TakeTest, TwoStrikesOfAnotherKeyAreOneRun) {
    Take take = takeOf({{4, 70}, {2, 72}});
    const Take again = takeOf({{2, 72}});
    take.List1.insert(take.List1.end(), again.List1.begin() + 1, again.List1.end());
    take.List3.insert(take.List3.end(), again.List3.begin() + 1, again.List3.end());
    EXPECT_EQ(plainPlayList(take), listOf({{4, 70}, {4, 72}}));
}

TEST(TakeTest, AnEmptyTakeAndItsFirstTickAloneGiveNothing) {
    Take take;
    for (int ticks = 0; ticks < 2; ++ticks) {
        EXPECT_THAT(plainPlayList(take), IsEmpty());
        EXPECT_THAT(playListWithPauses(take, 13), IsEmpty());
        EXPECT_THAT(BuildPlayList(take, 2.5), IsEmpty());
        EXPECT_THAT(ConvertRecording(take, 2.5, 0), IsEmpty());
        take = takeOf({});
    }
}

TEST(TakeTest, TheLastTickOfARunHasNoPlaceOfItsOwn) {
    EXPECT_EQ(playListWithPauses(takeOf({{3, 70}, {1, 71}, {2, 72}}), 13), listOf({{2, 70}, {1, 72}}));
}

TEST(TakeTest, ARunOfMoreThanFiveTicksKeepsOneOfThemWithPausesOfThirteen) {
    EXPECT_EQ(playListWithPauses(takeOf({{5, 70}}), 13), listOf({{4, 70}}));
    EXPECT_EQ(playListWithPauses(takeOf({{6, 70}}), 13), listOf({{1, 70}, {4, kRest}}));
    EXPECT_EQ(playListWithPauses(takeOf({{40, 70}}), 13), listOf({{1, 70}, {38, kRest}}));
}

TEST(TakeTest, PausesAreRoundedToTheEvenTick) {
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}}), 1), listOf({{1, 70}, {6, kRest}})); // at least one
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}}), 5), listOf({{1, 70}, {6, kRest}}));
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}}), 15), listOf({{2, 70}, {5, kRest}}));
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}}), 25), listOf({{2, 70}, {5, kRest}}));
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}}), 25.1), listOf({{3, 70}, {4, kRest}}));
}

TEST(TakeTest, ALengthBeyondTheRunCutsNothing) {
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}, {2, 71}}), 70), listOf({{7, 70}, {1, 71}}));
    EXPECT_EQ(playListWithPauses(takeOf({{8, 70}, {2, 71}}), 500), listOf({{7, 70}, {1, 71}}));
}

TEST(TakeTest, EachRunIsCutByItself) {
    // The second run is short and starts its own count.
    EXPECT_EQ(playListWithPauses(takeOf({{4, 70}, {4, 71}, {7, 72}}), 13),
              listOf({{3, 70}, {3, 71}, {1, 72}, {5, kRest}}));
}

TEST(TakeTest, AStrikeOfTheFirstKeyEndsARunAndCutsIt) {
    EXPECT_EQ(playListWithPauses(takeOf({{6, 70}, {4, 70, true}}), 13),
              listOf({{1, 70}, {5, kRest}, {1, kRest}, {2, 70}}));
    // Four pairs are too few, and don't count towards the next run.
    EXPECT_EQ(playListWithPauses(takeOf({{4, 70}, {5, 70, true}}), 13),
              listOf({{4, 70}, {1, kRest}, {3, 70}}));
}

TEST(TakeTest, ForSavingARunKeepsItsShare) {
    EXPECT_EQ(BuildPlayList(takeOf({{21, 70}}), 2.5), listOf({{5, 70}, {15, kRest}}));
    EXPECT_EQ(BuildPlayList(takeOf({{7, 70}}), 2.5), listOf({{2, 70}, {4, kRest}}));  // of 1.5
    EXPECT_EQ(BuildPlayList(takeOf({{11, 70}}), 2.5), listOf({{2, 70}, {8, kRest}})); // of 2.5
    EXPECT_EQ(BuildPlayList(takeOf({{21, 70}}), 7), listOf({{14, 70}, {6, kRest}}));
    EXPECT_EQ(BuildPlayList(takeOf({{6, 70}}), 0.5), listOf({{1, 70}, {4, kRest}})); // at least one
    EXPECT_EQ(BuildPlayList(takeOf({{5, 70}}), 2.5), listOf({{4, 70}}));
}

TEST(TakeTest, AStrikeAsTheLastTickIsARestBehindTheCutRun) {
    EXPECT_EQ(BuildPlayList(takeOf({{11, 70}, {1, 70, true}}), 2), listOf({{2, 70}, {9, kRest}, {1, kRest}}));
}

// The cells of the score

TEST(TakeTest, TheFirstHeadHasOneContinuationAtLeast) {
    EXPECT_EQ(BuildPlayList(takeOf({{2, 70}}), 2.5), listOf({{1, 70}}));
    EXPECT_EQ(ConvertRecording(takeOf({{2, 70}}), 2.5, 0), cellsOf({{1, 70}, {1, 1070}}));
}

TEST(TakeTest, ARestAtTheBeginningIsTwoRests) {
    const Take take = takeOf({{1, 70, true}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{1, kRest}}));
    // They are shortened as any others: half of them by the first pass, the rest by the second.
    EXPECT_THAT(ConvertRecording(take, 2.5, 0), IsEmpty());
}

TEST(TakeTest, ATakeOfTwoTicksHasNoCell) {
    EXPECT_THAT(ConvertRecording(takeOf({{1, 70}}), 2.5, 0), IsEmpty());
}

TEST(TakeTest, WithinTheFirstRunAllButTheLastTwoItemsContinueIt) {
    // The trace has four items; those from the third to the last but one are walked.
    EXPECT_EQ(BuildPlayList(takeOf({{5, 70}}), 2.5), listOf({{4, 70}}));
    EXPECT_EQ(ConvertRecording(takeOf({{5, 70}}), 2.5, 0), cellsOf({{1, 70}, {2, 1070}}));
}

TEST(TakeTest, ARowFromTheSecondItemOnHasNoHead) {
    EXPECT_EQ(BuildPlayList(takeOf({{2, 70}, {5, 72}}), 2.5), listOf({{1, 70}, {4, 72}}));
    EXPECT_EQ(ConvertRecording(takeOf({{2, 70}, {5, 72}}), 2.5, 0), cellsOf({{1, 70}, {1, 1070}, {2, 1072}}));
}

TEST(TakeTest, ANoteBehindARestHasAHeadAndAllItsTicks) {
    // The trace: three of 70, a strike's rest, four of 72 and two of 74.
    const Take take = takeOf({{3, 70}, {1, 70, true}, {5, 72}, {3, 74}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{3, 70}, {1, kRest}, {4, 72}, {2, 74}}));
    // 70 goes to its last tick, which ends the run and is a rest; the strike's rest does so, too.
    // In between half of two rests is kept for the second pass, which keeps none.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0),
              cellsOf({{1, 70}, {1, 1070}, {1, 72}, {3, 1072}, {1, 74}, {1, 1074}}));
}

TEST(TakeTest, AChangeOfRowGivesTheNextRowItsHead) {
    const Take take = takeOf({{4, 70}, {4, 71}, {4, 72}, {4, 73}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{3, 70}, {3, 71}, {3, 72}, {3, 73}}));
    // The third item ends the first run. The rest there goes.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0),
              cellsOf({{1, 70}, {1, 1070}, {1, 71}, {2, 1071}, {1, 72}, {2, 1072}, {1, 73}, {2, 1073}}));
}

TEST(TakeTest, ARowOfASingleItemIsARest) {
    const Take take = takeOf({{4, 70}, {4, 71}, {2, 72}, {4, 73}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{3, 70}, {3, 71}, {1, 72}, {3, 73}}));
    // Rests of one place behind the first head and before 73; the second stands behind three items that the
    // walk passes unseen and one that it sees, so that both go.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0),
              cellsOf({{1, 70}, {1, 1070}, {1, 71}, {2, 1071}, {1, 73}, {2, 1073}}));
}

TEST(TakeTest, ARestTooSoonBehindAnotherIsPassedUnseen) {
    const Take take =
        takeOf({{4, 70}, {1, 70, true}, {1, 70, true}, {1, 70, true}, {3, 71}, {2, 72}, {4, 73}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{4, 70}, {3, kRest}, {2, 71}, {1, 72}, {3, 73}}));
    // Cells before the rests are shortened: 70, 1070 twice, four rests, 71, 1071, a rest, 73, 1073 twice. Two
    // of the four are left by the first pass and none by the second; behind them stands 71, and three more
    // items are not looked at by either, a rest among them.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0),
              cellsOf({{1, 70}, {2, 1070}, {1, 71}, {1, 1071}, {1, kRest}, {1, 73}, {2, 1073}}));
}

TEST(TakeTest, ARestAfterACutRunKeepsAFewPlacesOnlyIfItIsLong) {
    // The trace: 25 of 70, 75 rests, 4 of 72. The first run is walked from its third item to the last but one
    // (22 continuations) and ends with a rest; the rests follow but for the first that none precedes: 74 and
    // one that ends them.
    const Take take = takeOf({{101, 70}, {5, 72}});
    EXPECT_EQ(BuildPlayList(take, 2.5), listOf({{25, 70}, {75, kRest}, {4, 72}}));
    // 76 rests and what follows count 77: 7 are kept of the first pass's, and of the other 69 every second
    // goes, 35 of them. 41 rests and what follows count 42: one is kept.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0), cellsOf({{1, 70}, {23, 1070}, {1, kRest}, {1, 72}, {3, 1072}}));
}

TEST(TakeTest, ARestAtTheEndCountsOneLess) {
    // 25 of 70 and 75 rests, of which the walk leaves the last out: 74 rests and the run's end.
    const Take take = takeOf({{101, 70}});
    // Of 75 rests the first pass keeps 7, and 34 of the other 68: 41. Of these the second keeps one.
    EXPECT_EQ(ConvertRecording(take, 2.5, 0), cellsOf({{1, 70}, {23, 1070}, {1, kRest}}));
    // Of 72 it keeps 7, and 32 of the other 65: 39, of which none is kept. With something behind them it
    // would be one.
    EXPECT_EQ(BuildPlayList(takeOf({{97, 70}}), 2.5), listOf({{24, 70}, {72, kRest}}));
    EXPECT_EQ(ConvertRecording(takeOf({{97, 70}}), 2.5, 0), cellsOf({{1, 70}, {22, 1070}}));
}

TEST(TakeTest, APitchShiftMovesHeadsAndContinuationsButNoRests) {
    const Take take = takeOf({{101, 70}});
    EXPECT_EQ(ConvertRecording(take, 2.5, 12), cellsOf({{1, 58}, {23, 1058}, {1, kRest}}));
    EXPECT_EQ(ConvertRecording(take, 2.5, -24), cellsOf({{1, 94}, {23, 1094}, {1, kRest}}));
}

TEST(TakeTest, AShiftToMinusOneMakesNoRest) {
    EXPECT_EQ(ConvertRecording(takeOf({{2, 12}}), 2.5, 13), cellsOf({{1, -1}, {1, 999}}));
}

TEST(TakeTest, ARunOfLessThanAHundredIsKeptWhole) {
    // At full compression 144 ticks keep 100 (143 * 0.7), 97 of which are counted.
    const Take take = takeOf({{144, 70}, {5, 72}});
    EXPECT_EQ(BuildPlayList(take, 7), listOf({{100, 70}, {43, kRest}, {4, 72}}));
    const Cells cells = ConvertRecording(take, 7, 0);
    EXPECT_EQ(std::ranges::count(cells, 1070), 98);
    EXPECT_EQ(cells.front(), 70);
}

TEST(TakeTest, ALongRunIsThinnedOutFromItsBeginning) {
    // 149 ticks keep 104 (148 * 0.7 = 103.6): one head, one continuation, and 101 counted ones (items 2 to
    // 102).
    const Take take = takeOf({{149, 70}, {5, 72}});
    EXPECT_EQ(BuildPlayList(take, 7), listOf({{104, 70}, {44, kRest}, {4, 72}}));
    // k = round(101 * 1.4) = 141. 103 items: 102 - 101 + 141 is 142, not below 10, so the removal is to
    // begin at 102 - 101 - 141, before the list. Item 0 is a head and spared; 1, 3, ... 101 go, 51 of them.
    // 52 are left, and from round(51 - 35.25) = 16 on they are rests, 36 of them. Then come the 44 rests of
    // the trace, the last of which is the run's end: 80, and what follows.
    // First pass: 81 count, 8 are kept, 72 halved to 36: 44. Second: 45 * 0.07 = 3.
    EXPECT_EQ(ConvertRecording(take, 7, 0), cellsOf({{1, 70}, {15, 1070}, {3, kRest}, {1, 72}, {3, 1072}}));
}

TEST(TakeTest, ARunIsLongFromTheHundredthCountedItemOn) {
    // 1021 ticks keep 102 of 1020 at a compression of 1. Counted are items 2 to 100: 99, so it is whole.
    EXPECT_EQ(BuildPlayList(takeOf({{1021, 70}, {5, 72}}), 1), listOf({{102, 70}, {918, kRest}, {4, 72}}));
    EXPECT_EQ(std::ranges::count(ConvertRecording(takeOf({{1021, 70}, {5, 72}}), 1, 0), 1070), 100);
    EXPECT_EQ(BuildPlayList(takeOf({{1031, 70}, {5, 72}}), 1), listOf({{103, 70}, {927, kRest}, {4, 72}}));
    // 100 are counted, k = 20. Of 102 cells, from 101 - 100 - 20, before the list, every second goes: 51 are
    // left. From round(50 - 5) = 45 on they are rests.
    EXPECT_EQ(std::ranges::count(ConvertRecording(takeOf({{1031, 70}, {5, 72}}), 1, 0), 1070), 44);
}

TEST(TakeTest, WithHardlyAnyCompressionALongRunIsThinnedAtItsEndOnly) {
    const Take take = takeOf({{2601, 70}, {5, 72}});
    EXPECT_EQ(BuildPlayList(take, 0.4), listOf({{104, 70}, {2496, kRest}, {4, 72}}));
    // 101 are counted, k = round(8.08) = 8. Of 103 cells 102 - 101 + 8 is 9, below 10: from 102 - 8 = 94 on
    // every second goes, 5 of them, and from round(97 - 2) = 95 on they are rests.
    EXPECT_EQ(std::ranges::count(ConvertRecording(take, 0.4, 0), 1070), 94);
}

TEST(TakeTest, ManyNotesInARowAreCountedAsALongRun) {
    // 120 notes of two items each and no rest between them, then a row of a single item, which ends them all.
    Take take = takeOf({});
    for (int note = 0; note < 120; ++note)
        for (int tick = 0; tick < 3; ++tick) {
            take.List1.push_back(0);
            take.List3.push_back(60 + note % 2);
        }
    for (const int row : {80, 80, 90, 90}) {
        take.List1.push_back(0);
        take.List3.push_back(row);
    }
    // The first note isn't counted: 119, k = round(59.5) = 60. Of 240 cells, from 239 - 119 - 60 = 60 on,
    // each head is spared, and each continuation goes, 90 of them.
    const Cells cells = ConvertRecording(take, 2.5, 0);
    EXPECT_EQ(cells.size(), 150U);
    EXPECT_EQ(std::ranges::count(cells, 60), 60);
    EXPECT_EQ(std::ranges::count(cells, 61), 60);
    EXPECT_EQ(std::ranges::count(cells, 1060), 15);
    EXPECT_EQ(std::ranges::count(cells, 1061), 15);
}

TEST(TakeTest, TenMinutesAreConvertedToCellsThatAScoreTakes) {
    std::mt19937 random(3);
    Take take;
    while (take.size() < 60'000) {
        const int row = 48 + static_cast<int>(random() % 44);
        for (auto left = 1 + random() % 80; left > 0; --left) {
            take.List1.push_back(0);
            take.List3.push_back(row);
        }
    }
    for (const std::int16_t cell : ConvertRecording(take, 2.5, 0)) {
        const int row = cell >= 1000 ? cell - 1000 : cell;
        EXPECT_TRUE(cell == kRest || (row >= 48 && row < 92)) << cell;
    }
}

// All passes beside slow ones that walk lists of texts

namespace {
struct TakeStyle {
    int longest;   ///< ticks of a run
    int rows;      ///< that are played
    int strikes;   ///< percent of runs that strike the first key
    int shortRuns; ///< percent of runs of at most six ticks
};
constexpr TakeStyle kStyles[]{
    {6, 3, 0, 100}, {6, 3, 30, 100}, {60, 5, 20, 30},  {60, 20, 0, 0},   {400, 3, 10, 20},
    {400, 2, 0, 0}, {1500, 2, 5, 5}, {3, 2, 0, 100},   {130, 4, 50, 50}, {3000, 1, 1, 0},
    {2, 2, 60, 0},  {12, 1, 60, 10}, {1000, 2, 0, 70}, {5, 44, 2, 100},
};

Take randomTake(std::mt19937& random, const TakeStyle& style, int size) {
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    Take take;
    const int lowest = below(20) == 0 ? -1 : 48; // a trace may hold rows that are none
    while (take.size() < size) {
        const int longest = below(100) < style.shortRuns ? 6 : style.longest;
        const int row = lowest + below(style.rows);
        const bool strike = below(100) < style.strikes;
        for (int tick = 0, length = 1 + below(longest); tick < length && take.size() < size; ++tick) {
            take.List1.push_back(strike ? tick + 1 : 0);
            take.List3.push_back(row);
        }
    }
    return take;
}
} // namespace

TEST(TakeTest, EveryPassAgreesWithASlowOneOnListsOfTexts) {
    std::mt19937 random(20'11);
    const auto real = [&](double least, double most) {
        return std::uniform_real_distribution<>(least, most)(random);
    };
    const int takes = stepsOfWalk(1500);
    for (int n = 0; n < takes; ++n) {
        const TakeStyle& style = kStyles[static_cast<std::size_t>(n) % std::size(kStyles)];
        const int size = static_cast<int>(random() % (n % 40 == 0 ? 3001 : n % 3 == 0 ? 40 : 500));
        const Take take = randomTake(random, style, size);
        const double compression = n % 2 == 0 ? 2.5 : n % 9 == 0 ? real(0.1, 1) : real(1, 7);
        const double pauses = n % 3 == 0 ? 13 : real(1, 13);
        const int shift = static_cast<int>(random() % 61) - 24;
        TakeModel model(take);
        model.BuildPlayList(compression);
        ASSERT_EQ(textsOf(BuildPlayList(take, compression)), model.List4) << n;
        model.playWithPauses(pauses);
        ASSERT_EQ(textsOf(playListWithPauses(take, pauses)), model.List4) << n;
        model.playPlain();
        ASSERT_EQ(textsOf(plainPlayList(take)), model.List4) << n;
        model.ConvertRecording(compression, shift);
        ASSERT_EQ(textsOf(ConvertRecording(take, compression, shift)), model.List5)
            << n << " of " << size << " ticks, compression " << compression;
    }
}
