// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreEditing.h"

#include "composition/CellMoves.h"
#include "composition/CopyBuffers.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreLayers.h"
#include "composition/Workspace.h"

#include <algorithm>
#include <functional>
#include <span>
#include <string>

namespace velmora {

namespace {
constexpr int kLastHeadedPosition =
    1000; ///< whatever the score's length: a paste that ends here mends nothing

constexpr Changes kMoved = kAnyNotes | Change::Marks;

bool isMuted(const Score& score, int channel) {
    return score.ChannelMuted[channel];
}

template<typename Work>
void forChannels(const Workspace& workspace, BlockCommand command, Work work) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (worksOn(workspace, command, channel))
            work(channel);
    }
}

/// Where a command mends what it has cut: in classic manners in every channel that isn't muted, for the boxes
/// and `CopyonlyOneTrack` don't matter there, which is meant.
bool mends(const Workspace& workspace, BlockCommand command, int channel) {
    return workspace.manners.oneChannelSet ? worksOn(workspace, command, channel)
                                           : !isMuted(workspace.score, channel);
}

/// Makes heads of continuations at a position.
void makeHeads(Workspace& workspace, BlockCommand command, int position) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (mends(workspace, command, channel))
            makeHead(workspace.score.NoteCell, channel, position);
    }
}

void clearMarks(ViewState& view) {
    view.SelectStart = view.SelectEnd = -1;
}

void pullLeft(Score& score, int channel, int first, int by) {
    for (const ScoreLayer& layer : kScoreLayers)
        pullCells((score.*layer.cells).row(channel + layer.channelShift), first + layer.positionShift,
                  score.NumNotes - by + layer.positionShift, by);
}

/// What is left at the score's end once @p count positions have gone.
void clearEnd(Score& score, int channel, int count, std::span<const ScoreLayer> layers) {
    for (const ScoreLayer& layer : layers)
        fillCells((score.*layer.cells).row(channel + layer.channelShift),
                  score.NumNotes + 1 - count + layer.positionShift, count, layer.cleared);
}

void pushRight(Score& score, int channel, int first, int by) {
    for (const ScoreLayer& layer : kScoreLayers) {
        const auto row = (score.*layer.cells).row(channel + layer.channelShift);
        const int begin = first + layer.positionShift;
        pushCells(row, begin + by, score.NumNotes + layer.positionShift, by);
        fillCells(row, begin, by, layer.cleared);
    }
}

/// The channel of the buffers that is pasted into @p channel; -1 for none.
int sourceOf(const Workspace& workspace, int channel) {
    const EditState& edit = workspace.edit;
    if (worksOnOneTrack(workspace)) // a single channel goes to the one that is active now
        return edit.ClipChannel;
    const bool held = !workspace.manners.oneChannelSet || edit.ClipHeld[channel];
    return held ? channel : -1;
}

void pasteOver(Workspace& workspace, int ViewCol) {
    ViewState& view = workspace.view;
    const int end = std::min(view.PlayMark + workspace.edit.SelectSpan, workspace.score.NumNotes);
    view.SelectEnd = view.ViewFirstColumn + ViewCol;
    forChannels(workspace, BlockCommand::Paste, [&](int channel) {
        if (const int source = sourceOf(workspace, channel); source >= 0)
            pasteFromBuffers(workspace.score, source, channel, view.PlayMark, end - view.PlayMark + 1);
    });
    if (end < kLastHeadedPosition || workspace.manners.takesWhatIsMarked)
        makeHeads(workspace, BlockCommand::Paste, end + 1);
}

void namePaste(Workspace& workspace) {
    workspace.history.name("Paste " + columnsInWords(workspace.edit.SelectSpan + 1));
}

int withinView(const ViewState& view, int column) {
    return std::clamp(column, 0, std::max(view.ViewColumns, 0));
}
} // namespace

void CopySelectedArea(Workspace& workspace, BlockCommand command) {
    Score& score = workspace.score;
    EditState& edit = workspace.edit;
    const int first = workspace.view.SelectStart;
    edit.SelectSpan = workspace.view.SelectEnd - first;
    if (worksOnOneTrack(workspace))
        edit.ClipChannel = score.ActiveChannel;
    edit.ClipHeld.fill(false);
    eraseNoteBuffers(score);
    forChannels(workspace, command, [&](int channel) {
        if (workspace.manners.oneChannelSet && std::ranges::none_of(edit.ClipHeld, std::identity()))
            edit.ClipChannel = channel;
        edit.ClipHeld[channel] = true;
        copyToBuffers(score, channel, first, edit.SelectSpan + 1);
    });
    makeFirstHeads(score);
}

