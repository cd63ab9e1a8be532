// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Encoder.h"
#include "studio/KeptTags.h"

#include <filesystem>
#include <string>

namespace velmora {

struct SoundInfo;

/// How sound that comes from an MP3 file is encoded again.
struct RemadeMp3 {
    EncodeSettings settings;
    std::string error = {}; ///< why it can't be, in a sentence that names the file
    std::string note = {};  ///< that it is, in a sentence for the user
};
/// With the file's own rate and channels, its bitrate where the encoder has that, and its tags.
/// @param wanted the quality, and the bitrate for other files; its title, artist and cover take the place of
/// the file's unless they are blank
[[nodiscard]] RemadeMp3 remadeMp3(const std::filesystem::path& file, const SoundInfo& info,
                                  EncodeSettings wanted, RemadeSound remade);

} // namespace velmora
