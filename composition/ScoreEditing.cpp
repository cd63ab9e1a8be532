// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreEditing.h"

#include "composition/CellMoves.h"
#include "composition/CopyBuffers.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreLayers.h"
#include "composition/Workspace.h"

#include <algorithm>

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

/// Makes heads of continuations at a position, in every channel that isn't muted: the boxes and
/// `CopyonlyOneTrack` don't matter here, which is meant.
void makeHeads(Score& score, int position) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (!isMuted(score, channel))
            makeHead(score.NoteCell, channel, position);
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

void pushRight(Score& score, int channel, int first, int by) {
    for (const ScoreLayer& layer : kScoreLayers) {
        const auto row = (score.*layer.cells).row(channel + layer.channelShift);
        const int begin = first + layer.positionShift;
        pushCells(row, begin + by, score.NumNotes + layer.positionShift, by);
        fillCells(row, begin, by, layer.cleared);
    }
}

void pasteOver(Workspace& workspace, int ViewCol) {
    ViewState& view = workspace.view;
    const int end = std::min(view.PlayMark + workspace.edit.SelectSpan, workspace.score.NumNotes);
    view.SelectEnd = view.ViewFirstColumn + ViewCol;
    forChannels(workspace, BlockCommand::Paste, [&](int channel) {
        // A single channel goes to the one that is active now.
        const int source = workspace.CopyonlyOneTrack ? workspace.edit.ClipChannel : channel;
        pasteFromBuffers(workspace.score, source, channel, view.PlayMark, end - view.PlayMark + 1);
    });
    if (end < kLastHeadedPosition)
        makeHeads(workspace.score, end + 1);
}

int withinView(const ViewState& view, int column) {
    return std::clamp(column, 0, std::max(view.ViewColumns, 0));
}
} // namespace

void CopySelectedArea(Workspace& workspace, BlockCommand command) {
    Score& score = workspace.score;
    const int first = workspace.view.SelectStart;
    workspace.edit.SelectSpan = workspace.view.SelectEnd - first;
    if (workspace.CopyonlyOneTrack)
        workspace.edit.ClipChannel = score.ActiveChannel;
    eraseNoteBuffers(score);
    forChannels(workspace, command,
                [&](int channel) { copyToBuffers(score, channel, first, workspace.edit.SelectSpan + 1); });
    makeFirstHeads(score);
}

bool copyIt(Workspace& workspace) {
    ViewState& view = workspace.view;
    if (view.SelectStart < 0)
        return false;
    const Edit edit(workspace, Change::Marks);
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
    const Edit edit(workspace, kMoved);
    workspace.keepForUndo("Cut Selection");
    CopySelectedArea(workspace, BlockCommand::Cut);
    const int span = workspace.edit.SelectSpan;
    forChannels(workspace, BlockCommand::Cut,
                [&](int channel) { pullLeft(score, channel, view.SelectStart, span); });
    makeHeads(score, view.SelectStart);
    // The end is emptied in every channel that isn't muted, even when a single one was cut; that is meant.
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (isMuted(score, channel))
            continue;
        fillCells(score.NoteCell.row(channel), score.NumNotes + 1 - span, span, kEmptyCell);
        fillCells(score.NoteInstrument.row(channel), score.NumNotes + 1 - span, span, 0);
    }
    clearMarks(view);
    return true;
}

void PasteBut_Click(Workspace& workspace, int ViewCol) {
    const Edit edit(workspace, kMoved);
    workspace.keepForUndo("Paste (Overwrite)");
    pasteOver(workspace, ViewCol);
}

void PasteIntoBut_Click(Workspace& workspace, int ViewCol) {
    const Edit edit(workspace, kMoved);
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
    workspace.keepForUndo("Insert Space(s)");
    InsertSpaces(workspace, std::max<int>(workspace.edit.Txtspc, 0), ViewCol);
}

void CopyNotes(Workspace& workspace, int firstChannel, int lastChannel,
               const std::function<void()>& pressCorner) {
    ViewState& view = workspace.view;
    view.SelectStart = 0;
    view.SelectEnd = workspace.edit.CycleNotes;
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
    CopyNotes(workspace, workspace.edit.Check2 ? 0 : kFirstPercussion,
              workspace.view.NoteEffectsOn ? kUsedChannels - 1 : kMelodyChannels - 1, pressCorner);
}

} // namespace velmora
