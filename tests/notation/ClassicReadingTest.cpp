// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicValues.h"
#include "tests/notation/ClassicMusic.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::string valuesOf(int steps, int M) {
    std::string text;
    for (const ClassicPiece& piece : splitNote(steps, M))
        text += (text.empty() ? "" : "+") + textOf(piece.value);
    return text;
}

std::string restOf(int RestRun, int M) {
    std::string text;
    for (const Value& value : restValues(restClass(RestRun, M)))
        text += (text.empty() ? "" : "+") + textOf(value);
    return text;
}

struct ClassicReading : testing::Test {
    ClassicMusic music;

    /// Of the first note.
    [[nodiscard]] Pitch pitch() const { return music.read().items.front().pitches.front(); }
    [[nodiscard]] Sign signOf(int row, int key) {
        music.setup.key = key;
        music.stroke(0, row, 0, 4);
        return pitch().sign;
    }
};

} // namespace

TEST(ClassicSplit, ASixteenthOfTheMeasureIsASixteenth) {
    constexpr std::array kOfSixteen{"sixteenth",
                                    "eighth",
                                    "eighth.",
                                    "quarter",
                                    "quarter+sixteenth",
                                    "quarter.",
                                    "quarter+eighth.",
                                    "half",
                                    "half+sixteenth",
                                    "half+eighth",
                                    "half+eighth.",
                                    "half.",
                                    "half+quarter+sixteenth",
                                    "half+quarter.",
                                    "half+quarter+eighth.",
                                    "whole"};
    for (std::size_t i = 0; i < kOfSixteen.size(); ++i)
        EXPECT_EQ(valuesOf(static_cast<int>(i) + 1, 16), kOfSixteen.at(i));
}

TEST(ClassicSplit, WhatIsLeftBehindAnEighthIsADotWhateverItsSize) {
    EXPECT_EQ(valuesOf(7, 32), "eighth.");
    EXPECT_EQ(valuesOf(100, 512), "eighth.");
}

TEST(ClassicSplit, AStepOfAShortMeasureIsASixteenth) {
    EXPECT_EQ(valuesOf(1, 12), "sixteenth");
    EXPECT_EQ(valuesOf(4, 12), "quarter+sixteenth");
    EXPECT_EQ(valuesOf(2, 12), "eighth");
    EXPECT_EQ(valuesOf(1, 1), "whole");
}

TEST(ClassicSplit, NothingIsLeftUnwrittenAndThePiecesTakeAllSteps) {
    for (int M = 1; M <= 512; ++M)
        for (int steps = 1; steps <= M; ++steps) {
            int sum = 0;
            for (const ClassicPiece& piece : splitNote(steps, M)) {
                EXPECT_GE(piece.steps, 1);
                sum += piece.steps;
            }
            ASSERT_EQ(sum, steps) << "of " << M;
        }
}

TEST(ClassicRest, EachShareOfTheMeasureHasItsForm) {
    constexpr std::array kForms{"sixteenth",
                                "eighth",
                                "eighth+sixteenth",
                                "quarter",
                                "quarter+sixteenth",
                                "quarter+eighth",
                                "quarter+eighth+sixteenth",
                                "half",
                                "half+sixteenth",
                                "half+eighth",
                                "half+eighth+sixteenth",
                                "half+quarter",
                                "half+quarter+sixteenth",
                                "half+quarter+eighth",
                                "half+quarter+eighth+sixteenth",
                                "whole"};
    for (std::size_t i = 0; i < kForms.size(); ++i)
        EXPECT_EQ(restOf(static_cast<int>(i) + 1, 16), kForms.at(i));
}

TEST(ClassicRest, AShareBetweenTwoClassesTakesTheOneAbove) {
    EXPECT_EQ(restOf(1, 12), "eighth");     // 8.3 of 100
    EXPECT_EQ(restOf(1, 5), "quarter");     // 20
    EXPECT_EQ(restOf(31, 32), "whole");     // 96.9
    EXPECT_EQ(restOf(1, 512), "sixteenth"); // 0.2
}

