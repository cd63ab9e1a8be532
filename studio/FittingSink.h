// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Resampler.h"
#include "studio/SampleSink.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// What of sound has to be brought to what.
struct SoundFit {
    int rate; ///< frames a second of what comes
    int channels;
    int wantedRate;
    int wantedChannels; ///< 1 or 2
};

/// Brings sound to the rate and channels of the sink behind it, at its true pitch and length. One channel of
/// several is the mean of the first two; of one, both sides are alike. What fits already passes as it is.
class FittingSink : public SampleSink {
public:
    /// @param file is named if it can't be done
    FittingSink(std::unique_ptr<SampleSink> sink, const SoundFit& fit, std::filesystem::path file);
    ~FittingSink() override;

    [[nodiscard]] std::string open() override;
    [[nodiscard]] std::string write(std::span<const float> interleaved) override;
    [[nodiscard]] std::string finish() override;

private:
    [[nodiscard]] std::span<const float> brought(std::span<const float> interleaved);

    std::unique_ptr<SampleSink> sink_;
    SoundFit fit_;
    std::filesystem::path file_;
    std::optional<Resampler> resampler_;
    std::vector<float> sides_;
    std::vector<float> converted_;
};

} // namespace velmora
