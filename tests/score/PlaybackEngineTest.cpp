// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/PlaybackEngine.h"

#include "base/VirtualLoop.h"
#include "score/Manners.h"
#include "score/NotePlayer.h"
#include "score/PlayState.h"
#include "score/PlaybackView.h"
#include "score/PlayedScore.h"
#include "score/RecordingProgress.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/SetupState.h"
#include "sound/ShortMessage.h"
#include "tests/support/RecordingPort.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <optional>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A clock that jumps and calls back at each wait, as a user's hand would come in between.
struct HandLoop : VirtualLoop {
    std::function<void(double)> onWait = [](double) {};
    void serveUntil(double moment) override {
        VirtualLoop::serveUntil(moment);
        onWait(moment);
    }
};

struct CountingView : PlaybackView {
    void DisableControls() override { log += "D"; }
    void EnableControls() override { log += "E"; }
    void DrawNoteArray() override { ++draws; }
    void DrawBeatArray() override { ++beats; }
    void drawBars() override { ++bars; }
    void followView() override { ++follows; }
    void showSongEnd() override { ++ends; }
    void GetColumn(int column) override { columns.push_back(column); }
    void PutColumn() override {
        ++puts;
        line.reset();
    }
    void drawPlayLine(int column) override { line = column; }
    void domodgraph() override { ++graphs; }
    std::string log;
    int draws = 0;
    int beats = 0;
    int bars = 0;
    int follows = 0;
    int ends = 0;
    int puts = 0;
    int graphs = 0;
    std::vector<int> columns;
    std::optional<int> line; ///< where the play line stands
};

struct Studio : RecordingProgress {
    [[nodiscard]] bool showing() const override { return open; }
    void showProgress(double ratio) override { ratios.push_back(ratio); }
    void clearProgress() override { ++clears; }
    void stopRecording() override { ++stops; }
    bool open = false;
    std::vector<double> ratios;
    int clears = 0;
    int stops = 0;
};

constexpr std::uint32_t kReset = RecordingPort::kReset;

struct PlaybackEngineTest : testing::Test {
    Score score{100};
    SetupState setup;
    ViewState view;
    PlayState state;
    ChordSteps chords;
    Manners manners = Manners::classic();
    HandLoop loop;
    RecordingPort port{loop};
    CountingView window;
    Studio studio;
    NotePlayer player{score, setup, state, chords, port, loop};
    Guests<PlaybackView> views;
    Guests<RecordingProgress> recorders;
    PlaybackEngine engine{{score, setup, view, state, chords, manners}, player, port, loop, views, recorders};
    Guests<PlaybackView>::Stay shown = views.join(window);
    Guests<RecordingProgress>::Stay recorded = recorders.join(studio);

    void note(int channel, int position, int row, int length = 1, int instrument = 0) {
        for (int p = position; p < position + length; ++p) {
            score.NoteCell.set(channel, p, static_cast<std::int16_t>(p == position ? row : 1000 + row));
            score.NoteInstrument.set(channel, p, static_cast<std::int16_t>(instrument));
        }
    }
    /// When each of thirty notes is heard, in careful manners, if the tenth step holds everything up.
    std::vector<double> thirtyNotesWithAStall(double seconds) {
        beCareful();
        for (int p = 0; p < 30; ++p)
            note(0, p, 60);
        int waits = 0;
        loop.onWait = [this, &waits, seconds](double) {
            if (++waits == 10)
                loop.block(seconds);
        };
        play();
        loop.onWait = nullptr;
        return moments(0);
    }
    std::vector<std::uint32_t> play() {
        port.sent.clear();
        engine.PlayAndStop_Click(false);
        std::vector<std::uint32_t> words;
        for (const auto& one : port.notes())
            words.push_back(one.word);
        return words;
    }
    void beCareful() { manners = Manners::careful(); }
    /// When the note-ons of a channel were sent.
    std::vector<double> moments(int ch) const {
        std::vector<double> list;
        for (const auto& one : port.sent)
            if (shortmessage::status(one.word) == 0x90 && shortmessage::channel(one.word) == ch)
                list.push_back(one.moment);
        return list;
    }
    static std::uint32_t on(int ch, int row, int velocity = 127) {
        return shortmessage::noteOn(ch, 127 - row, velocity);
    }
    static std::uint32_t off(int ch, int row) { return shortmessage::noteOff(ch, 127 - row); }
};

} // namespace

