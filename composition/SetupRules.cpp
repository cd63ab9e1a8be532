// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/SetupRules.h"

#include "base/Settings.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "score/ApplyInstrument.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

namespace velmora {

namespace {
constexpr int kMostInt16 = std::numeric_limits<std::int16_t>::max();
constexpr int kTempoSteps = 125;
constexpr int kTempoStep = 4;
constexpr int kMostVolume = 127;

/// The whole part of the share of the bar times @p most.
int wholePart(int offset, int barWidth, int most) {
    if (barWidth <= 0)
        return 0;
    return static_cast<int>(std::int64_t{std::clamp(offset, 0, barWidth)} * most / barWidth);
}

int meterProduct(const SetupState& setup) {
    return int{setup.TxtMeter} * setup.NoteX;
}

/// A number that doesn't fit leaves the field as it was.
bool setBeats(Workspace& workspace, int beats) {
    if (beats > kMostInt16 || beats == workspace.setup.TxBeats)
        return false;
    TxBeats_Change(workspace, static_cast<std::int16_t>(beats));
    return true;
}

/// Where a sound value is kept: of a channel, and of its positions.
struct SoundLayer {
    std::int16_t PlaybackChannelSetup::*kept;
    ChannelGrid Score::*cells; ///< the index is the position + 1
};
/// In the order of `SoundValue`.
constexpr std::array<SoundLayer, kSoundValues> kSoundLayers{{
    {&PlaybackChannelSetup::volume, &Score::Volume},
    {&PlaybackChannelSetup::modulation, &Score::Modulation_Change},
    {&PlaybackChannelSetup::pan, &Score::Pan_Change},
    {&PlaybackChannelSetup::reverb, &Score::Reverb_Change},
    {&PlaybackChannelSetup::chorus, &Score::Chorus_Change},
}};

/// The heads of a channel's notes, in their order.
std::vector<int> headsOf(const Score& score, int channel) {
    std::vector<int> heads;
    for (int position = 0; position <= score.NumNotes; ++position)
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Head)
            heads.push_back(position);
    return heads;
}

/// The instrument of the active channel is the one that is chosen for new notes of its group.
void followInstrument(Workspace& workspace) {
    const int channel = workspace.score.ActiveChannel;
    const std::int16_t code = workspace.score.ChannelInstrument[channel];
    const bool melody = channel < kFirstPercussion;
    InstrumentSelection& chosen = workspace.instruments;
    if (melody != (code < kFirstPercussionCode) || nameOfCode(code).empty())
        return;
    (melody ? chosen.MelodyInstrument : chosen.PercussionInstrument) = code;
    (melody ? chosen.MelodyInstrumentName : chosen.PercussionInstrumentName) = nameOfCode(code);
    announce(workspace, Change::Instruments);
}

bool isOf(int channel, std::size_t count) {
    return static_cast<unsigned>(channel) < count;
}
} // namespace

std::optional<std::int32_t> fieldCount(std::string_view text) {
    return toInt32(std::max(0.0, leadingNumber(text)));
}

std::int16_t stepped(std::span<const std::int16_t> list, std::int16_t value, int steps) {
    for (; steps > 0; --steps) {
        const auto next = std::ranges::upper_bound(list, value);
        if (next == list.end())
            break;
        value = *next;
    }
    for (; steps < 0; ++steps) {
        const auto next = std::ranges::lower_bound(list, value);
        if (next == list.begin())
            break;
        value = *std::prev(next);
    }
    return value;
}

bool NoteX_Change(Workspace& workspace, std::int16_t value) {
    const Edit edit(workspace, Change::Meter);
    workspace.history.name("Meter");
    workspace.setup.NoteX = value;
    const int product = meterProduct(workspace.setup);
    if (product <= 16)
        return setBeats(workspace, product);
    return product % 16 == 0 && setBeats(workspace, 16);
}

