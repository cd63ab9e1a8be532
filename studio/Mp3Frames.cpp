// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Frames.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace velmora {

namespace {
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kHeaderBytes = 4;
constexpr std::size_t kLongestFrame = 1441; ///< 320 kbit/s at 32,000 Hz, and a byte that evens out

constexpr std::array<int, 15> kBitrates{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr std::array<int, 15> kLowBitrates{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
constexpr std::array<int, 3> kRates{44100, 48000, 32000};

std::uint32_t bigEndian(Bytes bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
           std::uint32_t{bytes[at + 2]} << 8 | bytes[at + 3];
}

bool standsAt(Bytes bytes, std::size_t at, std::string_view name) {
    return bytes.size() >= at + name.size() && std::memcmp(bytes.data() + at, name.data(), name.size()) == 0;
}
} // namespace

std::optional<Mp3FrameHeader> mp3FrameHeader(Bytes bytes) {
    if (bytes.size() < kHeaderBytes || bytes[0] != 0xFF || (bytes[1] & 0xE0U) != 0xE0)
        return std::nullopt;
    const unsigned version = bytes[1] >> 3 & 3U; // 3: the first, 2: with half of its rates, 0: with a quarter
    const unsigned layer = bytes[1] >> 1 & 3U;
    const unsigned bitrate = bytes[2] >> 4;
    const unsigned rate = bytes[2] >> 2 & 3U;
    const unsigned emphasis = bytes[3] & 3U;
    constexpr unsigned kLayerIII = 1;
    if (version == 1 || layer != kLayerIII || bitrate == 0 || bitrate == 15 || rate == 3 || emphasis == 2)
        return std::nullopt;
    const bool isFirst = version == 3;
    const bool isPadded = (bytes[2] & 2U) != 0;
    Mp3FrameHeader header;
    header.rate = kRates[rate] >> (isFirst ? 0 : version == 2 ? 1 : 2);
    header.bitrate = (isFirst ? kBitrates : kLowBitrates)[bitrate];
    header.channels = bytes[3] >> 6 == 3U ? 1 : 2;
    header.samples = isFirst ? 1152 : 576;
    header.bytes = header.samples / 8 * header.bitrate * 1000 / header.rate + (isPadded ? 1 : 0);
    header.sideBytes = isFirst ? (header.channels == 1 ? 17 : 32) : (header.channels == 1 ? 9 : 17);
    return header;
}

std::optional<Mp3InfoFrame> mp3InfoFrame(Bytes frame, const Mp3FrameHeader& header) {
    constexpr std::size_t kVbriAt = 36; // whatever the side information's length
    if (standsAt(frame, kVbriAt, "VBRI"))
        return Mp3InfoFrame{};
    std::size_t at = kHeaderBytes + static_cast<std::size_t>(header.sideBytes);
    if (!standsAt(frame, at, "Xing") && !standsAt(frame, at, "Info"))
        return std::nullopt;
    Mp3InfoFrame info;
    at += 4;
    if (frame.size() < at + 4)
        return info;
    const std::uint32_t has = bigEndian(frame, at);
    at += 4;
    if ((has & 1U) != 0 && frame.size() >= at + 4)
        info.frames = bigEndian(frame, at);
    constexpr std::array<std::size_t, 4> kLengths{4, 4, 100, 4}; // frames, bytes, table of places, quality
    for (std::size_t part = 0; part < kLengths.size(); ++part) {
        if ((has >> part & 1U) != 0)
            at += kLengths[part];
    }
    constexpr std::size_t kDelayAt = 21; // behind the encoder's name and its settings
    if (frame.size() < at + kDelayAt + 3 || frame[at] == 0)
        return info;
    const Bytes both = frame.subspan(at + kDelayAt, 3);
    info.delay = both[0] << 4 | both[1] >> 4;
    info.padding = (both[1] & 15) << 8 | both[2];
    return info;
}

Mp3Frames::Mp3Frames(ByteSource& bytes) : bytes_(bytes), end_(bytes.size()) {
    const std::uint64_t begin = behindTags();
    readTagsBehind();
    first_ = search(begin);
    if (!first_ && begin > 0)
        first_ = search(0); // a tag has claimed more than is its own
    at_ = first_ ? first_->at : end_;
}

/// Reads those in front and returns where they end.
std::uint64_t Mp3Frames::behindTags() {
    std::uint64_t at = 0;
    while (const std::uint64_t length = id3v2Length(bytes_, at)) {
        readId3v2(bytes_, at, tags_);
        at += length;
    }
    return at;
}

/// Those behind are no part of the sound.
void Mp3Frames::readTagsBehind() {
    const TagsBehind behind = tagsBehind(bytes_);
    if (behind.hasId3v1)
        readId3v1(bytes_.at(end_ - kId3v1Bytes, kId3v1Bytes), tags_);
    end_ = behind.soundEnd;
}

/// The first place from there where a frame is followed by another one.
std::optional<Mp3Frame> Mp3Frames::search(std::uint64_t from) {
    constexpr std::size_t kStretch = std::size_t{32} * 1024; // looked through at a time
    for (; from + kHeaderBytes <= end_; from += kStretch) {
        const auto count = std::min<std::uint64_t>(kStretch + kLongestFrame + kHeaderBytes, end_ - from);
        const Bytes there = bytes_.at(from, static_cast<std::size_t>(count));
        const std::size_t stretch = std::min(kStretch, there.size());
        for (std::size_t i = 0; i < stretch; ++i) {
            const void* const sync = std::memchr(there.data() + i, 0xFF, stretch - i);
            if (sync == nullptr)
                break;
            i = static_cast<std::size_t>(static_cast<const std::uint8_t*>(sync) - there.data());
            const auto header = mp3FrameHeader(there.subspan(i));
            if (!header || !couldFollow(*header))
                continue;
            const std::size_t behind = i + static_cast<std::size_t>(header->bytes);
            const auto next = behind < there.size() ? mp3FrameHeader(there.subspan(behind)) : std::nullopt;
            if (next && next->goesWith(*header) && next->channels == header->channels)
                return Mp3Frame{from + i, *header};
        }
        if (there.size() < count)
            break; // the rest can't be read
    }
    return std::nullopt;
}

/// The length of a tag that stands between files that were put one behind the other; 0 if none is there.
std::uint64_t Mp3Frames::tagAt(std::uint64_t at) {
    const Bytes there = bytes_.at(at, kId3v1Bytes);
    if (there.size() == kId3v1Bytes && standsAt(there, 0, "TAG"))
        return kId3v1Bytes;
    return id3v2Length(bytes_, at);
}

void Mp3Frames::goOnBehindDamage() {
    constexpr std::uint64_t kLongestDamage = std::uint64_t{16} * 1024; // what is longer may be anything
    const auto found = search(at_ + 1);
    if (!found) {
        at_ = end_;
        return;
    }
    const std::uint64_t gap = found->at - at_;
    const int count =
        gap > kLongestDamage
            ? 0
            : static_cast<int>(std::lround(static_cast<double>(gap) / found->header.meanBytes()));
    lost_ = Lost{at_, *found, count};
    at_ = found->at;
}

std::optional<Mp3Frame> Mp3Frames::next() {
    if (!first_)
        return std::nullopt;
    while (at_ + kHeaderBytes <= end_) {
        if (lost_ && lost_->told < lost_->count) {
            const double before = lost_->told++ * lost_->next.header.meanBytes();
            return Mp3Frame{lost_->from + static_cast<std::uint64_t>(before), lost_->next.header, true};
        }
        lost_.reset();
        const auto header = mp3FrameHeader(bytes_.at(at_, kHeaderBytes));
        if (header && couldFollow(*header)) {
            if (at_ + static_cast<std::uint64_t>(header->bytes) > end_)
                break;
            const Mp3Frame frame{at_, *header};
            at_ += static_cast<std::uint64_t>(header->bytes);
            return frame;
        }
        if (const std::uint64_t tag = tagAt(at_))
            at_ += tag;
        else
            goOnBehindDamage();
    }
    at_ = end_;
    return std::nullopt;
}

Bytes Mp3Frames::bytesOf(const Mp3Frame& frame) {
    return bytes_.at(frame.at, static_cast<std::size_t>(frame.header.bytes));
}

} // namespace velmora