TEST_F(PlaybackEngineTest, AHeldNoteSoundsFromItsHeadToTheFirstCellThatIsNoContinuation) {
    note(0, 0, 60, 10);
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    const auto notes = port.notes();
    EXPECT_NEAR(notes[0].moment, 0.138, 1e-6);
    EXPECT_NEAR(notes[1].moment - notes[0].moment, 1.38, 1e-6);
    EXPECT_NEAR(notes[2].moment - notes[1].moment, 0.138, 1e-6); // the last position gets its time
}

TEST_F(PlaybackEngineTest, AnEmptyScorePlaysPosition0AndEnds) {
    EXPECT_THAT(play(), ElementsAre(kReset));
    EXPECT_EQ(state.PlayPosition, 1);
    EXPECT_NEAR(loop.now(), 2 * 0.138, 1e-6);
    EXPECT_FALSE(state.Playing);
    EXPECT_EQ(window.log, "DEE");
}

TEST_F(PlaybackEngineTest, TempiWhoseStepIsOutOfRangePlayNothing) {
    note(0, 0, 60, 10);
    for (const std::int16_t tempo : {1, 0, -5, 1381}) {
        score.Tempo = tempo;
        EXPECT_THAT(play(), IsEmpty()) << tempo;
        EXPECT_FALSE(state.Playing);
    }
    score.Tempo = 1380;
    EXPECT_FALSE(play().empty());
}

TEST_F(PlaybackEngineTest, TwoAdjacentHeadsOnOneRowAreStoppedThenStarted) {
    note(0, 0, 60);
    note(0, 1, 60);
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), on(0, 60), off(0, 60), kReset));
}

TEST_F(PlaybackEngineTest, AContinuationAfterAnEmptyCellStaysSilent) {
    score.NoteCell.set(0, 5, 1060);
    EXPECT_THAT(play(), ElementsAre(off(0, 60), kReset));
}

TEST_F(PlaybackEngineTest, AHeadOnRowZeroIsANoteForThePlayer) {
    note(0, 2, 0);
    EXPECT_THAT(play(), ElementsAre(on(0, 0), off(0, 0), kReset));
}

TEST_F(PlaybackEngineTest, AMutedChannelIsNeitherStartedNorStopped) {
    note(0, 0, 60, 3);
    note(1, 0, 50, 3);
    score.ChannelMuted[1] = true;
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_EQ(score.PlayedCell[1], -1);
}

TEST_F(PlaybackEngineTest, ChannelsAboveTopChannelAreSilent) {
    note(8, 0, 60, 3, 128);
    note(2, 0, 60, 3);
    EXPECT_THAT(play(), ElementsAre(kReset));
    score.TopChannel = 8;
    EXPECT_THAT(play(), ElementsAre(on(2, 60), 0x7F2399U, off(2, 60), 0x2389U, kReset));
}

TEST_F(PlaybackEngineTest, AnInstrumentChangeTakesEffectAtAHeadOnly) {
    note(0, 0, 60, 4, 24);
    score.NoteInstrument.set(0, 2, 40);
    note(0, 4, 61, 1, 24);
    note(0, 5, 61, 1, 41);
    play();
    std::vector<std::uint32_t> programs;
    for (const auto word : port.words())
        if (shortmessage::status(word) == 0xC0)
            programs.push_back(word);
    EXPECT_THAT(programs, ElementsAre(0x18C0U, 0x29C0U));
}

