// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/OpenedScore.h"

#include "WorkspaceFixture.h"
#include "composition/RecoveryFile.h"

using namespace velmora;

namespace {
class OpenedScoreTest : public WorkspaceFixture {
protected:
    /// The text of a score with a note at that position of each channel.
    static std::string textOf(std::initializer_list<int> channels, int position = 1) {
        Score made(position + 1);
        for (const int channel : channels) {
            made.NoteCell.set(channel, position, 60);
            made.Reverb_Change.set(channel, position + 1, 33);
        }
        return serializePoliFile(made, {});
    }
    OpenedLength take(const std::string& text) {
        return takeScore(text, SngReader::OpenPoliFile, workspace());
    }
    std::array<int, 3> marks() { return {score().TopChannel, score().TopMelodyHint, score().TopDrumHint}; }
};
} // namespace

TEST_F(OpenedScoreTest, AnOpenedScoreSoundsOnAllItsChannels) {
    beCareful();
    struct Row {
        std::initializer_list<int> channels;
        std::array<int, 3> marks;
    };
    const Row rows[]{{{0}, {1, 0, 0}},   {{0, 3, 7}, {7, 7, 0}},   {{2, 8}, {8, 2, 1}},
                     {{10}, {10, 0, 2}}, {{0, 11}, {11, 0, 3}},    {{6, 8, 12}, {12, 6, 4}},
                     {{}, {1, 0, 0}},    {{1, 2, 3, 4}, {4, 4, 0}}};
    for (const Row& row : rows) {
        take(textOf(row.channels));
        EXPECT_EQ(marks(), row.marks);
        take(textOf(row.channels, 0));
        EXPECT_EQ(marks(), row.marks) << "a single note in position 0 sounds, too";
    }
}

TEST_F(OpenedScoreTest, TheActiveChannelGoesOnSounding) {
    beCareful();
    workspace().selectChannel(5);
    take(textOf({0, 1}));
    EXPECT_EQ(marks(), (std::array{5, 1, 0}));
    workspace().selectChannel(12);
    take(textOf({0, 1}));
    EXPECT_EQ(marks(), (std::array{12, 1, 0}));
}

TEST_F(OpenedScoreTest, InClassicMannersReadingTouchesNoMark) {
    take(textOf({0, 3, 12}));
    EXPECT_EQ(marks(), (std::array{1, 0, 0}));
}

TEST_F(OpenedScoreTest, ARecoveredScoreSoundsOnAllItsChannelsToo) {
    for (const bool careful : {false, true}) {
        workspace().setManners(Manners::of(!careful));
        workspace().clear();
        restore({{}, textOf({0, 6, 8}), "a.sng"}, workspace());
        EXPECT_EQ(score().TopChannel, careful ? 8 : 1);
    }
}

TEST_F(OpenedScoreTest, TheScoreGrowsToHoldAFileWithTheEffectsOfItsLastNote) {
    beCareful();
    const auto length = take(textOf({3}, 2399));
    EXPECT_EQ(length.longest, 2400U);
    EXPECT_TRUE(length.grown);
    EXPECT_TRUE(length.whole);
    EXPECT_EQ(score().NumNotes, 2400);
    EXPECT_EQ(score().SongEnd, 2400);
    EXPECT_EQ(score().Reverb_Change.valueOr(3, 2400, -1), 33);
    EXPECT_EQ(score().Volume.valueOr(5, 2400, -1), kClearedVolume);
    const auto again = take(textOf({3}, 999));
    EXPECT_FALSE(again.grown);
    EXPECT_EQ(score().NumNotes, 2400) << "it never gets shorter, so that what was copied stays whole";
    EXPECT_EQ(settings.GetSetting("Settings", "NumNotes", "none"), "none")
        << "the next start has its usual length";
}

TEST_F(OpenedScoreTest, AFileThatFitsGrowsNothing) {
    beCareful();
    EXPECT_FALSE(take(textOf({0}, 999)).grown);
    EXPECT_EQ(score().NumNotes, 1000);
}

TEST_F(OpenedScoreTest, NoScoreGrowsBeyondTheMost) {
    beCareful();
    const auto length = take(textOf({0}, kMostNotes + 5));
    EXPECT_EQ(score().NumNotes, kMostNotes);
    EXPECT_TRUE(length.grown);
    EXPECT_FALSE(length.whole);
    EXPECT_EQ(length.longest, static_cast<std::size_t>(kMostNotes) + 6);
}

TEST_F(OpenedScoreTest, InClassicMannersTheExcessIsDropped) {
    const auto length = take(textOf({0, 1}, 2399));
    EXPECT_FALSE(length.grown);
    EXPECT_FALSE(length.whole);
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(score().SongEnd, 0);
}
