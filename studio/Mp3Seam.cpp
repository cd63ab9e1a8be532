// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Seam.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace velmora {

namespace {
/// Bits, the highest of a byte first.
class Bits {
public:
    explicit Bits(const unsigned char* bytes) : bytes_(bytes) {}
    unsigned take(unsigned count) {
        unsigned value = 0;
        for (; count > 0; --count, ++at_)
            value = value << 1U | (bytes_[at_ / 8] >> (7U - at_ % 8) & 1U);
        return value;
    }
    void pass(unsigned count) { at_ += count; }

private:
    const unsigned char* bytes_;
    std::size_t at_ = 0;
};

/// Of a stream that LAME has just made: no other kind of header comes here.
std::optional<Mp3Place> placeAt(std::span<const unsigned char> bytes, std::size_t at) {
    constexpr std::array<int, 16> kVersion1{0,   32,  40,  48,  56,  64,  80,  96,
                                            112, 128, 160, 192, 224, 256, 320, 0};
    constexpr std::array<int, 16> kVersion2{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};
    constexpr std::array<int, 4> kRates{44100, 48000, 32000, 0};
    constexpr std::size_t kLongestSide = 36;
    if (at + kLongestSide > bytes.size() || bytes[at] != 0xFF || (bytes[at + 1] & 0xE0U) != 0xE0U)
        return std::nullopt;
    const bool isVersion1 = (bytes[at + 1] & 8U) != 0;
    const bool isMono = bytes[at + 3] >> 6U == 3;
    const int bitrate = (isVersion1 ? kVersion1 : kVersion2)[bytes[at + 2] >> 4U];
    const int rate = kRates[bytes[at + 2] >> 2U & 3U] / (isVersion1 ? 1 : 2);
    if (bitrate == 0 || rate == 0)
        return std::nullopt;
    Mp3Place place;
    place.at = at;
    place.isPadded = (bytes[at + 2] & 2U) != 0;
    place.size =
        static_cast<std::size_t>((isVersion1 ? 144 : 72) * bitrate * 1000 / rate) + (place.isPadded ? 1 : 0);
    place.side = 4U + (isVersion1 ? (isMono ? 17U : 32U) : (isMono ? 9U : 17U));
    if (at + place.size > bytes.size())
        return std::nullopt;
    Bits bits(bytes.data() + at + 4);
    place.back = bits.take(isVersion1 ? 9 : 8);
    const unsigned channels = isMono ? 1 : 2;
    if (isVersion1)
        bits.pass((isMono ? 5U : 3U) + 4 * channels);
    else
        bits.pass(isMono ? 1U : 2U);
    for (unsigned channel = 0; channel < channels; ++channel) {
        bits.pass(12 + 9 + 8 + (isVersion1 ? 4U : 9U)); // lengths and gain
        const unsigned isSwitched = bits.take(1);
        const unsigned window = isSwitched != 0 ? bits.take(3) : 0; // its type, and whether it is mixed
        bits.pass(isSwitched != 0 ? 19U : 22U);
        bits.pass(isVersion1 ? 3U : 2U);
        place.windows = place.windows << 4U | isSwitched << 3U | window;
    }
    return place;
}

/// Where the @p count bytes of sound before a frame stand, the nearest first.
std::vector<std::size_t> soundBefore(std::span<const Mp3Place> places, std::size_t frame, std::size_t count) {
    std::vector<std::size_t> bytes;
    while (bytes.size() < count && frame-- > 0) {
        const Mp3Place& place = places[frame];
        for (std::size_t i = place.at + place.size; i-- > place.at + place.side && bytes.size() < count;)
            bytes.push_back(i);
    }
    return bytes;
}

constexpr std::array<std::uint16_t, 256> checksums() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? crc >> 1U ^ 0xA001U : crc >> 1U;
        table[i] = static_cast<std::uint16_t>(crc);
    }
    return table;
}
} // namespace

std::size_t appendPlaces(std::span<const unsigned char> bytes, std::size_t from,
                         std::vector<Mp3Place>& places) {
    while (const auto place = placeAt(bytes, from)) {
        places.push_back(*place);
        from += place->size;
    }
    return from;
}

void Mp3Seam::bringOver(std::span<unsigned char> first, std::span<const Mp3Place> places, std::size_t i,
                        std::span<const unsigned char> second, std::span<const Mp3Place> others,
                        std::size_t j) {
    const std::size_t count = others[j].back;
    const std::vector<std::size_t> to = soundBefore(places, i, count);
    const std::vector<std::size_t> from = soundBefore(others, j, count);
    for (std::size_t k = 0; k < std::min(to.size(), from.size()); ++k)
        first[to[k]] = second[from[k]];
}

unsigned infoChecksum(unsigned crc, std::span<const unsigned char> bytes) {
    static constexpr auto kTable = checksums();
    for (const unsigned char byte : bytes)
        crc = crc >> 8U ^ kTable[(crc ^ byte) & 0xFFU];
    return crc;
}

} // namespace velmora
