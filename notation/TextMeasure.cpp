// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/TextMeasure.h"

#include <QList>
#include <QString>

#include <array>

namespace velmora::notation {

namespace {
constexpr double kPixelsPerPoint = 96.0 / 72;
constexpr double kLineHeight = 1.149, kBaseline = 0.891; ///< of the size

/// Thousandths of the size, from the blank to the tilde: what serif faces of newspapers have in common.
constexpr std::array<short, 95> kWidths{
    250, 333, 408, 500, 500, 833, 778, 180, 333, 333, 500, 564, 250, 333, 250, 278, //   to /
    500, 500, 500, 500, 500, 500, 500, 500, 500, 500, 278, 278, 564, 564, 564, 444, // 0 to ?
    921, 722, 667, 667, 722, 611, 556, 722, 722, 333, 389, 722, 611, 889, 722, 722, // @ to O
    556, 722, 667, 556, 611, 722, 722, 944, 722, 722, 611, 333, 278, 333, 469, 500, // P to _
    333, 444, 500, 444, 500, 444, 333, 500, 500, 278, 278, 500, 278, 778, 500, 500, // ` to o
    500, 500, 333, 389, 278, 500, 500, 722, 500, 500, 444, 480, 200, 480, 541};     // p to ~
constexpr int kOther = 500, kWide = 1000;
/// From here on scripts have square characters.
constexpr char32_t kFirstWide = 0x2E80;
constexpr double kBold = 1.05;

int widthOf(char32_t character) {
    if (character < U' ')
        return 0;
    const std::size_t index = character - U' ';
    if (index < kWidths.size())
        return kWidths[index];
    return character < kFirstWide ? kOther : kWide;
}

/// A letter without its accents.
char32_t plainOf(char32_t character) {
    if (character < 0xA0)
        return character;
    const QString parts = QString::fromUcs4(&character, 1).normalized(QString::NormalizationForm_D);
    return parts.isEmpty() || parts.front().isSurrogate() ? character : parts.front().unicode();
}
} // namespace

TextExtent PlainTextMeasure::extent(std::string_view text, const TextStyle& style) {
    const double size = style.points * kPixelsPerPoint;
    int width = 0;
    for (const char32_t character :
         QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUcs4())
        if (!QChar::isMark(character))
            width += widthOf(plainOf(character));
    return {width * size * (style.bold ? kBold : 1) / 1000, kLineHeight * size, kBaseline * size};
}

} // namespace velmora::notation
