// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/EncoderTables.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// The configuration record of the encoder. A 0 means what the library does of itself.
struct EncoderRecord {
    std::uint32_t dwConfig = 256;      ///< the long form, the only one there is
    std::uint32_t dwStructVersion = 1; ///< likewise
    std::uint32_t dwStructSize = 331;  ///< likewise
    std::uint32_t dwSampleRate = 44100;
    std::uint32_t dwReSampleRate = 0; ///< 0: the file has the rate of the sound; nothing else is taken
    std::int32_t nMode = kJointStereo;
    std::uint32_t dwBitrate = kMp3Bitrates[kDefaultBitrate];
    std::uint32_t dwMaxBitrate = 0; ///< for variable bitrates, which nothing here has
    std::int32_t nPreset = kEncoderQualities[kDefaultQuality].preset;
    std::uint32_t dwMpegVersion = 1; ///< layer III; which generation of it, the rate says
    std::uint32_t dwPsyModel = 0;
    std::uint32_t dwEmphasis = 0;
    std::int32_t bCopyright = 0;
    std::int32_t bOriginal = -1;
    std::int32_t nVbrMethod = -1; ///< no variable bitrate
    /// Of our own: a first frame that tells the exact length. Not where the output can't be rewound to it.
    bool hasInfoFrame = true;
};

/// What the four calls return.
enum BeError : int {
    kBeSuccessful = 0,
    kBeInvalidFormat = 1,           ///< the record isn't of the kind, version and size that is known
    kBeInvalidFormatParameters = 2, ///< rate, mode, bitrate or preset isn't of the tables
    kBeNoMoreHandles = 3,           ///< the library isn't there, or doesn't start
    kBeInvalidHandle = 4,           ///< the stream isn't open
    kBeBufferTooSmall = 5           ///< the output can't hold what the block may yield
};
/// The text for such a code; blank for one that there isn't.
[[nodiscard]] std::string_view beErrorText(int code);
/// Why LAME can't be used, as the end of a sentence; blank if it can.
[[nodiscard]] const std::string& lameProblem();

/// One sound on its way through LAME; it is closed when it dies. Thread-safe: no, but streams are
/// independent.
class LameStream {
public:
    LameStream();
    ~LameStream();
    LameStream(LameStream&&) noexcept;
    LameStream& operator=(LameStream&&) noexcept;

    struct Parts;
    std::unique_ptr<Parts> parts; ///< for the calls below; none while it isn't open
};

/// Opens a stream.
/// @param samples becomes the count of values that a block should have, all channels together
/// @param outputSize becomes the bytes that such a block, or the end, may yield
[[nodiscard]] int beInitStream(const EncoderRecord& record, std::uint32_t& samples, std::uint32_t& outputSize,
                               LameStream& stream);
/// Encodes a block of up to `samples` values, interleaved if there are two channels.
/// @param written becomes the bytes of @p output that are to be kept, often none
[[nodiscard]] int beEncodeChunk(LameStream& stream, std::span<const std::int16_t> input,
                                std::span<unsigned char> output, std::uint32_t& written);
/// The same for floats, of which 1 / 32768 is one step of 16 bits. Beyond full scale counts as full scale,
/// and what is no number as silence.
[[nodiscard]] int beEncodeChunk(LameStream& stream, std::span<const float> input,
                                std::span<unsigned char> output, std::uint32_t& written);
/// Yields what the stream still holds. Only `infoFrame` and `beCloseStream` may follow.
[[nodiscard]] int beDeinitStream(LameStream& stream, std::span<unsigned char> output, std::uint32_t& written);
int beCloseStream(LameStream& stream);

/// After `beDeinitStream`: what the first frame of the output must be overwritten with. Returns its bytes; 0
/// where there is none, since a frame of that bitrate has no room for it, or it wasn't wanted.
[[nodiscard]] std::size_t infoFrame(const LameStream& stream, std::span<unsigned char> output);

} // namespace velmora
