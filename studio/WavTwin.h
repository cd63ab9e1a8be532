// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PendingFile.h"
#include "studio/SampleSink.h"
#include "studio/WavHeader.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace velmora {

enum class TwinSamples : std::uint8_t {
    Same,   ///< as they stand in the other file
    Written ///< so that new ones can be written: logarithmic ones have 16 bits then
};

/// A WAV file of other sound in the format of one that is there: its order of bytes, its "fmt " chunk with
/// what is wrong in it put right, and what it tells of itself as a whole. It appears in its place when it is
/// finished, and may be the same file.
class WavTwin : public SampleSink {
public:
    /// The most bytes behind the first eight that a plain WAV file can tell.
    static constexpr std::uint64_t kLongest = 0xFFFFFFFE;

    /// @param model of that header; it outlives the twin
    /// @param frames that will come: the header tells them from the start
    /// @param longest from which on lengths have 64 bits
    WavTwin(ByteSource& model, const WavHeader& header, std::filesystem::path file, std::uint64_t frames,
            TwinSamples samples, std::uint64_t longest = kLongest);

    /// How its samples are written.
    [[nodiscard]] const WavHeader& format() const { return format_; }

    [[nodiscard]] std::string open() override;
    /// With all channels of the file; floats become the nearest samples that it has.
    [[nodiscard]] std::string write(std::span<const float> interleaved) override;
    /// Samples as they are to stand in the file, whole frames.
    [[nodiscard]] std::string writeBytes(std::span<const std::uint8_t> bytes);
    [[nodiscard]] std::string finish() override;
    [[nodiscard]] std::string failure(const std::string& reason) const { return file_.failure(reason); }

private:
    [[nodiscard]] std::vector<std::uint8_t> formatChunk();
    [[nodiscard]] std::string copyTellings();
    [[nodiscard]] std::uint64_t soundBytes() const { return frames_ * format_.frameBytes(); }

    ByteSource& model_;
    WavHeader model_header_;
    WavHeader format_;
    PendingFile file_;
    std::uint64_t frames_;
    std::uint64_t longest_;
    std::uint64_t written_ = 0; ///< bytes of sound
    std::vector<std::uint8_t> block_;
};

} // namespace velmora
