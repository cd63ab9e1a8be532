// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

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
        return true;
    }

    /// All cells of a channel, empty for a channel outside the grid.
    [[nodiscard]] std::span<std::int16_t> row(int channel);
    [[nodiscard]] std::span<const std::int16_t> row(int channel) const;
    /// Puts @p value into every cell of a channel; nothing for a channel outside the grid.
    void fillRow(int channel, std::int16_t value);

    /// Changes the number of positions; cells that remain keep their value, new ones hold the grid's fill.
    void resize(int positions);

    bool operator==(const ChannelGrid&) const = default;

private:
    [[nodiscard]] std::size_t index(int channel, int position) const {
        return static_cast<std::size_t>(channel) * static_cast<std::size_t>(positions_) +
               static_cast<std::size_t>(position);
    }

    int positions_;
    std::int16_t fill_;
    std::vector<std::int16_t> cells_;
};

} // namespace velmora
