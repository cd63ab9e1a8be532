// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// A note as a hand played it. Moments are seconds on the clock of whoever wrote it down.
struct PlayedNote {
    double onset = 0;
    double end = 0; ///< when it was let go of, by the key and by the pedal
    std::uint8_t note = 60;
    std::uint8_t velocity = 100;
    std::uint8_t channel = 0;
    std::uint8_t program = 0;

    bool operator==(const PlayedNote&) const = default;
};

} // namespace velmora
