// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Reader.h"

#include "studio/Mp3Decoder.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace velmora {

namespace {
constexpr int kDecoderDelay = 529;        ///< frames by which every decoder is late
constexpr std::size_t kMostPlaces = 8192; ///< that are remembered for seeking
} // namespace

Mp3Reader::Mp3Reader(std::unique_ptr<ByteSource> bytes) : bytes_(std::move(bytes)), frames_(*bytes_) {
    if (!frames_.found()) {
        problem_ = "it is neither a WAV nor an MP3 file";
        return;
    }
    survey();
    info_.kind = SoundKind::Mp3;
    info_.rate = first_.rate;
    info_.channels = first_.channels;
    info_.title = frames_.tags().title;
    info_.artist = frames_.tags().artist;
    if (info_.frames <= 0) {
        problem_ = "there is no sound in it";
        return;
    }
    decoder_ = std::make_unique<Mp3Decoder>(first_.rate, first_.channels);
    problem_ = decoder_->problem();
    if (problem_.empty())
        Mp3Reader::seek(0);
}

Mp3Reader::~Mp3Reader() = default;

void Mp3Reader::survey() {
    std::optional<Mp3InfoFrame> info;
    std::int64_t bitrates = 0;
    std::int64_t heard = 0;
    int fewestBytes = std::numeric_limits<int>::max();
    for (bool isFirst = true; const auto frame = frames_.next(); isFirst = false) {
        if (isFirst) {
            first_ = frame->header;
            info = mp3InfoFrame(frames_.bytesOf(*frame), frame->header);
            if (info)
                continue;
        }
        note(count_++, frame->at);
        if (frame->isLost)
            continue;
        ++heard;
        bitrates += frame->header.bitrate;
        // A frame's sound may begin in those before it; two are heard together, and a third keeps the second.
        constexpr int kHead = 6; // with a checksum
        fewestBytes = std::min(fewestBytes, frame->header.bytes - kHead - frame->header.sideBytes);
    }
    constexpr int kFarthestBegin = 511;
    lead_ = kFarthestBegin / std::max(fewestBytes, 1) + 3;
    if (heard > 0)
        info_.bitrate =
            static_cast<int>(std::lround(static_cast<double>(bitrates) / static_cast<double>(heard)));
    info_.frames = count_ * first_.samples;
    if (info)
        cutTo(*info);
}

/// As decoders have it that heed the info frame: where the stream is shorter than it tells, what is there is
/// heard to its end; where it is longer, something else was put behind, which is heard as well.
void Mp3Reader::cutTo(const Mp3InfoFrame& info) {
    if (!info.delay)
        return;
    const std::int64_t all = count_ * first_.samples;
    const std::int64_t told = info.frames * first_.samples;
    begin_ = std::min<std::int64_t>(*info.delay + kDecoderDelay, all);
    std::int64_t end = all;
    if (info.frames > 0)
        end = std::clamp<std::int64_t>(told - info.padding + kDecoderDelay, begin_, std::max(all, begin_));
    gapAt_ = end - begin_;
    gap_ = info.frames > 0 && all > told ? std::max<std::int64_t>(told - end, 0) : all - end;
    info_.frames = all - begin_ - gap_;
}

/// Memory for places doesn't grow with the file: they become fewer.
void Mp3Reader::note(std::int64_t index, std::uint64_t at) {
    if (index % stride_ != 0)
        return;
    places_.push_back(at);
    if (places_.size() < kMostPlaces)
        return;
    for (std::size_t i = 0; i < kMostPlaces / 2; ++i)
        places_[i] = places_[2 * i];
    places_.resize(kMostPlaces / 2);
    stride_ *= 2;
}

/// Where a frame of what is heard stands in all that is decoded.
std::int64_t Mp3Reader::decodedAt(std::int64_t frame) const {
    return begin_ + frame + (frame >= gapAt_ ? gap_ : 0);
}

bool Mp3Reader::decodeNext() {
    const auto frame = frames_.next();
    if (!frame)
        return false;
    decodedFrom_ = nextDecoded_++ * first_.samples;
    if (frame->isLost)
        std::ranges::fill(decoded_, 0.0F);
    else
        decoder_->decode(frames_.bytesOf(*frame), decoded_);
    return true;
}

std::size_t Mp3Reader::read(std::span<float> interleaved) {
    const auto channels = static_cast<std::size_t>(info_.channels);
    const auto wanted = static_cast<std::int64_t>(interleaved.size() / channels);
    float* to = interleaved.data();
    std::int64_t done = 0;
    while (done < wanted && next_ < info_.frames) {
        const std::int64_t at = decodedAt(next_);
        while (decodedFrom_ + first_.samples <= at) {
            if (!decodeNext()) {
                next_ = info_.frames; // the file has become shorter meanwhile
                return static_cast<std::size_t>(done);
            }
        }
        std::int64_t count =
            std::min({wanted - done, info_.frames - next_, decodedFrom_ + first_.samples - at});
        if (next_ < gapAt_)
            count = std::min(count, gapAt_ - next_);
        const auto from = static_cast<std::size_t>(at - decodedFrom_) * channels;
        to = std::copy_n(decoded_.begin() + static_cast<std::ptrdiff_t>(from),
                         static_cast<std::size_t>(count) * channels, to);
        done += count;
        next_ += count;
    }
    return static_cast<std::size_t>(done);
}

void Mp3Reader::seek(std::int64_t frame) {
    if (frame == next_ && !decoded_.empty())
        return;
    next_ = std::clamp<std::int64_t>(frame, 0, info_.frames);
    const std::int64_t wanted = decodedAt(next_) / first_.samples;
    std::int64_t from = std::max<std::int64_t>(wanted - lead_, 0);
    // The decoder adds up in an order that comes again every eighth frame: so it gives the very same values.
    from -= from % 8;
    const auto place = std::min(static_cast<std::size_t>(from / stride_), places_.size() - 1);
    frames_.moveTo(places_[place]);
    nextDecoded_ = static_cast<std::int64_t>(place) * stride_;
    while (nextDecoded_ < from && frames_.next())
        ++nextDecoded_;
    decoded_.assign(static_cast<std::size_t>(first_.samples) * static_cast<std::size_t>(info_.channels),
                    0.0F);
    decodedFrom_ = -first_.samples;
    decoder_->startAnew();
}

} // namespace velmora
