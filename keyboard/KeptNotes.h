// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace velmora {

/// A note that was played, as it would stand in the Score.
struct KeptNote {
    int channel = 0;
    int first = 0; ///< position of its head
    int last = 0;
    std::uint8_t note = 60;
    std::uint8_t velocity = 100;
    std::uint8_t program = 0;
    bool operator==(const KeptNote&) const = default;
};

/// Positions that stay free behind the last note of a Score that has grown.
inline constexpr int kEndMargin = 10;

/// The topmost first of those that begin together: it goes to the channel that was chosen.
[[nodiscard]] bool comesBefore(const KeptNote& one, const KeptNote& other);

/// Writes it with its instrument and as loud as it was played, without a chord; its channel is shown.
void writeKept(Score& score, const KeptNote& note);

/// Shares notes among the melody channels, in the order of their heads.
class SharedChannels {
public:
    /// @param main takes what it can, and is written over; it is asked first, and then those after it
    SharedChannels(const Score& score, int main) : score_(score), main_(main) { ends_.fill(-1); }

    /// The channel that has room from @p first to @p last; none if all are full there.
    [[nodiscard]] std::optional<int> roomFor(int first, int last) const;
    /// What was given to a channel last ends there.
    void endsAt(int channel, int last) { ends_[static_cast<std::size_t>(channel)] = last; }

private:
    const Score& score_;
    int main_;
    std::array<int, kMelodyChannels> ends_{};
};

} // namespace velmora
