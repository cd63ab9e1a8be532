// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// A short message and when it sounds: what a score becomes on its way to a file of sound.
struct TimedMessage {
    double seconds;     ///< from the beginning of the piece
    std::uint32_t word; ///< packed as in ShortMessage.h; not looked at when `reset` is set
    bool reset = false; ///< ends every sounding note instead, as `MidiPort::reset` does
};

} // namespace velmora
