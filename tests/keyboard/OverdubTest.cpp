// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Overdub.h"

#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "score/PlaybackEngine.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingPort.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

using namespace velmora;
using testing::ElementsAre;

namespace {
/// A clock that jumps, on which a hand plays at moments of its own.
struct HandLoop : VirtualLoop {
    std::multimap<double, std::function<void()>> hand;
    void serveUntil(double moment) override {
        while (!hand.empty() && hand.begin()->first <= moment) {
            const auto next = hand.extract(hand.begin());
            VirtualLoop::serveUntil(next.key());
            next.mapped()();
        }
        VirtualLoop::serveUntil(moment);
    }
};

struct OverdubTest : WorkspaceFixture, testing::WithParamInterface<bool> {
    HandLoop loop;
    RecordingPort port{loop};
    std::unique_ptr<Player> player;
    std::unique_ptr<Overdub> overdub;
    double step = 0; ///< seconds

    OverdubTest() {
        if (GetParam())
            beCareful();
    }
    /// A tune of the channel from position 0 on, of so many notes of two positions.
    void begin(int notes = 20, int channel = 0) {
        player = std::make_unique<Player>(workspace(), port, loop);
        overdub = std::make_unique<Overdub>(workspace(), *player, loop);
        putNotes(score(), channel, 60, notes);
        score().TopChannel = 7;
        step = PlaybackEngine::songStep(score().Tempo);
        overdub->setOn(true);
        workspace().beginHistory();
    }
    /// The moment at which a position begins to sound, and so much later; the first comes a step after the
    /// start.
    double at(double position) const { return (position + 1) * step; }

    /// Plays a note from one place to another, in positions.
    void plays(int note, double from, double to, int program = 40, int velocity = 90) {
        loop.hand.emplace(at(from), [=, this] { overdub->struck(0, note, velocity, program, loop.now()); });
        loop.hand.emplace(at(to), [=, this] { overdub->ended(0, note, loop.now()); });
    }
    void playSong() { player->PlayAndStop_Click(false); }

    std::vector<int> cells(int channel, int first, int count) {
        std::vector<int> cells;
        for (int position = first; position < first + count; ++position)
            cells.push_back(score().NoteCell.valueOr(channel, position, 9999));
        return cells;
    }
    int instrument(int channel, int position) {
        return score().NoteInstrument.valueOr(channel, position, -9);
    }
};
INSTANTIATE_TEST_SUITE_P(BothManners, OverdubTest, testing::Bool(),
                         [](const auto& manners) { return manners.param ? "Careful" : "Classic"; });
} // namespace

TEST_P(OverdubTest, ANoteIsWrittenWhereThePlayLineStood) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, 5, 8);
    playSong();
    EXPECT_THAT(cells(0, 4, 6), ElementsAre(-1, 60, 1060, 1060, -1, -1));
    EXPECT_EQ(instrument(0, 5), 40);
    EXPECT_EQ(instrument(0, 7), 40);
    EXPECT_EQ(cells(1, 0, 2), (std::vector{60, 1060}));
    EXPECT_TRUE(score().ChannelInUse[0]);
}

TEST_P(OverdubTest, OnsetAndEndGoToTheNearestPosition) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, 4.6, 7.4);   // to 5 and 7
    plays(67, 10.4, 10.6); // a position at least
    plays(67, 13.4, 15.6);
    playSong();
    EXPECT_THAT(cells(0, 4, 4), ElementsAre(-1, 60, 1060, -1));
    EXPECT_THAT(cells(0, 9, 3), ElementsAre(-1, 60, -1));
    EXPECT_THAT(cells(0, 12, 5), ElementsAre(-1, 60, 1060, 1060, -1));
}

TEST_P(OverdubTest, ANoteALittleBeforeTheFirstPositionIsOfIt) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, -0.4, 1);
    playSong();
    EXPECT_THAT(cells(0, 0, 2), ElementsAre(60, -1));
}

TEST_P(OverdubTest, WhatIsPlayedBeforeOrWithoutPlayingIsNotWritten) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, -0.9, -0.7);
    playSong();
    EXPECT_EQ(cells(0, 0, 2), (std::vector{-1, -1}));
    overdub->struck(0, 67, 90, 0, loop.now());
    loop.block(3);
    overdub->ended(0, 67, loop.now());
    loop.block(3);
    playSong();
    EXPECT_EQ(score().lastFilledPosition(0, score().NumNotes), -1);
}

