// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnLibrary.h"
#include "studio/CdTracks.h"

#include <cstddef>
#include <vector>

namespace velmora::burner {

/// What is to be written, as the library wants it described.
class DiscLayout {
public:
    DiscLayout(const CdTracks& tracks, int spool);
    ~DiscLayout();
    DiscLayout(const DiscLayout&) = delete;
    DiscLayout& operator=(const DiscLayout&) = delete;

    [[nodiscard]] bool isWhole() const { return isWhole_; }
    [[nodiscard]] burn_disc* disc() const { return disc_; }

    /// Titles and artists for players that show them, cut as far as the disc has room.
    void addText(const CdTracks& tracks);

private:
    void setText(const CdTracks& tracks, std::size_t longest);

    burn_disc* disc_;
    burn_session* session_;
    std::vector<burn_track*> tracks_;
    bool isWhole_ = true;
};

} // namespace velmora::burner
