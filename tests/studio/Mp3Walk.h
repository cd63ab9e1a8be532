// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::mp3walk {

/// What the header of a frame says.
struct Header {
    int rate = 0;
    int bitrate = 0;
    int mode = 0; ///< 0 stereo, 1 joint stereo, 3 mono
    bool isVersion1 = false;
    bool hasChecksum = false;
    bool isCopyrighted = false;
    bool isOriginal = false;
    int emphasis = 0;
    std::size_t size = 0; ///< bytes of the frame
};

/// What the first frame tells of the others.
struct Info {
    std::uint32_t frames = 0;
    std::uint32_t bytes = 0;
    std::uint32_t delay = 0;
    std::uint32_t padding = 0;
    std::uint32_t musicLength = 0;
    std::uint32_t musicChecksum = 0;
    std::uint32_t tagChecksum = 0;
    std::uint32_t tagChecksumFound = 0; ///< calculated here
};

struct Walk {
    std::size_t tagSize = 0; ///< bytes in front of the first frame
    std::optional<Info> info;
    std::vector<Header> frames; ///< all, the info frame too
    std::size_t end = 0;        ///< behind the last frame
    std::uint32_t soundChecksum = 0;
};

inline std::uint32_t byteAt(std::string_view bytes, std::size_t place) {
    return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0U;
}
inline std::uint32_t bigEndian(std::string_view bytes, std::size_t place, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8U | byteAt(bytes, place + static_cast<std::size_t>(i));
    return value;
}
/// CRC-16 of the reversed polynomial 0x8005.
inline std::uint32_t checksum(std::string_view bytes) {
    std::uint32_t crc = 0;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? crc >> 1U ^ 0xA001U : crc >> 1U;
    }
    return crc;
}

inline std::optional<Header> headerAt(std::string_view bytes, std::size_t place) {
    constexpr std::array<int, 16> kVersion1{0,   32,  40,  48,  56,  64,  80,  96,
                                            112, 128, 160, 192, 224, 256, 320, 0};
    constexpr std::array<int, 16> kVersion2{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};
    constexpr std::array<int, 4> kRates{44100, 48000, 32000, 0};
    const std::uint32_t word = bigEndian(bytes, place, 4);
    const bool isVersion1 = (word >> 19U & 3U) == 3U;
    const bool isLayer3 = (word >> 17U & 3U) == 1U;
    if (place + 4 > bytes.size() || word >> 21U != 0x7FFU || !isLayer3 ||
        (!isVersion1 && (word >> 19U & 3U) != 2U))
        return std::nullopt;
    Header header;
    header.isVersion1 = isVersion1;
    header.hasChecksum = (word >> 16U & 1U) == 0;
    header.bitrate = (isVersion1 ? kVersion1 : kVersion2)[word >> 12U & 15U];
    header.rate = kRates[word >> 10U & 3U] / (isVersion1 ? 1 : 2);
    header.mode = static_cast<int>(word >> 6U & 3U);
    header.isCopyrighted = (word >> 3U & 1U) != 0;
    header.isOriginal = (word >> 2U & 1U) != 0;
    header.emphasis = static_cast<int>(word & 3U);
    if (header.bitrate == 0 || header.rate == 0)
        return std::nullopt;
    const std::size_t padding = word >> 9U & 1U;
    header.size =
        static_cast<std::size_t>((isVersion1 ? 144 : 72) * header.bitrate * 1000 / header.rate) + padding;
    return header;
}

inline std::optional<Info> infoAt(std::string_view bytes, std::size_t place, const Header& header) {
    const std::size_t side = header.isVersion1 ? (header.mode == 3 ? 17 : 32) : (header.mode == 3 ? 9 : 17);
    const std::size_t tag = place + 4 + side;
    if (bytes.substr(std::min(tag, bytes.size()), 4) != "Info" || bigEndian(bytes, tag + 4, 4) != 15)
        return std::nullopt;
    const std::size_t lame = tag + 120;
    Info info;
    info.frames = bigEndian(bytes, tag + 8, 4);
    info.bytes = bigEndian(bytes, tag + 12, 4);
    info.delay = bigEndian(bytes, lame + 21, 3) >> 12U;
    info.padding = bigEndian(bytes, lame + 21, 3) & 0xFFFU;
    info.musicLength = bigEndian(bytes, lame + 28, 4);
    info.musicChecksum = bigEndian(bytes, lame + 32, 2);
    info.tagChecksum = bigEndian(bytes, lame + 34, 2);
    info.tagChecksumFound = checksum(bytes.substr(place, lame + 34 - place));
    return info;
}

/// Goes from frame to frame, as far as they follow each other.
inline Walk walk(std::string_view bytes) {
    Walk found;
    if (bytes.starts_with("ID3")) {
        found.tagSize = 10;
        for (std::size_t i = 0; i < 4; ++i)
            found.tagSize += std::size_t{byteAt(bytes, 6 + i)} << (21U - 7U * i);
    }
    std::size_t place = found.tagSize;
    std::size_t sound = place;
    while (const auto header = headerAt(bytes, place)) {
        if (found.frames.empty()) {
            found.info = infoAt(bytes, place, *header);
            sound = found.info ? place + header->size : place;
        }
        found.frames.push_back(*header);
        place += header->size;
    }
    found.end = place;
    found.soundChecksum = checksum(bytes.substr(sound));
    return found;
}

} // namespace velmora::mp3walk
