// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace velmora {

/// Where a file holds sound in the very bytes that an audio CD has: 44,100 frames a second of 16 bits,
/// little-endian, stereo.
struct DiscSound {
    std::uint64_t offset = 0;
    std::uint64_t bytes = 0; ///< whole frames
};
/// Nothing for a file whose sound has to be converted, or that is no WAV file.
[[nodiscard]] std::optional<DiscSound> discSound(const std::filesystem::path& file);

} // namespace velmora
