// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/SngContents.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace velmora {

/// The cells of a Score as they were at one moment: every layer but the copy buffers and the scratch ones.
/// Rows are kept up to where nothing follows but what a clearing leaves.
class KeptLayers {
public:
    KeptLayers(const Score& score, const SetupState& setup);
    KeptLayers(const KeptLayers&) = delete;
    KeptLayers& operator=(const KeptLayers&) = delete;

    /// Gives the layers of a Score, which is as long as that one or longer, the cells that they had.
    void putBack(Score& score) const;
    /// The file of that moment.
    [[nodiscard]] const SngContents& contents() const { return contents_; }
    /// How many fields it has.
    [[nodiscard]] std::size_t fields() const;

private:
    struct Row {
        std::size_t layer;
        int row;
        std::span<const std::int16_t> cells;
    };
    void measure(const Score& score);
    void copy();

    SngContents contents_;
    std::vector<Row> rows_;
    struct Free {
        void operator()(std::int16_t* cells) const { std::free(cells); }
    };
    std::unique_ptr<std::int16_t[], Free> cells_; ///< of all rows
};

} // namespace velmora
