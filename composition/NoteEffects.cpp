// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/NoteEffects.h"

#include "composition/OpenedScore.h"
#include "composition/Workspace.h"
#include "score/NotePlayer.h"
#include "score/Numbers.h"
#include "sound/Instruments.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kCentredPan = 64; ///< shown as 0
constexpr int kMostValue = 127;
constexpr std::string_view kNoMelodyHere = "This is a percussion instrument";

/// The four effects that have a read-out, in its order.
struct EffectLayer {
    ChannelGrid Score::*grid;
    std::int16_t cleared;
    int shownAsZero;
    std::int16_t EffectSelectors::*selector;
};
constexpr std::array kEffectLayers{
    EffectLayer{&Score::Modulation_Change, kClearedEffect, 0, &EffectSelectors::T1},
    EffectLayer{&Score::Pan_Change, kClearedPan, kCentredPan, &EffectSelectors::T2},
    EffectLayer{&Score::Reverb_Change, kClearedEffect, 0, &EffectSelectors::T3},
    EffectLayer{&Score::Chorus_Change, kClearedEffect, 0, &EffectSelectors::T4},
};
static_assert(kEffectLayers.size() == std::tuple_size_v<EffectPlaces>);

bool isMelody(int channel) {
    return channel < kMelodyChannels;
}

CellClass classAt(const Score& score, int position) {
    return cellClass(score.NoteCell.valueOr(score.ActiveChannel, position, kEmptyCell));
}

void giveInstrumentAndChord(Workspace& workspace, int position) {
    Score& score = workspace.score;
    const EffectSelectors& effects = workspace.effects;
    const int channel = score.ActiveChannel;
    const bool refused =
        workspace.manners.givesWholeNoteAllEffects && !refusalOf(score, effects.NoteInstrumentPick).empty();
    if (!refused)
        score.NoteInstrument.set(channel, position, effects.NoteInstrumentPick);
    if (isMelody(channel))
        score.Polyphonics.set(channel + 1, position, effects.Combo3);
}

void giveEffects(Score& score, const EffectSelectors& effects, int position) {
    for (const EffectLayer& layer : kEffectLayers)
        (score.*layer.grid)
            .set(score.ActiveChannel, position + 1,
                 static_cast<std::int16_t>(effects.*layer.selector + layer.shownAsZero));
}

void giveAllEffects(Workspace& workspace, NoteCells cells) {
    Score& score = workspace.score;
    giveVolume(score, score.ActiveChannel, workspace.effects.vol3, cells);
    for (int position = cells.first; isMelody(score.ActiveChannel) && position <= cells.last; ++position)
        giveEffects(score, workspace.effects, position);
}

void sound(Workspace& workspace, NotePlayer& player, int head) {
    const Score& score = workspace.score;
    const int channel = score.ActiveChannel;
    if (score.ChannelMuted[channel])
        return;
    workspace.play.PlayPosition = head; // chord and effects are read there
    player.ChangeInstrument(score.NoteInstrument.valueOr(channel, head, 0), channel);
    player.Startnote(cellRow(score.NoteCell.valueOr(channel, head, 0)), channel);
}

void resetSetup(Workspace& workspace) {
    workspace.setup.Ch.fill(false);
    workspace.setup.Chkstrum.fill(false);
    workspace.selectChannel(0);
    workspace.score.Tempo = 100;
}
} // namespace

std::optional<NoteCells> applyNoteEffects(Workspace& workspace, NotePlayer& player, int head) {
    Score& score = workspace.score;
    const int channel = score.ActiveChannel;
    NoteCells cells{std::max(head, 0), head};
    while (classAt(score, cells.last + 1) == CellClass::Continuation)
        ++cells.last;
    if (cells.last < cells.first || !score.NoteCell.contains(channel, cells.first))
        return std::nullopt;
    const Edit edit(workspace, changeOfNotes(channel));
    workspace.history.name("Single Note Effects");
    for (int position = cells.first; position <= cells.last; ++position)
        giveInstrumentAndChord(workspace, position);
    if (workspace.manners.givesWholeNoteAllEffects)
        giveAllEffects(workspace, cells);
    if (classAt(score, head) == CellClass::Head)
        sound(workspace, player, head);
    return cells;
}

