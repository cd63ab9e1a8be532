// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Encoder.h"
#include "studio/Loudness.h"
#include "studio/Pour.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>

namespace velmora {

inline constexpr double kUsualLoudness = -14; ///< LUFS: as loud as what others publish

struct NormaliseOutcome {
    PourOutcome::End end = PourOutcome::End::Failed;
    std::string error; ///< why it failed, in a sentence that names the file
    std::string note;  ///< what has become of the format, in a sentence; blank if it is the same
    double gain = 0;   ///< dB that the sound was turned up, before the limiter
    Loudness before;
    Loudness after;
};
/// Makes a sound file as loud as others: turns it up or down, and keeps what would then be too loud within
/// full scale by the limiter, all channels alike. The new file of a WAV file has its format (logarithmic
/// samples become those of 16 bits); an MP3 file is encoded again, frame for frame. It appears in its place
/// when it is whole; @p out may be @p in. Unless it is Done, an old file of that name is as it was, and no
/// new one is left.
/// @param mp3 for an MP3 file, as `remadeMp3` takes them
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] NormaliseOutcome normalise(const std::filesystem::path& in, const std::filesystem::path& out,
                                         double target = kUsualLoudness,
                                         const std::function<void(double)>& progress = {},
                                         const std::stop_token& cancel = {}, const EncodeSettings& mp3 = {});

} // namespace velmora
