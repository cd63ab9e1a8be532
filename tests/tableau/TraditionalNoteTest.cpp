// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TraditionalNote.h"

#include "tableau/GuidePainter.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
int yOf(int row, const ViewState& view) {
    return static_cast<int>(staffLineY(row, view));
}
} // namespace

TEST(TraditionalNoteTest, TheDropFollowsTheMeasureAndTheLength) {
    struct Row {
        int measure, cells, drop;
    };
    for (const Row& row : {Row{1, 1, 1},
                           {3, 4, 8},
                           {4, 4, 10},
                           {5, 3, 8},
                           {6, 1, 3},
                           {7, 2, 6},
                           {8, 4, 13},
                           {9, 1, 3},
                           {16, 1, 6},
                           {16, 4, 22},
                           {16, 16, 90}})
        EXPECT_EQ(glyphDrop(row.measure, row.cells), row.drop) << row.measure << ' ' << row.cells;
}

TEST(TraditionalNoteTest, AMeasureOfNothingOrMoreThanSixteenHasNoDrop) {
    for (const int measure : {-1, 0, 17, 32767})
        EXPECT_EQ(glyphDrop(measure, 4), std::nullopt) << measure;
}

TEST(TraditionalNoteTest, AnAccidentalMovesTheHeadAndNoHeadLeavesItsSpan) {
    EXPECT_EQ(headOffset(22, {}), 22);
    EXPECT_EQ(headOffset(22, Accidental::Sharp), 25);
    EXPECT_EQ(headOffset(22, Accidental::Flat), 24);
    EXPECT_EQ(headOffset(1, {}), 5);
}

TEST(TraditionalNoteTest, TheShareOfTheMeasureChoosesTheValue) {
    struct Row {
        int measure, cells;
        NoteShape shape;
        bool dotted;
    };
    for (const Row& row : {Row{16, 16, NoteShape::Whole, false},
                           {16, 40, NoteShape::Whole, false},
                           {16, 15, NoteShape::Half, true},
                           {16, 9, NoteShape::Half, true},
                           {16, 8, NoteShape::Half, false},
                           {16, 7, NoteShape::Quarter, true},
                           {16, 5, NoteShape::Quarter, true},
                           {16, 4, NoteShape::Quarter, false},
                           {16, 3, NoteShape::Eighth, true},
                           {16, 2, NoteShape::Eighth, false},
                           {12, 1, NoteShape::Sixteenth, true},
                           {16, 1, NoteShape::Sixteenth, false},
                           {24, 1, NoteShape::ThirtySecond, true},
                           {32, 1, NoteShape::ThirtySecond, false},
                           {48, 1, NoteShape::SixtyFourth, true},
                           {64, 1, NoteShape::SixtyFourth, false},
                           {1000, 1, NoteShape::SixtyFourth, false},
                           {32767, 32766, NoteShape::Half, true},
                           {1, 10000, NoteShape::Whole, false}})
        EXPECT_EQ(noteValue(row.measure, row.cells), (NoteValue{row.shape, row.dotted}))
            << row.measure << '/' << row.cells;
}

TEST(TraditionalNoteTest, NoShareOfTheMeasureIsNoNote) {
    EXPECT_EQ(noteValue(1, 10001), std::nullopt);
    EXPECT_EQ(noteValue(0, 4), std::nullopt);
    EXPECT_EQ(noteValue(-16, 4), std::nullopt);
    EXPECT_EQ(noteValue(16, 0), std::nullopt);
}

TEST(TraditionalNoteTest, TheEndOfTheNameTellsTheAccidental) {
    EXPECT_EQ(accidentalOf(66), Accidental::Sharp); // "5C#"
    EXPECT_EQ(accidentalOf(64), Accidental::Flat);  // "5Eb"
    EXPECT_EQ(accidentalOf(56), std::nullopt);      // "5B" is no flat
    EXPECT_EQ(accidentalOf(-1), std::nullopt);
    EXPECT_EQ(accidentalOf(500), std::nullopt);
}

TEST(TraditionalNoteTest, StemsPointUpBelowTheMiddleLine) {
    const ViewState view;
    EXPECT_EQ(stemOf(yOf(55, view), view, false), Stem::Down);
    EXPECT_EQ(stemOf(yOf(56, view), view, false), Stem::Down);
    EXPECT_EQ(stemOf(yOf(57, view), view, false), Stem::Up);
    EXPECT_EQ(stemOf(yOf(90, view), view, false), Stem::Up);
}

TEST(TraditionalNoteTest, WithABassStaffTheyTurnAgainInIt) {
    const ViewState view;
    const int middle = yOf(77, view);
    EXPECT_EQ(stemOf(yOf(57, view), view, true), Stem::Up);
    EXPECT_EQ(stemOf(middle - 20, view, true), Stem::Up);
    EXPECT_EQ(stemOf(middle - 19, view, true), Stem::Down);
    EXPECT_EQ(stemOf(middle, view, true), Stem::Down);
    EXPECT_EQ(stemOf(middle + 1, view, true), Stem::Up);
}
