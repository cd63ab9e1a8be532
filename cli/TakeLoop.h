// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"

#include <functional>
#include <limits>

namespace velmora::cli {

/// A loop that ends what goes on in it: at a moment, or when the user interrupts.
class TakeLoop : public MessageLoop {
public:
    explicit TakeLoop(MessageLoop& inner) : inner_(inner) {}

    /// @param moment on this loop's clock
    void endAt(double moment) { end_ = moment; }
    /// Called once, between two waits, when the moment has come or the user interrupts.
    std::function<void()> onEnd;
    /// Called about ten times a second.
    std::function<void()> onTick;

    [[nodiscard]] double now() const override { return inner_.now(); }
    void YieldIfInput() override { inner_.YieldIfInput(); }
    void serveUntil(double moment) override;
    void block(double seconds) override { inner_.block(seconds); }

private:
    void endIfDue();

    MessageLoop& inner_;
    double end_ = std::numeric_limits<double>::infinity();
    bool ended_ = false;
};

} // namespace velmora::cli