TEST_F(ClassicReading, ANoteHeldOverTheBarLineIsWrittenInBothBars) {
    music.stroke(0, 60, 0, 4).stroke(0, 67, 12, 8);
    EXPECT_THAT(music.values(), ElementsAre("1:0+4 quarter", "r1:4+8 half", "1:12+4 quarter",
                                            "-2:0+4 quarter", "r2:4+12 half quarter"));
    EXPECT_EQ(music.read().LastStep, 32);
    EXPECT_EQ(music.read().lastNoteEnd, 20);
    const Pitch first = pitch();
    EXPECT_EQ(first.name, "G");
    EXPECT_EQ(first.place, 59);
}

TEST_F(ClassicReading, AMeasureAndThreeStepsAreAWholeAndTheSplitOfThree) {
    music.stroke(0, 60, 0, 19);
    EXPECT_THAT(music.values(),
                ElementsAre("1:0+16 whole", "-2:0+3 eighth.", "r2:3+13 half quarter sixteenth"));
}

TEST_F(ClassicReading, AQuarterOverTheBarIsTwoEighths) {
    music.stroke(0, 60, 14, 4);
    EXPECT_THAT(music.values(), ElementsAre("r1:0+14 half quarter eighth", "1:14+2 eighth", "-2:0+2 eighth",
                                            "r2:2+14 half quarter eighth"));
}

TEST_F(ClassicReading, ADottedHalfLosesItsDotWhereTheBarCutsIt) {
    music.stroke(0, 60, 0, 12).stroke(0, 60, 24, 12);
    EXPECT_THAT(music.values(), ElementsAre("1:0+12 half.", "r1:12+4 quarter", "r2:0+8 half", "2:8+8 half",
                                            "-3:0+4 quarter", "r3:4+12 half quarter"));
}

TEST_F(ClassicReading, RestsAreCutAtTheBar) {
    music.stroke(0, 60, 0, 13).stroke(0, 60, 21, 11);
    EXPECT_THAT(music.values(), ElementsAre("1:0+13 half quarter sixteenth", "r1:13+3 eighth sixteenth",
                                            "r2:0+5 quarter sixteenth", "2:5+11 half eighth."));
}

TEST_F(ClassicReading, RowsOfOnePlaceStandTogether) {
    EXPECT_EQ(RowToY(72), RowToY(71));
    music.stroke(0, 72, 0, 4);
    EXPECT_EQ(pitch().place, 85);
}

TEST_F(ClassicReading, TheKeyDecidesWhichSignIsDrawn) {
    constexpr int kC = 0;
    constexpr int kG = 1;
    constexpr int kF = 6;
    EXPECT_EQ(signOf(61, kG), Sign::None);  // F#
    EXPECT_EQ(signOf(66, kG), Sign::Sharp); // C#
    EXPECT_EQ(signOf(57, kC), Sign::Sharp); // A#
    EXPECT_EQ(signOf(57, kF), Sign::None);  // Bb
    EXPECT_EQ(signOf(56, kF), Sign::None);  // B, without any natural
    EXPECT_EQ(signOf(64, kF), Sign::Flat);  // Eb
}

TEST_F(ClassicReading, ARepeatedNoteHasItsSignAgain) {
    music.tune({66, 66}, 4);
    const auto items = music.read().items;
    EXPECT_EQ(items[0].pitches.front().sign, Sign::Sharp);
    EXPECT_EQ(items[1].pitches.front().sign, Sign::Sharp);
}

TEST_F(ClassicReading, StemsGoUpBelowTheMiddleLine) {
    music.tune({56, 57}, 4);
    const auto items = music.read().items;
    EXPECT_FALSE(items[0].stemUp); // B, on the line
    EXPECT_TRUE(items[1].stemUp);
}

