// SPDX-License-Identifier: GPL-2.0-or-later
#include "CleanMusicReader.h"
#include "notation/Meter.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <random>
#include <tuple>

using namespace velmora;
using namespace velmora::notation;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

struct CleanReadingTest : testing::Test, CleanMusicReader {};

/// The cells of a channel, as what is written says; -2 where nothing says anything.
std::vector<int> cellsOf(const WrittenScore& written, int staff, int voice) {
    std::vector<int> cells(static_cast<std::size_t>(written.LastStep - written.first), -2);
    for (const Written& item : written.items) {
        if (item.staff != staff || item.voice != voice)
            continue;
        const int start = (item.bar - 1) * written.NotesPerMeasure + item.step - written.first;
        for (int i = 0; i < item.steps; ++i) {
            int& cell = cells.at(static_cast<std::size_t>(start + i));
            EXPECT_EQ(cell, -2) << "two items hold one position";
            cell = item.isRest ? -1 : item.pitches.front().row + (i == 0 && !item.held ? 0 : 1000);
        }
    }
    return cells;
}

/// The steps at which the values of a bar begin and end when they are summed up and rounded.
struct BarSum {
    std::vector<int> begins;
    double end = 0;
};
BarSum sumOf(const std::vector<const Written*>& items, double stepsOfWhole) {
    BarSum sum;
    for (const Written* item : items) {
        sum.begins.push_back(static_cast<int>(std::lround(sum.end)));
        for (const Value& value : item->values)
            sum.end += ticksOf(value) * stepsOfWhole / kWholeTicks;
    }
    return sum;
}

/// A note of any row, or a rest: one in so many is. @return its end
int writeAtRandom(Score& score, int channel, int position, int end, std::mt19937& random,
                  unsigned restsOneIn) {
    const int row = static_cast<int>(random() % 128);
    const bool isRest = random() % restsOneIn == 0;
    for (int at = position; at < end; ++at)
        score.NoteCell.set(channel, at,
                           static_cast<std::int16_t>(isRest           ? -1
                                                     : at == position ? row
                                                                      : row + 1000));
    return end;
}

void fillAtRandom(Score& score, int channel, std::mt19937& random, int length) {
    const int longest = 1 + static_cast<int>(random() % 24);
    for (int position = 0; position < length;) {
        const int steps = 1 + static_cast<int>(random() % static_cast<unsigned>(longest));
        position = writeAtRandom(score, channel, position, std::min(position + steps, length), random, 4);
    }
    score.FindEndOfSong();
}

/// Notes that begin or end on beats and within the thirds of others, as long as some of either.
void fillWithThirds(Score& score, int channel, std::mt19937& random, int third, int length) {
    constexpr std::array kThirds{1, 1, 1, 2, 2, 3, 4, 4, 5, 6, 7, 8, 10};
    for (int position = 0; position < length;) {
        const int steps = kThirds[random() % kThirds.size()] * third;
        position = writeAtRandom(score, channel, position, std::min(position + steps, length), random, 6);
    }
    score.FindEndOfSong();
}

struct RandomMeter {
    int upper;
    int lower;
};
constexpr std::array kMeters{RandomMeter{4, 4}, RandomMeter{3, 4},  RandomMeter{2, 4},   RandomMeter{6, 8},
                             RandomMeter{5, 8}, RandomMeter{7, 8},  RandomMeter{2, 2},   RandomMeter{12, 8},
                             RandomMeter{9, 8}, RandomMeter{3, 2},  RandomMeter{5, 4},   RandomMeter{6, 4},
                             RandomMeter{3, 8}, RandomMeter{10, 8}, RandomMeter{16, 32}, RandomMeter{16, 1},
                             RandomMeter{1, 1}, RandomMeter{4, 2},  RandomMeter{8, 8},   RandomMeter{11, 16}};

