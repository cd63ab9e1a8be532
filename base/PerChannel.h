// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <concepts>
#include <cstddef>

namespace velmora {

/// A value for each channel from 0 to @p Count - 1, 16 being all that MIDI knows. An aggregate.
///
/// Access is checked, as in `ChannelGrid`: what is no channel of it names a place outside, that reads as
/// `T{}` and forgets what is written there by the next such access, so that a caller needs neither bounds
/// tests nor casts. Each thread has a place of its own.
template<class T, std::size_t Count = 16>
struct PerChannel {
    using value_type = T;
    using iterator = typename std::array<T, Count>::iterator;
    using const_iterator = typename std::array<T, Count>::const_iterator;

    std::array<T, Count> values{};

    [[nodiscard]] static constexpr std::size_t size() { return Count; }
    [[nodiscard]] static constexpr bool contains(std::integral auto channel) {
        return static_cast<std::size_t>(channel) < Count; // a negative one becomes a large one
    }

    [[nodiscard]] constexpr T& operator[](std::integral auto channel) {
        return contains(channel) ? values[static_cast<std::size_t>(channel)] : outside();
    }
    [[nodiscard]] constexpr const T& operator[](std::integral auto channel) const {
        return contains(channel) ? values[static_cast<std::size_t>(channel)] : outside();
    }

    [[nodiscard]] constexpr iterator begin() { return values.begin(); }
    [[nodiscard]] constexpr const_iterator begin() const { return values.begin(); }
    [[nodiscard]] constexpr iterator end() { return values.end(); }
    [[nodiscard]] constexpr const_iterator end() const { return values.end(); }
    constexpr void fill(const T& value) { values.fill(value); }

    bool operator==(const PerChannel&) const = default;

private:
    static T& outside() {
        thread_local T place;
        return place = T{};
    }
};

} // namespace velmora
