// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ModScore.h"

#include "score/Score.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;
using testing::Each;
using testing::IsEmpty;

namespace {

struct Rows {
    int first, last, y;
};
constexpr std::array kRows{
    Rows{-5, 38, 11},  Rows{39, 40, 15},  Rows{41, 43, 19},   Rows{44, 44, 23},  Rows{45, 46, 27},
    Rows{47, 48, 31},  Rows{49, 50, 35},  Rows{51, 51, 39},   Rows{52, 53, 43},  Rows{54, 55, 47},
    Rows{56, 56, 51},  Rows{57, 58, 55},  Rows{59, 60, 59},   Rows{61, 62, 63},  Rows{63, 63, 67},
    Rows{64, 65, 71},  Rows{66, 67, 75},  Rows{68, 68, 79},   Rows{69, 70, 83},  Rows{71, 72, 85},
    Rows{73, 74, 91},  Rows{75, 75, 95},  Rows{76, 77, 99},   Rows{78, 79, 103}, Rows{80, 80, 107},
    Rows{81, 82, 110}, Rows{83, 84, 115}, Rows{85, 86, 119},  Rows{87, 87, 123}, Rows{88, 89, 127},
    Rows{90, 91, 129}, Rows{92, 92, 131}, Rows{93, 999, 135},
};

/// A note a step, one behind the other.
void fill(Score& score, int channel, const std::vector<int>& rows) {
    int position = 0;
    for (const int row : rows)
        score.NoteCell.set(channel, position++, static_cast<std::int16_t>(row));
    score.FindEndOfSong();
}

struct AssignStavesTest : testing::Test {
    Score score{100};

    [[nodiscard]] std::vector<int> channels() const {
        std::vector<int> found;
        for (const Staff& staff : stavesOf(AssignStaves(score, 16)))
            found.push_back(staff.channel);
        return found;
    }
};

} // namespace

TEST(RowToY, GivesEveryRowItsPlace) {
    for (const Rows& rows : kRows)
        for (int row = rows.first; row <= rows.last; ++row)
            EXPECT_EQ(RowToY(row), rows.y) << "row " << row;
}

TEST(SpellNote, NamesBlackKeysByTheKindOfKey) {
    constexpr std::array<const char*, 12> kSharp{"C",  "B", "A#", "A",  "G#", "G",
                                                 "F#", "F", "E",  "D#", "D",  "C#"};
    constexpr std::array<const char*, 12> kFlat{"C",  "B", "Bb", "A",  "Ab", "G",
                                                "Gb", "F", "E",  "Eb", "D",  "Db"};
    for (int row = 0; row < 128; ++row) {
        const auto below = static_cast<std::size_t>((row + 12 * 6 - 67) % 12); // row 67 is a C
        EXPECT_EQ(SpellNote(row, false), kSharp.at(below)) << row;
        EXPECT_EQ(SpellNote(row, true), kFlat.at(below)) << row;
        EXPECT_EQ(SpellNote(row + 1000, true), SpellNote(row, true)) << row;
    }
}

TEST_F(AssignStavesTest, AMeanOf91IsBassAndAHairBelowIsTreble) {
    fill(score, 0, {73, 74});                                 // 91 and 91
    fill(score, 1, {73, 73, 71});                             // 89
    fill(score, 2, {75, 72, 75, 71, 71, 71, 75, 75, 74, 75}); // 90.6, which no rounding makes 91
    const StaffChoice choice = AssignStaves(score, 16);
    EXPECT_EQ(choice.BassStaves(), 1);
    EXPECT_EQ(choice.TrebleStaves(), 2);
    EXPECT_TRUE(choice.ChkNotetype[0]);
}

TEST_F(AssignStavesTest, TheFirstTenNotesDecide) {
    std::vector<int> rows(10, 40);
    rows.insert(rows.end(), 30, 100);
    fill(score, 0, rows);
    EXPECT_EQ(AssignStaves(score, 16).TrebleStaves(), 1);
}

TEST_F(AssignStavesTest, FiveStavesAtMostAndPercussionAfterMelody) {
    for (const int channel : {0, 1, 2, 5, 8, 11, 12})
        fill(score, channel, {60, 60, 60});
    EXPECT_EQ(channels(), (std::vector{0, 1, 2, 5, 8}));
}

TEST_F(AssignStavesTest, TheChannelBetweenThePercussionChannelsIsNone) {
    for (const int channel : {8, 9, 10, 11, 12})
        fill(score, channel, {60, 60, 60});
    EXPECT_EQ(channels(), (std::vector{8, 10, 11, 12}));
}

TEST_F(AssignStavesTest, MutedAndSilentChannelsHaveNone) {
    fill(score, 1, {60, 60, 60});
    fill(score, 2, {60, 60, 60});
    score.ChannelMuted[2] = true;
    EXPECT_TRUE(score.ChannelInUse[0]);
    EXPECT_EQ(channels(), std::vector{1});
    EXPECT_THAT(AssignStaves(score, 0).chkChannel, Each(false));
}

TEST(StavesOf, TrebleComesBeforeBassAndBassBeforePercussion) {
    StaffChoice choice;
    for (const std::size_t box : {std::size_t{0}, std::size_t{1}, std::size_t{3}, std::size_t{9}})
        choice.chkChannel[box] = true;
    choice.ChkNotetype[0] = true;
    const auto staves = stavesOf(choice);
    ASSERT_EQ(staves.size(), 4U);
    EXPECT_EQ(staves[0].channel, 1);
    EXPECT_EQ(staves[1].channel, 3);
    EXPECT_EQ(staves[2].channel, 0);
    EXPECT_EQ(staves[2].clef, StaffClef::Bass);
    EXPECT_EQ(staves[3].channel, 10);
    EXPECT_EQ(staves[3].clef, StaffClef::Percussion);
    EXPECT_THAT(stavesOf({}), IsEmpty());
}