/// Whether what the music's first channel has can be read back from its bars.
void expectReadBack(CleanMusicReader& music, RandomMeter meter, int M) {
    const WrittenScore written = music.read();
    const auto cells = cellsOf(written, 0, 0);
    for (std::size_t i = 0; i < cells.size(); ++i)
        ASSERT_EQ(cells[i], music.score.NoteCell.valueOr(0, static_cast<int>(i), -1)) << i;

    const double whole = static_cast<double>(M) * meter.lower / meter.upper;
    const bool canBeWritten =
        whole <= kWholeTicks / kFinestTicks; // a step is no shorter than the shortest value
    const bool isExact = StepGrid(M, Meter(meter.upper, meter.lower)).isExact();
    std::map<int, std::vector<const Written*>> bars;
    for (const Written& item : written.items)
        bars[item.bar].push_back(&item);
    for (const auto& [number, items] : bars) {
        if (items.front()->values.front().wholeBar || !canBeWritten)
            continue;
        const BarSum sum = sumOf(items, whole);
        ASSERT_NEAR(sum.end, M, 1e-6) << meter.upper << '/' << meter.lower;
        for (std::size_t i = 0; i < items.size(); ++i) {
            ASSERT_EQ(sum.begins[i], items[i]->step) << meter.upper << '/' << meter.lower << " M " << M;
            if (isExact) {
                ASSERT_NEAR(sumOf({items[i]}, whole).end, items[i]->steps, 1e-6);
            }
        }
    }
}

/// @param M steps of a bar; the meter and the notes are the random numbers'
void expectReadBack(CleanMusicReader& music, std::mt19937& random, int M) {
    const RandomMeter meter = kMeters[random() % kMeters.size()];
    music.meterOf(meter.upper, meter.lower, M);
    fillAtRandom(music.score, 0, random, std::min(1 + static_cast<int>(random() % 6) * M, 900));
    expectReadBack(music, meter, M);
}

/// A beat with a third of the next, before another third: tied to the triplet, and no part of a longer one.
void expectBeatsShow(const WrittenScore& written, int third, int& seen) {
    for (std::size_t i = 0; i + 1 < written.items.size(); ++i) {
        const Written& item = written.items[i];
        const Written& next = written.items[i + 1];
        if (item.bar != next.bar || item.step % (3 * third) != 0 || item.steps != 4 * third ||
            next.steps != third)
            continue;
        ++seen;
        EXPECT_EQ(item.values.size(), 2U);
        EXPECT_FALSE(item.values.front().triplet) << "bar " << item.bar << " step " << item.step;
    }
}

} // namespace

