// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Take.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Takes samples of what is played: from the first strike on one each tick, exactly, whenever they are asked
/// for.
class TakeRecorder {
public:
    enum class State : std::uint8_t { Off, WaitsForKey, On };

    explicit TakeRecorder(Take& take) : take_(take) {}

    /// Forgets the take and waits for the first strike.
    void start();
    void stop() { state_ = State::Off; }
    [[nodiscard]] State state() const { return state_; }

    /// A key that plays went down; @p text is what its computer key types.
    void keyDown(std::string_view text) { down_ = text; }
    /// A computer key went up: none counts as down, even if others are.
    void keyUp() { down_ = kNoKey; }
    /// A key was struck: the row that each sample notes from now on. The first strike begins the samples.
    void struck(int row, double now, double tick);

    /// When the next sample is due; nothing while none is.
    [[nodiscard]] std::optional<double> nextDue() const;
    /// Takes the sample that is due. @param tick seconds to the next
    void sample(double tick);

private:
    static constexpr std::string_view kNoKey = "-1";

    Take& take_;
    State state_ = State::Off;
    std::string down_{kNoKey}; ///< the character of the key now down
    std::string first_;        ///< that of the first key of the take
    std::int32_t count_ = 0;   ///< ticks that the first key is down
    std::int32_t Text7 = 0;    ///< the row of the last key struck
    double since_ = 0;         ///< where ticks are counted from
    double tick_ = 0;
    std::int64_t ticks_ = 0; ///< from `since_` to the next sample
};

} // namespace velmora
