// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Stream.h"

#include "studio/OfflineRender.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
/// After so many frames the longer ones of constant bitrate come in the same places again, at any rate.
constexpr std::size_t kRound = 49;
constexpr std::size_t kStretch = 16 * kRound; ///< frames of MP3: 20 s at 44,100 Hz
constexpr std::size_t kEarly = 24;            ///< frames that a stretch hears before it counts
/// Frames that a stretch goes beyond its end: LAME holds the last few back, and one of the others is the
/// seam.
constexpr std::size_t kBeyond = 14;

void put(std::span<unsigned char> bytes, std::size_t at, std::uint64_t value, std::size_t count) {
    for (std::size_t i = count; i-- > 0; value >>= 8U)
        bytes[at + i] = static_cast<unsigned char>(value & 0xFFU);
}
} // namespace

struct Mp3Stream::Stretch {
    /// Encodes all of its own sound. Runs on any thread.
    void run(const EncoderRecord& record) {
        std::uint32_t size = 0;
        code = beInitStream(record, blockValues, size, stream);
        output.resize(size);
        feed(input, fedFrom);
        if (isLast)
            end();
        if (record.hasInfoFrame && code == kBeSuccessful) {
            info.resize(output.size());
            info.resize(infoFrame(stream, info));
        }
        parsed = keptTo = info.size();
        parse();
        keptTo = 0;
    }
    /// @param from the value, counted from the begin of the whole sound, that @p sound begins with
    void feed(std::span<const float> sound, std::uint64_t from) {
        sound = sound.subspan(std::min<std::size_t>(sound.size(), static_cast<std::size_t>(fed - from)));
        while (!sound.empty() && code == kBeSuccessful) {
            const auto block = sound.first(std::min<std::size_t>(sound.size(), blockValues));
            std::uint32_t written = 0;
            code = beEncodeChunk(stream, block, output, written);
            bytes.insert(bytes.end(), output.begin(), output.begin() + written);
            fed += block.size();
            sound = sound.subspan(block.size());
        }
    }
    void end() {
        std::uint32_t written = 0;
        if (code == kBeSuccessful)
            code = beDeinitStream(stream, output, written);
        bytes.insert(bytes.end(), output.begin(), output.begin() + written);
    }
    void parse() { parsed = appendPlaces(bytes, parsed, places); }
    /// The place of a frame, counted from the begin of the whole sound; none that isn't there.
    [[nodiscard]] const Mp3Place* place(std::size_t frame) const {
        return frame >= first && frame - first < places.size() ? &places[frame - first] : nullptr;
    }

    std::size_t first = 0;     ///< frame of MP3 that the stream begins with
    std::size_t begin = 0;     ///< frame from which on it counts
    std::uint64_t fedFrom = 0; ///< value that `input` begins with
    std::uint64_t fed = 0;     ///< value that comes next
    bool isLast = false;
    std::vector<float> input;
    int code = kBeSuccessful;
    LameStream stream;
    std::uint32_t blockValues = 0;
    std::vector<unsigned char> output; ///< room for a block
    std::vector<unsigned char> bytes;
    std::vector<unsigned char> info; ///< the first frame, if it tells of the others
    std::vector<Mp3Place> places;
    std::size_t parsed = 0; ///< bytes
    std::size_t keptTo = 0; ///< bytes that are in the file, or have no place there
};

Mp3Stream::Mp3Stream(const EncoderRecord& record, std::function<bool(std::span<const unsigned char>)> keep)
    : record_(record)
    , keep_(std::move(keep))
    , channels_(record.nMode == kMono ? 1 : 2) {}
Mp3Stream::~Mp3Stream() = default;

int Mp3Stream::open() {
    LameStream trial;
    std::uint32_t samples = 0;
    std::uint32_t size = 0;
    const int code = beInitStream(record_, samples, size, trial);
    frameValues_ = samples;
    return code;
}

int Mp3Stream::write(std::span<const float> interleaved) {
    values_ += interleaved.size();
    while (!interleaved.empty()) {
        const std::size_t full = (kStretch + kEarly + kBeyond) * frameValues_;
        const auto taken = interleaved.first(std::min(interleaved.size(), full - gathered_.size()));
        gathered_.insert(gathered_.end(), taken.begin(), taken.end());
        interleaved = interleaved.subspan(taken.size());
        if (gathered_.size() < full)
            break;
        if (const int code = submit(false); code != kBeSuccessful)
            return code;
    }
    return kBeSuccessful;
}