TEST_F(ClassicReading, ABassStaffLowersWhatLiesBelowItsLimit) {
    music.setup.staves.ChkNotetype[0] = true;
    music.tune({68, 69, 93}, 4);
    const auto items = music.read().items;
    EXPECT_EQ(items[0].pitches.front().place, 79);
    EXPECT_EQ(items[1].pitches.front().place, 83 - 48);
    EXPECT_FALSE(items[1].stemUp);
    EXPECT_EQ(items[2].pitches.front().place, 135 - 48);
    music.meter.ChBass = false;
    EXPECT_EQ(music.read().items[1].pitches.front().place, 83);
}

TEST_F(ClassicReading, ThreeEighthsInPairsAreTwoUnderABeamAndOneWithAFlag) {
    music.setup.joinNotes = 2;
    music.tune({60, 60, 60}, 2);
    EXPECT_THAT(music.values(),
                ElementsAre("1:0+2 eighth 1/2", "1:2+2 eighth 2/2", "1:4+2 eighth", "r1:6+10 half eighth"));
}

TEST_F(ClassicReading, EachOptionHasItsSizeOfGroup) {
    music.tune({60, 60, 60, 60, 60, 60, 60, 60}, 1);
    for (const int size : {2, 3, 4}) {
        music.setup.joinNotes = size;
        const auto items = music.read().items;
        EXPECT_EQ(items[0].beamCount, size);
        EXPECT_EQ(items[static_cast<std::size_t>(size) - 1].beamIndex, size);
        EXPECT_EQ(items[static_cast<std::size_t>(size)].beamIndex, 1);
    }
    music.setup.joinNotes = 0;
    for (const Written& item : music.read().items)
        EXPECT_EQ(item.beamCount, 0);
}

TEST_F(ClassicReading, AGroupClosesBeforeAnotherValueAndBeforeARest) {
    music.setup.joinNotes = 4;
    music.stroke(0, 60, 0, 2).stroke(0, 60, 2, 2).stroke(0, 60, 4, 1).stroke(0, 60, 5, 1);
    music.stroke(0, 60, 7, 1).stroke(0, 60, 8, 3).stroke(0, 60, 11, 1).stroke(0, 60, 12, 1);
    EXPECT_THAT(music.values(),
                ElementsAre("1:0+2 eighth 1/2", "1:2+2 eighth 2/2", "1:4+1 sixteenth 1/2",
                            "1:5+1 sixteenth 2/2", "r1:6+1 sixteenth", "1:7+1 sixteenth", "1:8+3 eighth.",
                            "1:11+1 sixteenth 1/2", "1:12+1 sixteenth 2/2", "r1:13+3 eighth sixteenth"));
}

TEST_F(ClassicReading, AGroupNeverCrossesTheBarAndPartsOfCutNotesJoin) {
    music.setup.joinNotes = 4;
    music.stroke(0, 60, 12, 2).stroke(0, 60, 14, 4).stroke(0, 60, 18, 2);
    EXPECT_THAT(music.values(), ElementsAre("r1:0+12 half quarter", "1:12+2 eighth 1/2", "1:14+2 eighth 2/2",
                                            "-2:0+2 eighth 1/2", "2:2+2 eighth 2/2", "r2:4+12 half quarter"));
}

TEST_F(ClassicReading, ASinglePendingEighthAtTheBarHasNoBeam) {
    music.setup.joinNotes = 4;
    music.stroke(0, 60, 14, 2).stroke(0, 60, 16, 2);
    EXPECT_THAT(music.values(), ElementsAre("r1:0+14 half quarter eighth", "1:14+2 eighth", "2:0+2 eighth",
                                            "r2:2+14 half quarter eighth"));
}

TEST_F(ClassicReading, PercussionHasNeitherNamesNorGroups) {
    music.setup.staves = {};
    music.setup.staves.chkChannel[9] = true; // channel 10
    music.setup.joinNotes = 4;
    music.stroke(10, 36, 0, 2).stroke(10, 36, 2, 2);
    EXPECT_THAT(music.values(), ElementsAre("1:0+2 eighth", "1:2+2 eighth", "r1:4+12 half quarter"));
    EXPECT_EQ(pitch().name, "-");
    EXPECT_EQ(pitch().sign, Sign::None);
}

