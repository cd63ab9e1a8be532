// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ByteSource.h"
#include "studio/SoundReader.h"
#include "studio/WavHeader.h"

#include <vector>

namespace velmora {

/// The sound of a WAV file, of any of the encodings of `WavHeader`.
class WavReader : public SoundReader {
public:
    /// @param header of these bytes, without a problem
    WavReader(std::unique_ptr<ByteSource> bytes, WavHeader header);
    std::size_t read(std::span<float> interleaved) override;
    void seek(std::int64_t frame) override;

private:
    std::unique_ptr<ByteSource> bytes_;
    WavHeader header_;
    std::uint64_t next_ = 0; ///< frame
    std::vector<std::uint8_t> block_;
};

/// The samples of @p bytes as floats: a 16-bit value v is v / 32768. Of wider ones as much is kept as a float
/// holds, so that the nearest 16-bit value of it is that of the sample; infinity is full scale, and what is
/// no number is 0.
/// @param to as many as there are samples in @p bytes
void decodeSamples(const WavHeader& header, std::span<const std::uint8_t> bytes, float* to);

} // namespace velmora