std::optional<NoteReadout> applyAlongIndicator(Workspace& workspace, int position) {
    Score& score = workspace.score;
    const EffectSelectors& effects = workspace.effects;
    const int channel = score.ActiveChannel;
    if (workspace.play.Playing || !score.NoteCell.contains(channel, position))
        return std::nullopt;
    const Edit edit(workspace, changeOfNotes(channel));
    workspace.history.name("Single Note Effects");
    // An empty cell takes it like a note; that is meant.
    score.NoteInstrument.set(channel, position,
                             isMelody(channel) ? score.ChannelInstrument[channel]
                                               : workspace.instruments.PercussionInstrument);
    score.Volume.set(channel, position + 1, effects.vol3);
    if (isMelody(channel)) {
        // In classic manner one position after the one that playing reads; that is meant.
        const int read = workspace.manners.storesChordType ? position : position + 1;
        score.Polyphonics.set(channel + 1, read, effects.Combo3);
        giveEffects(score, effects, position);
    }
    return readNote(score, position);
}

void ClearEffects(Workspace& workspace) {
    const Edit edit(workspace, kAnotherScore);
    workspace.history.name("Undo all Single Note Effects");
    Score& score = workspace.score;
    score.currentFile.clear();
    for (int row = 0; row < ChannelGrid::kChannels; ++row)
        score.Polyphonics.fillRow(row, 0);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        score.Volume.fillRow(channel, kClearedVolume);
        for (const EffectLayer& layer : kEffectLayers)
            (score.*layer.grid).fillRow(channel, layer.cleared);
        // Empty cells and percussion get the melody instrument like all others; that is meant.
        score.NoteInstrument.fillRow(channel, workspace.instruments.MelodyInstrument);
    }
    if (workspace.setup.SetupOpen)
        resetSetup(workspace);
    workspace.showFromStart();
    score.TopChannel = 1;
    score.TopMelodyHint = 0;
    score.TopDrumHint = 0;
    hearUsedChannels(workspace);
}

std::string_view refusalOf(const Score& score, std::int16_t code) {
    return isMelody(score.ActiveChannel) || code >= kFirstPercussionCode ? std::string_view() : kNoMelodyHere;
}

std::string_view applyInstrumentToSelection(Workspace& workspace, std::int16_t code) {
    Score& score = workspace.score;
    const ViewState& view = workspace.view;
    if (const auto refusal = refusalOf(score, code); !refusal.empty())
        return refusal;
    Edit edit(workspace, Change::Tools | Change::Instruments);
    workspace.history.name("Instrument");
    workspace.effects.NoteInstrumentPick = code;
    if (view.SelectStart < 0)
        return {};
    edit.add(changeOfNotes(score.ActiveChannel));
    const int last = std::min(view.SelectEnd, score.NumNotes);
    for (int position = view.SelectStart; position <= last; ++position) {
        if (classAt(score, position) != CellClass::Empty)
            score.NoteInstrument.set(score.ActiveChannel, position, code);
    }
    score.ChannelInstrument[score.ActiveChannel] = code;
    return {};
}

EffectPlaces doNotemod(const Score& score, int position, int height) {
    EffectPlaces places;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const EffectLayer& layer = kEffectLayers[i];
        const int value = (score.*layer.grid).valueOr(score.ActiveChannel, position + 1, layer.cleared);
        places[i].shown = value - layer.shownAsZero;
        places[i].pointerTop = static_cast<int>(roundHalfEven(height - double(value) * height / kMostValue));
    }
    return places;
}

int selectorValue(int top, int stripHeight, int pointerHeight) {
    const int travel = stripHeight - pointerHeight;
    if (travel <= 0)
        return kMostValue;
    return kMostValue - std::clamp(top, 0, travel) * kMostValue / travel;
}

} // namespace velmora
