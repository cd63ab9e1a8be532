// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeScore.h"

#include "base/Text.h"

namespace velmora {

std::string takeScoreName(std::string_view given) {
    std::string name(trimmed(given));
    if (!name.empty() && name.back() == '\0')
        name.pop_back();
    if (!name.empty() && !toLower(name).ends_with(".sng"))
        name += ".sng";
    return name;
}

} // namespace velmora
