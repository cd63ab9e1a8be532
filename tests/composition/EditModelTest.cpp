// SPDX-License-Identifier: GPL-2.0-or-later
// Random editing commands against a second, slow account of what they do.
#include "tests/composition/EditModel.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreEditing.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingWatcher.h"
#include "tests/support/Walks.h"

#include <cstdlib>
#include <random>

using namespace velmora;

namespace {

constexpr int kCommandsOfOneScore = 200;

/// `VELMORA_EDIT_WALK` raises the number.
int commandsToWalk() {
    const char* wanted = std::getenv("VELMORA_EDIT_WALK");
    return wanted ? std::atoi(wanted) : stepsOfWalk(8000);
}

struct LayerPair {
    const char* name;
    ChannelGrid Score::*cells;
    ChannelGrid Score::*clip;
};
constexpr std::array kPairs{
    LayerPair{"NoteCell", &Score::NoteCell, &Score::ClipNoteCell},
    LayerPair{"NoteInstrument", &Score::NoteInstrument, &Score::ClipNoteInstrument},
    LayerPair{"Polyphonics", &Score::Polyphonics, &Score::ClipPolyphonics},
    LayerPair{"Volume", &Score::Volume, &Score::ClipVolume},
    LayerPair{"Modulation_Change", &Score::Modulation_Change, &Score::ClipModulation},
    LayerPair{"Pan_Change", &Score::Pan_Change, &Score::ClipPan},
    LayerPair{"Reverb_Change", &Score::Reverb_Change, &Score::ClipReverb},
    LayerPair{"Chorus_Change", &Score::Chorus_Change, &Score::ClipChorus},
};

/// One score, from its making on, in both accounts.
class Walk {
public:
    Walk(Workspace& workspace, std::mt19937& random)
        : workspace_(workspace)
        , watcher_(workspace)
        , random_(random)
        , model_(workspace.score.NumNotes) {
        model_.inUse = workspace.score.ChannelInUse.values;
        for (std::size_t channel = 0; channel < kUsedChannels; ++channel) {
            model_.shown[channel] = workspace.score.ChannelShown[channel];
            model_.instrument[channel] = workspace.score.ChannelInstrument[channel];
        }
        fill();
    }