bool copyIt(Workspace& workspace) {
    ViewState& view = workspace.view;
    const bool marked = workspace.manners.takesWhatIsMarked;
    if (view.SelectStart < 0 || (marked && view.SelectEnd < view.SelectStart))
        return false;
    const Edit edit(workspace, Change::Marks);
    if (!marked)
        view.SelectEnd = view.SelectStart + workspace.edit.CycleNotes;
    CopySelectedArea(workspace, BlockCommand::Copy);
    clearMarks(view);
    return true;
}

bool CutBut_Click(Workspace& workspace) {
    ViewState& view = workspace.view;
    Score& score = workspace.score;
    if (view.SelectStart < 0 || view.SelectEnd < 0) // a start that was typed alone selects nothing yet
        return false;
    if (workspace.manners.takesWhatIsMarked && view.SelectEnd < view.SelectStart)
        return false;
    const Edit edit(workspace, kMoved);
    const int marked = view.SelectEnd - view.SelectStart + 1;
    workspace.history.name("Cut " + columnsInWords(marked));
    workspace.keepForUndo("Cut Selection");
    CopySelectedArea(workspace, BlockCommand::Cut);
    // One position of what is marked stays behind in classic manners; that is meant.
    const int gone = workspace.manners.takesWhatIsMarked ? marked : workspace.edit.SelectSpan;
    forChannels(workspace, BlockCommand::Cut,
                [&](int channel) { pullLeft(score, channel, view.SelectStart, gone); });
    makeHeads(workspace, BlockCommand::Cut, view.SelectStart);
    // There the end is emptied of notes alone, in every channel that isn't muted, even when a single one was
    // cut; that is meant, too.
    const std::span<const ScoreLayer> layers(kScoreLayers);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (mends(workspace, BlockCommand::Cut, channel))
            clearEnd(score, channel, gone,
                     workspace.manners.takesWhatIsMarked ? layers : layers.first<kNoteLayers>());
    }
    clearMarks(view);
    return true;
}

void PasteBut_Click(Workspace& workspace, int ViewCol) {
    const Edit edit(workspace, kMoved);
    namePaste(workspace);
    workspace.keepForUndo("Paste (Overwrite)");
    pasteOver(workspace, ViewCol);
}

void PasteIntoBut_Click(Workspace& workspace, int ViewCol) {
    const Edit edit(workspace, kMoved);
    namePaste(workspace);
    workspace.keepForUndo("Paste (Insert)");
    InsertSpaces(workspace, workspace.edit.SelectSpan + 1, ViewCol);
    pasteOver(workspace, withinView(workspace.view, ViewCol));
}

void InsertSpaces(Workspace& workspace, int n, int ViewCol) {
    ViewState& view = workspace.view;
    view.SelectEnd = view.ViewFirstColumn + withinView(view, ViewCol);
    forChannels(workspace, BlockCommand::InsertSpaces,
                [&](int channel) { pushRight(workspace.score, channel, view.PlayMark, n); });
}

void InsertColumnBut_Click(Workspace& workspace, int ViewCol) {
    const Edit edit(workspace, kMoved);
    const int spaces = std::max<int>(workspace.edit.Txtspc, 0);
    workspace.history.name("Insert " + columnsInWords(spaces));
    workspace.keepForUndo("Insert Space(s)");
    InsertSpaces(workspace, spaces, ViewCol);
}

void CopyNotes(Workspace& workspace, int firstChannel, int lastChannel,
               const std::function<void()>& pressCorner) {
    ViewState& view = workspace.view;
    view.SelectStart = 0;
    view.SelectEnd = cycleOf(workspace.edit, workspace.manners).notes;
    CopySelectedArea(workspace, BlockCommand::Copy);
    clearMarks(view);
    CopyRepeat(workspace, firstChannel, lastChannel);
    view.MouseMode = Mouse::Draw;
    if (pressCorner) {
        const UndoSnapshot::Hold hold(workspace.undo);
        pressCorner();
    }
    view.PlayMark = 0;
}

void duplicateNotes(Workspace& workspace, const std::function<void()>& pressCorner) {
    const Edit edit(workspace, kMoved | Change::Modes);
    workspace.keepForUndo("Duplicate notes");
    const bool all = workspace.manners.oneChannelSet; // which channels, the set says alone
    CopyNotes(workspace, all || workspace.edit.Check2 ? 0 : kFirstPercussion,
              all || workspace.view.NoteEffectsOn ? kUsedChannels - 1 : kMelodyChannels - 1, pressCorner);
}

} // namespace velmora
