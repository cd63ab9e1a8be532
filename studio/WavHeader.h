// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"
#include "studio/SongTags.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

enum class WavEncoding : std::uint8_t {
    Plain, ///< whole numbers, of eight bits without a sign, of more with one
    Float,
    ALaw,
    MuLaw
};

/// What stands in a chunk.
struct WavStretch {
    std::uint64_t at = 0;
    std::uint64_t length = 0;
    char name[5] = {}; ///< of the chunk
};

/// Where the sound of a WAV file stands, and how.
struct WavHeader {
    WavEncoding encoding = WavEncoding::Plain;
    bool isBigEndian = false;
    int rate = 0;
    int channels = 0;
    int bits = 0;              ///< of a sample
    std::uint64_t soundAt = 0; ///< the byte at which the first frame begins
    std::uint64_t frames = 0;  ///< whole ones that are there, whatever the header claims
    SongTags tags = {};
    std::string problem = {}; ///< blank, or why no sound can be read, as the end of a sentence
    WavStretch format = {};
    /// What the file tells of itself as a whole: "LIST" of kind "INFO", "id3 ". Few, whatever there is.
    std::vector<WavStretch> tellings = {};

    [[nodiscard]] int sampleBytes() const { return (bits + 7) / 8; }
    [[nodiscard]] std::uint64_t frameBytes() const {
        return static_cast<std::uint64_t>(sampleBytes()) * static_cast<std::uint64_t>(channels);
    }
};

/// Whether the file begins as a WAV file does: RIFF, RIFX or RF64.
[[nodiscard]] bool isWav(ByteWindow& bytes);

/// Reads the chunks of a WAV file, of any kind and in any order. Lengths that reach beyond the end of the
/// file mean its end; so does a sound of length 0 that nothing follows by the header's word, which a recorder
/// leaves that was killed. Of several sounds or formats the first counts.
[[nodiscard]] WavHeader readWavHeader(ByteSource& bytes);

} // namespace velmora