bool TxtMeter_Change(Workspace& workspace, std::int16_t value) {
    const Edit edit(workspace, Change::Meter);
    workspace.history.name("Meter");
    workspace.setup.TxtMeter = value;
    const int product = meterProduct(workspace.setup);
    // A multiple of 32 is one of 16, so that 32 never results.
    return setBeats(workspace, product > 16 && product % 16 == 0 ? 16 : product);
}

void TxBeats_Change(Workspace& workspace, std::int16_t value) {
    const Edit edit(workspace, Change::Meter);
    workspace.history.name("Meter");
    workspace.setup.TxBeats = value;
    workspace.score.NotesPerMeasure = value;
}

void setTempo(Workspace& workspace, std::int16_t tempo) {
    const Edit edit(workspace, Change::Meter);
    workspace.history.name("Tempo");
    workspace.score.Tempo = tempo;
}

std::int16_t tempoAt(int offset, int barWidth) {
    return static_cast<std::int16_t>(kTempoStep * wholePart(offset, barWidth, kTempoSteps));
}

std::int16_t volumeAt(int offset, int barWidth) {
    const int volume = wholePart(offset, barWidth, kMostVolume);
    return static_cast<std::int16_t>(offset <= 0 ? kMostVolume : volume);
}

void setVelocity(Workspace& workspace, std::int16_t value) {
    Score& score = workspace.score;
    if (!isOf(score.ActiveChannel, score.ChannelVelocity.size()))
        return;
    const Edit edit(workspace, Change::Sound);
    const auto index = score.ActiveChannel;
    score.ChannelVelocity[index] = value;
    workspace.setup.channels[index].volume = value;
}

void fillVolume(Workspace& workspace, std::int16_t value) {
    const Edit edit(workspace, Change::Effects);
    workspace.history.name("Volume");
    workspace.score.Volume.fillRow(workspace.score.ActiveChannel, value);
}

void fillEffects(Workspace& workspace) {
    Score& score = workspace.score;
    const SetupState& setup = workspace.setup;
    const int channel = score.ActiveChannel;
    if (!setup.SetupOpen || !isOf(channel, setup.channels.size()))
        return;
    const Edit edit(workspace, Change::Effects);
    workspace.history.name("Effects of the channel");
    for (const SoundLayer& layer : std::span(kSoundLayers).subspan(1))
        (score.*layer.cells).fillRow(channel, setup.channels[channel].*layer.kept);
}

void setController(Workspace& workspace, SoundValue controller, std::int16_t value) {
    const int channel = workspace.score.ActiveChannel;
    if (!isOf(channel, workspace.setup.channels.size()))
        return;
    Edit edit(workspace, Change::Sound);
    workspace.history.name("Sound of the channel");
    const SoundLayer& layer = kSoundLayers[static_cast<std::size_t>(controller)];
    workspace.setup.channels[channel].*layer.kept = value;
    if (!workspace.manners.choosingKeepsEffects)
        return;
    (workspace.score.*layer.cells).fillRow(channel, value);
    edit.add(Change::Effects);
}

std::array<ShownSound, kSoundValues> shownSound(const Workspace& workspace) {
    const Score& score = workspace.score;
    const int channel = score.ActiveChannel;
    std::array<ShownSound, kSoundValues> shown;
    if (!isOf(channel, workspace.setup.channels.size()))
        return shown;
    const bool ofNotes = workspace.manners.choosingKeepsEffects;
    const int mark = workspace.view.PlayMark;
    const std::vector<int> heads = ofNotes ? headsOf(score, channel) : std::vector<int>();
    const auto next = std::ranges::lower_bound(heads, noteAt(score, channel, mark).first);
    const int position = next != heads.end() ? *next : heads.empty() ? mark : heads.front();
    for (std::size_t i = 0; i < kSoundValues; ++i) {
        const std::int16_t kept = workspace.setup.channels[channel].*kSoundLayers[i].kept;
        const ChannelGrid& cells = score.*kSoundLayers[i].cells;
        shown[i].value = ofNotes ? cells.valueOr(channel, position + 1, kept) : kept;
        shown[i].varies = std::ranges::any_of(heads, [&](int head) {
            return cells.valueOr(channel, head + 1, shown[i].value) != shown[i].value;
        });
    }
    return shown;
}

