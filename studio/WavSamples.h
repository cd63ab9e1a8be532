// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/WavHeader.h"

#include <cstdint>

namespace velmora {

/// One sample as a share of full scale, with all of its bits; infinity is full scale, and what is no number
/// is 0.
/// @param at `header.sampleBytes()` bytes
[[nodiscard]] double sampleAt(const WavHeader& header, const std::uint8_t* at);

/// The other way: the nearest sample that the format has. What is beyond full scale stays so in floats, and
/// is full scale in whole numbers.
/// @param header not of logarithmic samples
void putSample(const WavHeader& header, double value, std::uint8_t* at);

} // namespace velmora
