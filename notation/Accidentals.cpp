// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Accidentals.h"

#include "notation/Spelling.h"

#include <algorithm>

namespace velmora::notation {

namespace {
Sign signOf(int alter) {
    return alter > 0 ? Sign::Sharp : alter < 0 ? Sign::Flat : Sign::Natural;
}
} // namespace

Accidentals::Line& Accidentals::at(int line) {
    return lines_[static_cast<std::size_t>(std::clamp(line, 0, static_cast<int>(lines_.size()) - 1))];
}

Accidentals::Drawn Accidentals::strike(int bar, int line, int alter) {
    Line& state = at(line);
    const bool isFirst = state.signBar != bar;
    const int current = isFirst ? alterInKey(line, key_) : state.signAlter;
    Drawn drawn;
    if (alter != current)
        drawn.sign = signOf(alter);
    else if (isFirst && state.heardBar >= bar - 1 && state.heardBar > 0 && state.heardAlter != alter)
        drawn = {.sign = signOf(alter), .courtesy = true};
    state = {.signBar = bar, .signAlter = alter, .heardBar = bar, .heardAlter = alter};
    return drawn;
}

void Accidentals::hold(int bar, int line, int alter) {
    Line& state = at(line);
    state.heardBar = bar;
    state.heardAlter = alter;
}

} // namespace velmora::notation