TEST_F(PlaybackEngineTest, TheVelocityOfAnInactiveChannelComesFromTheUnshiftedIndex) {
    note(1, 3, 60);
    score.Volume.set(1, 3, 30);
    score.Volume.set(1, 4, 40);
    EXPECT_THAT(play(), ElementsAre(on(1, 60, 30), off(1, 60), kReset));
    score.ActiveChannel = 1;
    EXPECT_THAT(play(), ElementsAre(on(1, 60, 40), off(1, 60), kReset));
}

TEST_F(PlaybackEngineTest, PlayAfterAPauseStartsAtThePositionThatWasNotYetPlayed) {
    for (int p = 0; p < 6; ++p)
        note(0, p, 60 + p);
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 3)
            state.PausePending = true;
    };
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), on(0, 61), kReset));
    EXPECT_EQ(view.PlayMark, 2);
    EXPECT_FALSE(state.Playing);
    EXPECT_TRUE(state.PausePending);
    const auto resumed = play();
    EXPECT_EQ(resumed.front(), on(0, 62));
    EXPECT_FALSE(state.PausePending);
    EXPECT_EQ(view.PlayMark, 0);
}

TEST_F(PlaybackEngineTest, PlayStartsFromTheBeginningWhereverTheMarkStands) {
    note(0, 0, 60);
    note(0, 4, 64);
    view.PlayMark = 4;
    EXPECT_EQ(play().front(), on(0, 60));
}

TEST_F(PlaybackEngineTest, StopEndsTheLoopWithinAStepAndInSilence) {
    note(0, 0, 60, 50);
    note(1, 1, 61, 50);
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 3)
            engine.PlayAndStop_Click(true);
    };
    EXPECT_THAT(play(), ElementsAre(on(0, 60), on(1, 61), off(0, 60), off(1, 61), kReset));
    EXPECT_EQ(state.PlayPosition, 3);
}

TEST_F(PlaybackEngineTest, APlayedSegmentIsFasterThanTheSameNotesInTheScore) {
    note(0, 0, 60, 30);
    note(0, 5, 61, 3);
    view.PlayMark = 5;
    view.SelectStart = 5;
    view.SelectEnd = 9;
    state.SegmentEnd = 9;
    engine.playSegment();
    const auto notes = port.notes();
    ASSERT_GE(notes.size(), 2U);
    EXPECT_EQ(notes[0].word, on(0, 61));
    EXPECT_NEAR(notes[0].moment, 0.12, 1e-6);
    EXPECT_NEAR(loop.now(), 6 * 0.12, 1e-6); // positions 5 to 9 and the last one's time
    EXPECT_EQ(view.SelectStart, 5);
    EXPECT_EQ(view.PlayMark, 5);
    EXPECT_EQ(state.SegmentEnd, 9);
    EXPECT_EQ(score.SongEnd, 30) << "a segment has an end of its own only while it plays";
    EXPECT_FALSE(state.PlayingSegment);
    EXPECT_EQ(window.graphs, 0);
}

TEST_F(PlaybackEngineTest, ASegmentEndsWhereItWasMarkedWhateverIsEditedMeanwhile) {
    note(0, 0, 60, 30);
    for (const bool lineShown : {true, false}) {
        state.ShowPlayLine = lineShown;
        view.PlayMark = 5;
        state.SegmentEnd = 9;
        int waits = 0;
        loop.onWait = [&](double) {
            ++waits;
            note(0, 30 + waits, 50);
            score.FindEndOfSong();
            state.SegmentEnd = 40; // another selection
        };
        engine.playSegment();
        EXPECT_EQ(waits, 6) << "positions 5 to 9 and the last one's time";
        EXPECT_EQ(score.SongEnd, 37) << "the edited song's";
    }
}

TEST_F(PlaybackEngineTest, ASegmentThatIsNotMarkedPlaysNothing) {
    note(0, 0, 60, 30);
    state.SegmentEnd = 0;
    engine.playSegment();
    state.SegmentEnd = 4;
    state.SegmentBase = 4;
    engine.playSegment();
    EXPECT_THAT(port.sent, IsEmpty());
    EXPECT_FALSE(state.Playing);
}

