// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace velmora {

namespace {
constexpr std::size_t kBlockBytes = std::size_t{64} * 1024;

/// As a float, on its way to fewer bits: what a float drops leaves its last bit set, so that no value becomes
/// one that lies halfway between two 16-bit ones unless it did before.
float narrowed(double value) {
    const auto nearest = static_cast<float>(value);
    const auto bits = std::bit_cast<std::uint32_t>(nearest);
    if (static_cast<double>(nearest) == value || (bits & 1U) != 0)
        return nearest;
    const bool outwards = std::abs(value) > std::abs(static_cast<double>(nearest));
    return std::bit_cast<float>(outwards ? bits + 1 : bits - 1);
}

float sensible(float value) {
    if (std::isfinite(value))
        return value;
    return std::isnan(value) ? 0.0F : std::copysign(1.0F, value);
}

template<typename Word>
Word word(const std::uint8_t* at, bool bigEndian) {
    Word value;
    std::memcpy(&value, at, sizeof value);
    if (bigEndian == (std::endian::native == std::endian::big))
        return value;
    Word turned = 0;
    for (std::size_t i = 0; i < sizeof value; ++i)
        turned = static_cast<Word>(turned << 8 | (value >> (8 * i) & 0xFF));
    return turned;
}

float fromEight(const std::uint8_t* at) {
    return static_cast<float>(*at - 128) / 128.0F;
}
template<bool bigEndian>
float fromSixteen(const std::uint8_t* at) {
    return static_cast<float>(static_cast<std::int16_t>(word<std::uint16_t>(at, bigEndian))) / 32768.0F;
}
template<bool bigEndian>
float fromTwentyFour(const std::uint8_t* at) {
    const auto bits = bigEndian ? static_cast<std::uint32_t>(at[0] << 16 | at[1] << 8 | at[2])
                                : static_cast<std::uint32_t>(at[2] << 16 | at[1] << 8 | at[0]);
    return static_cast<float>(static_cast<std::int32_t>(bits << 8)) / 2147483648.0F;
}
template<bool bigEndian>
float fromThirtyTwo(const std::uint8_t* at) {
    return narrowed(static_cast<std::int32_t>(word<std::uint32_t>(at, bigEndian)) / 2147483648.0);
}
template<bool bigEndian>
float fromFloat(const std::uint8_t* at) {
    return sensible(std::bit_cast<float>(word<std::uint32_t>(at, bigEndian)));
}
template<bool bigEndian>
float fromDouble(const std::uint8_t* at) {
    const auto value = std::bit_cast<double>(word<std::uint64_t>(at, bigEndian));
    constexpr double kMost = std::numeric_limits<float>::max();
    return std::isfinite(value) ? narrowed(std::clamp(value, -kMost, kMost))
                                : sensible(static_cast<float>(value));
}

/// Telephony's two laws: sign, exponent and four bits of mantissa in a byte.
constexpr std::array<float, 256> kFromALaw = [] {
    std::array<float, 256> table{};
    for (unsigned code = 0; code < table.size(); ++code) {
        const unsigned bits = code ^ 0x55U;
        const unsigned exponent = bits >> 4 & 7U;
        const unsigned mantissa = (bits & 15U) << 4 | 8U;
        const unsigned size = exponent == 0 ? mantissa : (mantissa | 0x100U) << (exponent - 1);
        table[code] =
            static_cast<float>((bits & 0x80U) != 0 ? static_cast<int>(size) : -static_cast<int>(size)) /
            32768.0F;
    }
    return table;
}();
constexpr std::array<float, 256> kFromMuLaw = [] {
    std::array<float, 256> table{};
    for (unsigned code = 0; code < table.size(); ++code) {
        const unsigned bits = ~code & 0xFFU;
        constexpr unsigned kBias = 0x84;
        const unsigned size = (((bits & 15U) << 3 | kBias) << (bits >> 4 & 7U)) - kBias;
        table[code] =
            static_cast<float>((bits & 0x80U) != 0 ? -static_cast<int>(size) : static_cast<int>(size)) /
            32768.0F;
    }
    return table;
}();
float fromALaw(const std::uint8_t* at) {
    return kFromALaw[*at];
}
float fromMuLaw(const std::uint8_t* at) {
    return kFromMuLaw[*at];
}

template<std::size_t size, float (*sample)(const std::uint8_t*)>
void decodeAll(std::span<const std::uint8_t> bytes, float* to) {
    const std::uint8_t* at = bytes.data();
    for (std::size_t count = bytes.size() / size; count > 0; --count, at += size)
        *to++ = sample(at);
}

using Decoder = void (*)(std::span<const std::uint8_t>, float*);
struct Decoders {
    Decoder little;
    Decoder big;
};

Decoder decoderOf(const WavHeader& header) {
    constexpr std::array<Decoders, 4> kPlain{
        Decoders{decodeAll<1, fromEight>, decodeAll<1, fromEight>},
        Decoders{decodeAll<2, fromSixteen<false>>, decodeAll<2, fromSixteen<true>>},
        Decoders{decodeAll<3, fromTwentyFour<false>>, decodeAll<3, fromTwentyFour<true>>},
        Decoders{decodeAll<4, fromThirtyTwo<false>>, decodeAll<4, fromThirtyTwo<true>>},
    };
    constexpr Decoders kSingle{decodeAll<4, fromFloat<false>>, decodeAll<4, fromFloat<true>>};
    constexpr Decoders kDouble{decodeAll<8, fromDouble<false>>, decodeAll<8, fromDouble<true>>};
    const auto ofOrder = [&header](const Decoders& both) {
        return header.isBigEndian ? both.big : both.little;
    };
    switch (header.encoding) {
    case WavEncoding::Plain:
        return ofOrder(kPlain[static_cast<std::size_t>(header.sampleBytes() - 1)]);
    case WavEncoding::Float:
        return ofOrder(header.bits == 32 ? kSingle : kDouble);
    case WavEncoding::ALaw:
        return decodeAll<1, fromALaw>;
    case WavEncoding::MuLaw:
        return decodeAll<1, fromMuLaw>;
    }
    return decodeAll<1, fromEight>;
}
} // namespace

