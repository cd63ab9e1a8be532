// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavHeaderBytes.h"

#include <algorithm>
#include <string_view>

namespace velmora {

namespace {
constexpr std::uint64_t kAllOnes = 0xFFFFFFFFU;
constexpr std::uint64_t kFormatBytes = 16;
constexpr std::uint64_t kLengthBytes = 28; ///< of the chunk with the long lengths: three of them and a count

/// Writes one field behind the other, numbers with their lowest byte first.
class Fields {
public:
    explicit Fields(std::byte* to) : to_(to) {}
    Fields& name(std::string_view letters) {
        to_ = std::ranges::transform(letters, to_, [](char one) { return static_cast<std::byte>(one); }).out;
        return *this;
    }
    Fields& number(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            *to_++ = static_cast<std::byte>(value >> (8 * i) & 0xFFU);
        return *this;
    }
    Fields& format(const WaveFormat& format) {
        constexpr std::uint64_t kPlain = 1;
        const auto of = [](int value) { return static_cast<std::uint64_t>(value); };
        return name("fmt ")
            .number(kFormatBytes, 4)
            .number(kPlain, 2)
            .number(of(format.channels), 2)
            .number(of(format.rate), 4)
            .number(of(format.bytesPerSecond()), 4)
            .number(of(format.alignment()), 2)
            .number(of(format.bits), 2);
    }
    Fields& skip(std::size_t bytes) {
        to_ += bytes;
        return *this;
    }

private:
    std::byte* to_;
};
} // namespace

std::array<std::byte, kWavHeader> wavHeader(const WaveFormat& format, std::uint64_t dataBytes) {
    const bool isTold = dataBytes != kToTheEnd;
    std::array<std::byte, kWavHeader> header{};
    Fields(header.data())
        .name("RIFF")
        .number(isTold ? dataBytes + padOf(dataBytes) + kWavHeader - 8 : kAllOnes, 4)
        .name("WAVE")
        .format(format)
        .name("data")
        .number(isTold ? dataBytes : kAllOnes, 4);
    return header;
}

std::vector<std::byte> rf64Header(const WaveFormat& format, std::uint64_t dataBytes, std::size_t size) {
    std::vector<std::byte> header(size);
    const std::size_t filling = size - kSmallestRf64;
    Fields(header.data())
        .name("RF64")
        .number(kAllOnes, 4)
        .name("WAVE")
        .name("ds64")
        .number(kLengthBytes, 4)
        .number(size + dataBytes + padOf(dataBytes) - 8, 8)
        .number(dataBytes, 8)
        .number(dataBytes / static_cast<std::uint64_t>(format.alignment()), 8)
        .number(0, 4) // no other chunk is long
        .format(format)
        .name("JUNK")
        .number(filling, 4)
        .skip(filling)
        .name("data")
        .number(kAllOnes, 4);
    return header;
}

} // namespace velmora
