// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/EncoderTables.h"
#include "studio/Pour.h"
#include "studio/SampleSink.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace velmora {

/// How a sound becomes an MP3 file.
struct EncodeSettings {
    int bitrate = kMp3Bitrates[kDefaultBitrate]; ///< one of kMp3Bitrates
    std::size_t quality = kDefaultQuality;       ///< a row of kEncoderQualities
    /// A row of kEncoderFormats: rate and mode of the file. Without it the sound's own: mono for one channel,
    /// joint stereo for more, and its rate if MP3 has that, else 44,100.
    std::optional<std::size_t> format = {};
    std::string title = {}; ///< for the tag; any Unicode text
    std::string artist = {};
    std::filesystem::path cover = {}; ///< a JPEG or PNG picture for the tag
    std::string front = {};           ///< a whole tag, in place of one of these three
    std::string behind = {};          ///< tags that follow the sound
};

struct EncodeJob {
    std::filesystem::path wav;
    std::filesystem::path mp3;
    EncodeSettings settings = {};
    bool deleteWav = false; ///< once the MP3 file stands whole in its place, and in no other case
};

struct EncodeOutcome {
    using End = PourOutcome::End;
    End end = End::Failed;
    /// Why it failed, or why the WAV file could not be deleted; a sentence that names the file.
    std::string error;
    int rate = 0;    ///< of the file, once it is Done
    int bitrate = 0; ///< likewise: at some rates less than was asked for
};

/// Encodes the sound of a WAV file, at its true pitch and length, whatever the settings say. Unless it is
/// Done, an old file of that name is as it was, and no new one is left.
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] EncodeOutcome encode(const EncodeJob& job, const std::function<void(double)>& progress = {},
                                   const std::stop_token& cancel = {});

struct SoundInfo;
/// The same into any sink, which `makeSink` gives for what the WAV file holds.
[[nodiscard]] EncodeOutcome
encodeThrough(const EncodeJob& job,
              const std::function<std::unique_ptr<SampleSink>(const SoundInfo&)>& makeSink,
              const std::function<void(double)>& progress, const std::stop_token& cancel);

/// Rate and mode of the file that a sound of that rate and number of channels becomes.
[[nodiscard]] EncoderFormat encodedFormat(const EncodeSettings& settings, int rate, int channels);

/// What `encode` writes, of sound that comes bit by bit: the same sound gives the same file.
/// @param rate of the sound, @param channels interleaved values a frame of what `write` takes
[[nodiscard]] std::unique_ptr<SampleSink> makeMp3Sink(std::filesystem::path mp3, EncodeSettings settings,
                                                      int rate, int channels);

} // namespace velmora