int Mp3Stream::submit(bool isLast) {
    const auto cores = static_cast<std::size_t>(std::max(1, coresHere()));
    while (running_.size() >= cores) {
        if (const int code = takeNext(); code != kBeSuccessful)
            return code;
    }
    auto stretch = std::make_unique<Stretch>();
    stretch->first = gatheredFrom_;
    stretch->begin = nextBegin_;
    stretch->fedFrom = stretch->fed = std::uint64_t{gatheredFrom_} * frameValues_;
    stretch->isLast = isLast;
    const std::size_t next = gatheredFrom_ + kStretch;
    nextBegin_ = next + kEarly;
    std::vector<float> rest;
    if (!isLast)
        rest.assign(gathered_.begin() + static_cast<std::ptrdiff_t>((next - gatheredFrom_) * frameValues_),
                    gathered_.end());
    stretch->input = std::exchange(gathered_, std::move(rest));
    gatheredFrom_ = next;
    EncoderRecord record = record_;
    record.hasInfoFrame = record_.hasInfoFrame && stretch->first == 0;
    const auto policy = cores == 1 ? std::launch::deferred : std::launch::async;
    running_.push_back(std::async(policy, [stretch = std::move(stretch), record]() mutable {
        stretch->run(record);
        return std::move(stretch);
    }));
    return kBeSuccessful;
}

int Mp3Stream::takeNext() {
    std::unique_ptr<Stretch> next = running_.front().get();
    running_.pop_front();
    if (next->code != kBeSuccessful)
        return next->code;
    if (last_)
        return join(std::move(next));
    info_ = next->info;
    last_ = std::move(next);
    return kBeSuccessful;
}

bool Mp3Stream::meets(const Stretch& next, std::size_t frame) {
    const Mp3Place* ours = last_->place(frame);
    const Mp3Place* theirs = next.place(frame);
    return ours && theirs && Mp3Seam::fits(*ours, *theirs);
}

/// Where no frame is a seam, the stream before goes on through the sound of the next one.
int Mp3Stream::join(std::unique_ptr<Stretch> next) {
    const std::uint64_t end = next->fedFrom + next->input.size();
    for (std::size_t frame = next->begin;;) {
        for (; last_->place(frame); ++frame) {
            if (!meets(*next, frame))
                continue;
            Mp3Seam::bringOver(last_->bytes, last_->places, frame - last_->first, next->bytes, next->places,
                               frame - next->first);
            keepUntil(last_->place(frame)->at);
            next->keptTo = next->place(frame)->at;
            next->input = {};
            last_ = std::move(next);
            return kBeSuccessful;
        }
        if (last_->fed >= end)
            break;
        const auto more = static_cast<std::size_t>(std::min<std::uint64_t>(
            end - next->fedFrom, last_->fed - next->fedFrom + std::uint64_t{kBeyond} * frameValues_));
        last_->feed(std::span<const float>(next->input).first(more), next->fedFrom);
        last_->parse();
        if (last_->code != kBeSuccessful)
            return last_->code;
    }
    if (next->isLast)
        last_->end();
    last_->parse();
    return last_->code;
}

void Mp3Stream::keepUntil(std::size_t end) {
    const std::span<const unsigned char> bytes(last_->bytes);
    const std::size_t from = std::exchange(last_->keptTo, end);
    const std::size_t sound = std::min(end, std::max(from, last_->info.size()));
    checksum_ = infoChecksum(checksum_, bytes.subspan(sound, end - sound));
    kept_ += end - from;
    isRefused_ = isRefused_ || !keep_(bytes.subspan(from, end - from));
}

int Mp3Stream::finish() {
    int code = submit(true);
    while (code == kBeSuccessful && !running_.empty())
        code = takeNext();
    if (code != kBeSuccessful)
        return code;
    keepUntil(last_->bytes.size());
    completeInfo();
    return kBeSuccessful;
}

/// The first stream knew of itself alone.
void Mp3Stream::completeInfo() {
    if (info_.empty())
        return;
    const bool isVersion1 = record_.dwSampleRate >= 32000;
    const std::size_t side = isVersion1 ? (channels_ == 1 ? 17 : 32) : (channels_ == 1 ? 9 : 17);
    const std::span<unsigned char> tag = std::span(info_).subspan(4 + side);
    const std::uint64_t frames = last_->first + last_->places.size();
    const std::uint64_t perFrame = frameValues_ / channels_;
    const unsigned delay = unsigned{tag[141]} << 4U | tag[142] >> 4U;
    const std::uint64_t padding = frames * perFrame - values_ / channels_ - delay;
    put(tag, 8, frames, 4);
    put(tag, 12, kept_, 4);
    constexpr std::size_t kPlaces = 100; // where each hundredth of the time begins, in 256th of the file
    for (std::size_t i = 0; i < kPlaces; ++i) {
        const std::uint64_t at = info_.size() + (kept_ - info_.size()) * i / kPlaces;
        tag[16 + i] = static_cast<unsigned char>(std::min<std::uint64_t>(255, 256 * at / kept_));
    }
    put(tag, 141, std::uint64_t{delay} << 12U | padding, 3);
    put(tag, 148, kept_, 4);
    put(tag, 152, checksum_, 2);
    put(tag, 154, infoChecksum(0, std::span(info_).first(4 + side + 154)), 2);
}

} // namespace velmora
