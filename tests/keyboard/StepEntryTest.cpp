// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/StepEntry.h"

#include "base/VirtualLoop.h"
#include "composition/SetupRules.h"
#include "sound/ShortMessage.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/FakeInputs.h"
#include "tests/support/RecordingPort.h"
#include "tests/support/RecordingWatcher.h"

#include <memory>
#include <optional>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
/// A score of 64 positions with 4 to a beat, a keyboard that is plugged in, and the pointer in `MusicBox`.
struct StepEntryTest : WorkspaceFixture {
    VirtualLoop loop;
    RecordingPort port{loop};
    FakeInputs midi;
    std::optional<StepEntry> entry_;
    int keys = 0;
    double now = 100;

    StepEntryTest() { store("NumNotes", "64"); }
    StepEntry& entry() {
        if (!entry_) {
            entry_.emplace(midi.inputs, workspace(), port);
            entry_->setOn(true);
            keys = midi.plug("Keys:Out");
            workspace().view.PointerInMusicBox = true;
        }
        return *entry_;
    }

    void down(int note, int velocity = 90) {
        entry();
        midi.play(keys, noteOn(0, note, velocity), now);
    }
    void up(int note) { midi.play(keys, noteOff(0, note), now); }
    /// Struck and released, a second after the last.
    void tap(int note, int velocity = 90) {
        now += 1;
        down(note, velocity);
        now += 0.1;
        up(note);
    }
    /// Cells of a channel, a character each: a letter from 'a' for MIDI note 60 on where a note begins, '-'
    /// where it goes on, '.' for none.
    std::string cells(int channel, int count = 12) {
        std::string text;
        for (int position = 0; position < count; ++position) {
            const int cell = score().NoteCell.valueOr(channel, position, kEmptyCell);
            const CellClass kind = cellClass(cell);
            text += kind == CellClass::Empty ? '.'
                    : kind == CellClass::Continuation
                        ? '-'
                        : static_cast<char>('a' + RowToNote(cellRow(cell)) - 60);
        }
        return text;
    }
    int mark() { return workspace().view.PlayMark; }
};

struct InBothManners : StepEntryTest, testing::WithParamInterface<bool> {
    InBothManners() {
        if (GetParam())
            beCareful();
    }
};
std::string mannerName(const testing::TestParamInfo<bool>& info) {
    return info.param ? "careful" : "classic";
}
} // namespace

INSTANTIATE_TEST_SUITE_P(Manners, InBothManners, testing::Bool(), mannerName);

TEST_P(InBothManners, ANoteIsWrittenAtTheMarkAndTheMarkMovesOnByABeat) {
    tap(60);
    EXPECT_EQ(cells(0), "a---........");
    EXPECT_EQ(mark(), 4);
    tap(62);
    tap(64);
    EXPECT_EQ(cells(0), "a---c---e---");
    EXPECT_EQ(mark(), 12);
    workspace().view.PlayMark = 2;
    tap(67);
    EXPECT_EQ(cells(0), "a-h---c-e---") << "what a drawn note would leave of the others";
}

TEST_P(InBothManners, ItStandsOnTheActiveChannelWithItsInstrumentAndTheVelocityOfTheKey) {
    workspace().selectChannel(3);
    score().ChannelInstrument[3] = 40;
    tap(60, 33);
    tap(62, 77);
    EXPECT_EQ(cells(3), "a---c---....");
    EXPECT_EQ(cells(0), "............");
    for (int position = 0; position < 8; ++position)
        EXPECT_EQ(score().NoteInstrument.valueOr(3, position, -1), 40);
    // Where playing reads it on the active channel, and on another one.
    EXPECT_EQ(score().Volume.valueOr(3, 1, -1), 33);
    EXPECT_EQ(score().Volume.valueOr(3, 5, -1), 77);
    EXPECT_EQ(score().Volume.valueOr(3, 0, -1), 33);
    EXPECT_EQ(score().Volume.valueOr(3, 4, -1), 77);
    EXPECT_TRUE(score().ChannelInUse[3]);
    EXPECT_GE(score().TopChannel, 3);
    EXPECT_EQ(score().SongEnd, 8);
}

TEST_P(InBothManners, ALengthMayBeSetAndABeatFollowsTheMeter) {
    EXPECT_EQ(entry().stepLength(), 4);
    entry().length = 2;
    tap(60);
    tap(62);
    EXPECT_EQ(cells(0, 6), "a-c-..");
    entry().length = 0;
    workspace().setup.TxtMeter = 8;
    EXPECT_EQ(entry().stepLength(), 2);
    workspace().setup.TxtMeter = 100;
    EXPECT_EQ(entry().stepLength(), 1);
    entry().length = -5;
    EXPECT_EQ(entry().stepLength(), 1);
}

