// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

struct Score;
struct SetupState;

/// Everything of a score that its file holds, without the positions behind the last note.
struct ScoreImage {
    std::size_t positions = 0;
    std::vector<std::int16_t> cells;
    std::string currentFile;

    /// Follows the score. @return whether anything is different now
    bool take(const Score& score, const SetupState& setup);
    [[nodiscard]] std::string text() const;
};

} // namespace velmora
