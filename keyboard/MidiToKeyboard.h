// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Keyboard.h"
#include "sound/MidiInputs.h"

#include <cstdint>

namespace velmora {

/// Has the MIDI inputs play a keyboard for as long as this object lives, which ends before either. There is
/// one at a time.
class MidiToKeyboard final : private MidiListener {
public:
    MidiToKeyboard(MidiInputs& inputs, Keyboard& keyboard)
        : inputs_(inputs)
        , keyboard_(keyboard)
        , stay_(inputs.join(*this)) {
        inputs_.isSounded = true;
    }
    ~MidiToKeyboard() { inputs_.isSounded = false; }
    MidiToKeyboard(const MidiToKeyboard&) = delete;
    MidiToKeyboard& operator=(const MidiToKeyboard&) = delete;

private:
    void midiMessage(int source, std::uint32_t word, double /*moment*/) override {
        keyboard_.midi(source, word);
    }
    void midiEnded(int source) override { keyboard_.endMidi(source); }

    MidiInputs& inputs_;
    Keyboard& keyboard_;
    Guests<MidiListener>::Stay stay_;
};

} // namespace velmora
