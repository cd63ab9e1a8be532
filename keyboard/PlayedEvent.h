// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// What a hand did, as it is written down.
struct PlayedEvent {
    enum class Kind : std::uint8_t { Struck, Ended, PedalDown, PedalUp, Silenced };

    Kind kind = Kind::Struck;
    std::uint8_t channel = 0; ///< 0 to 15
    std::uint8_t note = 0;    ///< 0 to 127
    std::uint8_t velocity = 0;
    std::uint8_t program = 0;
    double moment = 0; ///< seconds

    bool operator==(const PlayedEvent&) const = default;
};

} // namespace velmora