TEST_P(InBothManners, WithoutTheTickOrThePointerNothingIsWritten) {
    entry().setOn(false);
    tap(60);
    entry().setOn(true);
    workspace().view.PointerInMusicBox = false;
    tap(60);
    workspace().view.PointerInMusicBox = true;
    workspace().play.Playing = true;
    tap(60);
    workspace().play.Playing = false;
    workspace().selectChannel(10);
    tap(60);
    EXPECT_TRUE(score().usedChannels().empty());
    EXPECT_EQ(mark(), 0);
    EXPECT_THAT(port.sent, IsEmpty());
    workspace().selectChannel(0);
    tap(60);
    EXPECT_EQ(cells(0), "a---........");
}

TEST_P(InBothManners, KeysStruckWithinThirtyMillisecondsAreAChord) {
    down(60);
    now += 0.010;
    up(60); // a quick hand
    now += 0.015;
    down(64);
    up(64);
    now += 0.029;
    down(67);
    up(67);
    EXPECT_EQ(cells(0), "a---........");
    EXPECT_EQ(cells(1), "e---........");
    EXPECT_EQ(cells(2), "h---........");
    EXPECT_EQ(mark(), 4);
    now += 0.031;
    tap(62);
    EXPECT_EQ(cells(0), "a---c---....");
}

TEST_P(InBothManners, KeysStruckWhileOthersAreHeldAreAChord) {
    down(60);
    now += 2;
    down(64);
    now += 2;
    up(60);
    down(67);
    up(64);
    up(67);
    tap(62);
    EXPECT_EQ(cells(0), "a---c---....");
    EXPECT_EQ(cells(1), "e---........");
    EXPECT_EQ(cells(2), "h---........");
}

TEST_P(InBothManners, ANoteOfAChordThatIsStruckAgainStandsOnce) {
    down(60);
    down(64);
    up(64);
    down(64);
    EXPECT_EQ(cells(0), "a---........");
    EXPECT_EQ(cells(1), "e---........");
    EXPECT_EQ(cells(2), "............");
}

TEST_P(InBothManners, FurtherNotesTakeTheChannelsThatAreEmptyThereAndSoundAsTheActiveOne) {
    workspace().selectChannel(6);
    score().ChannelInstrument[6] = 40;
    score().NoteCell.set(7, 2, 50);
    score().ChannelMuted[0] = true;
    down(60);
    down(64, 20);
    EXPECT_EQ(cells(6), "a---........");
    EXPECT_EQ(cells(1), "e---........");
    EXPECT_EQ(score().NoteInstrument.valueOr(1, 3, -1), 40);
    EXPECT_EQ(score().Volume.valueOr(1, 0, -1), 20);
    EXPECT_EQ(score().ActiveChannel, 6);
    EXPECT_TRUE(score().ChannelInUse[1]);
}

TEST_P(InBothManners, OfAChordWithMoreNotesThanChannelsTheRestIsNotWritten) {
    for (int note = 60; note < 70; ++note)
        down(note);
    for (int channel = 0; channel < kMelodyChannels; ++channel)
        EXPECT_EQ(cells(channel, 5), std::string(1, static_cast<char>('a' + channel)) + "---.");
    EXPECT_EQ(mark(), 4);
}

TEST_P(InBothManners, AMarkThatWasSetElsewhereEndsTheChord) {
    down(60);
    workspace().view.PlayMark = 8;
    down(64);
    EXPECT_EQ(cells(0), "a---....e---");
}

TEST_P(InBothManners, AKeyboardThatGoesHoldsNothingAnyMore) {
    down(60);
    port.sent.clear();
    midi.unplug(keys);
    EXPECT_THAT(port.words(), ElementsAre(noteOff(0, 60)));
    keys = midi.plug("Keys:Out");
    tap(62);
    EXPECT_EQ(cells(0), "a---c---....");
}

TEST_P(InBothManners, WhatIsWrittenIsHeardUntilTheKeyGoesUp) {
    score().ChannelInstrument[0] = 40;
    down(60, 33);
    EXPECT_THAT(port.words(), ElementsAre(programChange(0, 40), noteOn(0, 60, 33)));
    workspace().selectChannel(2);
    port.sent.clear();
    up(60);
    EXPECT_THAT(port.words(), ElementsAre(noteOff(0, 60)));
    port.sent.clear();
    midi.inputs.isSounded = true;
    tap(62);
    EXPECT_THAT(port.sent, IsEmpty());
}

TEST_P(InBothManners, TakingTheTickAwayOrTheRoomItselfEndsWhatSounds) {
    down(60);
    entry().setOn(false);
    EXPECT_EQ(port.words().back(), noteOff(0, 60));
    entry().setOn(true);
    down(62);
    entry_.reset();
    EXPECT_EQ(port.words().back(), noteOff(0, 62));
}