TEST_F(PlaybackEngineTest, ALoopWithTheLineShownStartsAfreshEachTime) {
    note(0, 0, 60, 2);
    state.LoopOn = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 8) // three positions a round
            state.Playing = false;
    };
    EXPECT_THAT(play(),
                ElementsAre(on(0, 60), off(0, 60), on(0, 60), off(0, 60), on(0, 60), off(0, 60), kReset));
}

TEST_F(PlaybackEngineTest, ALoopWithoutTheLineGoesOnInTheSameWalk) {
    note(0, 0, 60, 2);
    state.LoopOn = true;
    state.ShowPlayLine = false;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 8)
            state.Playing = false;
    };
    EXPECT_THAT(play(),
                ElementsAre(on(0, 60), off(0, 60), on(0, 60), off(0, 60), on(0, 60), off(0, 60), kReset));
    EXPECT_THAT(window.columns, IsEmpty());
}

TEST_F(PlaybackEngineTest, ALoopWhoseTempoCannotBePlayedAnyMoreEndsWithItsRound) {
    note(0, 0, 60, 2);
    state.LoopOn = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 2)
            score.Tempo = 1;
    };
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_FALSE(state.Playing);
    EXPECT_NEAR(loop.now(), 3 * 0.138, 1e-6) << "a position of that tempo lasts fourteen seconds";
}

TEST_F(PlaybackEngineTest, AWeekOfLoopingNeedsNoMoreStackThanOneRound) {
    note(0, 0, 60);
    state.LoopOn = true;
    score.Tempo = 1380;
    const double week = 7 * 24 * 3600.0;
    char here = 0;
    std::ptrdiff_t deepest = 0;
    loop.onWait = [&](double moment) {
        char there = 0;
        deepest = std::max(deepest, std::abs(&here - &there));
        port.sent.clear();
        window.columns.clear();
        // Stand in for the days between by jumping: a thousand rounds a day are walked.
        loop.VirtualLoop::serveUntil(moment + 60);
        if (moment > week)
            state.Playing = false;
    };
    play();
    EXPECT_GT(loop.now(), week);
    EXPECT_LT(deepest, 16 * 1024);
}

TEST_F(PlaybackEngineTest, AStopOrPauseInTheLastStepOfARoundIsNotLost) {
    note(0, 0, 60);
    note(0, 1, 61);
    state.LoopOn = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 3)
            state.Playing = false;
    };
    play();
    EXPECT_EQ(waits, 4);

    waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 6)
            state.PausePending = true;
    };
    play();
    EXPECT_TRUE(state.PausePending);
    EXPECT_FALSE(state.Playing);
}

TEST_F(PlaybackEngineTest, TheLineGoesColumnByColumnAndTheViewPages) {
    note(0, 0, 60, 25);
    view.ViewColumns = 9;
    view.ViewLastColumn = 9;
    play();
    ASSERT_EQ(window.columns.size(), 26U);
    EXPECT_EQ(window.columns[9], 9);
    EXPECT_EQ(window.columns[10], 0);
    EXPECT_EQ(window.columns[20], 0);
    EXPECT_EQ(view.ViewFirstColumn, 20);
    EXPECT_EQ(view.ViewLastColumn, 29);
    EXPECT_EQ(window.puts, 26); // every line is taken away
    EXPECT_EQ(window.graphs, 26);
}

TEST_F(PlaybackEngineTest, TheWindowFollowsTheViewWhenAPlayBeginsAndWhenItPages) {
    note(0, 0, 60, 5);
    play();
    EXPECT_EQ(window.follows, 1);
    EXPECT_EQ(window.beats, 0) << "nothing has moved";
    EXPECT_EQ(window.bars, 0);
    EXPECT_EQ(window.ends, 1);
    note(0, 5, 60, 20);
    view.ViewColumns = 9;
    view.ViewLastColumn = 9;
    window.follows = 0;
    play();
    EXPECT_EQ(window.follows, 3) << "positions 10 and 20 began a page";
    EXPECT_EQ(window.beats, 2);
    EXPECT_EQ(window.bars, 2);
    window.follows = 0;
    engine.RewindBut_Click();
    EXPECT_EQ(window.follows, 1);
    EXPECT_EQ(window.bars, 3);
}

