// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/StereoReader.h"

#include "studio/Resampler.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <vector>

namespace velmora {

namespace {
constexpr std::size_t kBlockSamples = 8192; ///< that are read of the file at a time, if a frame isn't wider
constexpr std::int64_t kRunUp = 4096; ///< frames of the lower rate that a filter has to hear before a place
constexpr float kLoudest = 64;        ///< of what is converted: 36 dB over full scale
} // namespace

struct StereoReader::Parts {
    Parts(std::unique_ptr<SoundReader> file, int wantedRate)
        : reader(std::move(file))
        , from(reader->info().rate)
        , rate(wantedRate)
        , channels(static_cast<std::size_t>(reader->info().channels))
        , kept(std::min<std::size_t>(channels, 2)) {
        if (from == rate)
            return;
        resampler.emplace(from, rate, static_cast<int>(kept));
        problem = resampler->problem();
    }

    [[nodiscard]] std::int64_t converted(std::int64_t frame) const { return framesAtRate(frame, from, rate); }

    /// The next frames of the file, with two channels at the most.
    std::span<float> readKept(std::size_t frames) {
        block.resize(frames * channels);
        const std::size_t count = reader->read(block);
        if (channels > kept) {
            for (std::size_t i = 0; i < count; ++i)
                std::copy_n(block.begin() + static_cast<std::ptrdiff_t>(i * channels), kept,
                            block.begin() + static_cast<std::ptrdiff_t>(i * kept));
        }
        return std::span(block).first(count * kept);
    }

    /// At the file's own rate.
    std::size_t readPlain(std::span<float> to) {
        if (channels == 2)
            return reader->read(to);
        std::size_t done = 0;
        while (done * 2 < to.size()) {
            const std::size_t wanted = std::min(to.size() / 2 - done, framesAtATime());
            const std::span<float> some = readKept(wanted);
            done += spread(some, to.subspan(done * 2));
            if (some.size() < wanted * kept)
                break;
        }
        return done;
    }

    /// Puts @p some, of as many channels as are kept, on both sides.
    [[nodiscard]] std::size_t spread(std::span<const float> some, std::span<float> to) const {
        if (kept == 2) {
            std::ranges::copy(some, to.begin());
            return some.size() / 2;
        }
        for (std::size_t i = 0; i < some.size(); ++i)
            to[2 * i] = to[2 * i + 1] = some[i];
        return some.size();
    }

    std::size_t readConverted(std::span<float> to) {
        std::size_t done = 0;
        while (done * 2 < to.size()) {
            const std::span<const float> there = std::span<const float>(ready).subspan(readyFrom);
            const std::size_t count = std::min(there.size() / kept, to.size() / 2 - done);
            done += spread(there.first(count * kept), to.subspan(done * 2));
            readyFrom += count * kept;
            if (done * 2 < to.size() && !convertMore())
                break;
        }
        return done;
    }

    bool convertMore() {
        ready.clear();
        readyFrom = 0;
        if (isAtEnd)
            return false;
        const std::size_t wanted = framesAtATime();
        const std::span<float> some = readKept(wanted);
        for (float& sample : some)
            sample = std::clamp(sample, -kLoudest, kLoudest);
        resampler->process(some, ready);
        if (some.size() < wanted * kept) {
            resampler->finish(ready);
            isAtEnd = true;
        }
        const auto dropped = static_cast<std::size_t>(
            std::min<std::int64_t>(toDrop, static_cast<std::int64_t>(ready.size() / kept)));
        readyFrom = dropped * kept;
        toDrop -= static_cast<std::int64_t>(dropped);
        return true;
    }

    void seek(std::int64_t frame) {
        frame = std::clamp<std::int64_t>(frame, 0, reader->info().frames);
        if (!resampler) {
            reader->seek(frame);
            return;
        }
        // From a frame on that both rates have: so the samples are those that reading on would have given.
        const std::int64_t period = from / std::gcd(from, rate);
        std::int64_t start = std::max<std::int64_t>(frame - kRunUp * (1 + from / rate), 0);
        start -= start % period;
        reader->seek(start);
        resampler.emplace(from, rate, static_cast<int>(kept));
        toDrop = converted(frame) - converted(start);
        ready.clear();
        readyFrom = 0;
        isAtEnd = false;
    }

    [[nodiscard]] std::size_t framesAtATime() const {
        return std::max<std::size_t>(kBlockSamples / channels, 1);
    }

    std::unique_ptr<SoundReader> reader;
    int from;
    int rate;
    std::size_t channels; ///< of the file
    std::size_t kept;     ///< of them
    std::string problem;
    std::optional<Resampler> resampler;
    std::vector<float> block;
    std::vector<float> ready; ///< converted, and not read yet from readyFrom on
    std::size_t readyFrom = 0;
    std::int64_t toDrop = 0; ///< converted frames that belong before the place that was sought
    bool isAtEnd = false;
};

StereoReader::StereoReader(std::unique_ptr<SoundReader> reader, int rate)
    : parts_(std::make_unique<Parts>(std::move(reader), rate)) {}
StereoReader::~StereoReader() = default;
StereoReader::StereoReader(StereoReader&&) noexcept = default;
StereoReader& StereoReader::operator=(StereoReader&&) noexcept = default;

const SoundInfo& StereoReader::info() const {
    return parts_->reader->info();
}

const std::string& StereoReader::problem() const {
    return parts_->problem;
}

std::int64_t StereoReader::frames() const {
    return parts_->problem.empty() ? parts_->converted(info().frames) : 0;
}

std::size_t StereoReader::read(std::span<float> interleaved) {
    if (!parts_->problem.empty())
        return 0;
    return parts_->resampler ? parts_->readConverted(interleaved) : parts_->readPlain(interleaved);
}

void StereoReader::seek(std::int64_t frame) {
    parts_->seek(frame);
}

} // namespace velmora
