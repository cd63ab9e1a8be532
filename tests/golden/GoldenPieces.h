// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "golden/MusicText.h"

#include <span>
#include <string_view>

namespace velmora {

/// A piece whose pages are kept in both readings.
struct GoldenPiece {
    std::string_view name; ///< of its files
    std::string_view title;
    std::string_view composer;
    std::string_view tempoWords;
    int tempo; ///< quarters a minute
    MusicText music;
    std::string_view words = {};
    double height = 1123; ///< of the page, in pixels
};

/// Eight, each of another nature.
[[nodiscard]] std::span<const GoldenPiece> goldenPieces();

} // namespace velmora
