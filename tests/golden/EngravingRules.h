// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "golden/MusicText.h"

#include <span>
#include <string_view>

namespace velmora {

/// One rule of engraving on the clean page: music that it decides about, and why it is so.
struct EngravingRule {
    std::string_view name; ///< of its picture
    std::string_view rule;
    std::string_view reason; ///< for somebody who can't read music
    std::string_view source; ///< where a musician looks it up
    MusicText music;
    std::string_view reads;                                ///< as `readingText` has it
    void (*adjust)(notation::ScoreSetup& setup) = nullptr; ///< what the panels say besides
    int width = 420;                                       ///< of the page, in pixels
};

/// 40 of them.
[[nodiscard]] std::span<const EngravingRule> engravingRules();

} // namespace velmora
