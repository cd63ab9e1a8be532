// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// Long work of one kind that waits in the message loop, of which only the newest goes on: events are served
/// while it waits, so newer work may begin before. That runs to its end within the older one's wait, and the
/// older one, once it goes on, finds its `Turn` over and leaves everything to what came after it.
class Turns {
public:
    Turns() = default;
    Turns(const Turns&) = delete;
    Turns& operator=(const Turns&) = delete;

    /// Whether any work has not yet come to its end, be its turn over or not.
    [[nodiscard]] bool underWay() const { return underWay_ > 0; }

private:
    friend class Turn;
    int newest_ = 0;   ///< turns taken so far
    int underWay_ = 0; ///< turns not yet given up
};

/// One such piece of work, for as long as it stands on the stack.
class [[nodiscard]] Turn {
public:
    explicit Turn(Turns& turns) : turns_(turns), number_(++turns.newest_) { ++turns.underWay_; }
    ~Turn() { --turns_.underWay_; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    /// To be asked after each wait.
    [[nodiscard]] bool isOver() const { return number_ != turns_.newest_; }

private:
    Turns& turns_;
    int number_;
};

} // namespace velmora
