// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/TextCoding.h"

#include <QUtf8StringView>

#include <array>

namespace velmora {

namespace {
/// Windows-1252 from 0x80 to 0x9F; the rest of it is as in Unicode. The five bytes without a character stand
/// for themselves, so that none is lost.
constexpr std::array<char16_t, 32> kWindows1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

/// As UTF-8; all of them have two or three bytes there.
void append(std::string& to, char16_t character) {
    const auto bits = [character](unsigned shift) { return character >> shift & 0x3FU; };
    if (character < 0x800) {
        to += static_cast<char>(0xC0U | bits(6));
    } else {
        to += static_cast<char>(0xE0U | bits(12));
        to += static_cast<char>(0x80U | bits(6));
    }
    to += static_cast<char>(0x80U | bits(0));
}
} // namespace

std::string fromWindows1252(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80)
            text += c;
        else
            append(text, byte < 0xA0 ? kWindows1252[byte - 0x80U] : byte);
    }
    return text;
}

bool isUtf8(std::string_view bytes) {
    return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

} // namespace velmora