void decodeSamples(const WavHeader& header, std::span<const std::uint8_t> bytes, float* to) {
    decoderOf(header)(bytes, to);
}

WavReader::WavReader(std::unique_ptr<ByteSource> bytes, WavHeader header)
    : bytes_(std::move(bytes))
    , header_(std::move(header)) {
    info_.kind = SoundKind::Wav;
    info_.rate = header_.rate;
    info_.channels = header_.channels;
    info_.bits = header_.bits;
    info_.isFloat = header_.encoding == WavEncoding::Float;
    info_.frames = static_cast<std::int64_t>(header_.frames);
    info_.title = header_.tags.title;
    info_.artist = header_.tags.artist;
}

std::size_t WavReader::read(std::span<float> interleaved) {
    const std::uint64_t frameBytes = header_.frameBytes();
    const auto channels = static_cast<std::size_t>(header_.channels);
    const std::uint64_t wanted =
        std::min<std::uint64_t>(interleaved.size() / channels, header_.frames - next_);
    std::uint64_t done = 0;
    while (done < wanted) {
        const std::uint64_t count =
            std::min<std::uint64_t>(wanted - done, std::max<std::uint64_t>(kBlockBytes / frameBytes, 1));
        block_.resize(std::max(block_.size(), static_cast<std::size_t>(count * frameBytes)));
        const auto block = std::span(block_).first(static_cast<std::size_t>(count * frameBytes));
        const std::uint64_t there = bytes_->read(header_.soundAt + next_ * frameBytes, block) / frameBytes;
        decodeSamples(header_, block.first(static_cast<std::size_t>(there * frameBytes)),
                      interleaved.data() + done * channels);
        done += there;
        next_ += there;
        if (there < count) {
            next_ = header_.frames; // the file has become shorter meanwhile
            break;
        }
    }
    return static_cast<std::size_t>(done);
}

void WavReader::seek(std::int64_t frame) {
    next_ = static_cast<std::uint64_t>(std::clamp<std::int64_t>(frame, 0, info_.frames));
}

} // namespace velmora
