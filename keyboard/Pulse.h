// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <vector>

namespace velmora {

/// Where the beats of a phrase fall. Between its anchors, which rise, the rate is even; beyond them it is
/// `period`. Beat 0 is a beat, and not always the first.
struct Pulse {
    struct Anchor {
        double moment; ///< seconds
        double beat;
        bool operator==(const Anchor&) const = default;
    };
    std::vector<Anchor> anchors;
    double period = 0.5; ///< seconds of a beat, overall

    /// How many beats after beat 0; below it for what is before.
    [[nodiscard]] double beatAt(double moment) const;
    [[nodiscard]] double beatsPerMinute() const { return 60 / period; }

    bool operator==(const Pulse&) const = default;
};

} // namespace velmora
