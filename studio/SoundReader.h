// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace velmora {

enum class SoundKind : std::uint8_t { Wav, Mp3 };

/// What a sound file holds, by its contents.
struct SoundInfo {
    SoundKind kind = SoundKind::Wav;
    int rate = 0; ///< frames a second
    int channels = 0;
    int bits = 0;            ///< of a sample; 32 or 64 for floats, 0 for MP3
    bool isFloat = false;    ///< of a WAV file
    int bitrate = 0;         ///< of MP3, kbit/s: the mean of the sound's frames, rounded; 0 for WAV
    std::int64_t frames = 0; ///< exact
    std::string title;       ///< from the file's tags; blank where it has none
    std::string artist;

    [[nodiscard]] double seconds() const { return rate > 0 ? static_cast<double>(frames) / rate : 0; }
};

/// Sound as it is read from a file, frame by frame. Memory doesn't grow with the file's length, nor by what
/// its header claims. Thread-safe: no, but readers of one file are independent. Realtime-safe: no.
class SoundReader {
public:
    virtual ~SoundReader() = default;

    [[nodiscard]] const SoundInfo& info() const { return info_; }
    /// Reads the next frames: interleaved, `info().channels` values each. A 16-bit value v is v / 32768,
    /// exactly; floats stay what they are, also beyond 1, but infinity is 1 and what is no number is 0.
    /// Returns how many frames there were, fewer than asked for at the end alone.
    /// @param interleaved room for whole frames
    virtual std::size_t read(std::span<float> interleaved) = 0;
    /// The next `read` begins at that frame, 0 to `info().frames`.
    virtual void seek(std::int64_t frame) = 0;

protected:
    SoundInfo info_;
};

struct OpenedSound {
    std::unique_ptr<SoundReader> reader; ///< none if it failed
    std::string error;                   ///< why, in a sentence that names the file
};
/// Opens a WAV or MP3 file, told apart by their contents. One without a frame fails.
[[nodiscard]] OpenedSound openSound(const std::filesystem::path& file);

/// Whether the name says so: ".wav" or ".mp3", in any case of letters.
[[nodiscard]] bool isSoundName(const std::filesystem::path& file);

} // namespace velmora
