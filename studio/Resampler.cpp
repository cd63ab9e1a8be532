// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Resampler.h"

#include "LateNames.h"
#include "base/LateLibrary.h"

#include <soxr.h>

#include <algorithm>
#include <cstdint>

namespace velmora {

namespace {
struct SoxrLibrary : LateLibrary {
    SoxrLibrary() : LateLibrary(kSoxrLibrary) {}
    VELMORA_LATE_CALL(soxr_create);
    VELMORA_LATE_CALL(soxr_delete);
    VELMORA_LATE_CALL(soxr_io_spec);
    VELMORA_LATE_CALL(soxr_process);
    VELMORA_LATE_CALL(soxr_quality_spec);
};

const SoxrLibrary& library() {
    static const SoxrLibrary only;
    return only;
}

constexpr std::size_t kBlockFrames = 4096;
/// Of the band that both rates can hold: what lies in it is kept whole, and the little above it fades.
constexpr double kKeptShare = 0.99;
/// Beyond that the library's filters would take memory by what a file's header claims.
constexpr double kFarthest = 256;
} // namespace

struct Resampler::Parts {
    struct Deleter {
        void operator()(soxr* made) const { library().soxr_delete(made); }
    };

    Parts(int fromRate, int toRate, int channelCount)
        : from(fromRate)
        , to(toRate)
        , channels(static_cast<std::size_t>(channelCount)) {
        if (from == to)
            return;
        if (!library().complete()) {
            problem = library().problem();
            return;
        }
        const double ratio = static_cast<double>(from) / to;
        if (ratio > kFarthest || ratio < 1 / kFarthest) {
            problem =
                "a rate of " + std::to_string(from) + " Hz is too far from " + std::to_string(to) + " Hz";
            return;
        }
        soxr_io_spec_t samples = library().soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
        // The roll-off that the library chooses otherwise lets mirrored tones through, at -65 dB.
        soxr_quality_spec_t quality = library().soxr_quality_spec(SOXR_24_BITQ, SOXR_ROLLOFF_NONE);
        quality.passband_end = kKeptShare;
        soxr_error_t error = nullptr;
        resampler.reset(library().soxr_create(from, to, static_cast<unsigned>(channels), &error, &samples,
                                              &quality, nullptr));
        if (error != nullptr || !resampler)
            problem = "its rate can't be converted";
    }

    /// @param in nothing at the end
    void run(const float* in, std::size_t frames, std::vector<float>& out) {
        std::size_t used = 0;
        std::size_t given = 0;
        do {
            block.resize(kBlockFrames * channels);
            const float* const rest = in == nullptr ? nullptr : in + used * channels;
            std::size_t usedNow = 0;
            library().soxr_process(resampler.get(), rest, frames - used, &usedNow, block.data(), kBlockFrames,
                                   &given);
            used += usedNow;
            out.insert(out.end(), block.begin(),
                       block.begin() + static_cast<std::ptrdiff_t>(given * channels));
            written += static_cast<std::int64_t>(given);
            if (usedNow == 0 && given == 0)
                break;
        } while (used < frames || given == kBlockFrames);
        taken += static_cast<std::int64_t>(frames);
    }

    int from;
    int to;
    std::size_t channels;
    std::string problem;
    std::unique_ptr<soxr, Deleter> resampler;
    std::vector<float> block;
    std::int64_t taken = 0;
    std::int64_t written = 0;
};

Resampler::Resampler(int from, int to, int channels) : parts_(std::make_unique<Parts>(from, to, channels)) {}
Resampler::~Resampler() = default;
Resampler::Resampler(Resampler&&) noexcept = default;
Resampler& Resampler::operator=(Resampler&&) noexcept = default;

const std::string& Resampler::problem() const {
    return parts_->problem;
}

void Resampler::process(std::span<const float> interleaved, std::vector<float>& out) {
    if (parts_->from == parts_->to)
        out.insert(out.end(), interleaved.begin(), interleaved.end());
    else if (parts_->resampler && !interleaved.empty())
        parts_->run(interleaved.data(), interleaved.size() / parts_->channels, out);
}

void Resampler::finish(std::vector<float>& out) {
    if (!parts_->resampler)
        return;
    const std::int64_t before = parts_->written;
    const std::size_t start = out.size();
    parts_->run(nullptr, 0, out);
    const std::int64_t rest =
        std::max<std::int64_t>(framesAtRate(parts_->taken, parts_->from, parts_->to) - before, 0);
    out.resize(start + static_cast<std::size_t>(rest) * parts_->channels, 0.0F);
}

} // namespace velmora
