// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/TextMeasure.h"

namespace velmora::notation {

TextExtent PlainTextMeasure::extent(std::string_view, const TextStyle&) {
    return {};
}

} // namespace velmora::notation
