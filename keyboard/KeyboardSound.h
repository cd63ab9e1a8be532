// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PlayedNotes.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>

namespace velmora {

class MessageLoop;
class MidiPort;

/// Who makes a note sound: a hand, or the program for it.
enum class PlayedBy : std::uint8_t { Hand, Playback };

/// What the keyboard sends to the port, with what sounds by now as far as its own words go. Notes of a hand
/// are told to whoever keeps them.
class KeyboardSound {
public:
    KeyboardSound(MidiPort& port, const MessageLoop& clock) : port_(port), clock_(clock) {}

    void noteOn(int channel, int note, int velocity, PlayedBy by);
    void noteOff(int channel, int note, PlayedBy by);
    void controller(int channel, int number, int value);
    void programChange(int channel, int number);
    /// As it is.
    void send(std::uint32_t word);
    /// Everything is silent.
    void reset();

    [[nodiscard]] bool sounds(int channel, int note) const;

    std::function<void(int channel, int note, bool sounds)> onNote; ///< it begins to sound, or ends
    std::function<void()> onSilence;                                ///< all of it ended
    PlayedNotes* played = nullptr;
    int program = 0; ///< that the hand plays with, for `played`

private:
    void mark(int channel, int note, bool sounds);

    MidiPort& port_;
    const MessageLoop& clock_;
    std::array<std::bitset<128>, 16> sounding_{};
};

} // namespace velmora
