// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/SetupRules.h"

#include "composition/Workspace.h"

#include <algorithm>
#include <iterator>
#include <limits>

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
bool setBeats(SetupState& setup, Score& score, int beats) {
    if (beats > kMostInt16 || beats == setup.TxBeats)
        return false;
    TxBeats_Change(setup, score, static_cast<std::int16_t>(beats));
    return true;
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

bool NoteX_Change(SetupState& setup, Score& score, std::int16_t value) {
    setup.NoteX = value;
    const int product = meterProduct(setup);
    if (product <= 16)
        return setBeats(setup, score, product);
    return product % 16 == 0 && setBeats(setup, score, 16);
}

bool TxtMeter_Change(SetupState& setup, Score& score, std::int16_t value) {
    setup.TxtMeter = value;
    const int product = meterProduct(setup);
    // A multiple of 32 is one of 16, so that 32 never results.
    return setBeats(setup, score, product > 16 && product % 16 == 0 ? 16 : product);
}

void TxBeats_Change(SetupState& setup, Score& score, std::int16_t value) {
    setup.TxBeats = value;
    score.NotesPerMeasure = value;
}

std::int16_t tempoAt(int offset, int barWidth) {
    return static_cast<std::int16_t>(kTempoStep * wholePart(offset, barWidth, kTempoSteps));
}

std::int16_t volumeAt(int offset, int barWidth) {
    const int volume = wholePart(offset, barWidth, kMostVolume);
    return static_cast<std::int16_t>(offset <= 0 ? kMostVolume : volume);
}

void setVelocity(Score& score, SetupState& setup, std::int16_t value) {
    if (!isOf(score.ActiveChannel, score.ChannelVelocity.size()))
        return;
    score.ChannelVelocity[score.ActiveChannel] = value;
    setup.channels[score.ActiveChannel].volume = value;
}

void fillVolume(Score& score, std::int16_t value) {
    score.Volume.fillRow(score.ActiveChannel, value);
}

void fillEffects(Score& score, const SetupState& setup) {
    const int channel = score.ActiveChannel;
    if (!setup.SetupOpen || !isOf(channel, setup.channels.size()))
        return;
    const PlaybackChannelSetup& values = setup.channels[channel];
    score.Modulation_Change.fillRow(channel, values.modulation);
    score.Pan_Change.fillRow(channel, values.pan);
    score.Reverb_Change.fillRow(channel, values.reverb);
    score.Chorus_Change.fillRow(channel, values.chorus);
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

void Ch_Click(Score& score, SetupState& setup, int channel, bool ticked) {
    if (!isOf(channel, setup.Ch.size()))
        return;
    setup.Ch[channel] = ticked;
    // The list index as it is, one below the chord's type: that is meant.
    score.Polyphonics.fillRow(channel + 1, static_cast<std::int16_t>(ticked ? setup.Combo3 : 0));
}

void showOnly(Score& score, int channel) {
    if (!isOf(channel, score.ChannelShown.size()))
        return;
    score.ChannelShown.fill(false);
    score.ChannelShown[channel] = true;
}

std::int16_t lineHeightWithin(std::int16_t height) {
    return static_cast<std::int16_t>(std::clamp<int>(height, kLeastLineHeight, kMostLineHeight));
}

bool setScoreLength(Workspace& workspace, std::int64_t numNotes) {
    if (numNotes < 1 || numNotes > kMostNotes)
        return false;
    Score& score = workspace.score;
    const int last = static_cast<int>(numNotes);
    bool cuts = false;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        cuts = cuts || score.lastFilledPosition(channel, score.NumNotes) > last;
    if (cuts)
        workspace.keepReplaced("Subtract notes");
    score.resizeNotes(last);
    ViewState& view = workspace.view;
    if (view.SelectStart > last)
        view.SelectStart = view.SelectEnd = -1;
    view.SelectEnd = std::min(view.SelectEnd, last);
    view.PlayMark = std::min(view.PlayMark, last);
    score.FindEndOfSong();
    return true;
}

} // namespace velmora
