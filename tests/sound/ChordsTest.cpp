// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Chords.h"

#include <gtest/gtest.h>

using namespace velmora;

namespace {
struct Row {
    int type;
    std::string_view listText;
    int step1, step2, step3;
    std::string_view hint;
};
// As the user is told it; the single note and the last row show what the start values and the hint before
// leave.
constexpr Row kRows[] = {
    {0, "Single Note", 3, 7, 12, "1 note: 5C "},
    {1, "Major", 4, 7, 12, "4 note chord: 5C 5E 5G 6C"},
    {2, "Minor ", 3, 7, 12, "4 note chord: 5C 5D#  5G 6C"},
    {3, "Major 7th ", 4, 7, 11, "4 note chord: 5C 5E 5G  5B"},
    {4, "Minor 7th ", 3, 7, 10, "4 note chord: 5C 5E 5G 6C"},
    {5, "Minor 7th -5 ", 3, 6, 10, "4 note chord: 5C 5D# 5G 5A#"},
    {6, "2 Octave combo ", -12, 0, 0, "2 notes: 5C 4C"},
    {7, "3 Octave combo ", -12, 12, 0, "before"},
};
} // namespace

TEST(ChordsTest, EveryTypeSetsItsStepsAndHint) {
    for (const Row& row : kRows) {
        ChordSteps steps;
        steps.Label7 = "before";
        steps.SelectChord(row.type);
        EXPECT_EQ(kChordTypes.at(static_cast<std::size_t>(row.type)).name, row.listText);
        EXPECT_EQ(steps.ChordStep1, row.step1) << row.listText;
        EXPECT_EQ(steps.ChordStep2, row.step2) << row.listText;
        EXPECT_EQ(steps.ChordStep3, row.step3) << row.listText;
        EXPECT_EQ(steps.Label7, row.hint) << row.listText;
    }
    EXPECT_EQ(std::size(kRows), kChordTypes.size());
}

TEST(ChordsTest, ASingleNoteAfterAMajorChordLeavesItsStepsInPlace) {
    ChordSteps steps;
    steps.SelectChord(1);
    steps.SelectChord(0);
    EXPECT_EQ(steps.ChordStep1, 4);
    EXPECT_EQ(steps.ChordStep2, 7);
    EXPECT_EQ(steps.ChordStep3, 12);
    EXPECT_EQ(steps.Label7, "1 note: 5C ");
}

TEST(ChordsTest, TheMinorSeventhShowsTheMajorHint) {
    ChordSteps major, minor7th;
    major.SelectChord(1);
    minor7th.SelectChord(4);
    EXPECT_EQ(minor7th.Label7, major.Label7);
}

TEST(ChordsTest, ATypeOutOfRangeChangesNothing) {
    ChordSteps steps;
    steps.SelectChord(3);
    const ChordSteps before = steps;
    for (const int type : {-1, 8, 32767, -32768}) {
        steps.SelectChord(type);
        EXPECT_EQ(steps, before) << type;
    }
}

TEST(ChordsTest, OnlyTheMinorSeventhWithFlatFifthMovesTheList) {
    for (int type = -1; type <= 8; ++type) {
        ChordSteps steps;
        steps.SelectChord(type);
        EXPECT_EQ(steps.Combo3, type == 5 ? std::optional(5) : std::nullopt) << type;
    }
}

TEST(ChordsTest, TheSetupToolbarOffersSevenChordsInLongerWords) {
    constexpr std::string_view kTexts[] = {
        "Major (4 note chord: 5C 5E 5G 6C )",          "Minor (4 note chord: 5C 5D#  5G 6C )",
        "Major 7th (4 note chord: 5C 5E 5G  5B )",     "Minor 7th (4 note chord: 5C 5D# 5G 5A# )",
        "Minor 7th -5 (4 note chord: 5C 5D 5F# 5A# )", "2 Octave combo (2 notes: 5C 4C )",
        "3 Octave combo (3 notes: 5C 4C 6C )"};
    ASSERT_EQ(std::size(kTexts), kSetupChordNames.size());
    for (std::size_t i = 0; i < kSetupChordNames.size(); ++i)
        EXPECT_EQ(kSetupChordNames[i], kTexts[i]);
}

TEST(ChordsTest, AKeyboardChordNameOutOfRangeIsBlank) {
    constexpr std::string_view kTexts[] = {" Note",      " Major",       " Minor",      " Major 7th",
                                           " Minor 7th", " Minor 7th-5", " Diminished", " Dominant 7th",
                                           " Major 9th", " Minor 9th",   " Octave"};
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(keyboardChordName(i), kTexts[i]);
    EXPECT_EQ(keyboardChordName(11), "");
    EXPECT_EQ(keyboardChordName(-1), "");
}
