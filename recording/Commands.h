// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"

#include <array>
#include <string_view>

namespace velmora {

/// The image buttons of the Recording Studio's player.
inline constexpr auto kPlayerButtons = std::to_array<CommandRow>({
    {"open", "open", "Open", "Open Music File", "A WAV, MP3 or MIDI file to play, or a score to compose with",
     CommandPlace::Strip},
    {"play", "play", "Play", "Play from File", "From its beginning to its end", CommandPlace::Strip},
    {"pause", "pause", "Pause", "Pause Music", "Another press goes on", CommandPlace::Strip},
    {"stop", "stop", "Stop", "Stop Playing", "The next play begins anew", CommandPlace::Strip},
    {"save", "save", "Save", "Save File As", "Keeps the file under another name", CommandPlace::Strip},
});
static_assert(kPlayerButtons.size() == 5);
static_assert(eachHasAName(kPlayerButtons));

/// Index of the button of that name.
consteval int playerButton(std::string_view name) {
    return indexOf(kPlayerButtons, name);
}

} // namespace velmora
