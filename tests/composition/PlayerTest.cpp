// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Player.h"

#include "WorkspaceFixture.h"
#include "base/VirtualLoop.h"
#include "score/PlaybackView.h"
#include "score/RecordingProgress.h"
#include "sound/ShortMessage.h"
#include "tests/support/RecordingPort.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint32_t kReset = RecordingPort::kReset;

/// A clock that jumps. A hand comes in between at each wait, and where what is pending is served.
struct HandLoop : VirtualLoop {
    std::function<void(int wait)> onWait = [](int) {};
    std::function<void()> onServe = [] {};
    int waits = 0;

    void serveUntil(double moment) override {
        VirtualLoop::serveUntil(moment);
        onWait(++waits);
    }
    void YieldIfInput() override { onServe(); }
};

struct Screen : PlaybackView {
    void DisableControls() override { enabled = false; }
    void EnableControls() override { enabled = true; }
    void DrawNoteArray() override { ++calls; }
    void PutColumn() override { line.reset(); }
    void drawPlayLine(int column) override {
        ++calls;
        line = column;
        lines.push_back(column);
        onLine();
    }
    std::function<void()> onLine = [] {};
    bool enabled = true;
    int calls = 0;
    std::optional<int> line;
    std::vector<int> lines;
};

struct Recorder : RecordingProgress {
    [[nodiscard]] bool showing() const override { return open; }
    void showProgress(double ratio) override { ratios.push_back(ratio); }
    void clearProgress() override { ++clears; }
    void stopRecording() override { ++stops; }
    bool open = true;
    std::vector<double> ratios;
    int clears = 0;
    int stops = 0;
};

class PlayerTest : public WorkspaceFixture {
protected:
    Player& player() {
        if (!player_)
            player_ = std::make_unique<Player>(workspace(), port, loop);
        return *player_;
    }
    PlayState& state() { return workspace().play; }

    /// What comes in at the given wait, and at no other.
    void atWait(int wait, std::function<void()> hand) {
        loop.onWait = [wait, hand = std::move(hand)](int now) {
            if (now == wait)
                hand();
        };
    }
    std::vector<std::uint32_t> notesSent() const {
        std::vector<std::uint32_t> words;
        for (const auto& one : port.notes())
            words.push_back(one.word);
        return words;
    }
    std::vector<std::uint32_t> play() {
        port.sent.clear();
        loop.waits = 0;
        player().PlayAndStop_Click(false);
        return notesSent();
    }
    static std::uint32_t on(int ch, int row) { return shortmessage::noteOn(ch, 127 - row, kClearedVolume); }
    static std::uint32_t off(int ch, int row) { return shortmessage::noteOff(ch, 127 - row); }

    HandLoop loop;
    RecordingPort port{loop};

private:
    std::unique_ptr<Player> player_;
};

} // namespace

TEST_F(PlayerTest, WithNobodyWatchingEverythingPlays) {
    putNotes(score(), 0, 60, 1, 3);
    state().RecordAtEnd = true;
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_FALSE(state().Playing);
    EXPECT_FALSE(state().RecordAtEnd);
}

