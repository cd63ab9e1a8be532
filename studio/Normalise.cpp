// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Normalise.h"

#include "sound/Limiter.h"
#include "studio/RemadeMp3.h"
#include "studio/SoundReader.h"
#include "studio/WavTwin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace velmora {

namespace fs = std::filesystem;
using End = PourOutcome::End;

namespace {
constexpr std::size_t kBlockValues = 16'384;
constexpr int kMostPasses = 4;      ///< of measuring what the limiter leaves
constexpr double kNear = 0.1;       ///< LU from the target that nobody hears
constexpr double kLeastYield = 0.2; ///< LU for a dB into the limiter, where more is no use
constexpr double kMostGain = 40;    ///< dB: more would be a recording of noise

/// Why a pass ended early.
struct Stopped {
    End end = End::Done;
    std::string error;
};

/// The limiter for any number of channels: its gain is that of the loudest one.
class LinkedLimiter {
public:
    explicit LinkedLimiter(std::size_t channels)
        : channels_(channels)
        , held_(static_cast<std::size_t>(Limiter::kDelay) * channels)
        , heldPeaks_(Limiter::kDelay) {}

    /// Replaces whole frames by the limited ones of `Limiter::kDelay` frames ago.
    void process(std::span<float> interleaved) {
        const std::size_t frames = interleaved.size() / channels_;
        limited_.resize(2 * frames);
        for (std::size_t i = 0; i < frames; ++i) {
            float peak = 0;
            for (float& value : interleaved.subspan(i * channels_, channels_)) {
                value = std::isfinite(value) ? value : 0;
                peak = std::max(peak, std::abs(value));
            }
            limited_[2 * i] = limited_[2 * i + 1] = peak;
        }
        peaks_.resize(frames);
        for (std::size_t i = 0; i < frames; ++i)
            peaks_[i] = limited_[2 * i];
        limiter_.process(limited_.data(), static_cast<int>(frames));
        for (std::size_t i = 0; i < frames; ++i) {
            float& delayed = heldPeaks_[place_];
            const float gain = delayed > 0 ? limited_[2 * i] / delayed : 1;
            delayed = peaks_[i];
            float* held = held_.data() + place_ * channels_;
            for (float& value : interleaved.subspan(i * channels_, channels_)) {
                const float limited = std::clamp(*held * gain, -Limiter::kCeiling, Limiter::kCeiling);
                *held++ = std::exchange(value, limited);
            }
            place_ = (place_ + 1) % heldPeaks_.size();
        }
    }

private:
    std::size_t channels_;
    Limiter limiter_;
    std::vector<float> held_;      ///< frames that are still to come out
    std::vector<float> heldPeaks_; ///< of these
    std::size_t place_ = 0;
    std::vector<float> peaks_; ///< of the frames that come in
    std::vector<float> limited_;
};

/// The loudness of what it is given, of the first two channels.
class FrontMeter {
public:
    FrontMeter(int rate, int channels) : channels_(channels), meter_(rate, std::min(channels, 2)) {}
    [[nodiscard]] const std::string& problem() const { return meter_.problem(); }
    [[nodiscard]] Loudness result() const { return meter_.result(); }
    void add(std::span<const float> interleaved) {
        if (channels_ <= 2)
            return meter_.add(interleaved);
        front_.clear();
        for (std::size_t at = 0; at < interleaved.size(); at += static_cast<std::size_t>(channels_))
            front_.insert(front_.end(), {interleaved[at], interleaved[at + 1]});
        meter_.add(front_);
    }

private:
    int channels_;
    LoudnessMeter meter_;
    std::vector<float> front_;
};

class Normaliser {
public:
    Normaliser(const fs::path& in, const std::function<void(double)>& progress, const std::stop_token& cancel)
        : in_(in)
        , progress_(progress)
        , cancel_(cancel) {}

