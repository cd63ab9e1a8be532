// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyboardSound.h"

#include "base/MessageLoop.h"
#include "sound/Controllers.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <cstddef>

namespace velmora {

namespace {
bool isNote(int channel, int note) {
    return channel >= 0 && channel < 16 && note >= 0 && note < 128;
}
} // namespace

void KeyboardSound::mark(int channel, int note, bool sounds) {
    if (!isNote(channel, note) || this->sounds(channel, note) == sounds)
        return;
    sounding_[static_cast<std::size_t>(channel)][static_cast<std::size_t>(note)] = sounds;
    if (onNote)
        onNote(channel, note, sounds);
}

bool KeyboardSound::sounds(int channel, int note) const {
    return isNote(channel, note) &&
           sounding_[static_cast<std::size_t>(channel)][static_cast<std::size_t>(note)];
}

void KeyboardSound::noteOn(int channel, int note, int velocity, PlayedBy by) {
    port_.send(shortmessage::noteOn(channel, note, velocity)); // before anything that takes time
    if (played && by == PlayedBy::Hand)
        played->struck(channel, note, velocity, program, clock_.now());
    mark(channel, note, true);
}

void KeyboardSound::noteOff(int channel, int note, PlayedBy by) {
    port_.send(shortmessage::noteOff(channel, note));
    if (played && by == PlayedBy::Hand)
        played->ended(channel, note, clock_.now());
    mark(channel, note, false);
}

void KeyboardSound::controller(int channel, int number, int value) {
    send(shortmessage::controller(channel, number, value));
    if (played && number == controllers::kSustain)
        played->pedal(channel, value >= 64, clock_.now());
}

void KeyboardSound::programChange(int channel, int number) {
    send(shortmessage::programChange(channel, number));
}

void KeyboardSound::send(std::uint32_t word) {
    port_.send(word);
}

void KeyboardSound::reset() {
    port_.reset();
    if (played)
        played->silenced(clock_.now());
    for (auto& channel : sounding_)
        channel.reset();
    if (onSilence)
        onSilence();
}

} // namespace velmora
