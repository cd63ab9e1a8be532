// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"

#include <array>
#include <string_view>

namespace velmora {

/// The keyboard's command strip, `Lb1`(1 to 15). The first row stands on the page "Compose".
inline constexpr auto kSynthLb1 = std::to_array<CommandRow>({
    {"keep", "music", "Keep what I just played", "Keep what I just played",
     "The last phrase becomes notes on the active channel", CommandPlace::BarRight},
    {"open", "open", "Open", "Open Keyboard File (key)", "", CommandPlace::Strip},
    {"save", "save", "Save", "Save Keyboard File (key)", "", CommandPlace::Strip},
    {"edit", "edit", "Edit", "Edit or Create Keyboard File", "", CommandPlace::Strip, true},
    {"record", "record", "Record/", "Start Keyboard Recording", "", CommandPlace::Strip, true},
    {"saveRecording", "save", "Save", "Save Recording as SNG file", "", CommandPlace::Strip},
    {"loop", "loop", "Loop", "Play Continuous Loop", "", CommandPlace::Strip, true},
    {"play", "play", "Play", "Play Keyboard Recording", "", CommandPlace::Strip, true},
    {"pause", "pause", "Pause", "Pause Playback", "", CommandPlace::Strip, true},
    {"stop", "stop", "Stop", "Stop Playback", "", CommandPlace::Strip},
    {"reset", "reset", "", "", "", CommandPlace::Strip}, // neither words nor a tip; that is meant
    {"strip", "strip", "Editing Toolbar", "Show/Hide Editing Toolbar", "", CommandPlace::Strip, true},
    {"studio", "studio", "Recording Studio", "Open Recording Studio", "", CommandPlace::Strip},
    {"silence", "nosound", "No Sound", "Stop All Sound", "", CommandPlace::Strip},
    {"help", "help", "Help", "Open Help File", "", CommandPlace::Strip},
    {"close", "close", "Close", "Close Keyboard", "", CommandPlace::Strip},
});
static_assert(kSynthLb1.size() == 16);
static_assert(eachHasAName(kSynthLb1));

/// Index of the button of that name in `Lb1`.
consteval int synthLb1(std::string_view name) {
    return indexOf(kSynthLb1, name);
}

} // namespace velmora