TEST_F(CleanReadingTest, NotesFromBeatsIntoTripletsCanBeReadBack) {
    std::mt19937 random(33);
    int seen = 0;
    constexpr std::array kBeats{RandomMeter{4, 4}, RandomMeter{3, 4}, RandomMeter{2, 4},
                                RandomMeter{5, 4}, RandomMeter{2, 2}, RandomMeter{6, 4}};
    for (int round = 0; round < 3000; ++round) {
        CleanMusicReader music;
        const RandomMeter beats = kBeats[random() % kBeats.size()];
        const int third = 1 << random() % 3;
        const int M = beats.upper * 3 * third;
        music.meterOf(beats.upper, beats.lower, M);
        fillWithThirds(music.score, 0, random, third, std::min(4 * M, 900));
        expectReadBack(music, beats, M);
        expectBeatsShow(music.read(), third, seen);
        if (HasFatalFailure() || HasNonfatalFailure())
            FAIL() << "round " << round << ": " << beats.upper << '/' << beats.lower << ' ' << music.values();
    }
    EXPECT_GT(seen, 400);
}
TEST_F(CleanReadingTest, WhatIsReadSaysTheGridAgain) {
    std::mt19937 random(20);
    for (int round = 0; round < 3000; ++round) {
        CleanMusicReader music;
        expectReadBack(music, random, 1 + static_cast<int>(random() % (round % 2 == 0 ? 32 : 512)));
        if (HasFatalFailure())
            FAIL() << "round " << round;
    }
}
TEST_F(CleanReadingTest, EverySizeOfBarCanBeReadBack) {
    std::mt19937 random(7);
    for (int M = 1; M <= 512; ++M) {
        CleanMusicReader music;
        expectReadBack(music, random, M);
        if (HasFatalFailure())
            FAIL() << "of " << M;
    }
}
TEST_F(CleanReadingTest, EveryVoiceFillsEveryBar) {
    std::mt19937 random(3);
    setup.staves.chkChannel = {true, true, true};
    setup.twoVoices = true;
    for (int channel = 0; channel < 3; ++channel)
        fillAtRandom(score, channel, random, 300);
    const WrittenScore written = read();
    ASSERT_THAT(written.staves, SizeIs(2));
    for (const auto& [staff, voice, channel] :
         {std::tuple{0, 0, written.staves[0].channel}, {0, 1, written.staves[0].secondChannel}, {1, 0, 2}}) {
        const auto cells = cellsOf(written, staff, voice);
        for (std::size_t i = 0; i < cells.size(); ++i)
            ASSERT_EQ(cells[i], score.NoteCell.valueOr(channel, static_cast<int>(i), -1));
    }
}
TEST_F(CleanReadingTest, ItemsStandBarByBarAndStaffByStaff) {
    setup.staves.chkChannel[1] = true;
    stroke(0, 60, 0, 20).stroke(1, 60, 4, 28);
    const auto items = read().items;
    EXPECT_TRUE(std::ranges::is_sorted(items, {}, [](const Written& item) {
        return std::tuple(item.bar, item.staff, item.voice, item.step);
    }));
}
TEST_F(CleanReadingTest, ANoteOverBarLinesIsTiedFromBarToBar) {
    const auto items = stroke(0, 60, 8, 32).read().items;
    ASSERT_THAT(items, SizeIs(5));
    EXPECT_FALSE(items[1].held || items[1].tiedIn || items[1].lastOfNote);
    EXPECT_TRUE(items[1].tiedOut);
    EXPECT_TRUE(items[2].held && items[2].tiedIn && items[2].tiedOut);
    EXPECT_TRUE(items[3].held && items[3].tiedIn && items[3].lastOfNote);
    EXPECT_FALSE(items[3].tiedOut);
}
TEST_F(CleanReadingTest, AStrikeOfTheSamePitchIsNotTied) {
    const auto items = rhythm({16, 16}).read().items;
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_FALSE(items[0].tiedOut || items[1].tiedIn || items[1].held);
}
TEST_F(CleanReadingTest, AContinuationWithoutAHeadIsRest) {
    stroke(0, 60, 0, 32);
    setup.start = 17;
    EXPECT_EQ(values(), "(bar)");
}
TEST_F(CleanReadingTest, AnEndInTheMiddleOfABarIsRaised) {
    rhythm({16, 16, 16});
    setup.end = 17;
    const auto written = read();
    EXPECT_EQ(written.LastStep, 32);
    EXPECT_EQ(written.lastNoteEnd, 32);
    EXPECT_THAT(written.items, SizeIs(2));
}
TEST_F(CleanReadingTest, NoStepsInABarGiveNothing) {
    rhythm({16});
    score.NotesPerMeasure = 0;
    EXPECT_THAT(read().items, SizeIs(0));
}
TEST_F(CleanReadingTest, ASignatureThatIsNoneReadsAsFourQuarters) {
    for (const auto& [upper, lower] : {std::pair{0, 0}, {-3, 4}, {4, 3}, {32767, 1}})
        EXPECT_EQ(meterOf(upper, lower, 16).rhythm({4, 12}).values(), "quarter quarter+half");
}
TEST_F(CleanReadingTest, NoMeterAndNoSizeOfBarIsTooStrange) {
    std::mt19937 random(11);
    constexpr std::array kStrange{-32768, -1, 0, 1, 2, 3, 7, 13, 64, 127, 128, 512, 1000, 2048, 32767};
    const auto any = [&] { return kStrange[random() % kStrange.size()]; };
    for (int round = 0; round < 1000; ++round) {
        CleanMusicReader music;
        music.meterOf(any(), any(), std::max(any(), 1));
        fillAtRandom(music.score, 0, random, 300);
        const WrittenScore written = music.read();
        for (const Written& item : written.items)
            ASSERT_FALSE(item.values.empty());
        const auto cells = cellsOf(written, 0, 0);
        for (std::size_t i = 0; i < std::min<std::size_t>(cells.size(), 300); ++i)
            ASSERT_EQ(cells[i], music.score.NoteCell.valueOr(0, static_cast<int>(i), -1));
    }
}
TEST_F(CleanReadingTest, RowsOutOfRangeAreWrittenOnTheLowestLine) {
    score.NoteCell.set(0, 0, 900);
    setup.end = 16;
    const auto items = read().items;
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items.front().pitches.front().row, 900);
    EXPECT_EQ(items.front().pitches.front().name, "C");
}