TEST_F(PlayerTest, ItPlaysRecordsThatBelongToNoWorkspace) {
    Score score{20};
    SetupState setup;
    ViewState view;
    PlayState own;
    ChordSteps chords;
    const Manners manners;
    putNotes(score, 0, 60, 1, 2);
    Player player({score, setup, view, own, chords, manners}, port, loop);
    player.PlayAndStop_Click(false);
    EXPECT_THAT(notesSent(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_EQ(own.PlayPosition, 3);
    EXPECT_EQ(state().PlayPosition, 0);
}

TEST_F(PlayerTest, AllViewsSeeTheSamePlay) {
    putNotes(score(), 0, 60, 1, 3);
    Screen one;
    Screen other;
    const auto oneShown = player().show(one);
    const auto otherShown = player().show(other);
    atWait(2, [&] {
        EXPECT_FALSE(one.enabled);
        EXPECT_FALSE(other.enabled);
    });
    play();
    EXPECT_THAT(one.lines, ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(other.lines, one.lines);
    EXPECT_TRUE(one.enabled);
    EXPECT_TRUE(other.enabled);
    EXPECT_EQ(one.line, std::nullopt);
}

TEST_F(PlayerTest, AViewThatLeavesInTheMiddleOfAPlayIsNotCalledAgain) {
    putNotes(score(), 0, 60, 1, 6);
    Screen stays;
    const auto shown = player().show(stays);
    auto leaving = std::make_unique<Screen>();
    auto itsStay = player().show(*leaving);
    atWait(3, [&] {
        EXPECT_THAT(leaving->lines, ElementsAre(0, 1));
        itsStay.leave();
        leaving.reset(); // a call would be one too many
    });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_EQ(stays.lines.size(), 7U);
}

TEST_F(PlayerTest, AViewMayLeaveWhileItIsCalledAndTakeOthersWithIt) {
    putNotes(score(), 0, 60, 1, 6);
    Screen first;
    Screen second;
    auto firstStay = player().show(first);
    auto secondStay = player().show(second);
    first.onLine = [&] {
        firstStay.leave();
        secondStay.leave();
    };
    play();
    EXPECT_THAT(first.lines, ElementsAre(0));
    EXPECT_THAT(second.lines, IsEmpty());
    const int calls = first.calls + second.calls;
    play();
    EXPECT_EQ(first.calls + second.calls, calls);
}

TEST_F(PlayerTest, AViewThatComesInTheMiddleSeesTheRest) {
    putNotes(score(), 0, 60, 1, 6);
    Screen late;
    Guests<PlaybackView>::Stay shown;
    atWait(4, [&] { shown = player().show(late); });
    play();
    EXPECT_THAT(late.lines, ElementsAre(3, 4, 5, 6));
    EXPECT_EQ(late.line, std::nullopt);
}

TEST_F(PlayerTest, ARecorderThatComesInTheMiddleCountsFromThere) {
    putNotes(score(), 0, 60, 1, 4);
    Recorder recorder;
    Guests<RecordingProgress>::Stay joined;
    atWait(3, [&] {
        joined = player().join(recorder);
        state().RecordAtEnd = true;
    });
    play();
    EXPECT_THAT(recorder.ratios, ElementsAre(0.25, 0.5, 0.75));
    EXPECT_EQ(recorder.clears, 1);
    EXPECT_EQ(recorder.stops, 1);
}

TEST_F(PlayerTest, ARecorderThatHasLeftIsNotStoppedAndTheNextOneIsNotEither) {
    putNotes(score(), 0, 60, 1, 4);
    Recorder recorder;
    auto joined = player().join(recorder);
    state().RecordAtEnd = true;
    atWait(3, [&] { joined.leave(); });
    play();
    EXPECT_EQ(recorder.ratios.size(), 2U);
    EXPECT_EQ(recorder.stops, 0);
    const auto again = player().join(recorder);
    play();
    EXPECT_EQ(recorder.stops, 0) << "that recording ended with its song";
}

TEST_F(PlayerTest, OfTwoRecordersOnlyTheOneThatShowsProgressIsToldOfIt) {
    putNotes(score(), 0, 60, 1, 4);
    Recorder hidden;
    Recorder shown;
    hidden.open = false;
    const auto one = player().join(hidden);
    const auto other = player().join(shown);
    state().RecordAtEnd = true;
    play();
    EXPECT_THAT(hidden.ratios, IsEmpty());
    EXPECT_EQ(shown.ratios.size(), 5U);
    EXPECT_EQ(hidden.clears, 0);
    EXPECT_EQ(hidden.stops, 1);
    EXPECT_EQ(shown.stops, 1);
}

TEST_F(PlayerTest, PauseKeepsThePlaceAndSetLoopComesRound) {
    putNotes(score(), 0, 60, 4, 1);
    atWait(3, [&] { player().pause(); });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), on(0, 60), kReset));
    EXPECT_EQ(workspace().view.PlayMark, 2);
    player().setLoop(true);
    atWait(12, [&] { player().PlayAndStop_Click(true); });
    play(); // two positions and the end, then rounds of five
    EXPECT_EQ(loop.waits, 13);
    player().setLoop(false);
    loop.onWait = [](int) {};
    play();
    EXPECT_EQ(loop.waits, 6);
}

TEST_F(PlayerTest, ASegmentPlaysOnlyWhileNothingElseDoes) {
    putNotes(score(), 0, 60, 20, 1);
    workspace().view.PlayMark = 5;
    state().SegmentEnd = 7;
    player().playSegment();
    EXPECT_EQ(loop.waits, 4) << "positions 5 to 7 and the last one's time";
    state().SegmentEnd = 7;
    atWait(3, [&] { player().playSegment(); });
    play();
    EXPECT_EQ(loop.waits, 22) << "the whole song";
    EXPECT_FALSE(state().Playing);
}

TEST_F(PlayerTest, ANewerPlayDisplacesOneThatStillEnds) {
    putNotes(score(), 0, 60, 1, 10);
    Screen screen;
    const auto shown = player().show(screen);
    loop.onWait = [&](int wait) {
        if (wait == 3)
            player().PlayAndStop_Click(true);
        if (wait == 4)
            player().PlayAndStop_Click(false);
    };
    EXPECT_THAT(play(), ElementsAre(on(0, 60), kReset, on(0, 60), off(0, 60), kReset, kReset));
    EXPECT_EQ(screen.line, std::nullopt);
    EXPECT_TRUE(screen.enabled);
}

