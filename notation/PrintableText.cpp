// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintableText.h"

#include <QString>

#include <algorithm>

namespace velmora::notation {

std::string printable(std::string_view text) {
    constexpr auto plain = [](char c) { return c >= ' ' && c < 0x7F; };
    if (std::all_of(text.begin(), text.end(), plain))
        return std::string(text);
    QString read = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& c : read)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
        else if (c.isNonCharacter())
            c = QChar::ReplacementCharacter;
    return read.toStdString();
}

} // namespace velmora::notation
