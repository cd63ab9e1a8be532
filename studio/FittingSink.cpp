// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/FittingSink.h"

#include <algorithm>
#include <utility>

namespace velmora {

FittingSink::FittingSink(std::unique_ptr<SampleSink> sink, const SoundFit& fit, std::filesystem::path file)
    : sink_(std::move(sink))
    , fit_(fit)
    , file_(std::move(file)) {
    fit_.channels = std::max(1, fit_.channels);
}
FittingSink::~FittingSink() = default;

std::string FittingSink::open() {
    if (fit_.rate != fit_.wantedRate) {
        resampler_.emplace(fit_.rate, fit_.wantedRate, fit_.wantedChannels);
        if (!resampler_->problem().empty())
            return "Writing \"" + file_.string() + "\" failed: " + resampler_->problem() + ".";
    }
    return sink_->open();
}

std::string FittingSink::write(std::span<const float> interleaved) {
    const std::span<const float> sides = brought(interleaved);
    if (!resampler_)
        return sink_->write(sides);
    converted_.clear();
    resampler_->process(sides, converted_);
    return sink_->write(converted_);
}

std::string FittingSink::finish() {
    if (resampler_) {
        converted_.clear();
        resampler_->finish(converted_);
        if (std::string error = sink_->write(converted_); !error.empty())
            return error;
    }
    return sink_->finish();
}

std::span<const float> FittingSink::brought(std::span<const float> interleaved) {
    if (fit_.channels == fit_.wantedChannels)
        return interleaved;
    const auto channels = static_cast<std::size_t>(fit_.channels);
    const std::size_t frames = interleaved.size() / channels;
    const std::size_t second = channels > 1 ? 1 : 0;
    const float* frame = interleaved.data();
    if (fit_.wantedChannels == 1) {
        sides_.resize(frames);
        for (std::size_t i = 0; i < frames; ++i, frame += channels)
            sides_[i] = 0.5F * (frame[0] + frame[second]);
    } else {
        sides_.resize(2 * frames);
        for (std::size_t i = 0; i < frames; ++i, frame += channels) {
            sides_[2 * i] = frame[0];
            sides_[2 * i + 1] = frame[second];
        }
    }
    return sides_;
}

} // namespace velmora
