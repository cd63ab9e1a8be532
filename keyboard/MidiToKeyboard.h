// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Keyboard.h"
#include "sound/MidiInputs.h"

#include <cstdint>

namespace velmora {

/// Has the MIDI inputs play a keyboard for as long as this object lives, which ends before either.
class MidiToKeyboard final : private MidiListener {
public:
    MidiToKeyboard(MidiInputs& inputs, Keyboard& keyboard) : keyboard_(keyboard), stay_(inputs.join(*this)) {}
    MidiToKeyboard(const MidiToKeyboard&) = delete;
    MidiToKeyboard& operator=(const MidiToKeyboard&) = delete;

private:
    void midiMessage(int source, std::uint32_t word, double /*moment*/) override {
        keyboard_.midi(source, word);
    }
    void midiEnded(int source) override { keyboard_.endMidi(source); }

    Keyboard& keyboard_;
    Guests<MidiListener>::Stay stay_;
};

} // namespace velmora
