// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velmora {

/// A frame of layer III within a stream of constant bitrate.
struct Mp3Place {
    std::size_t at = 0;    ///< its first byte
    std::size_t size = 0;  ///< bytes of it
    std::size_t side = 0;  ///< bytes of header and side information
    std::size_t back = 0;  ///< its sound begins so many bytes before it, headers and sides not counted
    unsigned windows = 0;  ///< the shapes of its first granule, as one number
    bool isPadded = false; ///< it has a byte more than others
};

/// Appends the whole frames of @p bytes that begin at or behind @p from and follow each other. Returns where
/// the next one begins.
std::size_t appendPlaces(std::span<const unsigned char> bytes, std::size_t from,
                         std::vector<Mp3Place>& places);

/// Two streams of one encoder and one sound, which met at different moments, from one frame on.
struct Mp3Seam {
    /// Whether frame @p next, of another stream of the same sound, can stand where @p place stands: its sound
    /// has room behind what stands before, its windows fit, and so does its size.
    static bool fits(const Mp3Place& place, const Mp3Place& next) {
        return next.back <= place.back && next.windows == place.windows && next.isPadded == place.isPadded;
    }
    /// Takes what @p second has of its frame @p j before that frame into the bytes of @p first before its
    /// frame
    /// @p i. Both have at least as many bytes of sound before.
    static void bringOver(std::span<unsigned char> first, std::span<const Mp3Place> places, std::size_t i,
                          std::span<const unsigned char> second, std::span<const Mp3Place> others,
                          std::size_t j);
};

/// CRC-16 as the info frame has it, continued.
[[nodiscard]] unsigned infoChecksum(unsigned crc, std::span<const unsigned char> bytes);

} // namespace velmora
