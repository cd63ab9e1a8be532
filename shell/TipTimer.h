// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>

namespace velmora {

/// When a tip comes and when it goes. It has no clock: its owner calls `tick` while `running` holds.
class TipTimer {
public:
    struct Point {
        int x = 0;
        int y = 0;
        bool operator==(const Point&) const = default;
    };
    enum class Mouse : std::uint8_t { Inside, Outside }; ///< of the window that is followed
    enum class Act : std::uint8_t { None, Show, Destroy };

    [[nodiscard]] int delayTime() const { return delayTime_; }
    void setDelayTime(int ticks) { delayTime_ = ticks; }
    [[nodiscard]] int killTime() const { return killTime_; }
    void setKillTime(int ticks) { killTime_ = ticks; }
    [[nodiscard]] bool isAlive() const { return alive_; }
    void setAlive(bool alive) { alive_ = alive; }

    [[nodiscard]] bool isRunning() const { return running_; }
    [[nodiscard]] bool isShown() const { return shown_; }

    /// The first move inside starts the ticks; one outside lets the next tick end them.
    void moved(Mouse where);
    /// The mouse has to rest for more than `delayTime` ticks, and the tip stands for `killTime` ticks.
    /// Destroy comes whether a tip stood or not: the owner forgets what was to be shown.
    [[nodiscard]] Act tick(Point mouse, Mouse where);
    /// There are new words: the delay begins anew, and what stood is gone.
    void arm();
    /// The tip was taken away for another cause; ticks go on.
    void dismiss();
    /// The window that is followed was clicked into activity: all begins anew with the next move.
    void activated();
    /// The window that is followed is gone: nothing is shown until `arm` or `activated`.
    void windowDestroyed();

private:
    [[nodiscard]] bool hasRested(Point mouse);
    void stop();

    int delayTime_ = 10;
    int killTime_ = 500;
    bool alive_ = false;
    bool tracking_ = false;
    bool running_ = false;
    bool shown_ = false;
    int count_ = 0; ///< of the rest before a tip, then of the tip's standing
    std::optional<Point> last_;
};

} // namespace velmora
