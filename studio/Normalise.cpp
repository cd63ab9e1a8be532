// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Normalise.h"

#include "sound/Limiter.h"
#include "studio/OtherFormats.h"
#include "studio/SampleSink.h"
#include "studio/StereoReader.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace velmora {

namespace fs = std::filesystem;
using End = PourOutcome::End;

namespace {
constexpr std::size_t kBlockFrames = 8192;
constexpr int kMostPasses = 4;             ///< of measuring what the limiter leaves
constexpr double kNear = 0.1;              ///< LU from the target that nobody hears
constexpr double kLeastYield = 0.2;        ///< LU for a dB into the limiter, where more is no use
constexpr double kMostGain = 40;           ///< dB: more would be a recording of noise
constexpr std::int64_t kHuge = 0xF0000000; ///< bytes from which on a WAV file needs longer lengths

/// Why a pass ended early.
struct Stopped {
    End end = End::Done;
    std::string error;
};

class Normaliser {
public:
    Normaliser(const fs::path& in, const std::function<void(double)>& progress, const std::stop_token& cancel)
        : in_(in)
        , progress_(progress)
        , cancel_(cancel) {}

    /// Passes the whole sound, turned up and limited.
    /// @param take what is done with a block of stereo
    /// @param from the share of all work that is done before, and @param to after
    Stopped pass(double gain, const std::function<std::string(std::span<const float>)>& take, double from,
                 double to) {
        OpenedSound opened = openSound(in_);
        if (!opened.reader)
            return {End::Failed, std::move(opened.error)};
        const int rate = opened.reader->info().rate;
        StereoReader sound(std::move(opened.reader), rate);
        Limiter limiter;
        const auto factor = static_cast<float>(std::pow(10, gain / 20));
        const std::int64_t all = sound.frames();
        std::vector<float> block(2 * kBlockFrames);
        std::size_t early = Limiter::kDelay; // frames of silence that come out first
        for (std::int64_t done = 0; done < all + Limiter::kDelay;) {
            if (cancel_.stop_requested())
                return {End::Cancelled, {}};
            const std::size_t read = sound.read(block);
            // Behind the end, what the limiter still holds.
            const std::size_t frames = read > 0 ? read : static_cast<std::size_t>(Limiter::kDelay);
            if (read == 0) {
                if (done < all)
                    return {End::Failed,
                            "\"" + in_.string() + "\" can't be read to its end. Is it still being written?"};
                std::fill_n(block.begin(), 2 * frames, 0.0F);
            }
            const auto stereo = std::span(block).first(2 * frames);
            for (float& value : stereo)
                value *= factor;
            limiter.process(stereo.data(), static_cast<int>(frames));
            const std::size_t dropped = std::min(early, frames);
            early -= dropped;
            if (std::string error = take(stereo.subspan(2 * dropped)); !error.empty())
                return {End::Failed, std::move(error)};
            done += static_cast<std::int64_t>(frames);
            if (progress_)
                progress_(from +
                          (to - from) * std::min(1.0, static_cast<double>(done) / static_cast<double>(all)));
        }
        return {};
    }

    /// Measures what a gain leads to.
    Stopped measure(double gain, int rate, Loudness& result, double from, double to) {
        LoudnessMeter meter(rate, 2);
        if (!meter.problem().empty())
            return {End::Failed,
                    "The loudness of \"" + in_.string() + "\" can't be told: " + meter.problem() + "."};
        Stopped stopped = pass(
            gain,
            [&](std::span<const float> stereo) {
                meter.add(stereo);
                return std::string();
            },
            from, to);
        result = meter.result();
        return stopped;
    }

private:
    const fs::path& in_;
    const std::function<void(double)>& progress_;
    const std::stop_token& cancel_;
};

/// One channel of two that are alike, or both.
class Written {
public:
    Written(SampleSink& sink, int channels) : sink_(sink), channels_(channels) {}
    std::string operator()(std::span<const float> stereo) {
        if (channels_ == 2)
            return sink_.write(stereo);
        one_.resize(stereo.size() / 2);
        for (std::size_t i = 0; i < one_.size(); ++i)
            one_[i] = stereo[2 * i];
        return sink_.write(one_);
    }

private:
    SampleSink& sink_;
    int channels_;
    std::vector<float> one_;
};

NormaliseOutcome& ended(NormaliseOutcome& outcome, Stopped stopped) {
    outcome.end = stopped.end;
    outcome.error = std::move(stopped.error);
    return outcome;
}

SoundFileOptions optionsFor(const SoundInfo& info) {
    return {.format = SoundFormat::Wav,
            .bits = info.isFloat ? 32 : std::max(16, info.bits),
            .isFloat = info.isFloat,
            .isHuge = info.frames * info.channels * 4 > kHuge,
            .title = info.title,
            .artist = info.artist};
}
} // namespace