TEST_F(PlaybackEngineTest, TheViewPagesNoFurtherThanTheLastColumn) {
    note(0, 0, 60, 101);
    view.ViewColumns = 9;
    view.ViewLastColumn = 9;
    play();
    ASSERT_EQ(window.columns.size(), 102U);
    EXPECT_EQ(window.columns[99], 9);
    EXPECT_EQ(window.columns[100], 0);
    EXPECT_EQ(window.columns[101], 2) << "past the last page, whose first column is the last but one";
    EXPECT_EQ(view.ViewFirstColumn, 99);
    EXPECT_EQ(view.ViewLastColumn, 99);
    EXPECT_EQ(window.puts, 102);
}

TEST_F(PlaybackEngineTest, ASegmentsMarkIsScrolledToAsFarAsTenBeforeTheEnd) {
    note(0, 0, 60, 90);
    view.ViewColumns = 9;
    view.ViewLastColumn = 9;
    view.PlayMark = 85;
    state.SegmentEnd = 87;
    engine.playSegment();
    EXPECT_EQ(view.ViewFirstColumn, 85);
    EXPECT_EQ(view.ViewLastColumn, 90);
    EXPECT_EQ(window.follows, 2) << "for the mark, and as every play begins";
    EXPECT_EQ(window.beats, 1);
}

TEST_F(PlaybackEngineTest, AMarkAtEitherEdgeOfTheViewLeavesItWhereItIs) {
    note(0, 0, 60, 90);
    view.ViewColumns = 9;
    for (const int mark : {20, 29}) {
        view.ViewFirstColumn = 20;
        view.ViewLastColumn = 29;
        view.PlayMark = mark;
        state.PausePending = true;
        int waits = 0;
        window.beats = 0;
        loop.onWait = [&](double) {
            if (++waits == 1)
                state.Playing = false;
        };
        play();
        EXPECT_EQ(view.ViewFirstColumn, 20) << mark;
        EXPECT_EQ(window.beats, 0) << mark;
    }
    for (const int mark : {19, 30}) {
        view.ViewFirstColumn = 20;
        view.ViewLastColumn = 29;
        view.PlayMark = mark;
        state.PausePending = true;
        int waits = 0;
        loop.onWait = [&](double) {
            if (++waits == 1)
                state.Playing = false;
        };
        play();
        EXPECT_EQ(view.ViewFirstColumn, mark);
    }
}

TEST_F(PlaybackEngineTest, HeadsOfOneInstrumentChangeItOnceAndAnotherChannelsDontCount) {
    score.TopChannel = 1;
    for (int p = 0; p < 6; ++p) {
        note(0, p, 60, 1, 24);
        note(1, p, 50, 1, p < 3 ? 40 : 41);
    }
    const auto programs = [this] {
        std::vector<std::uint32_t> list;
        for (const auto word : port.words())
            if (shortmessage::status(word) == 0xC0)
                list.push_back(word);
        return list;
    };
    play();
    EXPECT_THAT(programs(), ElementsAre(0x18C0U, 0x28C1U, 0x29C1U));
    play();
    EXPECT_THAT(programs(), ElementsAre(0x18C0U, 0x28C1U, 0x29C1U)) << "each play begins anew";
}

TEST_F(PlaybackEngineTest, WhatStandsInRestsAndContinuationsChangesNoInstrument) {
    note(0, 0, 60, 2, 24);
    score.NoteInstrument.set(0, 1, 40);
    note(0, 2, 61, 1, 24); // after a continuation of another one
    note(0, 4, 62, 1, 24); // after a rest
    play();
    EXPECT_EQ(std::ranges::count(port.words(), 0x18C0U), 1);
}

