// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/CycleFields.h"

#include "tests/composition/WorkspaceFixture.h"

using namespace velmora;

namespace {
struct CycleFieldsTest : WorkspaceFixture {
    EditState& edit() { return workspace().edit; }
};
} // namespace

TEST_F(CycleFieldsTest, TheValuesStandInTheOrderOfTheirFields) {
    edit() = {.CycleNotes = 8, .CycleBeats = 12, .TotalNotes = 60};
    std::int16_t value = 40;
    for (const CycleValue& row : kCycleValues) {
        row.set(workspace(), --value);
        EXPECT_EQ(edit().*row.value, value);
        EXPECT_EQ(cycleOf(edit(), workspace().manners).*row.counted, value);
    }
    EXPECT_EQ(edit().TotalNotes, 39);
    EXPECT_EQ(edit().CycleBeats, 38);
    EXPECT_EQ(edit().CycleNotes, 37);
}

TEST_F(CycleFieldsTest, TheNotesGiveWayToTheirCycle) {
    edit() = {.CycleNotes = 8, .CycleBeats = 12};
    kCycleValues[1].set(workspace(), 5);
    EXPECT_EQ(edit().CycleNotes, 5);
    kCycleValues[2].set(workspace(), 9);
    EXPECT_EQ(edit().CycleNotes, 5);
    EXPECT_EQ(edit().CycleBeats, 5);
}
