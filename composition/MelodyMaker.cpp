// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/MelodyMaker.h"

#include "composition/BlockChannels.h"
#include "composition/CellMoves.h"
#include "composition/CopyBuffers.h"
#include "composition/ScoreLayers.h"
#include "composition/Workspace.h"

#include <algorithm>
#include <span>
#include <vector>

namespace velmora {

namespace {
constexpr std::int16_t kUsualCycle = 8; ///< for a length or a loop of 0
constexpr int kPictureStep = 10;
constexpr int kMeasuresOfLargeStep = 10;

using Channels = PerChannel<bool, kUsedChannels>;

struct StampChannels {
    Channels stamped;
    Channels mended; ///< where an older note that a stamp cuts goes on as a note of its own
};

template<typename Answer>
Channels channelsOf(int first, int last, Answer answer) {
    Channels channels;
    for (int channel = std::max(first, 0); channel <= std::min(last, kUsedChannels - 1); ++channel)
        channels[channel] = answer(channel);
    return channels;
}

/// Where a stamp goes.
struct Stamp {
    int at;
    int stop;        ///< its last position
    int count;       ///< positions of it that the next one leaves
    bool overlapped; ///< by the next one, which writes the cell after `stop` too
};

std::vector<Stamp> stampsOf(const Workspace& workspace, const Cycle& cycle) {
    const int end = workspace.score.NumNotes;
    const int last = workspace.view.PlayMark + cycle.total;
    std::vector<Stamp> stamps;
    for (int at = workspace.view.PlayMark; at <= last && cycle.beats > 0; at += cycle.beats) {
        const int stop = std::min(at + workspace.edit.SelectSpan, end);
        if (at > end && stop == end)
            break; // this one and all others lie behind the score's end
        const int next = at + cycle.beats;
        const bool overlapped = next <= std::min(last, end) && next <= stop + 1;
        stamps.push_back({at, stop, (overlapped ? next : stop + 1) - at, overlapped});
    }
    return stamps;
}

/// Repeats the first @p period cells of @p from in @p to, from @p first up to before @p end: with copies that
/// double in length, since a loop may be a single cell long.
void tile(std::span<const std::int16_t> from, int shift, std::span<std::int16_t> to, int first, int end,
          int period) {
    copyCells(from, shift, to, first, period);
    for (int done = period; first + done < end; done *= 2)
        copyCells(to, first, to, first + done, std::min(done, end - first - done));
}

void stampRow(std::span<const std::int16_t> from, std::span<std::int16_t> to, int shift,
              const std::vector<Stamp>& stamps) {
    // Where stamps overlap, all but the last leave the same cells.
    const Stamp& first = stamps.front();
    const Stamp& last = stamps.back();
    const bool tiled =
        first.overlapped && first.at >= 0 && static_cast<std::size_t>(first.count + shift) <= from.size();
    if (tiled)
        tile(from, shift, to, first.at + shift, last.at + shift, first.count);
    for (const Stamp& stamp : std::span(stamps).last(tiled ? 1 : stamps.size()))
        copyCells(from, shift, to, stamp.at + shift, stamp.count);
}

/// Stamps from `PlayMark` on. Of a stamp that the next one overlaps only what stays is written, so that the
/// work is that of one walk over the score.
void stampAlong(Workspace& workspace, const StampChannels& channels) {
    Score& score = workspace.score;
    const Cycle cycle = cycleOf(workspace.edit, workspace.manners);
    if (!workspace.manners.motifBeginsAtStart) { // the fields show what they stood for
        workspace.edit.TotalNotes = cycle.total;
        workspace.edit.CycleBeats = cycle.beats;
    }
    const std::vector<Stamp> stamps = stampsOf(workspace, cycle);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        const bool stamped = channels.stamped[channel];
        for (const ScoreLayer& layer : kScoreLayers) {
            if (stamped && !stamps.empty())
                stampRow((score.*layer.clip).row(channel + layer.channelShift),
                         (score.*layer.cells).row(channel + layer.channelShift), layer.positionShift, stamps);
        }
        if (!channels.mended[channel])
            continue;
        for (const Stamp& stamp : stamps) {
            if (stamp.stop < score.NumNotes && !(stamped && stamp.overlapped))
                makeHead(score.NoteCell, channel, stamp.stop + 1);
        }
    }
}

void pick(EditState& edit, int first, int last, bool ticked) {
    for (int channel = first; channel <= last; ++channel)
        edit.ChannelPicked[channel] = ticked;
}

std::int16_t fieldValue(int number) {
    return static_cast<std::int16_t>(std::clamp<int>(number, INT16_MIN, INT16_MAX));
}
} // namespace

Cycle cycleOf(const EditState& edit, const Manners& manners) {
    const auto orElse = [](std::int16_t value, std::int16_t blank) { return value != 0 ? value : blank; };
    if (!manners.motifBeginsAtStart)
        return {orElse(edit.TotalNotes, kUsualCycle), orElse(edit.CycleBeats, kUsualCycle), edit.CycleNotes};
    const std::int16_t beats = orElse(edit.CycleBeats, kWorkedExample.beats);
    return {orElse(edit.TotalNotes, kWorkedExample.total), beats,
            orElse(edit.CycleNotes, std::min(kWorkedExample.notes, beats))};
}

