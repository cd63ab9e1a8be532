// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace velmora {

/// A dense array of 16-bit values, addressed first by channel, then by position.
///
/// Access is checked: a read outside the grid yields nothing and a write outside it does nothing, so that no
/// caller writes bounds tests of its own and none can damage memory.
class ChannelGrid {
public:
    static constexpr int kChannels = 16;

    /// A grid of 16 channels by @p positions cells, each holding @p fill.
    ChannelGrid(int positions, std::int16_t fill);

    [[nodiscard]] int positions() const { return positions_; }

    [[nodiscard]] bool contains(int channel, int position) const {
        return static_cast<unsigned>(channel) < kChannels &&
               static_cast<unsigned>(position) < static_cast<unsigned>(positions_);
    }
    [[nodiscard]] std::optional<std::int16_t> at(int channel, int position) const {
        if (!contains(channel, position))
            return std::nullopt;
        return cells_[index(channel, position)];
    }
    /// The value there, or @p otherwise outside the grid.
    [[nodiscard]] std::int16_t valueOr(int channel, int position, std::int16_t otherwise) const {
        return contains(channel, position) ? cells_[index(channel, position)] : otherwise;
    }
    /// Writes one cell; false (and nothing written) outside the grid.
    bool set(int channel, int position, std::int16_t value) {
        if (!contains(channel, position))
            return false;
        cells_[index(channel, position)] = value;
        touched_[static_cast<std::size_t>(channel)].add(position);
        return true;
    }

    /// All cells of a channel, empty for a channel outside the grid.
    [[nodiscard]] std::span<std::int16_t> row(int channel);
    [[nodiscard]] std::span<const std::int16_t> row(int channel) const;
    /// Puts @p value into every cell of a channel; nothing for a channel outside the grid.
    void fillRow(int channel, std::int16_t value);

    /// Changes the number of positions; cells that remain keep their value, new ones hold the grid's fill.
    void resize(int positions);

    /// What an empty cell of the grid holds.
    [[nodiscard]] std::int16_t fill() const { return fill_; }

    /// Cells of a row from `first` on, before `end`.
    struct Range {
        int first = 0;
        int end = 0;
        [[nodiscard]] bool empty() const { return first >= end; }
        void add(int position) {
            first = empty() ? position : std::min(first, position);
            end = std::max(end, position + 1);
        }
    };
    /// Where a channel may have been written since `forgetTouched`: no cell outside has changed.
    [[nodiscard]] Range touched(int channel) const { return touched_[static_cast<std::size_t>(channel)]; }
    void forgetTouched() { touched_.fill({}); }

    bool operator==(const ChannelGrid& other) const {
        return positions_ == other.positions_ && fill_ == other.fill_ && cells_ == other.cells_;
    }

private:
    [[nodiscard]] std::size_t index(int channel, int position) const {
        return static_cast<std::size_t>(channel) * static_cast<std::size_t>(positions_) +
               static_cast<std::size_t>(position);
    }

    int positions_;
    std::int16_t fill_;
    std::vector<std::int16_t> cells_;
    std::array<Range, kChannels> touched_{};
};

} // namespace velmora
