// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Quantiser.h"

#include "keyboard/Pulse.h"

#include <gtest/gtest.h>

#include <array>

using namespace velmora;

namespace {
constexpr PhraseMeter kFourFour{4, 4};
/// A beat a second.
Pulse seconds() {
    return {.anchors = {{0, 0}}, .period = 1};
}
PlayedNote note(double onset, double end, int pitch = 60) {
    return {
        .onset = onset, .end = end, .note = static_cast<std::uint8_t>(pitch), .velocity = 90, .program = 7};
}
std::vector<GridNote> quantised(std::vector<PlayedNote> notes, NoteGrid grid, NoteLengths lengths) {
    return quantise(notes, seconds(), kFourFour, grid, lengths);
}
} // namespace

TEST(QuantiserTest, EveryGridHasItsStep) {
    constexpr std::array kCaptions{"1/4 Note",  "1/8 Note",     "1/8 Triplet",
                                   "1/16 Note", "1/16 Triplet", "1/32 Note"};
    for (std::size_t i = 0; i < kNoteGrids.size(); ++i) {
        const NoteGridRow& row = kNoteGrids[i];
        EXPECT_EQ(&rowOf(row.grid), &row);
        EXPECT_EQ(row.caption, kCaptions[i]);
        EXPECT_EQ(kTicksPerQuarter % row.ticks, 0);
        const auto notes = quantised({note(0.01, 0.02), note(5.02, 5.03)}, row.grid, NoteLengths::AsPlayed);
        ASSERT_EQ(notes.size(), 2U);
        EXPECT_EQ(notes[0].start, 0);
        EXPECT_EQ(notes[0].length, row.ticks) << "a step at least";
        EXPECT_EQ(notes[1].start, 5 * kTicksPerQuarter);
    }
}

TEST(QuantiserTest, ANoteKeepsWhatItIs) {
    const auto notes = quantised({note(1, 1.5, 64)}, NoteGrid::Eighth, NoteLengths::AsPlayed);
    EXPECT_EQ(notes,
              (std::vector<GridNote>{{.start = 24, .length = 12, .note = 64, .velocity = 90, .program = 7}}));
}

TEST(QuantiserTest, LegatoGoesOnToTheNextAndLeavesARestOfABeat) {
    const std::vector<PlayedNote> notes{note(0, 0.4), note(1, 1.4), note(3, 3.2), note(4, 4.7)};
    const auto legato = quantised(notes, NoteGrid::Eighth, NoteLengths::Legato);
    ASSERT_EQ(legato.size(), 4U);
    EXPECT_EQ(legato[0].length, 24);
    EXPECT_EQ(legato[1].length, 12) << "a silence of more than a beat follows";
    EXPECT_EQ(legato[2].length, 24);
    EXPECT_EQ(legato[3].length, 24) << "the last goes on to the beat";
    const auto asPlayed = quantised(notes, NoteGrid::Eighth, NoteLengths::AsPlayed);
    EXPECT_EQ(asPlayed[0].length, 12);
    EXPECT_EQ(asPlayed[2].length, 12);
}

TEST(QuantiserTest, NotesStruckTogetherBeginTogetherAndEndWithTheNext) {
    const auto notes =
        quantised({note(0, 0.9, 60), note(0.02, 0.8, 64), note(0.03, 0.9, 67), note(1.02, 1.9, 60)},
                  NoteGrid::Sixteenth, NoteLengths::Legato);
    ASSERT_EQ(notes.size(), 4U);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(notes[static_cast<std::size_t>(i)].start, 0);
        EXPECT_EQ(notes[static_cast<std::size_t>(i)].length, 24);
    }
}

TEST(QuantiserTest, ANoteStruckTwiceInAStepIsOne) {
    const auto notes =
        quantised({note(0, 0.02, 60), note(0.03, 0.9, 60)}, NoteGrid::Quarter, NoteLengths::AsPlayed);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].length, 24);
}

TEST(QuantiserTest, TheSimplestGridThatKeepsNotesApartIsTaken) {
    const auto gridOf = [](std::vector<double> onsets, PhraseMeter meter = kFourFour) {
        std::vector<PlayedNote> notes;
        for (const double onset : onsets)
            notes.push_back(note(onset, onset + 0.1));
        return simplestGrid(notes, seconds(), meter);
    };
    EXPECT_EQ(gridOf({0, 1, 2, 3.02, 4, 5, 5.98, 7}), NoteGrid::Quarter);
    EXPECT_EQ(gridOf({0, 0.5, 1, 2, 2.52, 3, 4, 4.5, 5, 6}), NoteGrid::Eighth);
    EXPECT_EQ(gridOf({0, 0.75, 1, 2, 2.75, 3, 3.5, 4, 4.25, 4.5, 4.75, 5}), NoteGrid::Sixteenth);
    EXPECT_EQ(gridOf({0, 0.33, 0.67, 1, 1.34, 1.66, 2, 3, 3.33, 3.68, 4}), NoteGrid::EighthTriplet);
    EXPECT_EQ(gridOf({0, 0.33, 0.67, 1, 1.34, 1.66, 2, 3, 3.33, 3.68, 4}, {6, 8}), NoteGrid::Eighth);
    EXPECT_EQ(gridOf({}), NoteGrid::Quarter);
}

TEST(QuantiserTest, InACompoundMeterABeatHasThreeEighths) {
    EXPECT_EQ((PhraseMeter{6, 8}.ticksPerBeat()), 36);
    EXPECT_EQ((PhraseMeter{9, 8}.ticksPerMeasure()), 108);
    EXPECT_EQ((PhraseMeter{5, 8}.ticksPerBeat()), 12);
    EXPECT_EQ((PhraseMeter{3, 4}.ticksPerMeasure()), 72);
    EXPECT_EQ((PhraseMeter{4, 2}.ticksPerBeat()), 48);
    EXPECT_EQ((PhraseMeter{4, 7}.ticksPerBeat()), 24) << "no such note";
}
