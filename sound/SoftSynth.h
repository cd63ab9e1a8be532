// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// What `MidiDevices` needs of the built-in synthesizer. Moments are `steadySeconds()` at the call.
/// All calls come from the interface thread and none waits.
class SoftSynth {
public:
    virtual ~SoftSynth() = default;
    /// False while it cannot sound, for example because there is no SoundFont.
    [[nodiscard]] virtual bool available() = 0;
    /// Takes a valid short message.
    virtual void send(std::uint32_t word, double moment) = 0;
    /// Ends every sounding note; instruments and controllers stay as they are, pedals come up.
    virtual void reset(double moment) = 0;
};

} // namespace velmora
