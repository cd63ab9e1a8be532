// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velmora::notation {

/// A PNG file's bytes; blank if they can't be made.
/// @param samples grey of one byte, or red, green and blue; rows without padding
[[nodiscard]] std::string pngOfGrey(int width, int height, std::span<const std::uint8_t> samples);
[[nodiscard]] std::string pngOfColours(int width, int height, std::span<const std::uint8_t> samples);

} // namespace velmora::notation
