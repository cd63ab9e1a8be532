// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"
#include "studio/Id3Tag.h"

#include <cstdint>
#include <string>

namespace velmora {

/// What is made of an MP3 file.
enum class RemadeSound : std::uint8_t {
    Part,  ///< its times are others
    Louder ///< its loudness is another
};

/// The tags of an MP3 file for another one that is made of it.
struct KeptTags {
    std::string front = {};  ///< before the sound
    std::string behind = {}; ///< and after it
    std::string error = {};  ///< why they can't be had, as the end of a sentence
};
/// Keeps what stands in them, pictures and all, but for what would be false of the new file: places of bytes,
/// lengths, the encoder's delay; of a part its times, of a louder one what players are to turn it up by.
/// @param instead what takes the place of what the file tells; blank for what stays
[[nodiscard]] KeptTags keptTags(ByteSource& mp3, const Id3Tag& instead, RemadeSound remade);

} // namespace velmora
