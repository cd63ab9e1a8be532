// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Encoder.h"
#include "studio/SampleSink.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// What libsndfile writes for us.
enum class SoundFormat : std::uint8_t { Wav, Flac, Vorbis, Opus };

/// A format that a take can be had in, beside MP3.
struct OtherFormat {
    SoundFormat format;
    std::string_view extension; ///< with its dot
    std::string_view filter;    ///< of the dialog that asks for a name
};
inline constexpr std::array<OtherFormat, 3> kOtherFormats{
    {{SoundFormat::Flac, ".flac", "FLAC (*.flac)|*.flac"},
     {SoundFormat::Vorbis, ".ogg", "Ogg Vorbis (*.ogg)|*.ogg"},
     {SoundFormat::Opus, ".opus", "Opus (*.opus)|*.opus"}}};
/// By the extension of a name, in any case of letters; none for any other.
[[nodiscard]] std::optional<SoundFormat> otherFormat(const std::filesystem::path& file);

struct SoundFileOptions {
    SoundFormat format = SoundFormat::Flac;
    int bits = 16;        ///< of a sample: 16 or 24; for WAV also 32
    bool isFloat = false; ///< for WAV: `bits` of 32
    bool isHuge = false;  ///< for WAV: it may become larger than 4 GiB
    std::string title = {};
    std::string artist = {};
};
/// Sound into such a file, which appears in its place when it is finished. Of more than two channels the
/// first two are kept. FLAC and WAV keep every bit of a sound that has no more than `bits`; Opus files are of
/// 48,000 Hz where their format lacks the sound's rate, and the others of 44,100.
/// @param rate of the sound, @param channels interleaved values a frame of what `write` takes
[[nodiscard]] std::unique_ptr<SampleSink> makeSoundFileSink(const std::filesystem::path& file,
                                                            SoundFileOptions options, int rate, int channels);

/// As `encode`, in the format that the extension of `job.mp3` names: FLAC, Ogg Vorbis or Opus (title and
/// artist count of the settings, those of the sound where they are blank), else MP3.
[[nodiscard]] EncodeOutcome encodeByName(const EncodeJob& job,
                                         const std::function<void(double)>& progress = {},
                                         const std::stop_token& cancel = {});

} // namespace velmora
