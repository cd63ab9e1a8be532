// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/CycleFields.h"

#include <gmock/gmock.h>

using namespace velmora;

TEST(CycleFieldsTest, TheValuesStandInTheOrderOfTheirFields) {
    EditState edit{.CycleNotes = 8, .CycleBeats = 12, .TotalNotes = 60};
    std::int16_t value = 40;
    for (const CycleValue& row : kCycleValues) {
        row.set(edit, --value);
        EXPECT_EQ(edit.*row.value, value);
    }
    EXPECT_EQ(edit.TotalNotes, 39);
    EXPECT_EQ(edit.CycleBeats, 38);
    EXPECT_EQ(edit.CycleNotes, 37);
}

TEST(CycleFieldsTest, TheNotesGiveWayToTheirCycle) {
    EditState edit{.CycleNotes = 8, .CycleBeats = 12};
    kCycleValues[1].set(edit, 5);
    EXPECT_EQ(edit.CycleNotes, 5);
    kCycleValues[2].set(edit, 9);
    EXPECT_EQ(edit.CycleNotes, 5);
    EXPECT_EQ(edit.CycleBeats, 5);
}
