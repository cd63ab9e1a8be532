// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// What a MIDI input has changed besides notes, to be put back when it goes.
struct MidiSource {
    int source = 0;
    int channel = 0; ///< that its controllers went to
    bool pedal = false;
    bool bent = false;
    bool modulated = false;
};

} // namespace velmora
