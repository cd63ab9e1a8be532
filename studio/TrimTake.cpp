// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrimTake.h"

#include "studio/Pour.h"
#include "studio/RemadeMp3.h"
#include "studio/SoundReader.h"
#include "studio/WavSamples.h"
#include "studio/WavTwin.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

namespace velmora {

namespace {
using End = TrimOutcome::End;
constexpr std::int64_t kPiece = std::int64_t{256} * 1024; ///< bytes at once, or a frame

/// Half a wave of a cosine: it begins and ends without a corner.
double risen(std::int64_t frame, std::int64_t frames) {
    const double way = (static_cast<double>(frame) + 0.5) / static_cast<double>(frames);
    return way >= 1 ? 1 : (1 - std::cos(std::numbers::pi * way)) / 2;
}

bool fades(const TrimJob& job) {
    return job.fadeIn > 0 || job.fadeOut > 0;
}

/// Of a frame of the file.
double gainAt(const TrimJob& job, std::int64_t frame) {
    double gain = 1;
    if (frame < job.begin + job.fadeIn)
        gain *= risen(frame - job.begin, job.fadeIn);
    if (frame >= job.end - job.fadeOut)
        gain *= risen(job.end - 1 - frame, job.fadeOut);
    return gain;
}

TrimOutcome failed(std::string why) {
    return {.end = End::Failed, .error = std::move(why)};
}

TrimOutcome refused(const TrimJob& job, const std::string& why) {
    return failed("Cutting \"" + job.from.string() + "\" failed: " + why + ".");
}

/// Why the part can't be had, as the end of a sentence; blank if it can.
std::string whyNot(const TrimJob& job, std::int64_t frames) {
    if (job.begin < 0 || job.end > frames || job.begin >= job.end)
        return "there is no sound from frame " + std::to_string(job.begin) + " to " + std::to_string(job.end);
    if (job.fadeIn < 0 || job.fadeOut < 0)
        return "a fade can't be shorter than nothing";
    return {};
}

class WavTrimming {
public:
    WavTrimming(const TrimJob& job, ByteSource& from, const WavHeader& header)
        : job_(job)
        , from_(from)
        , header_(header)
        , frameBytes_(static_cast<std::int64_t>(header.frameBytes()))
        , twin_(from, header, job.to, static_cast<std::uint64_t>(job.end - job.begin),
                fades(job) ? TwinSamples::Written : TwinSamples::Same)
        , isRewritten_(twin_.format().encoding != header.encoding) {}

    TrimOutcome run(const std::function<void(double)>& progress, const std::stop_token& cancel) {
        if (std::string error = twin_.open(); !error.empty())
            return failed(std::move(error));
        const std::int64_t piece = std::max<std::int64_t>(1, kPiece / frameBytes_);
        for (std::int64_t at = job_.begin; at < job_.end; at += piece) {
            if (cancel.stop_requested())
                return {.end = End::Cancelled};
            if (std::string error = copy(at, std::min(job_.end, at + piece)); !error.empty())
                return failed(std::move(error));
            if (progress)
                progress(static_cast<double>(at - job_.begin) / static_cast<double>(job_.end - job_.begin));
        }
        if (std::string error = twin_.finish(); !error.empty())
            return failed(std::move(error));
        if (progress)
            progress(1);
        return {.end = End::Done,
                .note = isRewritten_
                            ? "Logarithmic samples can't be faded: those of the new file have 16 bits"
                            : ""};
    }

private:
    [[nodiscard]] std::string copy(std::int64_t begin, std::int64_t end) {
        piece_.resize(static_cast<std::size_t>((end - begin) * frameBytes_));
        const auto offset = header_.soundAt + static_cast<std::uint64_t>(begin * frameBytes_);
        if (from_.read(offset, piece_) != piece_.size())
            return "\"" + job_.from.string() + "\" can't be read to its end. Is it still being written?";
        const auto bytesOfFrame = static_cast<std::int64_t>(twin_.format().frameBytes());
        if (isRewritten_)
            rewritten_.resize(static_cast<std::size_t>((end - begin) * bytesOfFrame));
        std::vector<std::uint8_t>& made = isRewritten_ ? rewritten_ : piece_;
        for (std::int64_t frame = begin; frame < end; ++frame) {
            const bool isFaded = frame < job_.begin + job_.fadeIn || frame >= job_.end - job_.fadeOut;
            if (isFaded || isRewritten_)
                bring(piece_.data() + (frame - begin) * frameBytes_,
                      made.data() + (frame - begin) * bytesOfFrame, isFaded ? gainAt(job_, frame) : 1);
        }
        return twin_.writeBytes(made);
    }
    void bring(const std::uint8_t* from, std::uint8_t* to, double gain) const {
        for (int channel = 0; channel < header_.channels; ++channel) {
            putSample(twin_.format(), gain * sampleAt(header_, from), to);
            from += header_.sampleBytes();
            to += twin_.format().sampleBytes();
        }
    }

