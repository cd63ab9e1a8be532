// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <set>
#include <string>

class QKeyEvent;

namespace velmora {

struct ComputerKey;

/// Makes presses and releases of computer keys of what the window system tells. A key is known by where it
/// stands on the computer's keyboard, so that Shift, or another layout, between its press and its release
/// changes nothing. What a key repeats by itself is neither: the window system says it as a press alone, or
/// as a release and a press with one time stamp.
class KeyPresses {
public:
    /// @param down, up are called with each press and each release
    KeyPresses(std::function<void(const ComputerKey&)> down, std::function<void(const ComputerKey&)> up);

    /// True if the key plays: it types something, or is the space bar, and is no command.
    [[nodiscard]] bool plays(const QKeyEvent& event) const;
    /// True if it was taken.
    bool press(const QKeyEvent& event);
    /// A release of what was not pressed here is nothing.
    bool release(const QKeyEvent& event);
    /// Nothing is down any more, and nobody is told.
    void forget();

private:
    struct Held {
        int position = 0;
        int code = 0;
        std::string text = {};
        std::string otherText = {};
        bool operator<(const Held& other) const { return position < other.position; }
    };
    /// Whether AltGr is down: the key then plays by what it types alone.
    [[nodiscard]] bool isAltGrDown(const QKeyEvent& event) const;
    [[nodiscard]] Held heldOf(const QKeyEvent& event) const;
    static ComputerKey keyOf(const Held& held);
    void settle();

    std::function<void(const ComputerKey&)> down_;
    std::function<void(const ComputerKey&)> up_;
    std::set<Held> held_;
    std::set<int> altGrs_; ///< positions of those that are down
    bool looksAt_ = false; ///< at the release that follows: it may be that of a repeat
    Held released_;
    std::uint64_t releasedAt_ = 0; ///< its time stamp
    QTimer settling_;
};

} // namespace velmora
