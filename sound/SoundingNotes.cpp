// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/SoundingNotes.h"

#include "sound/ShortMessage.h"

#include <limits>

namespace velmora {

namespace {
constexpr int kSustain = 64;
constexpr int kSostenuto = 66;
constexpr int kPedalDown = 64; ///< a pedal's value from which it is down
constexpr int kAllSoundOff = 120;
constexpr int kResetControllers = 121;
constexpr int kAllNotesOff = 123; ///< and the mode messages above it, which end all notes too

void putBit(std::uint16_t& bits, int channel, bool on) {
    const auto bit = static_cast<std::uint16_t>(1U << static_cast<unsigned>(channel));
    bits = static_cast<std::uint16_t>(on ? (bits | bit) : (bits & ~bit));
}

bool hasBit(std::uint16_t bits, int channel) {
    return ((bits >> static_cast<unsigned>(channel)) & 1U) != 0;
}
} // namespace

void SoundingNotes::sent(std::uint32_t word) {
    if (!shortmessage::isValid(word))
        return;
    const int channel = shortmessage::channel(word);
    const int data1 = shortmessage::data1(word);
    const int data2 = shortmessage::data2(word);
    switch (shortmessage::status(word)) {
    case 0x90:
        if (data2 > 0)
            noteOn(channel, data1);
        else
            noteOff(channel, data1);
        break;
    case 0x80:
        noteOff(channel, data1);
        break;
    case 0xB0:
        controller(channel, data1, data2);
        break;
    default:
        break;
    }
}

void SoundingNotes::noteOn(int channel, int note) {
    auto& count = counts_[channel][note];
    if (count == std::numeric_limits<std::uint16_t>::max())
        return;
    ++count;
    ++waiting_;
}

void SoundingNotes::noteOff(int channel, int note) {
    auto& count = counts_[channel][note];
    if (count == 0)
        return;
    --count;
    --waiting_;
}

void SoundingNotes::controller(int channel, int number, int value) {
    if (number == kSustain)
        putBit(sustained_, channel, value >= kPedalDown);
    else if (number == kSostenuto)
        putBit(sostenuto_, channel, value >= kPedalDown);
    else if (number == kResetControllers) {
        putBit(sustained_, channel, false);
        putBit(sostenuto_, channel, false);
    } else if (number == kAllSoundOff || number >= kAllNotesOff)
        forgetNotes(channel);
}

void SoundingNotes::forgetNotes(int channel) {
    for (auto& count : counts_[channel]) {
        waiting_ -= count;
        count = 0;
    }
}

std::vector<std::uint32_t> SoundingNotes::silencingWords() const {
    std::vector<std::uint32_t> words;
    if (nothingSounds())
        return words;
    words.reserve(static_cast<std::size_t>(waiting_) + 32);
    for (int channel = 0; channel < 16; ++channel) {
        for (int note = 0; note < 128; ++note)
            words.insert(words.end(), counts_[channel][note], shortmessage::noteOff(channel, note));
        if (hasBit(sustained_, channel))
            words.push_back(shortmessage::controller(channel, kSustain, 0));
        if (hasBit(sostenuto_, channel))
            words.push_back(shortmessage::controller(channel, kSostenuto, 0));
    }
    return words;
}

} // namespace velmora