TEST_F(PlaybackEngineTest, ThePlayThatDisplacesAnotherCountsItsOwnSteps) {
    note(0, 0, 60, 4);
    studio.open = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 3) {
            engine.PlayAndStop_Click(true);
            studio.ratios.clear();
            engine.PlayAndStop_Click(false);
        }
    };
    play();
    EXPECT_THAT(studio.ratios, ElementsAre(0.25, 0.5, 0.75, 1.0, 1.25));
    EXPECT_EQ(state.PlayStepCount, 0);
}

TEST_F(PlaybackEngineTest, HoweverItEndsTheLineIsTakenAway) {
    note(0, 0, 60, 5);
    const std::vector<std::function<void()>> ends{
        [] {},
        [this] { engine.PlayAndStop_Click(true); },
        [this] { state.PausePending = true; },
        [this] { state.ShowPlayLine = false; },
    };
    for (std::size_t end = 0; end < ends.size(); ++end) {
        int waits = 0;
        state.PausePending = false;
        loop.onWait = [&](double) {
            if (++waits == 3) {
                EXPECT_EQ(window.line, 1);
                ends[end]();
            }
        };
        play();
        EXPECT_EQ(window.line, std::nullopt) << end;
    }
}

TEST_F(PlaybackEngineTest, ALoopThatComesRoundLeavesNoLineAtTheEnd) {
    note(0, 0, 60, 2);
    state.LoopOn = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 4) { // three positions a round
            EXPECT_EQ(window.line, std::nullopt);
            state.Playing = false;
        }
    };
    play();
    EXPECT_EQ(waits, 5);
}

TEST_F(PlaybackEngineTest, APlayThatBeginsWhileAnOlderOneEndsSilencesIt) {
    note(0, 0, 60, 50);
    for (const int playAt : {3, 4}) { // in the last step, or in the time that the last position gets
        int waits = 0;
        loop.onWait = [&](double) {
            ++waits;
            if (waits == 3)
                engine.PlayAndStop_Click(true);
            if (waits == playAt)
                engine.PlayAndStop_Click(false);
        };
        EXPECT_THAT(play(), ElementsAre(on(0, 60), kReset, on(0, 60), off(0, 60), kReset, kReset)) << playAt;
        EXPECT_EQ(view.PlayMark, 0);
        EXPECT_FALSE(state.Playing);
    }
}

TEST_F(PlaybackEngineTest, APauseOutlastsAnOlderPlayThatStillEnds) {
    note(0, 0, 60, 50);
    int waits = 0;
    loop.onWait = [&](double) {
        ++waits;
        if (waits == 3)
            engine.PlayAndStop_Click(true);
        if (waits == 4)
            engine.PlayAndStop_Click(false);
        if (waits == 8)
            state.PausePending = true;
    };
    play();
    EXPECT_EQ(view.PlayMark, 3);
    EXPECT_TRUE(state.PausePending);
    EXPECT_FALSE(state.Playing);
}

TEST_F(PlaybackEngineTest, AMarkOutsideTheViewIsScrolledTo) {
    note(0, 0, 60, 90);
    view.ViewColumns = 9;
    view.ViewLastColumn = 9;
    view.PlayMark = 95;
    state.PausePending = true;
    EXPECT_EQ(play().size(), 1U);
    EXPECT_EQ(view.ViewFirstColumn, 95);
    EXPECT_EQ(view.ViewLastColumn, 99);
    EXPECT_EQ(view.PlayMark, 0);
}

TEST_F(PlaybackEngineTest, RewindShowsTheBeginningUnlessSomethingPlays) {
    view.ViewFirstColumn = 40;
    view.PlayMark = 45;
    state.Playing = true;
    engine.RewindBut_Click();
    EXPECT_EQ(view.PlayMark, 45);
    state.Playing = false;
    engine.RewindBut_Click();
    EXPECT_EQ(view.ViewFirstColumn, 0);
    EXPECT_EQ(view.ViewLastColumn, 99);
    EXPECT_EQ(view.PlayMark, 0);
}