TEST_F(ClassicReading, AContinuationWithoutAHeadIsRest) {
    music.stroke(0, 60, 0, 4).stroke(0, 62, 8, 8);
    music.score.NoteCell.set(0, 4, 1060);
    music.score.NoteCell.set(0, 5, -1);
    music.score.NoteCell.set(0, 6, 1061);
    EXPECT_THAT(music.values(),
                ElementsAre("1:0+5 quarter sixteenth", "r1:5+3 eighth sixteenth", "1:8+8 half"));
    music.setup.start = 10; // in the middle of a bar
    music.stroke(0, 60, 28, 4).stroke(0, 62, 12, 8);
    EXPECT_THAT(music.values().front(), "1:0+5 quarter sixteenth");
    music.setup.start = 16; // in the middle of a note
    EXPECT_THAT(music.values(), ElementsAre("r2:0+12 half quarter", "2:12+4 quarter"));
    EXPECT_EQ(music.read().first, 16);
}

TEST_F(ClassicReading, NegativeCellsOtherThanEmptyOnesArePassedOver) {
    music.stroke(0, 60, 0, 4).stroke(0, 60, 8, 8);
    music.score.NoteCell.set(0, 4, -2);
    EXPECT_THAT(music.values(), ElementsAre("1:0+4 quarter", "r1:5+3 eighth sixteenth", "1:8+8 half"));
}

TEST_F(ClassicReading, TheEndIsRaisedToAMultipleOfTheMeasure) {
    music.measure(12).stroke(0, 60, 0, 30);
    EXPECT_EQ(music.read().LastStep, 36);
    music.setup.end = 13;
    EXPECT_EQ(music.read().LastStep, 24);
    EXPECT_EQ(music.read().lastNoteEnd, 24);
    EXPECT_EQ(music.read().bars(), 2);
}

TEST_F(ClassicReading, AChannelWithoutNotesIsAStaffOfRests) {
    music.setup.staves.chkChannel[3] = true;
    music.stroke(0, 60, 0, 20);
    EXPECT_THAT(music.values(1), ElementsAre("r1:0+16 whole", "r2:0+16 whole"));
}

TEST_F(ClassicReading, NoBarLineEverMovesWhateverTheMeasure) {
    for (const int M : {1, 3, 5, 7, 10, 12, 20, 24, 48, 100, 512}) {
        ClassicMusic odd;
        odd.measure(M).setup.joinNotes = 4;
        for (int position = 0, length = 1; position + length < 900;
             position += length, length = length % 37 + 1)
            odd.stroke(0, 40 + length, position, length);
        int position = 0;
        for (const Written& item : odd.read().items) {
            ASSERT_EQ((item.bar - 1) * M + item.step, position) << M;
            position += item.steps;
            ASSERT_LE(item.step + item.steps, M);
        }
        EXPECT_EQ(position, odd.read().LastStep);
    }
}

TEST_F(ClassicReading, AScoreWithoutMeasuresHasNothing) {
    music.stroke(0, 60, 0, 4).measure(0);
    EXPECT_THAT(music.read().items, IsEmpty());
    EXPECT_EQ(music.read().bars(), 0);
}

TEST_F(ClassicReading, TheLongestScoreIsReadToItsEnd) {
    music.score.resizeNotes(kMostNotes);
    for (int position = 0; position < kMostNotes; ++position)
        music.score.NoteCell.set(0, position, 60);
    music.score.FindEndOfSong();
    music.measure(512);
    EXPECT_THAT(music.read().items, SizeIs(kMostNotes + 1)); // a rest behind
    music.measure(1);
    EXPECT_THAT(music.read().items, SizeIs(kMostNotes));
}