void chooseChannel(Workspace& workspace, int channel) {
    const Edit edit(workspace);
    workspace.selectChannel(channel);
    if (workspace.manners.choosingKeepsEffects)
        followInstrument(workspace);
    else
        fillEffects(workspace);
}

void TrackSel_Click(Workspace& workspace, const SettingsStore& settings, int channel) {
    const Edit edit(workspace);
    chooseChannel(workspace, channel);
    Score& score = workspace.score;
    if (score.ActiveChannel != channel)
        return;
    score.ChannelShown.fill(false);
    score.ChannelShown[channel] = true;
    if (!workspace.manners.choosingKeepsEffects)
        applyInstrument(workspace, settings);
}

void applyInstrument(Workspace& workspace, const SettingsStore& settings) {
    Edit edit(workspace, Change::Instruments);
    workspace.history.name("Instrument");
    const bool melody = workspace.score.ActiveChannel < kFirstPercussion;
    const auto apply = melody ? applyMelodyInstrument : applyPercussionInstrument;
    const std::int16_t stored =
        settings::read(settings, melody ? settings::Intrumentval : settings::Intrumentval2);
    apply(workspace.score, workspace.instruments, stored, workspace.view, [&] {
        workspace.keepChannelForUndo("Instrument");
        edit.add(changeOfNotes(workspace.score.ActiveChannel));
    });
}

void Combo3_Click(SetupState& setup, ChordSteps& chords, int item) {
    if (!isOf(item, kSetupChordNames.size()))
        return;
    setup.Combo3 = item;
    const ChordType& type = kChordTypes[static_cast<std::size_t>(item) + 1];
    chords.ChordStep1 = type.step1;
    chords.ChordStep2 = type.step2;
    chords.ChordStep3 = type.step3;
}

std::int16_t listedChord(const Workspace& workspace) {
    return static_cast<std::int16_t>(workspace.setup.Combo3 + (workspace.manners.storesChordType ? 1 : 0));
}

void Ch_Click(Workspace& workspace, int channel, bool ticked) {
    SetupState& setup = workspace.setup;
    if (!isOf(channel, setup.Ch.size()))
        return;
    Edit edit(workspace, Change::Cells);
    workspace.history.name("Chord");
    if (ticked) {
        workspace.view.RightClickMode = RightClick::Polyphonic;
        edit.add(Change::Modes);
    }
    setup.Ch[channel] = ticked;
    const std::int16_t chord = ticked ? listedChord(workspace) : std::int16_t{0};
    workspace.score.Polyphonics.fillRow(channel + 1, chord);
}

void Text3_Change(Workspace& workspace, std::int16_t height) {
    const Edit edit(workspace, Change::Looks);
    workspace.view.Line_Height = std::clamp<int>(height, kLeastLineHeight, kMostLineHeight);
}

bool setScoreLength(Workspace& workspace, std::int64_t numNotes) {
    if (numNotes < 1 || numNotes > kMostNotes)
        return false;
    Edit edit(workspace, Change::Length | Change::Marks);
    workspace.history.name("Score length");
    Score& score = workspace.score;
    const int last = static_cast<int>(numNotes);
    bool cuts = false;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        cuts = cuts || score.lastFilledPosition(channel, score.NumNotes) > last;
    if (cuts) {
        edit.add(kAnyNotes);
        workspace.keepReplaced("Subtract notes");
    }
    score.resizeNotes(last);
    workspace.keepMarksWithin();
    score.FindEndOfSong();
    return true;
}

} // namespace velmora
