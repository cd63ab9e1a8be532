// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <optional>

namespace velmora {

/// Time, and the events that are served while it passes. Playing knows no other clock.
class MessageLoop {
public:
    virtual ~MessageLoop() = default;

    /// Seconds on a steady clock.
    [[nodiscard]] virtual double now() const = 0;
    /// Serves what is pending and returns at once.
    virtual void YieldIfInput() = 0;
    /// Serves events until now() reaches @p moment; at once if it has passed.
    virtual void serveUntil(double moment) = 0;
    /// Lets @p seconds pass without serving anything.
    virtual void block(double seconds) = 0;
    /// The earliest moment that a serveUntil() waits for; nothing while none does.
    [[nodiscard]] virtual std::optional<double> nextDue() const { return std::nullopt; }
};

} // namespace velmora