TEST_F(PlaybackEngineTest, TheRecordingStudioSeesProgressAndIsStoppedAtTheEnd) {
    note(0, 0, 60, 4);
    studio.open = true;
    state.RecordAtEnd = true;
    play();
    EXPECT_THAT(studio.ratios, ElementsAre(0.25, 0.5, 0.75, 1.0, 1.25));
    EXPECT_EQ(studio.clears, 1);
    EXPECT_EQ(studio.stops, 1);
    EXPECT_FALSE(state.RecordAtEnd);
    EXPECT_EQ(state.PlayStepCount, 0);
}

TEST_F(PlaybackEngineTest, ANoteInTheVeryLastPositionEnds) {
    note(0, 100, 60);
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
}

TEST_F(PlaybackEngineTest, PositionsMayPass16Bits) {
    score.resizeNotes(200000);
    note(0, 199999, 60);
    score.Tempo = 1380;
    EXPECT_THAT(play(), ElementsAre(on(0, 60), off(0, 60), kReset));
    EXPECT_EQ(state.PlayPosition, 200001);
    EXPECT_NEAR(port.notes()[0].moment, 200000 * 0.01, 1e-3);
}

TEST_F(PlaybackEngineTest, InClassicMannersTheWorkOfAStepAddsToIt) {
    for (int p = 0; p < 10; ++p)
        note(0, p, 60);
    loop.onWait = [&](double) { loop.block(0.01); };
    play();
    const auto heard = moments(0);
    ASSERT_EQ(heard.size(), 10U);
    for (int p = 0; p < 10; ++p)
        EXPECT_NEAR(heard[static_cast<std::size_t>(p)], (p + 1) * 0.148, 1e-6) << p;
    EXPECT_NEAR(loop.now(), 12 * 0.148, 1e-6);
}

TEST_F(PlaybackEngineTest, InCarefulMannersStepsFallAtTheStartAndNSteps) {
    beCareful();
    loop.block(3); // the clock has run before
    score.Tempo = 500;
    for (int p = 0; p < 100; ++p)
        note(0, p, 60);
    int waits = 0;
    loop.onWait = [&](double) { loop.block(++waits % 2 == 0 ? 0.02 : 0.001); };
    play();
    const auto heard = moments(0);
    ASSERT_EQ(heard.size(), 100U);
    const double step = PlaybackEngine::songStep(500);
    for (int p = 0; p < 100; ++p)
        EXPECT_NEAR(heard[static_cast<std::size_t>(p)], 3 + (p + 1) * step + (p % 2 == 0 ? 0.001 : 0.02),
                    1e-9);
    EXPECT_NEAR(loop.now(), 3 + 102 * step + 0.02, 1e-9) << "after the last position's time, and its work";
}

TEST_F(PlaybackEngineTest, AStrummedChordDoesNotShiftWhatFollowsInCarefulManners) {
    score.Tempo = 500;
    setup.Chkstrum[0] = true;
    for (const int p : {0, 40, 80}) {
        note(0, p, 60);
        score.Polyphonics.set(1, p, 1);
    }
    for (int p = 0; p < 100; ++p)
        note(1, p, 50);
    const double step = PlaybackEngine::songStep(500);
    for (const bool careful : {false, true}) {
        manners = Manners::of(!careful);
        const double before = loop.now();
        play();
        const auto heard = moments(1);
        ASSERT_EQ(heard.size(), 100U);
        const double strums = careful ? 0 : 3 * 0.115;
        EXPECT_NEAR(heard[99], before + 100 * step + strums, 1e-6) << careful;
        EXPECT_NEAR(heard[20], before + 21 * step + strums / 3, 1e-6) << careful;
        EXPECT_NEAR(heard[0], before + step + 0.115, 1e-6) << "the chord's own step waits for it";
    }
}

