// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Performance.h"

#include "WorkspaceFixture.h"
#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "sound/ShortMessage.h"
#include "tests/score/RandomScore.h"
#include "tests/support/RecordingPort.h"

#include <random>

using namespace velmora;

namespace {

struct PerformanceTest : WorkspaceFixture {
    /// What a player of the workspace itself sends, which changes it.
    std::vector<RecordingPort::Sent> played() {
        VirtualLoop loop;
        RecordingPort port(loop);
        Player(workspace(), port, loop).PlayAndStop_Click(false);
        return port.sent;
    }
    void expectPlayed(const Performance& got, const std::vector<RecordingPort::Sent>& wanted) {
        ASSERT_EQ(got.messages.size(), wanted.size());
        ASSERT_EQ(got.origins.size(), wanted.size());
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const TimedMessage& one = got.messages[i];
            EXPECT_EQ(one.reset ? RecordingPort::kReset : one.word, wanted[i].word) << i;
            EXPECT_EQ(one.seconds, wanted[i].moment) << i;
        }
    }
};

} // namespace

TEST_F(PerformanceTest, ItHasTheMessagesAndMomentsOfPlaying) {
    std::minstd_rand random(7);
    for (int i = 0; i < 20; ++i) {
        score() = test::randomScore(random, 60);
        score().TopChannel = kUsedChannels - 1;
        score().Tempo = static_cast<std::int16_t>(2 + test::below(random, 1379));
        for (int channel = 0; channel < kMelodyChannels; ++channel)
            workspace().setup.Chkstrum[channel] = test::below(random, 2) == 0;
        workspace().manners = Manners::of(i % 2 == 0);
        const Performance performance = perform(workspace());
        ASSERT_FALSE(performance.messages.empty());
        EXPECT_TRUE(performance.messages.back().reset);
        EXPECT_EQ(performance.messages.back().seconds, performance.seconds);
        expectPlayed(performance, played());
    }
}

TEST_F(PerformanceTest, NothingOfWhatIsPerformedChanges) {
    std::minstd_rand random(8);
    score() = test::randomScore(random, 60);
    score().TopChannel = 12;
    score().SongEnd = 3;
    score().PlayedCell[2] = 44;
    workspace().view.PlayMark = 17;
    workspace().play.PausePending = true;
    workspace().play.LoopOn = true;
    const Score before = score();
    const ChordSteps chords = workspace().chords;
    const Performance performance = perform(std::as_const(workspace()));
    EXPECT_GT(performance.messages.size(), 100U);
    test::expectSameScore(score(), before);
    EXPECT_EQ(score().ChannelVelocity, before.ChannelVelocity);
    EXPECT_EQ(score().ChannelIsDrum, before.ChannelIsDrum);
    EXPECT_EQ(score().ChannelDrumKey, before.ChannelDrumKey);
    EXPECT_EQ(score().PlayedCell, before.PlayedCell);
    EXPECT_EQ(score().PlayedInstrument, before.PlayedInstrument);
    EXPECT_EQ(workspace().chords, chords);
    EXPECT_EQ(workspace().view.PlayMark, 17);
    EXPECT_TRUE(workspace().play.PausePending);
    EXPECT_EQ(workspace().play.PlayPosition, 0);
    EXPECT_EQ(performance.origins.front().position, 0) << "neither the mark nor the loop counts";
}

TEST_F(PerformanceTest, EachMessageKnowsItsPositionAndChannel) {
    putNotes(score(), 1, 60, 1, 3);
    putNotes(score(), 10, 60, 2, 2);
    score().NoteInstrument.fillRow(10, 130);
    score().TopChannel = 12;
    const Performance performance = perform(workspace());
    std::vector<std::array<int, 3>> notes; // position, channel, channel of the message
    for (std::size_t i = 0; i < performance.messages.size(); ++i) {
        const auto& [position, channel] = performance.origins[i];
        const TimedMessage& one = performance.messages[i];
        if (one.reset || shortmessage::status(one.word) < 0xB0)
            notes.push_back({position, channel, one.reset ? -1 : shortmessage::channel(one.word)});
    }
    using Notes = std::vector<std::array<int, 3>>;
    EXPECT_EQ(notes,
              (Notes{{0, 1, 1}, {0, 10, 9}, {2, 10, 9}, {2, 10, 9}, {3, 1, 1}, {4, 10, 9}, {5, -1, -1}}));
}

TEST_F(PerformanceTest, ASegmentHasItsOwnPositionsAndPace) {
    putNotes(score(), 0, 60, 20, 1);
    const Workspace& work = workspace();
    const PerformedScore performed{work.score, work.setup, work.chords, work.manners};
    const Performance performance = perform(performed, PerformedSegment{5, 7});
    ASSERT_FALSE(performance.messages.empty());
    EXPECT_EQ(performance.origins.front().position, 5);
    EXPECT_NEAR(performance.messages.front().seconds, 0.12, 1e-6);
    EXPECT_NEAR(performance.step, 0.12, 1e-6);
    EXPECT_NEAR(performance.seconds, 4 * 0.12, 1e-6)
        << "three positions after a step, and the last one's time";
    EXPECT_TRUE(perform(performed, PerformedSegment{0, 0}).messages.empty());
}

TEST_F(PerformanceTest, WhereNothingIsPlayedItIsEmpty) {
    putNotes(score(), 0, 60, 20, 1);
    score().Tempo = 1;
    const Performance performance = perform(workspace());
    EXPECT_TRUE(performance.messages.empty());
    EXPECT_EQ(performance.seconds, 0);
}
