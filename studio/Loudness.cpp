// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Loudness.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "studio/StereoReader.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace velmora {

namespace {
struct Ebur128Library : LateLibrary {
    Ebur128Library() : LateLibrary(kEbur128Library) {}
    VELMORA_LATE_CALL(ebur128_add_frames_float);
    VELMORA_LATE_CALL(ebur128_destroy);
    VELMORA_LATE_CALL(ebur128_init);
    VELMORA_LATE_CALL(ebur128_loudness_global);
    VELMORA_LATE_CALL(ebur128_sample_peak);
    VELMORA_LATE_CALL(ebur128_set_channel);
};

const Ebur128Library& library() {
    static const Ebur128Library only;
    return only;
}

constexpr std::size_t kBlockFrames = 8192;
} // namespace

struct LoudnessMeter::Parts {
    Parts(int rate, int channelCount) : channels(static_cast<unsigned>(std::clamp(channelCount, 1, 2))) {
        if (!library().complete()) {
            problem = library().problem();
            return;
        }
        // The histogram keeps counts of blocks by loudness instead of the blocks.
        constexpr int kModes = EBUR128_MODE_I | EBUR128_MODE_SAMPLE_PEAK | EBUR128_MODE_HISTOGRAM;
        state = library().ebur128_init(channels, static_cast<unsigned long>(rate), kModes);
        if (!state)
            problem = "loudness can't be measured at " + std::to_string(rate) + " Hz";
        else if (channels == 1)
            library().ebur128_set_channel(state, 0, EBUR128_DUAL_MONO);
    }
    ~Parts() {
        if (state)
            library().ebur128_destroy(&state);
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    unsigned channels;
    ebur128_state* state = nullptr;
    std::string problem;
};

LoudnessMeter::LoudnessMeter(int rate, int channels) : parts_(std::make_unique<Parts>(rate, channels)) {}
LoudnessMeter::~LoudnessMeter() = default;
LoudnessMeter::LoudnessMeter(LoudnessMeter&&) noexcept = default;
LoudnessMeter& LoudnessMeter::operator=(LoudnessMeter&&) noexcept = default;

const std::string& LoudnessMeter::problem() const {
    return parts_->problem;
}

void LoudnessMeter::add(std::span<const float> interleaved) {
    if (parts_->state)
        library().ebur128_add_frames_float(parts_->state, interleaved.data(),
                                           interleaved.size() / parts_->channels);
}

Loudness LoudnessMeter::result() const {
    Loudness loudness;
    if (!parts_->state)
        return loudness;
    double integrated = 0;
    if (library().ebur128_loudness_global(parts_->state, &integrated) == EBUR128_SUCCESS &&
        std::isfinite(integrated))
        loudness.integrated = integrated;
    double highest = 0;
    for (unsigned side = 0; side < parts_->channels; ++side) {
        double peak = 0;
        if (library().ebur128_sample_peak(parts_->state, side, &peak) == EBUR128_SUCCESS)
            highest = std::max(highest, peak);
    }
    if (highest > 0)
        loudness.peak = 20 * std::log10(highest);
    return loudness;
}

MeasuredLoudness measureLoudness(const std::filesystem::path& file,
                                 const std::function<void(double)>& progress, const std::stop_token& cancel) {
    OpenedSound opened = openSound(file);
    if (!opened.reader)
        return {.loudness = {}, .wasCancelled = false, .error = std::move(opened.error)};
    const int rate = opened.reader->info().rate;
    StereoReader sound(std::move(opened.reader), rate);
    LoudnessMeter meter(rate, 2); // one channel comes from both sides already
    if (!meter.problem().empty())
        return {.loudness = {},
                .wasCancelled = false,
                .error = "The loudness of \"" + file.string() + "\" can't be told: " + meter.problem() + "."};
    std::vector<float> block(2 * kBlockFrames);
    const auto all = static_cast<double>(std::max<std::int64_t>(1, sound.frames()));
    double done = 0;
    while (const std::size_t frames = sound.read(block)) {
        if (cancel.stop_requested())
            return {.loudness = {}, .wasCancelled = true, .error = {}};
        meter.add(std::span<const float>(block).first(2 * frames));
        done += static_cast<double>(frames);
        if (progress)
            progress(std::min(1.0, done / all));
    }
    return {.loudness = meter.result(), .wasCancelled = false, .error = {}};
}

} // namespace velmora