    void turnSwitches();
    /// Gives a command, and lets both take in what it changed.
    /// @return its name
    std::string step() {
        std::string name = command();
        if (watcher_.take().any(kAnyNotes))
            model_.leaveEmptyChannels();
        return name;
    }
    void expectSame() const;

private:
    std::string command();
    int pick(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
    bool oneIn(int times) { return pick(1, times) == 1; }
    void fill();
    void put(ChannelGrid& grid, EditModel::Layer layer, int row, int index, int value);
    void drawNote(int channel, int first, int length);
    void stroke();
    void duplicate();
    void changeLength();
    void expectSameRecords() const;

    Workspace& workspace_;
    RecordingWatcher watcher_;
    std::mt19937& random_;
    EditModel model_;
};

void Walk::put(ChannelGrid& grid, EditModel::Layer layer, int row, int index, int value) {
    if (!grid.set(row, index, static_cast<std::int16_t>(value)))
        return;
    model_.score[layer][static_cast<std::size_t>(row)][static_cast<std::size_t>(index)] =
        static_cast<std::int16_t>(value);
}

void Walk::drawNote(int channel, int first, int length) {
    const int row = pick(0, 127);
    for (int position = first; position < first + length; ++position) {
        put(workspace_.score.NoteCell, EditModel::Cell, channel, position,
            position == first ? row : 1000 + row);
        put(workspace_.score.NoteInstrument, EditModel::Instrument, channel, position, pick(0, 174));
    }
}

/// Notes in most channels, something in most layers, also where no note stands.
void Walk::fill() {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (oneIn(5))
            continue;
        for (int position = pick(0, 9); position <= model_.NumNotes; position += pick(1, 9))
            drawNote(channel, position, pick(1, 6));
        for (int times = pick(0, 30); times > 0; --times) {
            const int layer = pick(EditModel::Chord, EditModel::Chorus);
            put(workspace_.score.*kPairs[static_cast<std::size_t>(layer)].cells,
                static_cast<EditModel::Layer>(layer), layer == EditModel::Chord ? channel + 1 : channel,
                pick(0, model_.NumNotes), layer == EditModel::Chord ? pick(0, 7) : pick(0, 127));
        }
    }
    workspace_.score.FindEndOfSong();
    model_.findEndOfSong();
}

/// What the user sets between two commands.
void Walk::turnSwitches() {
    Score& score = workspace_.score;
    ViewState& view = workspace_.view;
    EditState& edit = workspace_.edit;
    if (oneIn(3)) {
        const auto channel = static_cast<std::size_t>(pick(0, 12));
        score.ChannelMuted[channel] = model_.muted[channel] = oneIn(4);
        edit.ChannelPicked[channel] = model_.picked[channel] = !oneIn(4);
    }
    if (oneIn(4))
        workspace_.CopyonlyOneTrack = model_.CopyonlyOneTrack = oneIn(3);
    if (oneIn(3))
        score.ActiveChannel = model_.ActiveChannel = pick(0, 12);
    if (oneIn(4))
        view.NoteEffectsOn = model_.NoteEffectsOn = oneIn(2);
    if (oneIn(4))
        edit.Check2 = model_.Check2 = oneIn(2);
    if (oneIn(4))
        edit.Check3 = model_.Check3 = oneIn(2);
    if (oneIn(4))
        edit.Check5 = model_.Check5 = oneIn(2);
    if (oneIn(2)) {
        view.SelectStart = model_.SelectStart = oneIn(8) ? -1 : pick(0, model_.NumNotes + 3);
        view.SelectEnd = model_.SelectEnd = oneIn(12) ? pick(-1, 40) : model_.SelectStart + pick(0, 30);
    }
    if (oneIn(2))
        view.PlayMark = model_.PlayMark = oneIn(4) ? 0 : pick(0, model_.NumNotes);
    if (oneIn(5))
        view.ViewFirstColumn = model_.ViewFirstColumn = pick(0, model_.NumNotes - 5);
    if (oneIn(5))
        view.ViewColumns = model_.ViewColumns = pick(8, 30);
    if (oneIn(3)) {
        model_.CycleNotes = oneIn(15) ? pick(-4, 200) : pick(0, 24);
        model_.CycleBeats = oneIn(15) ? pick(-2, 200) : pick(0, 30);
        model_.TotalNotes = oneIn(15) ? pick(-4, 300) : pick(0, 90);
        model_.Txtspc = oneIn(15) ? pick(-6, 150) : pick(0, 20);
        edit.CycleNotes = static_cast<std::int16_t>(model_.CycleNotes);
        edit.CycleBeats = static_cast<std::int16_t>(model_.CycleBeats);
        edit.TotalNotes = static_cast<std::int16_t>(model_.TotalNotes);
        edit.Txtspc = static_cast<std::int16_t>(model_.Txtspc);
    }
}

/// As far as undo sees it: a snapshot unless it is percussion, cells, the search for the end.
void Walk::stroke() {
    Score& score = workspace_.score;
    if (score.ActiveChannel < kMelodyChannels) {
        workspace_.undo.SaveforUndo(score, workspace_.setup);
        model_.keepChannel();
    }
    drawNote(score.ActiveChannel, pick(0, model_.NumNotes), pick(1, 12));
    const auto channel = static_cast<std::size_t>(score.ActiveChannel);
    model_.instrument[channel] = pick(0, 174);
    score.ChannelInstrument[channel] = static_cast<std::int16_t>(model_.instrument[channel]);
    score.FindEndOfSong();
    model_.findEndOfSong();
}

void Walk::duplicate() {
    const int row = pick(0, 127);
    duplicateNotes(workspace_, [&] {
        Score& score = workspace_.score;
        workspace_.undo.SaveforUndo(score, workspace_.setup); // must not take the step's place
        score.NoteCell.set(score.ActiveChannel, workspace_.view.ViewFirstColumn,
                           static_cast<std::int16_t>(row));
    });
    model_.duplicate([&] {
        model_.score[EditModel::Cell][static_cast<std::size_t>(model_.ActiveChannel)]
                    [static_cast<std::size_t>(model_.ViewFirstColumn)] = static_cast<std::int16_t>(row);
    });
}

void Walk::changeLength() {
    const int numNotes = pick(40, 120);
    workspace_.score.resizeNotes(numNotes);
    model_.setLength(numNotes);
    workspace_.view.ViewFirstColumn = model_.ViewFirstColumn = 0;
}

std::string Walk::command() {
    const int column = pick(-2, model_.ViewColumns + 2);
    switch (pick(0, 12)) {
    case 0:
        copyIt(workspace_);
        model_.copy();
        return "copy";
    case 1:
        CutBut_Click(workspace_);
        model_.cut();
        return "cut";
    case 2:
        PasteBut_Click(workspace_, column);
        model_.pasteOver(column);
        return "paste overwrite";
    case 3:
        PasteIntoBut_Click(workspace_, column);
        model_.pasteInsert(column);
        return "paste insert";
    case 4:
        InsertColumnBut_Click(workspace_, column);
        model_.insert(model_.Txtspc, column);
        return "insert";
    case 5:
        duplicate();
        return "duplicate";
    case 6:
        duplicateMelody(workspace_);
        model_.duplicateMelody();
        return "duplicate melody";
    case 7: {
        const int start = pick(0, model_.NumNotes);
        createMelody(workspace_, start);
        model_.create(start);
        return "create";
    }
    case 8:
        if (!oneIn(8))
            break;
        workspace_.clear();
        model_.clear();
        return "clear";
    case 9:
        if (!oneIn(10))
            break;
        changeLength();
        return "length";
    case 10:
        if (!oneIn(8))
            break;
        fill();
        return "fill";
    case 11:
        stroke();
        return "stroke";
    default:
        break;
    }
    const bool undone = model_.undo();
    EXPECT_EQ(workspace_.undoLast().done, undone);
    if (undone) { // shown from its beginning
        model_.ViewFirstColumn = model_.PlayMark = 0;
        model_.SelectStart = model_.SelectEnd = -1;
    }
    return "undo";
}

void Walk::expectSame() const {
    for (std::size_t layer = 0; layer < kPairs.size(); ++layer) {
        const auto& [name, cells, clip] = kPairs[layer];
        for (std::size_t row = 0; row < 16; ++row) {
            const auto got = (workspace_.score.*cells).row(static_cast<int>(row));
            if (!std::ranges::equal(got, model_.score[layer][row]))
                ADD_FAILURE() << name << " row " << row;
            const auto buffer = (workspace_.score.*clip).row(static_cast<int>(row));
            if (!std::ranges::equal(buffer, model_.clip[layer][row]))
                ADD_FAILURE() << "buffer of " << name << " row " << row;
        }
    }
    expectSameRecords();
}

void Walk::expectSameRecords() const {
    const Score& score = workspace_.score;
    const ViewState& view = workspace_.view;
    const EditState& edit = workspace_.edit;
    EXPECT_EQ(score.NumNotes, model_.NumNotes);
    EXPECT_EQ(view.SelectStart, model_.SelectStart);
    EXPECT_EQ(view.SelectEnd, model_.SelectEnd);
    EXPECT_EQ(view.PlayMark, model_.PlayMark);
    EXPECT_EQ(edit.SelectSpan, model_.SelectSpan);
    EXPECT_EQ(edit.ClipChannel, model_.ClipChannel);
    EXPECT_EQ(edit.CycleNotes, model_.CycleNotes);
    EXPECT_EQ(edit.CycleBeats, model_.CycleBeats);
    EXPECT_EQ(edit.TotalNotes, model_.TotalNotes);
    EXPECT_EQ(score.ActiveChannel, model_.ActiveChannel);
    EXPECT_EQ(score.SongEnd, model_.SongEnd);
    EXPECT_EQ(score.ChannelInUse.values, model_.inUse);
    EXPECT_TRUE(std::equal(model_.shown.begin(), model_.shown.end(), score.ChannelShown.begin()));
    EXPECT_TRUE(
        std::equal(model_.instrument.begin(), model_.instrument.end(), score.ChannelInstrument.begin()));
}

struct EditModelTest : WorkspaceFixture {
    std::mt19937 random{20261};
};

} // namespace

TEST_F(EditModelTest, ThousandsOfCommandsLeaveWhatTheRulesSay) {
    const int wanted = commandsToWalk();
    for (int done = 0; done < wanted;) {
        store("NumNotes", std::to_string(std::uniform_int_distribution(40, 120)(random)));
        Workspace fresh(settings, folders);
        Walk walk(fresh, random);
        std::string told;
        for (int number = 0; number < kCommandsOfOneScore && done < wanted; ++number, ++done) {
            walk.turnSwitches();
            told += walk.step() + ", ";
            walk.expectSame();
            if (HasFailure())
                FAIL() << "after command " << done << ": " << told;
        }
    }
}