    const TrimJob& job_;
    ByteSource& from_;
    const WavHeader& header_;
    std::int64_t frameBytes_;
    WavTwin twin_;
    bool isRewritten_; ///< the samples are of another kind
    std::vector<std::uint8_t> piece_;
    std::vector<std::uint8_t> rewritten_;
};

/// The part as a sound of its own, with its fades.
class PartReader : public SoundReader {
public:
    PartReader(std::unique_ptr<SoundReader> whole, const TrimJob& job) : whole_(std::move(whole)), job_(job) {
        info_ = whole_->info();
        info_.frames = job.end - job.begin;
        PartReader::seek(0);
    }
    std::size_t read(std::span<float> interleaved) override {
        const auto channels = static_cast<std::size_t>(info_.channels);
        const auto wanted =
            std::min<std::size_t>(interleaved.size() / channels, static_cast<std::size_t>(job_.end - next_));
        const std::size_t frames = whole_->read(interleaved.first(wanted * channels));
        for (std::size_t i = 0; fades(job_) && i < frames; ++i, ++next_) {
            const auto gain = static_cast<float>(gainAt(job_, next_));
            for (float& value : interleaved.subspan(i * channels, channels))
                value *= gain;
        }
        next_ += fades(job_) ? 0 : static_cast<std::int64_t>(frames);
        return frames;
    }
    void seek(std::int64_t frame) override {
        next_ = job_.begin + std::clamp<std::int64_t>(frame, 0, info_.frames);
        whole_->seek(next_);
    }

private:
    std::unique_ptr<SoundReader> whole_;
    const TrimJob& job_;
    std::int64_t next_ = 0; ///< of the file
};

TrimOutcome trimMp3(const TrimJob& job, const std::function<void(double)>& progress,
                    const std::stop_token& cancel) {
    OpenedSound opened = openSound(job.from);
    if (!opened.reader)
        return failed(std::move(opened.error));
    if (const std::string why = whyNot(job, opened.reader->info().frames); !why.empty())
        return refused(job, why);
    RemadeMp3 remade = remadeMp3(job.from, opened.reader->info(), job.mp3, RemadeSound::Part);
    if (!remade.error.empty())
        return failed(std::move(remade.error));
    PartReader part(std::move(opened.reader), job);
    const auto sink = makeMp3Sink(job.to, std::move(remade.settings), part.info().rate, part.info().channels);
    if (std::string error = sink->open(); !error.empty())
        return failed(std::move(error));
    PourOutcome poured = pour(part, job.from, *sink, progress, cancel);
    switch (poured.end) {
    case PourOutcome::End::Done:
        return {.end = End::Done, .note = std::move(remade.note)};
    case PourOutcome::End::Cancelled:
        return {.end = End::Cancelled};
    case PourOutcome::End::Failed:
        break;
    }
    return failed(std::move(poured.error));
}
} // namespace

TrimOutcome trimTake(const TrimJob& job, const std::function<void(double)>& progress,
                     const std::stop_token& cancel) {
    const OpenedBytes opened = openBytes(job.from);
    if (!opened.bytes)
        return refused(job, opened.error);
    ByteWindow beginning(*opened.bytes);
    if (!isWav(beginning))
        return trimMp3(job, progress, cancel);
    const WavHeader header = readWavHeader(*opened.bytes);
    if (!header.problem.empty())
        return refused(job, header.problem);
    if (const std::string why = whyNot(job, static_cast<std::int64_t>(header.frames)); !why.empty())
        return refused(job, why);
    return WavTrimming(job, *opened.bytes, header).run(progress, cancel);
}

} // namespace velmora