TEST_P(OverdubTest, OnlyWhatIsOverlappedMakesRoom) {
    begin(10);
    for (int position = 20; position < 30; ++position) { // one long note
        score().NoteCell.set(0, position, position == 20 ? 61 : 1061);
        score().NoteInstrument.set(0, position, 7);
    }
    plays(72, 3, 4.5);
    plays(73, 23, 25);
    playSong();
    // From the middle of one note to that of the next, the rest of which is a note of its own.
    EXPECT_THAT(cells(0, 2, 6), ElementsAre(60, 55, 1055, 60, 60, 1060));
    EXPECT_THAT(cells(0, 20, 10), ElementsAre(61, 1061, 1061, 54, 1054, 61, 1061, 1061, 1061, 1061));
    EXPECT_EQ(instrument(0, 24), 40);
    EXPECT_EQ(instrument(0, 25), 7);
}

TEST_P(OverdubTest, APassIsOneStepOfUndo) {
    begin();
    const ChannelGrid before = score().NoteCell;
    plays(67, 5, 8);
    plays(69, 9, 11);
    playSong();
    const ChannelGrid once = score().NoteCell;
    EXPECT_NE(once, before);
    EXPECT_EQ(workspace().undoStep(), "Overdub");
    EXPECT_TRUE(overdub->undoPass());
    EXPECT_EQ(score().NoteCell, before);
    EXPECT_FALSE(overdub->undoPass());
}

TEST_P(OverdubTest, OnlyThePassIsTakenBackAndNothingElse) {
    begin();
    plays(67, 5, 8);
    playSong();
    {
        const Edit edit(workspace(), Change::Cells);
        workspace().keepForUndo("Something else");
        score().NoteCell.set(3, 3, 33);
    }
    EXPECT_FALSE(overdub->undoPass());
    EXPECT_EQ(score().NoteCell.at(3, 3), 33);
}

TEST_P(OverdubTest, APassWithoutNotesIsNoStep) {
    begin();
    playSong();
    EXPECT_EQ(workspace().undoStep(), "");
}

TEST_P(OverdubTest, WhatStillSoundsAtTheEndEndsThere) {
    begin(20, 1);
    score().ActiveChannel = 0;
    loop.hand.emplace(at(3), [&] { overdub->struck(0, 67, 90, 0, loop.now()); });
    loop.hand.emplace(at(6), [&] { player->PlayAndStop_Click(true); });
    playSong();
    EXPECT_THAT(cells(0, 2, 6), ElementsAre(-1, 60, 1060, 1060, -1, -1));
}

TEST_P(OverdubTest, APauseEndsAPassToo) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, 3, 5);
    loop.hand.emplace(at(7.5), [&] { player->pause(); });
    playSong();
    EXPECT_THAT(cells(0, 2, 4), ElementsAre(-1, 60, 1060, -1));
    EXPECT_EQ(workspace().undoStep(), "Overdub");
}

TEST_P(OverdubTest, EachRoundOfALoopIsAPass) {
    begin(5, 1); // ten positions; one more for the end
    score().ActiveChannel = 0;
    player->setLoop(true);
    int rounds = 0;
    struct Watch : PlaybackView {
        std::function<void(int, double)> sounds;
        void positionSounds(int position, double moment) override { sounds(position, moment); }
    } watch;
    std::vector<std::vector<int>> heard;
    watch.sounds = [&](int position, double moment) {
        if (position == 0) {
            ++rounds;
            heard.push_back(cells(0, 0, 10));
            // Held over the end in the first round, a little early for the second.
            const int note = 60 + rounds;
            loop.hand.emplace(moment + 8 * step,
                              [this, note] { overdub->struck(0, note, 90, 0, loop.now()); });
            loop.hand.emplace(moment + 60 * step, [this, note] { overdub->ended(0, note, loop.now()); });
        }
        if (rounds == 3 && position == 4)
            player->PlayAndStop_Click(true);
    };
    const auto stay = player->show(watch);
    playSong();
    ASSERT_EQ(heard.size(), 3U);
    EXPECT_EQ(heard[0], std::vector<int>(10, -1));
    EXPECT_EQ(heard[1][8], RowToNote(61));
    EXPECT_EQ(heard[2][8], RowToNote(62));
    EXPECT_EQ(heard[2][9], 1000 + RowToNote(62));
    EXPECT_EQ(heard[2][0], -1);
    if (!GetParam())
        return; // one step of undo
    EXPECT_TRUE(overdub->undoPass());
    EXPECT_EQ(score().NoteCell.at(0, 8), RowToNote(61));
    EXPECT_TRUE(overdub->undoPass());
    EXPECT_EQ(score().NoteCell.at(0, 8), -1);
}

