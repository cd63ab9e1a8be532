// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"

#include <array>

namespace velmora {

/// `Lb1` of the Songwriter. Both that write have one caption, which is meant.
inline constexpr auto kSongButtons = std::to_array<CommandRow>({
    {"blank", "blank", "Blank", "Open a Blank Score Sheet", "An empty page behind the last",
     CommandPlace::Strip},
    {"open", "open", "Open", "Open a Music Score (sng)", "Or lyrics, which are put onto the pages",
     CommandPlace::Strip},
    {"save", "save", "Save", "Save the music score and/or lyrics", "Each to a file of its own",
     CommandPlace::Strip},
    {"edit", "edit", "Edit", "Edit or Create Keyboard File", "Opens the keyboard", CommandPlace::Strip},
    {"write", "score", "Write Score", "Write Score from Current Notes",
     "The notes of the grid as pages of music. With New Score the staves are chosen anew",
     CommandPlace::Strip},
    {"loop", "loop", "Loop", "Play Continuous Loop", "Again and again, until it is pressed once more",
     CommandPlace::Strip, true},
    {"rewrite", "rewrite", "Write Score", "ReWrite Score and Lyrics from Current Notes",
     "On the staves as they are", CommandPlace::Strip},
    {"print", "print", "Print", "Print Music Score", "On paper, or to a file", CommandPlace::Strip},
    {"close", "close", "Close", "Close Velmora Songwriter",
     "Pages and texts are still there when it opens again", CommandPlace::Strip},
});
static_assert(kSongButtons.size() == 9);
static_assert(eachHasAName(kSongButtons));

/// Index of the button of that name.
consteval int songButton(std::string_view name) {
    return indexOf(kSongButtons, name);
}

} // namespace velmora
