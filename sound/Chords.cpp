// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Chords.h"

namespace velmora {

namespace {
constexpr int kListFollows = 5; ///< the one chord type that moves `Combo3`
}

std::string_view keyboardChordName(int index) {
    const auto entry = static_cast<std::size_t>(index);
    return entry < kKeyboardChordNames.size() ? kKeyboardChordNames[entry] : std::string_view{};
}

void ChordSteps::SelectChord(int type) {
    Combo3.reset();
    if (type < 0 || type >= static_cast<int>(kChordTypes.size()))
        return;
    const ChordType& chord = kChordTypes[static_cast<std::size_t>(type)];
    if (type != 0) {
        ChordStep1 = chord.step1;
        ChordStep2 = chord.step2;
        ChordStep3 = chord.step3;
    }
    if (!chord.hint.empty())
        Label7 = chord.hint;
    if (type == kListFollows)
        Combo3 = kListFollows;
}

} // namespace velmora