TEST_P(OverdubTest, WhatSoundsTogetherGoesToFreeChannels) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(60, 5, 8);
    plays(64, 5, 8);
    plays(67, 5, 8);
    playSong();
    EXPECT_EQ(cells(0, 5, 3), (std::vector{60, 1060, 1060})); // the topmost
    EXPECT_EQ(cells(1, 4, 3), (std::vector{60, 1060, 60}));   // as it was
    EXPECT_EQ(cells(2, 5, 3), (std::vector{63, 1063, 1063}));
    EXPECT_EQ(cells(3, 5, 3), (std::vector{67, 1067, 1067}));
    EXPECT_TRUE(score().ChannelInUse[3]);
    EXPECT_GE(score().TopChannel, 3);
}

TEST_P(OverdubTest, AKeyLetGoOfALittleLateIsNoChord) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(60, 5, 8.3); // one position into the next
    plays(62, 7.2, 9);
    playSong();
    EXPECT_EQ(cells(0, 5, 5), (std::vector{67, 1067, 65, 1065, -1}));
    EXPECT_EQ(score().lastFilledPosition(2, score().NumNotes), -1);
}

TEST_P(OverdubTest, WithoutAFreeChannelANoteEndsWhereTheNextBegins) {
    begin(20, 1);
    for (int channel = 2; channel < kMelodyChannels; ++channel)
        putNotes(score(), channel, 50, 20);
    score().ActiveChannel = 0;
    plays(60, 5, 12);
    plays(62, 8, 10);
    plays(64, 14, 15);
    plays(60, 14, 15);
    playSong();
    EXPECT_EQ(cells(0, 5, 6), (std::vector{67, 1067, 1067, 65, 1065, -1}));
    EXPECT_EQ(cells(0, 14, 1), (std::vector{63}));
    EXPECT_EQ(cells(3, 4, 4), (std::vector{50, 1050, 50, 1050}));
}

TEST_P(OverdubTest, PercussionIsLeftAlone) {
    begin(20, 1);
    score().ActiveChannel = 8;
    plays(60, 5, 7);
    playSong();
    EXPECT_EQ(cells(0, 5, 2), (std::vector{67, 1067}));
    EXPECT_EQ(score().lastFilledPosition(8, score().NumNotes), -1);
}

TEST_P(OverdubTest, NotesThatOutlastTheScoreMakeItLongerInCarefulManners) {
    store("NumNotes", "40");
    begin(20, 1);
    score().resizeNotes(40);
    score().ActiveChannel = 0;
    plays(60, 39, 39.9);
    plays(62, 40.2, 40.3);
    loop.hand.emplace(at(40.9), [&] { overdub->struck(0, 64, 90, 0, loop.now()); });
    playSong();
    EXPECT_EQ(score().NoteCell.at(0, 39), 67);
    if (GetParam())
        EXPECT_GT(score().NumNotes, 40);
    else
        EXPECT_EQ(score().NumNotes, 40);
}

TEST_P(OverdubTest, SwitchedOffItWritesWhatItHasAndThenNothing) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, 3, 5);
    loop.hand.emplace(at(7), [&] {
        overdub->setOn(false);
        EXPECT_EQ(score().NoteCell.at(0, 3), 60);
    });
    plays(69, 10, 12);
    playSong();
    EXPECT_EQ(score().lastFilledPosition(0, score().NumNotes), 4);
    EXPECT_FALSE(overdub->isOn());
}

TEST_P(OverdubTest, TheVelocityIsHeardAtTheNextPlay) {
    begin(20, 1);
    score().ActiveChannel = 0;
    plays(67, 5, 8, 40, 33);
    playSong();
    port.sent.clear();
    overdub->setOn(false);
    playSong();
    EXPECT_THAT(port.words(), testing::Contains(0x90U | 67U << 8U | 33U << 16U));
}

TEST_P(OverdubTest, ThePedalHoldsANote) {
    begin(20, 1);
    score().ActiveChannel = 0;
    loop.hand.emplace(at(4.5), [&] { overdub->pedal(0, true, loop.now()); });
    plays(67, 5, 6);
    loop.hand.emplace(at(9), [&] { overdub->pedal(0, false, loop.now()); });
    plays(69, 11, 20);
    loop.hand.emplace(at(13), [&] { overdub->silenced(loop.now()); });
    playSong();
    EXPECT_EQ(cells(0, 4, 6), (std::vector{-1, 60, 1060, 1060, 1060, -1}));
    EXPECT_EQ(cells(0, 11, 3), (std::vector{58, 1058, -1}));
}
