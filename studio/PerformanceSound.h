// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

namespace velmora {

class SynthEngine;

inline constexpr double kLongestTail = 10; ///< seconds of ringing out

/// The sound of messages, stretch by stretch, before the limiter: what a file of sound has of a performance
/// and what a player of one plays, frame for frame. After the last message it goes on until every voice has
/// ended and the reverberation has died away, but no longer than kLongestTail; of the silence behind the last
/// sound a quarter of a second is kept. Thread-safe: no. Realtime-safe: no.
class PerformanceSound {
public:
    /// @param engine a new one, which must outlive this
    /// @param messages in order of time, which must outlive this; one that is late all the same takes effect
    /// at once
    /// @param rate of the engine
    /// @param from the first frame that is given. What was chosen before it (instruments, controllers, bends)
    /// is as if all had been played; the notes aren't begun.
    PerformanceSound(SynthEngine& engine, std::span<const TimedMessage> messages, int rate,
                     std::int64_t from = 0);

    /// The next frames, interleaved stereo, which may be written over: some thousands, fewer at the end, then
    /// none. None as well once @p cancel is asked to stop.
    [[nodiscard]] std::span<float> next(const std::stop_token& cancel = {});
    /// Where the next stretch begins; at the end, how many frames there are.
    [[nodiscard]] std::int64_t frame() const { return given_; }

private:
    [[nodiscard]] std::int64_t gridFrame(double seconds) const;
    void chase();
    void apply(const TimedMessage& message);
    void play(const std::stop_token& cancel);
    void ringOut(const std::stop_token& cancel);
    std::span<const float> render(int frames);

    SynthEngine& engine_;
    std::span<const TimedMessage> messages_;
    int rate_;
    std::size_t next_ = 0; ///< message
    std::int64_t frame_;   ///< rendered
    std::int64_t given_;
    std::int64_t last_ = -1; ///< frame at which ringing out ends at the latest; -1 while messages come
    int heard_ = 0;          ///< frames of the block up to the last sound, in ringing out
    bool ended_ = false;
    std::vector<float> block_;
    int filled_ = 0; ///< frames of the block
};

} // namespace velmora