    /// Passes the whole sound, turned up and limited.
    /// @param take what is done with a block of it
    /// @param from the share of all work that is done before, and @param to after
    Stopped pass(double gain, const std::function<std::string(std::span<const float>)>& take, double from,
                 double to) {
        const OpenedSound opened = openSound(in_);
        if (!opened.reader)
            return {End::Failed, opened.error};
        const SoundInfo& info = opened.reader->info();
        const auto channels = static_cast<std::size_t>(info.channels);
        LinkedLimiter limiter(channels);
        const auto factor = static_cast<float>(std::pow(10, gain / 20));
        constexpr auto kDelay = static_cast<std::size_t>(Limiter::kDelay);
        std::vector<float> block(channels * std::max(kDelay, kBlockValues / channels));
        std::size_t early = kDelay; // frames of silence that come out first
        for (std::int64_t done = 0; done < info.frames + Limiter::kDelay;) {
            if (cancel_.stop_requested())
                return {End::Cancelled, {}};
            const std::size_t read = opened.reader->read(block);
            // Behind the end, what the limiter still holds.
            const std::size_t frames = read > 0 ? read : kDelay;
            if (read == 0) {
                if (done < info.frames)
                    return {End::Failed,
                            "\"" + in_.string() + "\" can't be read to its end. Is it still being written?"};
                std::fill_n(block.begin(), channels * frames, 0.0F);
            }
            const auto sound = std::span(block).first(channels * frames);
            for (float& value : sound)
                value *= factor;
            limiter.process(sound);
            const std::size_t dropped = std::min(early, frames);
            early -= dropped;
            if (std::string error = take(sound.subspan(channels * dropped)); !error.empty())
                return {End::Failed, std::move(error)};
            done += static_cast<std::int64_t>(frames);
            if (progress_)
                progress_(from + (to - from) * std::min(1.0, static_cast<double>(done) /
                                                                 static_cast<double>(info.frames)));
        }
        return {};
    }

    /// Measures what a gain leads to.
    Stopped measure(double gain, const SoundInfo& info, Loudness& result, double from, double to) {
        FrontMeter meter(info.rate, info.channels);
        if (!meter.problem().empty())
            return {End::Failed,
                    "The loudness of \"" + in_.string() + "\" can't be told: " + meter.problem() + "."};
        Stopped stopped = pass(
            gain,
            [&](std::span<const float> sound) {
                meter.add(sound);
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

/// Where the louder sound goes.
struct Target {
    std::unique_ptr<ByteSource> model = {}; ///< of a WAV file
    std::unique_ptr<SampleSink> sink = {};
    std::string error = {};
    std::string note = {};
};

Target wavTarget(const fs::path& in, const fs::path& out, const SoundInfo& info) {
    OpenedBytes opened = openBytes(in);
    const auto failed = [&in](const std::string& why) {
        return Target{.error = "Reading \"" + in.string() + "\" failed: " + why + "."};
    };
    if (!opened.bytes)
        return failed(opened.error);
    const WavHeader header = readWavHeader(*opened.bytes);
    if (!header.problem.empty() || header.channels != info.channels)
        return failed(header.problem.empty() ? "it is another file now" : header.problem);
    auto twin = std::make_unique<WavTwin>(*opened.bytes, header, out, static_cast<std::uint64_t>(info.frames),
                                          TwinSamples::Written);
    const bool isRewritten = twin->format().encoding != header.encoding;
    return {.model = std::move(opened.bytes),
            .sink = std::move(twin),
            .note = isRewritten ? "Logarithmic samples can't be turned up: those of the new file have 16 bits"
                                : ""};
}

Target mp3Target(const fs::path& in, const fs::path& out, const SoundInfo& info,
                 const EncodeSettings& settings) {
    RemadeMp3 remade = remadeMp3(in, info, settings, RemadeSound::Louder);
    if (!remade.error.empty())
        return {.error = std::move(remade.error)};
    return {.sink = makeMp3Sink(out, std::move(remade.settings), info.rate, info.channels),
            .note = std::move(remade.note)};
}

NormaliseOutcome& ended(NormaliseOutcome& outcome, Stopped stopped) {
    outcome.end = stopped.end;
    outcome.error = std::move(stopped.error);
    return outcome;
}
} // namespace

NormaliseOutcome normalise(const fs::path& in, const fs::path& out, double target,
                           const std::function<void(double)>& progress, const std::stop_token& cancel,
                           const EncodeSettings& mp3) {
    NormaliseOutcome outcome;
    const OpenedSound opened = openSound(in);
    if (!opened.reader)
        return ended(outcome, {End::Failed, opened.error});
    const SoundInfo info = opened.reader->info();
    const std::string name = "\"" + in.string() + "\"";
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
        Stopped stopped = normaliser.measure(outcome.gain, info, outcome.after, share, next);
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
    Target made = info.kind == SoundKind::Mp3 ? mp3Target(in, out, info, mp3) : wavTarget(in, out, info);
    if (!made.error.empty())
        return ended(outcome, {End::Failed, std::move(made.error)});
    if (std::string error = made.sink->open(); !error.empty())
        return ended(outcome, {End::Failed, std::move(error)});
    FrontMeter meter(info.rate, info.channels);
    Stopped stopped = normaliser.pass(
        outcome.gain,
        [&](std::span<const float> sound) {
            meter.add(sound);
            return made.sink->write(sound);
        },
        share, 1);
    if (stopped.end == End::Done) {
        stopped.error = made.sink->finish();
        stopped.end = stopped.error.empty() ? End::Done : End::Failed;
        outcome.note = std::move(made.note);
    }
    outcome.after = meter.result();
    return ended(outcome, std::move(stopped));
}

} // namespace velmora
