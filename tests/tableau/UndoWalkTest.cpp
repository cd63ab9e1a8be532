// SPDX-License-Identifier: GPL-2.0-or-later
// Random acts of a user with undo and redo anywhere, everything compared with kept copies after each.
#include "composition/MelodyMaker.h"
#include "composition/NoteEffects.h"
#include "composition/RecoveryFile.h"
#include "composition/ScoreEditing.h"
#include "composition/SetupRules.h"
#include "score/SngFile.h"
#include "tests/support/Walks.h"
#include "tests/tableau/GestureFixture.h"

#include <cstdlib>
#include <random>

using namespace velmora;

namespace {

constexpr int kActsOfOneScore = 500;

/// `VELMORA_UNDO_WALK` raises the number.
int actsToWalk() {
    const char* wanted = std::getenv("VELMORA_UNDO_WALK");
    return wanted ? std::atoi(wanted) : stepsOfWalk(100'000);
}

/// Everything that undoing brings back.
struct Kept {
    explicit Kept(const Workspace& workspace)
        : layers{workspace.score.NoteCell,          workspace.score.NoteInstrument,
                 workspace.score.Polyphonics,       workspace.score.Volume,
                 workspace.score.Modulation_Change, workspace.score.Pan_Change,
                 workspace.score.Reverb_Change,     workspace.score.Chorus_Change}
        , scalars(workspace.score, workspace.setup)
        , file(workspace.score.currentFile) {}
    bool operator==(const Kept&) const = default;

    [[nodiscard]] bool savesLike(const Kept& other) const {
        return layers == other.layers && scalars.savesLike(other.scalars);
    }

    /// In what the two differ; blank if in nothing.
    [[nodiscard]] std::string differenceTo(const Kept& other) const {
        std::string names;
        for (std::size_t layer = 0; layer < layers.size(); ++layer)
            if (layers[layer] != other.layers[layer])
                names += " layer " + std::to_string(layer);
        const ScoreScalars &a = scalars, &b = other.scalars;
        const std::pair<const char*, bool> rows[]{
            {"NumNotes", a.NumNotes == b.NumNotes},
            {"SongEnd", a.SongEnd == b.SongEnd},
            {"ActiveChannel", a.ActiveChannel == b.ActiveChannel},
            {"TopChannel", a.TopChannel == b.TopChannel},
            {"hints", a.TopMelodyHint == b.TopMelodyHint && a.TopDrumHint == b.TopDrumHint},
            {"ChannelInstrument", a.ChannelInstrument == b.ChannelInstrument},
            {"BeatMemo", a.BeatMemo == b.BeatMemo},
            {"ChannelInUse", a.ChannelInUse == b.ChannelInUse},
            {"ChannelShown", a.ChannelShown == b.ChannelShown},
            {"another scalar", a == b},
            {"file", file == other.file}};
        for (const auto& [name, same] : rows)
            if (!same)
                names.append(" ").append(name);
        return names;
    }

    std::array<ChannelGrid, 8> layers;
    ScoreScalars scalars;
    std::string file;
};

struct UndoWalkTest : GestureFixture {
    UndoWalkTest() {
        beCareful();
        store("NumNotes", "60");
    }

    int pick(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
    bool oneIn(int times) { return pick(1, times) == 1; }

    void choose();
    void act();
    void gesture();
    void toolbar();
    void step();

    std::mt19937 random{20'26};
    struct Entry {
        Kept before;
        Kept after;
    };
    std::vector<Entry> entries;
    std::size_t done = 0;
};

/// What is no act.
void UndoWalkTest::choose() {
    Workspace& w = workspace();
    if (oneIn(3))
        w.selectChannel(pick(0, 12));
    if (oneIn(8))
        w.toggleMuted(pick(0, 12));
    if (oneIn(6))
        w.edit.ChannelPicked[pick(0, 12)] = oneIn(2);
    if (oneIn(20))
        w.edit.Check2 = oneIn(2);
    if (oneIn(6)) {
        w.view.SelectStart = pick(-1, 60);
        w.view.SelectEnd = pick(w.view.SelectStart, 62);
        w.view.PlayMark = pick(0, 60);
    }
    if (oneIn(6))
        takeCycle(w.edit, w.manners, pick(0, 12), pick(0, 12));
    w.edit.TotalNotes = static_cast<std::int16_t>(pick(0, 70));
    if (oneIn(5))
        w.view.RightClickMode = oneIn(3) ? RightClick::Polyphonic : RightClick::Erase;
    w.view.NoteEffectsOn = oneIn(5);
    w.view.MouseMode = Mouse::Draw;
    w.effects.Combo3 = static_cast<std::int16_t>(pick(0, 7));
    w.setup.Combo3 = pick(0, 6);
    w.instruments.MelodyInstrument = static_cast<std::int16_t>(pick(0, 127));
    w.setup.SetupOpen = oneIn(2);
    w.setup.channels[pick(0, 12)].reverb = static_cast<std::int16_t>(pick(0, 127));
}

/// A drag over the Tableau of the active channel, whatever it meets: the other would choose a channel first.
void UndoWalkTest::gesture() {
    using Handler = void (TableauInput::*)(MouseButton, int, int, int);
    const bool melody = score().ActiveChannel < kMelodyChannels;
    const std::array<Handler, 3> handlers =
        melody ? std::array<Handler, 3>{&TableauInput::MusicBox_MouseDown, &TableauInput::MusicBox_MouseMove,
                                        &TableauInput::MusicBox_MouseUp}
               : std::array<Handler, 3>{&TableauInput::Beatbox_MouseDown, &TableauInput::Beatbox_MouseMove,
                                        &TableauInput::Beatbox_MouseUp};
    const MouseButton button = oneIn(3) ? MouseButton::Right : MouseButton::Left;
    const int row = pick(0, 8);
    int column = pick(0, 50);
    (input().*handlers[0])(button, 0, x(column), y(row));
    for (int moves = pick(0, 6); moves > 0; --moves)
        (input().*handlers[1])(button, 0, x(column += pick(-1, 3)), y(row));
    (input().*handlers[2])(button, 0, x(column), y(row));
}

void UndoWalkTest::toolbar() {
    Workspace& w = workspace();
    switch (pick(0, 9)) {
    case 0:
        return setTempo(w, static_cast<std::int16_t>(pick(20, 300)));
    case 1:
        return static_cast<void>(NoteX_Change(w, static_cast<std::int16_t>(pick(1, 16))));
    case 2:
        return static_cast<void>(TxtMeter_Change(w, static_cast<std::int16_t>(pick(1, 16))));
    case 3:
        return fillVolume(w, static_cast<std::int16_t>(pick(0, 127)));
    case 4:
        return fillEffects(w);
    case 5:
        return Ch_Click(w, pick(0, 7), oneIn(2));
    case 6:
        return static_cast<void>(setScoreLength(w, pick(30, 90)));
    case 7:
        return TrackSel_Click(w, settings, pick(0, 12));
    case 8:
        return static_cast<void>(applyInstrumentToSelection(w, static_cast<std::int16_t>(pick(0, 174))));
    default:
        return static_cast<void>(applyAlongIndicator(w, pick(0, 59)));
    }
}

void UndoWalkTest::act() {
    Workspace& w = workspace();
    switch (pick(0, 19)) {
    case 0:
        return static_cast<void>(copyIt(w));
    case 1:
        return static_cast<void>(CutBut_Click(w));
    case 2:
        return PasteBut_Click(w, pick(0, 50));
    case 3:
        return PasteIntoBut_Click(w, pick(0, 50));
    case 4:
        w.edit.Txtspc = static_cast<std::int16_t>(pick(0, 9));
        return InsertColumnBut_Click(w, pick(0, 50));
    case 5:
        return createMelody(w, pick(0, 40));
    case 6:
        return duplicateMelody(w);
    case 7:
        return duplicateNotes(w, [this] {
            input().MusicBox_MouseDown(MouseButton::Left, 0, 1, 1);
            input().MusicBox_MouseUp(MouseButton::Left, 0, 1, 1);
        });
    case 8:
        return oneIn(4) ? w.clear() : gesture();
    case 9:
        return oneIn(4) ? ClearEffects(w) : gesture();
    case 10: {
        if (!oneIn(3))
            return gesture();
        Score other(pick(20, 90));
        putNotes(other, pick(0, 8), pick(0, 100), pick(1, 20));
        return restore({{}, serializePoliFile(other, w.setup), oneIn(2) ? "other.sng" : ""}, w);
    }
    case 11:
    case 12:
    case 13:
    case 14:
        return toolbar();
    default:
        return gesture();
    }
}

void UndoWalkTest::step() {
    Workspace& w = workspace();
    if (oneIn(4)) {
        for (int times = pick(1, 4); times > 0; --times) {
            ASSERT_EQ(w.undoLast().done, done > 0);
            if (done > 0) {
                ASSERT_EQ(Kept(w).differenceTo(entries[--done].before), "") << "undone: " << w.redoStep();
            }
        }
        return;
    }
    if (oneIn(5)) {
        for (int times = pick(1, 6); times > 0; --times) {
            ASSERT_EQ(w.redoLast().done, done < entries.size());
            if (done < entries.size()) {
                ASSERT_EQ(Kept(w).differenceTo(entries[done++].after), "") << "done again: " << w.undoStep();
            }
        }
        return;
    }
    choose();
    Kept before(w);
    const std::size_t steps = w.history.steps();
    const bool hadRedo = !w.redoStep().empty();
    act();
    Kept after(w);
    const bool isStep = w.history.steps() != steps || (hadRedo && w.redoStep().empty());
    ASSERT_EQ(isStep, !after.savesLike(before)) << w.undoStep();
    if (!isStep)
        return;
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(done), entries.end());
    entries.push_back({std::move(before), std::move(after)});
    ++done;
    ASSERT_EQ(w.history.steps(), entries.size()) << "an act is one step: " << w.undoStep();
    ASSERT_NE(w.undoStep(), "Last change") << "an act without a name";
}

} // namespace

TEST_F(UndoWalkTest, WhateverIsDoneUndoneAndDoneAgainIsAsItWas) {
    const int acts = actsToWalk();
    for (int walked = 0; walked < acts && !HasFatalFailure(); ++walked) {
        if (walked % kActsOfOneScore == 0) {
            workspace().beginHistory();
            entries.clear();
            done = 0;
        }
        step();
    }
}