TEST_F(CleanReadingTest, AStaffStepIsFourPixels) {
    const auto placeOf = [this](int note, bool bass) {
        setup.staves.ChkNotetype[0] = bass;
        return stroke(0, note, 0, 4).read().items.front().pitches.front().place;
    };
    EXPECT_EQ(placeOf(60, false), 75);
    EXPECT_EQ(placeOf(64, false), 67);
    EXPECT_EQ(placeOf(77, false), 35);
    EXPECT_EQ(placeOf(43, true), 67);
    EXPECT_EQ(placeOf(57, true), 35);
    EXPECT_EQ(placeOf(60, true), 27);
}
TEST_F(CleanReadingTest, AChordIsWrittenWithItsTones) {
    key("C").stroke(0, 60, 0, 4).stroke(0, 62, 4, 4).stroke(0, 67, 8, 4).stroke(0, 69, 12, 4);
    score.Polyphonics.set(1, 0, 1);
    score.Polyphonics.set(1, 4, 2);
    score.Polyphonics.set(1, 8, 7);
    EXPECT_EQ(names(), "C+E+G+C D+F+A+D G+G+G A");
    const auto items = read().items;
    EXPECT_EQ(items[0].pitches[3].place, 75 - 7 * 4);
    EXPECT_EQ(items[2].pitches[1].place, items[2].pitches[0].place + 7 * 4);
}
TEST_F(CleanReadingTest, AChordIsSpelledInThirds) {
    key("C").stroke(0, 64, 0, 4).stroke(0, 60, 4, 4);
    score.Polyphonics.set(1, 0, 1);
    score.Polyphonics.set(1, 4, 4);
    EXPECT_EQ(names(), "E+G##+B+E C+Eb"
                       "b+Gn+Bb"
                       "b");
}
TEST_F(CleanReadingTest, PercussionHasItsKeyAndNoName) {
    setup.staves.chkChannel = {};
    setup.staves.chkChannel[8] = true;
    stroke(8, 60, 0, 4);
    score.NoteInstrument.set(8, 0, 42 + 93);
    score.FindEndOfSong();
    const auto written = read();
    const Pitch& pitch = written.items.front().pitches.front();
    EXPECT_EQ(written.staves.front().clef, StaffClef::Percussion);
    EXPECT_EQ(pitch.name, "-");
    EXPECT_EQ(pitch.drumKey, 42);
}

TEST_F(CleanReadingTest, StemsPointToTheMiddleLine) {
    EXPECT_EQ(tune({69, 71, 72}).stems(), "udd");
}
TEST_F(CleanReadingTest, TheFarthestHeadOfAChordPointsTheStem) {
    stroke(0, 64, 0, 4).stroke(0, 65, 4, 4).stroke(0, 65, 8, 4);
    score.Polyphonics.set(1, 0, 1); // E to E: the lower one is farther
    score.Polyphonics.set(1, 4, 1); // F to F: the upper one
    score.Polyphonics.set(1, 8, 3); // F to E: both are as far
    EXPECT_EQ(stems(), "udd");
}
TEST_F(CleanReadingTest, ABeamedGroupPointsTheWayOfItsFarthest) {
    EXPECT_EQ(tune({60, 72, 72, 72}, 2).stems(), "uuuu");
    EXPECT_EQ(tune({69, 69, 84, 69}, 2).stems(), "dddd");
}
TEST_F(CleanReadingTest, TwoVoicesKeepApart) {
    setup.staves.chkChannel[1] = true;
    setup.twoVoices = true;
    stroke(0, 60, 0, 4).stroke(1, 79, 0, 4);
    const auto written = read();
    ASSERT_THAT(written.staves, SizeIs(1));
    EXPECT_EQ(written.staves[0].channel, 1) << "the higher one is the first";
    EXPECT_EQ(stems(0), "u");
    EXPECT_EQ(stems(1), "d");
}
