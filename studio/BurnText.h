// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/CdTracks.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What players show of a disc: texts in ISO 8859-1, each at most as long as asked for.
struct DiscText {
    struct Track {
        std::string title;
        std::string performer;
    };
    std::string title; ///< of the whole: that of the only track, else "Audio CD"
    std::string performer;
    bool hasPerformers = false; ///< the file of a track, at least, tells one
    std::vector<Track> tracks;
};
[[nodiscard]] DiscText discText(const CdTracks& tracks, std::size_t longest);

/// A text of UTF-8; what ISO 8859-1 doesn't have becomes a question mark.
[[nodiscard]] std::string toLatin1(std::string_view text);

} // namespace velmora
