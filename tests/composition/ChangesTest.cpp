// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Changes.h"

#include "composition/MelodyMaker.h"
#include "composition/NoteEffects.h"
#include "composition/ScoreEditing.h"
#include "composition/SetupRules.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingWatcher.h"

#include <functional>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
struct ChangesTest : WorkspaceFixture {
    RecordingWatcher watcher{workspace()};
};

/// Tells what it is told to somebody else.
struct Passing final : private Watcher {
    explicit Passing(Workspace& workspace) : watching_(workspace.watchers.join(*this)) {}
    std::function<void(Changes)> pass;

private:
    void changed(Changes changes) override { pass(changes); }
    Guests<Watcher>::Stay watching_;
};
} // namespace

TEST_F(ChangesTest, AnEditIsToldAtItsEnd) {
    {
        Edit edit(workspace(), Change::Cells);
        edit.add(Change::Undo);
        EXPECT_THAT(watcher.told, IsEmpty());
    }
    EXPECT_THAT(watcher.told, ElementsAre(Change::Cells | Change::Undo));
}

TEST_F(ChangesTest, EditsWithinAnEditAreToldWithIt) {
    {
        const Edit outer(workspace(), Change::Meter);
        workspace().selectChannel(3);
        workspace().toggleMuted(4);
        EXPECT_THAT(watcher.told, IsEmpty());
    }
    EXPECT_THAT(watcher.told, ElementsAre(Change::Meter | Change::Channels | Change::Instruments));
}

TEST_F(ChangesTest, AnEditThatChangesNothingIsNotTold) {
    { const Edit edit(workspace()); }
    workspace().selectChannel(9); // there is none
    EXPECT_THAT(watcher.told, IsEmpty());
}

TEST_F(ChangesTest, EveryWatcherIsToldUntilItLeaves) {
    auto second = std::make_unique<RecordingWatcher>(workspace());
    workspace().selectChannel(1);
    EXPECT_THAT(second->told, SizeIs(1));
    second.reset();
    workspace().selectChannel(2);
    EXPECT_THAT(watcher.told, SizeIs(2));
}

TEST_F(ChangesTest, AWatcherMayLeaveWhileAllAreTold) {
    Passing leaving(workspace());
    auto gone = std::make_unique<RecordingWatcher>(workspace());
    RecordingWatcher last(workspace());
    leaving.pass = [&](Changes /*changes*/) { gone.reset(); };
    workspace().selectChannel(1);
    workspace().selectChannel(2);
    EXPECT_THAT(last.told, SizeIs(2));
}

TEST_F(ChangesTest, WhatAWatcherChangesIsToldAfterwards) {
    Passing changing(workspace());
    changing.pass = [this](Changes changes) {
        if (changes.any(Change::Channels))
            setTempo(workspace(), 120);
    };
    workspace().toggleMuted(1);
    EXPECT_THAT(watcher.told, ElementsAre(Changes(Change::Channels), Changes(Change::Meter)));
}

TEST_F(ChangesTest, ChannelsThatHaveLostTheirNotesAreNoLongerInUse) {
    putNotes(score(), 3, 60, 2);
    EXPECT_TRUE(score().ChannelInUse[3]);
    {
        const Edit edit(workspace(), Change::Cells);
        score().ClearThisArray(3);
    }
    EXPECT_FALSE(score().ChannelInUse[3]);
}

TEST_F(ChangesTest, EachCommandIsToldOnceAndInItsRespects) {
    putNotes(score(), 0, 60, 40);
    workspace().beginHistory();
    workspace().edit.ChannelPicked[0] = true;
    workspace().edit.CycleNotes = workspace().edit.CycleBeats = 4;
    workspace().edit.TotalNotes = 20;
    const auto select = [this] {
        workspace().view.SelectStart = 2;
        workspace().view.SelectEnd = 9;
    };
    constexpr Changes kNotes = kAnyNotes | Change::Marks;
    struct Row {
        const char* name;
        std::function<void()> command;
        Changes told;
    };
    const Row rows[]{
        {"copy", [&] { select(), copyIt(workspace()); }, Change::Marks},
        {"cut", [&] { select(), CutBut_Click(workspace()); }, kNotes | Change::Undo},
        {"paste over", [&] { PasteBut_Click(workspace(), 3); }, kNotes | Change::Undo},
        {"paste between", [&] { PasteIntoBut_Click(workspace(), 3); }, kNotes | Change::Undo},
        {"spaces", [&] { InsertColumnBut_Click(workspace(), 3); }, kNotes | Change::Undo},
        {"duplicate", [&] { duplicateNotes(workspace(), {}); }, kNotes | Change::Undo | Change::Modes},
        {"duplicate melody", [&] { select(), duplicateMelody(workspace()); }, kNotes | Change::Undo},
        {"create melody", [&] { createMelody(workspace(), 1); }, kNotes | Change::Undo},
        {"start", [&] { takeStart(workspace(), 5); }, Change::Marks},
        {"undo", [&] { workspace().undoLast(); }, kAnotherScore},
        {"along the bar", [&] { applyAlongIndicator(workspace(), 3); }, Change::Cells},
        {"pick", [&] { std::ignore = applyInstrumentToSelection(workspace(), 30); },
         Change::Tools | Change::Instruments},
        {"no effects", [&] { ClearEffects(workspace()); }, kAnotherScore},
        {"tempo", [&] { setTempo(workspace(), 90); }, Change::Meter | Change::Undo},
        {"beats", [&] { TxtMeter_Change(workspace(), 3); }, Change::Meter | Change::Undo},
        {"note value", [&] { NoteX_Change(workspace(), 8); }, Change::Meter | Change::Undo},
        {"volume", [&] { setVelocity(workspace(), 90); }, Change::Sound},
        {"fill", [&] { fillVolume(workspace(), 90); }, Change::Effects | Change::Undo},
        {"spacing", [&] { Text3_Change(workspace(), 9); }, Change::Looks},
        {"longer", [&] { setScoreLength(workspace(), 1200); }, Change::Length | Change::Marks | Change::Undo},
        {"channel", [&] { chooseChannel(workspace(), 8); }, Change::Channels | Change::Instruments},
        {"toolbar's channel", [&] { TrackSel_Click(workspace(), settings, 1); },
         Change::Channels | Change::Instruments},
        {"mute", [&] { workspace().toggleMuted(2); }, Change::Channels},
        {"clear", [&] { workspace().clear(); }, kAnotherScore},
    };
    for (const Row& row : rows) {
        watcher.told.clear();
        row.command();
        EXPECT_THAT(watcher.told, ElementsAre(row.told)) << row.name;
    }
}

TEST_F(ChangesTest, ACommandThatDoesNothingIsNotTold) {
    EXPECT_FALSE(copyIt(workspace()));
    EXPECT_FALSE(CutBut_Click(workspace()));
    EXPECT_FALSE(workspace().undoLast());
    EXPECT_FALSE(setScoreLength(workspace(), 0));
    EXPECT_FALSE(applyAlongIndicator(workspace(), -1));
    EXPECT_THAT(watcher.told, IsEmpty());
}

TEST_F(ChangesTest, WhileTheToolbarIsOpenAChannelThatIsChosenTakesItsEffects) {
    workspace().setup.SetupOpen = true;
    chooseChannel(workspace(), 2);
    EXPECT_THAT(watcher.told, ElementsAre(Change::Channels | Change::Instruments | Change::Effects));
}
