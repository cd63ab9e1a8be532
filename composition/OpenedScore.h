// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/SngFile.h"

#include <cstddef>
#include <string_view>

namespace velmora {

struct Workspace;

/// What became of the length of a score that was opened.
struct OpenedLength {
    std::size_t longest = 0; ///< positions of the text's longest row
    bool grown = false;      ///< the Score is longer now, so that it holds them
    bool whole = true;       ///< it holds them all
};

/// Puts the score of a text in the place of the current one, by the workspace's manners: whether it grows,
/// and which channels sound. Every way to open a score ends here.
OpenedLength takeScore(std::string_view text, SngReader reader, Workspace& workspace);

/// By the workspace's manners: has playing visit every channel with notes, as if each had been chosen and
/// drawn on.
void hearUsedChannels(Workspace& workspace);

} // namespace velmora
