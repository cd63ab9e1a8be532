// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PngFile.h"

#include <QByteArray>

#include <array>
#include <limits>
#include <string_view>
#include <vector>

namespace velmora::notation {

namespace {
constexpr std::uint32_t kCrcPolynomial = 0xEDB88320;
constexpr auto kCrcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) != 0 ? kCrcPolynomial ^ (value >> 1) : value >> 1;
        table[i] = value;
    }
    return table;
}();

std::uint32_t crcOf(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes)
        crc = kCrcTable[(crc ^ static_cast<std::uint8_t>(byte)) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

void addNumber(std::string& to, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        to += static_cast<char>((number >> shift) & 0xFF);
}

void addChunk(std::string& to, std::string_view name, std::string_view data) {
    addNumber(to, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = to.size();
    to += name;
    to += data;
    addNumber(to, crcOf(std::string_view(to).substr(start)));
}

/// 96 pixels an inch would say nothing of a page at another scale: the file has no density.
constexpr char kGrey = 0, kRgb = 2;
/// Rows of a page repeat: as differences from the row above they are mostly zeros, which pack fast and well.
constexpr std::uint8_t kUpFilter = 2;
constexpr int kFastPacking = 1;
/// Of the stream's length, which qCompress puts in front.
constexpr qsizetype kLengthBytes = 4;

std::vector<std::uint8_t> filtered(std::size_t rowBytes, std::size_t rows, const std::uint8_t* samples) {
    std::vector<std::uint8_t> all(rows * (rowBytes + 1));
    std::vector<std::uint8_t> blank(rowBytes);
    const std::uint8_t* above = blank.data();
    std::uint8_t* to = all.data();
    for (std::size_t row = 0; row < rows; ++row) {
        *to++ = kUpFilter;
        for (std::size_t i = 0; i < rowBytes; ++i)
            to[i] = static_cast<std::uint8_t>(samples[i] - above[i]);
        to += rowBytes;
        above = samples;
        samples += rowBytes;
    }
    return all;
}

std::string pngOf(int width, int height, char kind, int channels, std::span<const std::uint8_t> samples) {
    const auto rowBytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    const auto rows = static_cast<std::size_t>(height);
    if (width < 1 || height < 1 || samples.size() < rowBytes * rows ||
        (rowBytes + 1) * rows > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return {};
    const std::vector<std::uint8_t> raw = filtered(rowBytes, rows, samples.data());
    const QByteArray packed = qCompress(raw.data(), static_cast<qsizetype>(raw.size()), kFastPacking);
    if (packed.size() <= kLengthBytes)
        return {};
    std::string file("\x89PNG\r\n\x1A\n", 8);
    std::string header;
    addNumber(header, static_cast<std::uint32_t>(width));
    addNumber(header, static_cast<std::uint32_t>(height));
    header += {8, kind, 0, 0, 0};
    addChunk(file, "IHDR", header);
    addChunk(file, "IDAT",
             {packed.constData() + kLengthBytes, static_cast<std::size_t>(packed.size() - kLengthBytes)});
    addChunk(file, "IEND", {});
    return file;
}
} // namespace

std::string pngOfGrey(int width, int height, std::span<const std::uint8_t> samples) {
    return pngOf(width, height, kGrey, 1, samples);
}
std::string pngOfColours(int width, int height, std::span<const std::uint8_t> samples) {
    return pngOf(width, height, kRgb, 3, samples);
}

} // namespace velmora::notation