TEST_P(InBothManners, AControllerWritesNothing) {
    entry();
    midi.play(keys, controller(0, 64, 127), now);
    midi.play(keys, pack(0xE0, 0, 0, 10), now);
    EXPECT_TRUE(score().usedChannels().empty());
}

TEST_P(InBothManners, WhoWatchesIsToldOncePerNoteAndWhereItStands) {
    entry();
    std::vector<std::array<int, 3>> written;
    entry().onWritten = [&](int channel, int row, int position) {
        written.push_back({channel, row, position});
    };
    RecordingWatcher watcher(workspace());
    tap(60);
    ASSERT_EQ(watcher.told.size(), 1U);
    EXPECT_TRUE(watcher.told[0].any(Change::Cells));
    EXPECT_TRUE(watcher.told[0].any(Change::Marks));
    tap(62);
    EXPECT_EQ(watcher.told.size(), 2U);
    EXPECT_THAT(written, ElementsAre(std::array{0, 67, 0}, std::array{0, 65, 4}));
}

TEST_P(InBothManners, TheLastNoteCanBeTakenBackAndTheNextStandsInItsPlace) {
    workspace().beginHistory();
    tap(60);
    tap(62);
    EXPECT_EQ(workspace().undoStep(), "Step entry");
    workspace().undoLast();
    EXPECT_EQ(cells(0), "a---........");
    if (!GetParam())
        workspace().view.PlayMark = 8; // classic undo shows the score from its start
    tap(64);
    EXPECT_EQ(cells(0), "a---e---....");
    EXPECT_EQ(mark(), 8);
}

TEST_F(StepEntryTest, InCarefulMannersEachNoteIsAStepOfUndo) {
    beCareful();
    workspace().beginHistory();
    tap(60);
    down(62);
    down(65);
    for (const char* const left : {"a---c---", "a---....", "........"}) {
        EXPECT_EQ(workspace().undoStep(), "Step entry");
        workspace().undoLast();
        EXPECT_EQ(cells(0, 8), left);
        EXPECT_EQ(cells(1, 8), "........");
    }
    EXPECT_EQ(workspace().undoStep(), "");
    // The mark goes back over all of them.
    now += 10;
    up(62);
    up(65);
    tap(67);
    EXPECT_EQ(cells(0, 8), "h---....");
}

TEST_F(StepEntryTest, InCarefulMannersTheScoreGrowsByMeasures) {
    beCareful();
    workspace().beginHistory();
    entry();
    workspace().view.PlayMark = 62;
    tap(60);
    EXPECT_EQ(score().NumNotes, 80);
    EXPECT_EQ(score().NoteCell.valueOr(0, 65, kEmptyCell), 1067);
    EXPECT_EQ(mark(), 66);
    EXPECT_EQ(workspace().undoStep(), "Step entry");
    workspace().undoLast();
    EXPECT_EQ(score().NumNotes, 64);
    EXPECT_TRUE(score().usedChannels().empty());
}

TEST_F(StepEntryTest, InClassicMannersWhatWouldEndBehindTheScoreIsNotWritten) {
    entry();
    workspace().view.PlayMark = 60;
    tap(60);
    EXPECT_EQ(score().NoteCell.valueOr(0, 63, kEmptyCell), 1067);
    tap(62);
    EXPECT_EQ(score().NumNotes, 64);
    EXPECT_EQ(score().NoteCell.valueOr(0, 64, kEmptyCell), kEmptyCell);
    EXPECT_EQ(mark(), 64);
}

TEST_F(StepEntryTest, RandomEventsLeaveNothingSounding) {
    beCareful();
    entry();
    std::minstd_rand random(5);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    for (int i = 0; i < 20'000; ++i) {
        now += below(50) / 1000.0;
        workspace().view.PlayMark %= 40;
        switch (below(8)) {
        case 0:
            workspace().view.PointerInMusicBox = !workspace().view.PointerInMusicBox;
            break;
        case 1:
            workspace().selectChannel(below(13));
            break;
        case 2:
            entry().setOn(below(3) > 0);
            break;
        case 3:
            up(60 + below(10));
            break;
        case 4:
            if (below(20) == 0) {
                midi.unplug(keys);
                keys = midi.plug("Keys:Out");
            }
            break;
        default:
            down(60 + below(10));
        }
    }
    entry().setOn(false);
    std::set<std::pair<int, int>> sounding;
    for (const auto word : port.words())
        if (status(word) == 0x90)
            sounding.insert({channel(word), data1(word)});
        else if (status(word) == 0x80)
            sounding.erase({channel(word), data1(word)});
    EXPECT_THAT(sounding, IsEmpty());
}
