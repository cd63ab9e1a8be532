// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/WaveFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {

inline constexpr std::size_t kWavHeader = 44;     ///< bytes before the samples of a plain WAV file
inline constexpr std::size_t kSmallestRf64 = 88;  ///< bytes before those of an RF64 file, at least
inline constexpr std::uint64_t kToTheEnd = ~0ULL; ///< a length that isn't told: as far as the file goes
/// The most bytes of samples whose lengths a plain WAV file can tell, with a byte to pad.
inline constexpr std::uint64_t kLongestWav = 0xFFFFFFFEU - (kWavHeader - 8);

/// The pad byte behind an odd number of bytes; it counts in the length of the file alone.
[[nodiscard]] constexpr std::uint64_t padOf(std::uint64_t dataBytes) {
    return dataBytes % 2;
}

/// The 44 bytes before samples of that format. Lengths of all ones for `kToTheEnd`.
[[nodiscard]] std::array<std::byte, kWavHeader> wavHeader(const WaveFormat& format, std::uint64_t dataBytes);

/// The same for any length, with 64 bits for it.
/// @param size bytes of the header, even and `kSmallestRf64` at least: a chunk that says nothing fills it up
[[nodiscard]] std::vector<std::byte> rf64Header(const WaveFormat& format, std::uint64_t dataBytes,
                                                std::size_t size = kSmallestRf64);

} // namespace velmora
