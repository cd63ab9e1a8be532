// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

namespace velmora {

/// Each sends its one controller, unclamped, on MIDI channel index @p ch.
inline void SendModulation(MidiPort& port, int value, int ch) {
    port.send(shortmessage::controller(ch, 1, value));
}
inline void SendPan(MidiPort& port, int value, int ch) {
    port.send(shortmessage::controller(ch, 10, value));
}
inline void SendReverb(MidiPort& port, int value, int ch) {
    port.send(shortmessage::controller(ch, 91, value));
}
inline void SendChorus(MidiPort& port, int value, int ch) {
    port.send(shortmessage::controller(ch, 93, value));
}

} // namespace velmora