void CopyMelody(Workspace& workspace, int& start, int firstChannel, int lastChannel) {
    Score& score = workspace.score;
    ViewState& view = workspace.view;
    const int first = start;
    const int notes = cycleOf(workspace.edit, workspace.manners).notes;
    eraseNoteBuffers(score);
    for (const ScoreLayer& layer : kScoreLayers)
        (score.*layer.clip).resize(score.NumNotes + 1);
    view.SelectEnd = first + notes;
    workspace.edit.SelectSpan = notes;
    const Channels picked = channelsOf(firstChannel, lastChannel, [&](int channel) {
        return workspace.manners.oneChannelSet ? worksOn(workspace, BlockCommand::Copy, channel)
                                               : workspace.edit.ChannelPicked[channel];
    });
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (!picked[channel])
            continue;
        copyToBuffers(score, channel, first, notes);
        // The motif is one cell longer in the notes than in chords and effects; that is meant.
        copyNotesToBuffers(score, channel, first, notes + 1);
    }
    makeFirstHeads(score);
    view.PlayMark += first;
    start = -1;
    view.SelectEnd = -1;
    stampAlong(workspace, {picked, picked});
    for (int channel = std::max(firstChannel, 0); channel <= std::min(lastChannel, kUsedChannels - 1);
         ++channel) {
        if (score.ChannelInUse[channel])
            score.ChannelShown[channel] = true;
    }
    view.PlayMark = 0;
}

void CopyRepeat(Workspace& workspace, int firstChannel, int lastChannel) {
    StampChannels channels;
    channels.stamped = channelsOf(firstChannel, lastChannel, [&](int channel) {
        return worksOn(workspace, BlockCommand::Copy, channel);
    });
    // In classic manners the mutes decide what is mended, and not what is stamped; that is meant.
    channels.mended = channelsOf(firstChannel, lastChannel, [&](int channel) {
        return workspace.manners.oneChannelSet ? channels.stamped[channel]
                                               : !workspace.score.ChannelMuted[channel];
    });
    stampAlong(workspace, channels);
}

void createMelody(Workspace& workspace, int txtStart) {
    const Edit edit(workspace, kAnyNotes | Change::Marks);
    workspace.keepForUndo("Create Melody");
    workspace.view.SelectStart = workspace.manners.motifBeginsAtStart ? std::max(txtStart - 1, 0) : txtStart;
    CopyMelody(workspace, workspace.view.SelectStart, 0, kUsedChannels - 1);
}

void duplicateMelody(Workspace& workspace) {
    const Edit scope(workspace, kAnyNotes | Change::Marks);
    workspace.keepForUndo("Duplicate notes");
    const EditState& edit = workspace.edit;
    // Single Note Effects take percussion in without its box; that is meant.
    const bool percussion = edit.Check3 || workspace.view.NoteEffectsOn;
    // In careful manners a box leaves the other group out, and with neither the set alone counts.
    const bool all = workspace.manners.oneChannelSet && !edit.Check5 && !edit.Check3;
    CopyMelody(workspace, workspace.view.SelectStart, all || edit.Check5 ? 0 : kFirstPercussion,
               all || percussion ? kUsedChannels - 1 : kMelodyChannels - 1);
}

void takeCycle(EditState& edit, const Manners& manners, int notesInLoop, int playableNotes) {
    edit.CycleBeats = fieldValue(notesInLoop);
    const int loop = manners.motifBeginsAtStart ? cycleOf(edit, manners).beats : notesInLoop;
    edit.CycleNotes = fieldValue(std::min(playableNotes, loop));
}

void takeStart(Workspace& workspace, int txtStart) {
    const Edit scope(workspace, Change::Marks);
    EditState& edit = workspace.edit;
    ViewState& view = workspace.view;
    edit.txtStart = fieldValue(txtStart);
    view.SelectStart = txtStart - 1;
    const bool isBlank = edit.TotalNotes == 0 && workspace.manners.motifBeginsAtStart;
    if ((isBlank ? kWorkedExample.total : edit.TotalNotes) < view.SelectStart)
        edit.TotalNotes = fieldValue(view.SelectStart + 1);
}

int steppedByPicture(int value, int x, int width, FieldRange range) {
    const int stepped = 2 * x < width ? value - kPictureStep : value + kPictureStep;
    return std::clamp(stepped, range.least, std::max(range.least, range.most));
}

FieldSteps startSteps(const Score& score) {
    return {score.NotesPerMeasure, score.NotesPerMeasure * kMeasuresOfLargeStep};
}

void pickMelody(EditState& edit, bool ticked) {
    pick(edit, 0, kMelodyChannels - 1, ticked);
}

void pickPercussion(EditState& edit, bool ticked) {
    pick(edit, kFirstPercussion, kFirstPercussion, ticked);
    pick(edit, kFirstPercussion + 2, kUsedChannels - 1, ticked); // there is no channel 9
}

} // namespace velmora
