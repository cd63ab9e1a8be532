// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/SoundReader.h"

namespace velmora {

/// A sound file as stereo of a chosen rate: mono alike on both sides, of more than two channels the first
/// two, other rates converted (error -90 dB or less for what both rates can hold). What has that rate already
/// passes bit for bit.
class StereoReader {
public:
    /// @param rate frames a second that are wanted
    StereoReader(std::unique_ptr<SoundReader> reader, int rate);
    ~StereoReader();
    StereoReader(StereoReader&&) noexcept;
    StereoReader& operator=(StereoReader&&) noexcept;

    [[nodiscard]] const SoundInfo& info() const; ///< of the file
    /// Why its rate can't be converted, as the end of a sentence, and there is nothing to read then; blank if
    /// it can.
    [[nodiscard]] const std::string& problem() const;
    /// At the chosen rate: `info().frames` * rate / `info().rate`, rounded.
    [[nodiscard]] std::int64_t frames() const;
    /// As `SoundReader::read`, two values a frame. All reading together gives exactly `frames()`.
    std::size_t read(std::span<float> interleaved);
    /// @param frame of the file, not of the chosen rate
    void seek(std::int64_t frame);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
