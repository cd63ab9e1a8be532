// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PendingFile.h"
#include "studio/SampleSink.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace velmora {

/// The nearest 16-bit value of each sample, halves to even; beyond full scale, the last value there is. A
/// sample that is no number becomes silence.
/// @param to as many values as @p from
void toSixteenBits(std::span<const float> from, std::int16_t* to);

/// Sound into a 16-bit stereo WAV file, which appears in its place when it is finished.
class WavFile : public SampleSink {
public:
    explicit WavFile(std::filesystem::path path, int sampleRate = 44100);
    ~WavFile() override;

    [[nodiscard]] std::string open() override;
    [[nodiscard]] std::string write(std::span<const float> interleaved) override;
    [[nodiscard]] std::string finish() override;

private:
    struct Writer;
    PendingFile file_;
    int sampleRate_;
    std::vector<std::int16_t> rounded_;
    std::size_t unflushed_ = 0; ///< samples that no one has sent to the disk yet
    std::size_t samplesLeft_ =
        (0xFFFFFFFFU - 64U) / sizeof(std::int16_t); ///< lengths in the header have 32 bits
    std::unique_ptr<Writer> writer_;                ///< after file_: it ends first
};

} // namespace velmora