TEST_F(PlaybackEngineTest, AfterAStallNoPositionIsLeftOutAndTheBeatIsFoundAgain) {
    const auto heard = thirtyNotesWithAStall(0.5);
    ASSERT_EQ(heard.size(), 30U);
    EXPECT_NEAR(heard[8], 9 * 0.138, 1e-6);
    EXPECT_NEAR(heard[9], 10 * 0.138 + 0.5, 1e-6);
    for (std::size_t p = 10; p < 30; ++p)
        EXPECT_GT(heard[p] - heard[p - 1], 0.034) << p;
    for (std::size_t p = 15; p < 30; ++p)
        EXPECT_NEAR(heard[p], static_cast<double>(p + 1) * 0.138, 1e-6) << p;
}

TEST_F(PlaybackEngineTest, AfterALongSleepPlayingGoesOnAtItsOwnPace) {
    const auto heard = thirtyNotesWithAStall(3600);
    ASSERT_EQ(heard.size(), 30U);
    for (std::size_t p = 9; p < 30; ++p)
        EXPECT_NEAR(heard[p], 3600 + static_cast<double>(p + 1) * 0.138, 1e-6) << p;
}

TEST_F(PlaybackEngineTest, EachPlayAndEachResumeBeginsATimetableOfItsOwn) {
    beCareful();
    for (int p = 0; p < 6; ++p)
        note(0, p, 60);
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 3)
            state.PausePending = true;
    };
    play();
    loop.block(0.9);
    const double resumed = loop.now();
    play();
    const auto heard = moments(0);
    ASSERT_EQ(heard.size(), 4U);
    for (std::size_t n = 0; n < 4; ++n)
        EXPECT_NEAR(heard[n], resumed + static_cast<double>(n + 1) * 0.138, 1e-6);

    loop.block(0.9);
    const double begun = loop.now();
    state.SegmentEnd = 3;
    engine.playSegment();
    EXPECT_NEAR(moments(0)[4], begun + 0.12, 1e-6) << "a segment has its own step";
    EXPECT_NEAR(loop.now(), begun + 5 * 0.12, 1e-6);
}

TEST_F(PlaybackEngineTest, ALoopKeepsTheBeatFromRoundToRoundInCarefulManners) {
    beCareful();
    note(0, 0, 60, 2);
    state.LoopOn = true;
    for (const bool lineShown : {true, false}) {
        state.ShowPlayLine = lineShown;
        int waits = 0;
        const double before = loop.now();
        loop.onWait = [&](double) {
            loop.block(0.05);
            if (++waits == 30) // three positions a round
                state.Playing = false;
        };
        play();
        const auto heard = moments(0);
        ASSERT_EQ(heard.size(), 10U);
        for (std::size_t round = 0; round < 10; ++round)
            EXPECT_NEAR(heard[round], before + static_cast<double>(3 * round + 1) * 0.138 + 0.05, 1e-6)
                << round << ' ' << lineShown;
    }
}

TEST_F(PlaybackEngineTest, ATempoThatChangesWhileALoopPlaysCountsFromTheNextRoundOn) {
    beCareful();
    note(0, 0, 60, 2);
    state.LoopOn = true;
    int waits = 0;
    loop.onWait = [&](double) {
        if (++waits == 2)
            score.Tempo = 200;
        if (waits == 9)
            state.Playing = false;
    };
    play();
    const auto heard = moments(0);
    ASSERT_EQ(heard.size(), 3U);
    EXPECT_NEAR(heard[1], 3 * 0.138 + 0.069, 1e-6);
    EXPECT_NEAR(heard[2], 3 * 0.138 + 4 * 0.069, 1e-6);
}

TEST_F(PlaybackEngineTest, MannersThatChangeWhileAPlayGoesOnCountFromTheNextOneOn) {
    for (int p = 0; p < 20; ++p)
        note(0, p, 60);
    for (const bool classic : {true, false}) {
        manners = Manners::of(classic);
        int waits = 0;
        const double before = loop.now();
        loop.onWait = [&](double) {
            loop.block(0.01);
            if (++waits == 5)
                manners = Manners::of(!classic);
        };
        play();
        EXPECT_NEAR(loop.now() - before, classic ? 22 * 0.148 : 22 * 0.138 + 0.01, 1e-6);
    }
}
