// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/KeptLayers.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace velmora {

namespace {
/// Cells up to the last one that isn't cleared. Blocks without a branch, so that many are looked at together.
std::size_t usedLength(std::span<const std::int16_t> row, std::int16_t cleared) {
    constexpr std::size_t kBlock = 64;
    std::size_t length = row.size();
    const auto isCleared = [&](std::size_t from) {
        std::int16_t different = 0;
        for (std::size_t i = 0; i < kBlock; ++i)
            different = static_cast<std::int16_t>(different | (row[from + i] ^ cleared));
        return different == 0;
    };
    while (length >= kBlock && isCleared(length - kBlock))
        length -= kBlock;
    while (length > 0 && row[length - 1] == cleared)
        --length;
    return length;
}

/// Memory of large pages where there are any: taken in small ones, it would cost more than the copy.
std::int16_t* cellsFor(std::size_t count) {
    constexpr std::size_t kLargePage = std::size_t{2} << 20;
    const std::size_t bytes = (count * sizeof(std::int16_t) / kLargePage + 1) * kLargePage;
    const bool isLarge = bytes > kLargePage;
    void* const memory =
        isLarge ? std::aligned_alloc(kLargePage, bytes) : std::malloc(count * sizeof(std::int16_t) + 1);
    if (!memory)
        throw std::bad_alloc();
    if (isLarge)
        static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE)); // a wish
    return static_cast<std::int16_t*>(memory);
}
} // namespace

KeptLayers::KeptLayers(const Score& score, const SetupState& setup) : contents_(sngContents(score, setup)) {
    measure(score);
    copy();
}

void KeptLayers::measure(const Score& score) {
    for (std::size_t layer = 0; layer < kSngLayers.size(); ++layer) {
        const SngLayer& of = kSngLayers[layer];
        for (int row = 0; row < of.rows; ++row) {
            const auto cells = (score.*of.grid).row(row);
            const std::size_t ofFile = contents_.rows[layer][static_cast<std::size_t>(row)].size();
            const std::size_t fileEnd = ofFile == 0 ? 0 : static_cast<std::size_t>(of.first) + ofFile;
            rows_.push_back({layer, row, cells.first(std::max(usedLength(cells, of.cleared), fileEnd))});
        }
    }
}

/// From here on all views are of what is kept.
void KeptLayers::copy() {
    std::size_t all = 0;
    for (const Row& row : rows_)
        all += row.cells.size();
    cells_.reset(cellsFor(all));
    std::int16_t* to = cells_.get();
    for (Row& row : rows_) {
        std::ranges::copy(row.cells, to);
        row.cells = {to, row.cells.size()};
        to += row.cells.size();
        SngContents::Row& ofFile = contents_.rows[row.layer][static_cast<std::size_t>(row.row)];
        if (!ofFile.empty())
            ofFile = row.cells.subspan(static_cast<std::size_t>(kSngLayers[row.layer].first), ofFile.size());
    }
}

void KeptLayers::putBack(Score& score) const {
    for (const Row& kept : rows_) {
        const SngLayer& layer = kSngLayers[kept.layer];
        const auto row = (score.*layer.grid).row(kept.row);
        const std::size_t count = std::min(kept.cells.size(), row.size());
        std::ranges::copy(kept.cells.first(count), row.begin());
        std::ranges::fill(row.subspan(count), layer.cleared);
    }
}

std::size_t KeptLayers::fields() const {
    std::size_t count = 0;
    for (const auto& layer : contents_.rows)
        for (const SngContents::Row& row : layer)
            count += row.size();
    return count;
}

} // namespace velmora
