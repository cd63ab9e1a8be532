// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace velmora {

/// UTF-8, as the tables and the rooms below the windows hold it.
[[nodiscard]] inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace velmora
