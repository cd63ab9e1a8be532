// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "cli/Commands.h"
#include "cli/ScoreOptions.h"

namespace velmora::cli {

/// The SoundFont that the options name, or the best one installed. Throws Failure where there is none.
[[nodiscard]] inline std::filesystem::path chosenSoundFont(const ScoreOptions& options) {
    if (!options.soundFont.empty())
        return options.soundFont;
    if (const auto found = findSoundFont())
        return *found;
    throw Failure(
        "no SoundFont is installed; install the package fluid-soundfont-gm, or name one with --soundfont");
}

} // namespace velmora::cli
