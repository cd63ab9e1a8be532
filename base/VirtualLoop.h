// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"

#include <algorithm>

namespace velmora {

/// A clock that jumps: a score is traced or rendered without waiting. It starts at 0 and serves nothing.
class VirtualLoop : public MessageLoop {
public:
    [[nodiscard]] double now() const override { return now_; }
    void YieldIfInput() override {}
    void serveUntil(double moment) override { now_ = std::max(now_, moment); }
    void block(double seconds) override { now_ += seconds; }

private:
    double now_ = 0;
};

} // namespace velmora
