// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <string>

namespace velmora::cli {

/// The parser works on texts, but the words of a call are bytes: names of old files need not be UTF-8. So
/// each byte travels as one character, and these two are the only ways in and out.
[[nodiscard]] inline QString fromBytes(const char* word) {
    return QString::fromLatin1(word);
}
[[nodiscard]] inline std::string toBytes(const QString& text) {
    return text.toLatin1().toStdString();
}

} // namespace velmora::cli