NormaliseOutcome normalise(const fs::path& in, const fs::path& out, double target,
                           const std::function<void(double)>& progress, const std::stop_token& cancel) {
    NormaliseOutcome outcome;
    const OpenedSound opened = openSound(in);
    if (!opened.reader)
        return ended(outcome, {End::Failed, opened.error});
    const SoundInfo info = opened.reader->info();
    const std::string name = "\"" + in.string() + "\"";
    if (info.kind != SoundKind::Wav || info.channels > 2)
        return ended(outcome,
                     {End::Failed, name + " is no WAV file of one or two channels. Take one of these."});
    constexpr double kFirst = 0.3; // shares of the work, more or less
    constexpr double kMeasured = 0.6;
    MeasuredLoudness measured = measureLoudness(
        in, [&](double share) { progress ? progress(kFirst * share) : void(); }, cancel);
    if (measured.wasCancelled)
        return ended(outcome, {End::Cancelled, {}});
    if (!measured.error.empty())
        return ended(outcome, {End::Failed, std::move(measured.error)});
    outcome.before = outcome.after = measured.loudness;
    if (!std::isfinite(outcome.before.integrated))
        return ended(outcome,
                     {End::Failed, name + " is silent or shorter than 0.4 s; there is nothing to turn up."});

    Normaliser normaliser(in, progress, cancel);
    outcome.gain = std::min(target - outcome.before.integrated, kMostGain);
    const double ceiling = 20 * std::log10(double{Limiter::kCeiling});
    double share = kFirst;
    double turned = outcome.gain;
    // What the limiter takes away is made up for: by how much louder the last turn made the sound.
    double yield = 1;
    for (int i = 0; i < kMostPasses && outcome.before.peak + outcome.gain > ceiling; ++i) {
        const double next = share + (kMeasured - kFirst) / kMostPasses;
        const double last = outcome.after.integrated;
        Stopped stopped = normaliser.measure(outcome.gain, info.rate, outcome.after, share, next);
        if (stopped.end != End::Done)
            return ended(outcome, std::move(stopped));
        share = next;
        const double missing = target - outcome.after.integrated;
        if (std::abs(missing) < kNear)
            break;
        if (turned > 0)
            yield = std::clamp((outcome.after.integrated - last) / turned, kLeastYield, 1.0);
        turned = std::min(missing / yield, kMostGain - outcome.gain);
        outcome.gain += turned;
    }
    const auto sink = makeSoundFileSink(out, optionsFor(info), info.rate, info.channels);
    if (std::string error = sink->open(); !error.empty())
        return ended(outcome, {End::Failed, std::move(error)});
    LoudnessMeter meter(info.rate, 2);
    Written written(*sink, info.channels);
    Stopped stopped = normaliser.pass(
        outcome.gain,
        [&](std::span<const float> stereo) {
            meter.add(stereo);
            return written(stereo);
        },
        share, 1);
    if (stopped.end == End::Done) {
        stopped.error = sink->finish();
        stopped.end = stopped.error.empty() ? End::Done : End::Failed;
    }
    outcome.after = meter.result();
    return ended(outcome, std::move(stopped));
}

} // namespace velmora
