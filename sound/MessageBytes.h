// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/ShortMessage.h"

#include <array>
#include <cstddef>

namespace velmora {

/// A short message as it goes over a wire.
struct MessageBytes {
    std::array<unsigned char, 3> bytes;
    std::size_t length; ///< 2 for program change and channel pressure, 3 for all others
};

/// Of a valid word. Realtime-safe: yes.
[[nodiscard]] constexpr MessageBytes messageBytes(std::uint32_t word) {
    const int status = shortmessage::status(word);
    return {{static_cast<unsigned char>(word & 0xFFU), static_cast<unsigned char>(shortmessage::data1(word)),
             static_cast<unsigned char>(shortmessage::data2(word))},
            status == 0xC0 || status == 0xD0 ? std::size_t{2} : std::size_t{3}};
}

} // namespace velmora
