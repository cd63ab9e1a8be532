// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/StepEntry.h"

#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
constexpr std::string_view kStep = "Step entry";
constexpr std::size_t kMostWritten = 1000;

int keyOf(std::uint32_t word) {
    return shortmessage::channel(word) * 128 + shortmessage::data1(word);
}
} // namespace

StepEntry::StepEntry(MidiInputs& inputs, Workspace& workspace, MidiPort& port)
    : inputs_(inputs)
    , workspace_(workspace)
    , port_(port) {}

StepEntry::~StepEntry() {
    releaseAll();
}

void StepEntry::setOn(bool on) {
    if (on == std::exchange(on_, on))
        return;
    releaseAll();
    chord_ = {};
    written_.clear();
    stay_ = on ? inputs_.join(*this) : Guests<MidiListener>::Stay();
}

int StepEntry::stepLength() const {
    const int beats = std::max<int>(1, workspace_.setup.TxtMeter);
    return std::max(1, length > 0 ? length : workspace_.score.NotesPerMeasure / beats);
}

void StepEntry::midiMessage(int source, std::uint32_t word, double moment) {
    const int status = shortmessage::status(word);
    if (status != 0x90 && status != 0x80)
        return;
    const auto isSame = [&](const Held& held) { return held.source == source && held.key == keyOf(word); };
    for (const Held& held : held_)
        if (isSame(held))
            release(held);
    std::erase_if(held_, isSame);
    if (status == 0x90)
        strike(source, word, moment);
}

void StepEntry::midiEnded(int source) {
    for (const Held& held : held_)
        if (held.source == source)
            release(held);
    std::erase_if(held_, [&](const Held& held) { return held.source == source; });
}

void StepEntry::release(const Held& held) {
    if (held.sounding)
        port_.send(shortmessage::noteOff(held.channel, held.note));
}

void StepEntry::releaseAll() {
    for (const Held& held : std::exchange(held_, {}))
        release(held);
}

void StepEntry::strike(int source, std::uint32_t word, double moment) {
    const int channel = workspace_.score.ActiveChannel;
    if (!workspace_.view.PointerInMusicBox || workspace_.play.Playing || channel >= kMelodyChannels)
        return;
    const int note = shortmessage::data1(word);
    const int velocity = shortmessage::data2(word);
    const bool sounds = !inputs_.isSounded;
    if (sounds) { // before it is written: a large score takes its time
        port_.send(shortmessage::programChange(channel, workspace_.score.ChannelInstrument[channel]));
        port_.send(shortmessage::noteOn(channel, note, velocity));
    }
    write(note, velocity, moment);
    held_.push_back(
        {.source = source, .key = keyOf(word), .sounding = sounds, .channel = channel, .note = note});
}

void StepEntry::takeMarkBack() {
    while (!written_.empty() && written_.back().end == workspace_.view.PlayMark) {
        const Written& last = written_.back();
        if (workspace_.score.NoteCell.valueOr(last.channel, last.place, kEmptyCell) == last.row)
            return;
        announce(workspace_, Change::Marks);
        workspace_.view.PlayMark = last.place;
        chord_ = {};
        written_.pop_back();
    }
}

bool StepEntry::joinsChord(double moment) const {
    return chord_.place >= 0 && chord_.end == workspace_.view.PlayMark &&
           (!held_.empty() || moment - chord_.moment <= kChordSeconds);
}

void StepEntry::write(int note, int velocity, double moment) {
    const Edit edit(workspace_);
    takeMarkBack();
    const int row = RowToNote(note); // the two are mirrored
    Score& score = workspace_.score;
    if (joinsChord(moment)) {
        chord_.moment = moment;
        if (std::ranges::find(chord_.rows, row) != chord_.rows.end())
            return;
        const int channel = channelForMore(chord_.place, chord_.end);
        if (channel < 0)
            return;
        chord_.rows.push_back(row);
        writeAt(channel, row, chord_.place, velocity);
        return;
    }
    const int place = std::max(workspace_.view.PlayMark, 0);
    if (!hasRoom(place + stepLength()))
        return;
    const int channel = score.ActiveChannel;
    chord_ = {.place = place, .end = place + stepLength(), .moment = moment, .rows = {row}};
    writeAt(channel, row, place, velocity);
    workspace_.view.PlayMark = chord_.end;
    if (written_.size() == kMostWritten)
        written_.erase(written_.begin());
    written_.push_back({.channel = channel, .row = row, .place = place, .end = chord_.end});
}

bool StepEntry::hasRoom(int end) {
    Score& score = workspace_.score;
    if (end <= score.NumNotes)
        return true;
    if (!workspace_.manners.growsToFile)
        return false;
    const int measure = std::max<int>(1, score.NotesPerMeasure);
    const int measures = (end - score.NumNotes + measure - 1) / measure;
    workspace_.history.name(kStep);
    return setScoreLength(workspace_, std::int64_t{score.NumNotes} + std::int64_t{measures} * measure);
}

int StepEntry::channelForMore(int place, int end) const {
    const Score& score = workspace_.score;
    for (int i = 1; i < kMelodyChannels; ++i) {
        const int channel = (score.ActiveChannel + i) % kMelodyChannels;
        bool isFree = !score.ChannelMuted[channel];
        for (int position = place; position < end; ++position)
            isFree = isFree &&
                     cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Empty;
        if (isFree)
            return channel;
    }
    return -1;
}

void StepEntry::writeAt(int channel, int row, int place, int velocity) {
    const Edit edit(workspace_, changeOfNotes(channel) | Change::Channels | Change::Marks | Change::Effects);
    workspace_.keepForUndo(kStep);
    Score& score = workspace_.score;
    const int last = chord_.end - 1;
    writeNote(score, {.channel = channel, .row = row, .first = place, .last = last});
    splitAfter(score, channel, last);
    for (int position = place; position <= last; ++position)
        score.NoteInstrument.set(channel, position, score.ChannelInstrument[score.ActiveChannel]);
    giveVolume(score, channel, static_cast<std::int16_t>(velocity), {place, last});
    score.TopChannel = std::max(score.TopChannel, channel + 1);
    score.TopMelodyHint = std::max(score.TopMelodyHint, channel);
    score.FindEndOfSong();
    // A single note in position 0 leaves its channel unused.
    score.ChannelInUse[channel] = score.ChannelShown[channel] = true;
    if (onWritten)
        onWritten(channel, row, place);
}

} // namespace velmora