TEST_F(PlayerTest, ADisplacedPlayCountsNoStepForTheNextRecording) {
    putNotes(score(), 0, 60, 1, 4);
    Recorder recorder;
    const auto joined = player().join(recorder);
    bool displaced = false;
    loop.onServe = [&] {
        if (state().PlayPosition != 2 || std::exchange(displaced, true))
            return;
        player().PlayAndStop_Click(true);
        player().PlayAndStop_Click(false);
    };
    play();
    EXPECT_TRUE(displaced);
    EXPECT_EQ(state().PlayStepCount, 0);
}

TEST_F(PlayerTest, SilenceEndsAllSoundAndPlayingGoesOn) {
    putNotes(score(), 0, 60, 3, 1);
    atWait(2, [&] { player().silence(); });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), kReset, off(0, 60), on(0, 60), off(0, 60), on(0, 60),
                                    off(0, 60), kReset));
}

TEST_F(PlayerTest, WhatSoundsOnAChannelThatIsMutedEndsAtOnce) {
    putNotes(score(), 0, 60, 1, 10);
    putNotes(score(), 1, 50, 1, 10);
    workspace().selectChannel(1);
    atWait(4, [&] {
        workspace().toggleMuted(1);
        const std::size_t before = port.sent.size();
        player().silenceMuted(1);
        ASSERT_EQ(port.sent.size(), before + 1);
        EXPECT_EQ(port.sent.back().word, off(1, 50));
        player().silenceMuted(1);
        EXPECT_EQ(port.sent.size(), before + 1) << "it sounds no longer";
    });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), on(1, 50), off(1, 50), off(0, 60), kReset));
}

TEST_F(PlayerTest, SilenceMutedLeavesAloneWhatIsNotMutedOrNotPlayed) {
    putNotes(score(), 0, 60, 1, 10);
    atWait(4, [&] { player().silenceMuted(0); });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    port.sent.clear();
    score().PlayedCell[0] = 60;
    score().ChannelMuted[0] = true;
    player().silenceMuted(0);
    EXPECT_THAT(port.sent, IsEmpty());
}

TEST_F(PlayerTest, WorkThatTakesATurnEndsWhatPlays) {
    putNotes(score(), 0, 60, 1, 10);
    Screen screen;
    Recorder recorder;
    const auto shown = player().show(screen);
    const auto joined = player().join(recorder);
    state().RecordAtEnd = true;
    atWait(3, [&] {
        const Turn take = player().takeTurn();
        EXPECT_THAT(notesSent(), ElementsAre(on(0, 60), kReset)) << "before the work makes any sound";
        EXPECT_FALSE(state().Playing);
        EXPECT_TRUE(screen.enabled);
        EXPECT_EQ(screen.line, std::nullopt);
        EXPECT_EQ(recorder.clears, 1);
        EXPECT_EQ(recorder.stops, 1);
        loop.serveUntil(loop.now() + 60);
        EXPECT_FALSE(take.isOver());
    });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), kReset, kReset));
    EXPECT_EQ(loop.waits, 4) << "the displaced play waits no more";
    EXPECT_EQ(recorder.stops, 1);
    EXPECT_FALSE(state().RecordAtEnd);
}

TEST_F(PlayerTest, ANewerPlayEndsTheTurnOfWorkAndWhatThatLeftOn) {
    putNotes(score(), 0, 60, 1, 3);
    const Turn take = player().takeTurn();
    EXPECT_THAT(port.sent, IsEmpty()) << "nothing played";
    player().notes().Startnote(40, 2);
    EXPECT_FALSE(take.isOver());
    EXPECT_THAT(play(), ElementsAre(kReset, on(0, 60), off(0, 60), kReset));
    EXPECT_TRUE(take.isOver());
}

TEST_F(PlayerTest, NewerWorkEndsTheOlder) {
    const Turn old = player().takeTurn();
    const Turn newer = player().takeTurn();
    EXPECT_TRUE(old.isOver());
    EXPECT_FALSE(newer.isOver());
}

TEST_F(PlayerTest, WorkWithTurnsOfItsOwnNeitherEndsAPlayNorIsEndedByOne) {
    putNotes(score(), 0, 60, 1, 10);
    Turns pauses;
    const Turn before(pauses);
    atWait(3, [&] {
        const Turn pause(pauses);
        loop.VirtualLoop::serveUntil(loop.now() + 1);
        EXPECT_TRUE(before.isOver());
        EXPECT_FALSE(pause.isOver());
    });
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_EQ(loop.waits, 12);
}
