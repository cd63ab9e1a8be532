// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrimTake.h"

#include "base/PendingFile.h"
#include "studio/WavHeader.h"
#include "studio/WavHeaderBytes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

namespace velmora {

namespace {
constexpr std::int64_t kPiece = 65'536; ///< frames at once

/// A whole number of so many bytes, the lowest first; of one byte, as samples of eight bits are, without a
/// sign around 128.
std::int64_t sampleAt(const std::uint8_t* at, int bytes) {
    if (bytes == 1)
        return std::int64_t{*at} - 128;
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value |= std::uint64_t{at[i]} << (64 - 8 * (bytes - i));
    return static_cast<std::int64_t>(value) >> (64 - 8 * bytes);
}

void putSample(std::int64_t sample, std::uint8_t* at, int bytes) {
    const auto value = static_cast<std::uint64_t>(bytes == 1 ? sample + 128 : sample);
    for (int i = 0; i < bytes; ++i)
        at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

/// Half a wave of a cosine: it begins and ends without a corner.
double risen(std::int64_t frame, std::int64_t frames) {
    const double way = (static_cast<double>(frame) + 0.5) / static_cast<double>(frames);
    return way >= 1 ? 1 : (1 - std::cos(std::numbers::pi * way)) / 2;
}

class Trimming {
public:
    Trimming(const TrimJob& job, ByteSource& from, const WavHeader& header)
        : job_(job)
        , from_(from)
        , header_(header)
        , frameBytes_(static_cast<std::int64_t>(header.frameBytes()))
        , file_(job.to) {}

    TrimOutcome run(const std::function<void(double)>& progress, const std::stop_token& cancel) {
        const auto failed = [](std::string why) {
            return TrimOutcome{TrimOutcome::End::Failed, std::move(why)};
        };
        if (std::string error = file_.open(); !error.empty())
            return failed(std::move(error));
        if (std::string error = writeHeader(); !error.empty())
            return failed(std::move(error));
        for (std::int64_t at = job_.begin; at < job_.end; at += kPiece) {
            if (cancel.stop_requested())
                return {TrimOutcome::End::Cancelled, {}};
            if (std::string error = copy(at, std::min(job_.end, at + kPiece)); !error.empty())
                return failed(std::move(error));
            if (progress)
                progress(static_cast<double>(at - job_.begin) / static_cast<double>(job_.end - job_.begin));
        }
        constexpr std::byte kPad{};
        if (std::string error = padOf(length()) != 0 ? file_.write({&kPad, 1}) : ""; !error.empty())
            return failed(std::move(error));
        if (std::string error = file_.commit(); !error.empty())
            return failed(std::move(error));
        if (progress)
            progress(1);
        return {TrimOutcome::End::Done, {}};
    }

private:
    [[nodiscard]] std::uint64_t length() const {
        return static_cast<std::uint64_t>((job_.end - job_.begin) * frameBytes_);
    }
    [[nodiscard]] std::string writeHeader() {
        const WaveFormat format{header_.rate, header_.bits, header_.channels};
        return length() > kLongestWav ? file_.write(rf64Header(format, length()))
                                      : file_.write(wavHeader(format, length()));
    }
    [[nodiscard]] std::string copy(std::int64_t begin, std::int64_t end) {
        piece_.resize(static_cast<std::size_t>((end - begin) * frameBytes_));
        const auto offset = header_.soundAt + static_cast<std::uint64_t>(begin * frameBytes_);
        if (from_.read(offset, piece_) != piece_.size())
            return file_.failure("\"" + job_.from.string() + "\" can't be read to its end");
        for (std::int64_t frame = begin; frame < end; ++frame) {
            if (frame < job_.begin + job_.fadeIn || frame >= job_.end - job_.fadeOut)
                fade(piece_.data() + (frame - begin) * frameBytes_, gainAt(frame));
        }
        return file_.write(std::as_bytes(std::span(piece_)));
    }
    void fade(std::uint8_t* frame, double gain) const {
        const int bytes = header_.sampleBytes();
        for (int channel = 0; channel < header_.channels; ++channel, frame += bytes)
            putSample(std::llrint(gain * static_cast<double>(sampleAt(frame, bytes))), frame, bytes);
    }
    [[nodiscard]] double gainAt(std::int64_t frame) const {
        double gain = 1;
        if (frame < job_.begin + job_.fadeIn)
            gain *= risen(frame - job_.begin, job_.fadeIn);
        if (frame >= job_.end - job_.fadeOut)
            gain *= risen(job_.end - 1 - frame, job_.fadeOut);
        return gain;
    }

    const TrimJob& job_;
    ByteSource& from_;
    const WavHeader& header_;
    std::int64_t frameBytes_;
    PendingFile file_;
    std::vector<std::uint8_t> piece_;
};

/// Why the part can't be had, as the end of a sentence; blank if it can.
std::string whyNot(const TrimJob& job, const WavHeader& header) {
    if (!header.problem.empty())
        return header.problem;
    if (header.encoding != WavEncoding::Plain || header.isBigEndian || header.bits % 8 != 0 ||
        header.bits > 32)
        return "its samples are of a kind that can't be cut";
    if (job.begin < 0 || job.end > static_cast<std::int64_t>(header.frames) || job.begin >= job.end)
        return "there is no sound from frame " + std::to_string(job.begin) + " to " + std::to_string(job.end);
    if (job.fadeIn < 0 || job.fadeOut < 0)
        return "a fade can't be shorter than nothing";
    return {};
}
} // namespace

TrimOutcome trimTake(const TrimJob& job, const std::function<void(double)>& progress,
                     const std::stop_token& cancel) {
    const auto refused = [&job](const std::string& why) {
        return TrimOutcome{TrimOutcome::End::Failed,
                           "Cutting \"" + job.from.string() + "\" failed: " + why + "."};
    };
    const OpenedBytes opened = openBytes(job.from);
    if (!opened.bytes)
        return refused(opened.error);
    const WavHeader header = readWavHeader(*opened.bytes);
    if (const std::string why = whyNot(job, header); !why.empty())
        return refused(why);
    return Trimming(job, *opened.bytes, header).run(progress, cancel);
}

} // namespace velmora
