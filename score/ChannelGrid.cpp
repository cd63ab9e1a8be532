// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ChannelGrid.h"

#include <algorithm>

namespace velmora {

namespace {
std::size_t cellCount(int positions) {
    return static_cast<std::size_t>(ChannelGrid::kChannels) * static_cast<std::size_t>(positions);
}
} // namespace

ChannelGrid::ChannelGrid(int positions, std::int16_t fill)
    : positions_(std::max(positions, 0))
    , fill_(fill)
    , cells_(cellCount(positions_), fill) {}

std::span<std::int16_t> ChannelGrid::row(int channel) {
    if (!contains(channel, 0))
        return {};
    touched_[static_cast<std::size_t>(channel)] = {0, positions_}; // whoever asks may write any of it
    return {cells_.data() + index(channel, 0), static_cast<std::size_t>(positions_)};
}

std::span<const std::int16_t> ChannelGrid::row(int channel) const {
    if (!contains(channel, 0))
        return {};
    return {cells_.data() + index(channel, 0), static_cast<std::size_t>(positions_)};
}

void ChannelGrid::fillRow(int channel, std::int16_t value) {
    std::ranges::fill(row(channel), value);
}

void ChannelGrid::resize(int positions) {
    if (positions == positions_)
        return;
    ChannelGrid resized(positions, fill_);
    const auto kept = static_cast<std::ptrdiff_t>(std::min(positions_, resized.positions_));
    for (int channel = 0; channel < kChannels && kept > 0; ++channel)
        std::copy_n(row(channel).begin(), kept, resized.row(channel).begin());
    resized.touched_.fill({0, std::max(positions_, resized.positions_)});
    *this = std::move(resized);
}

} // namespace velmora
