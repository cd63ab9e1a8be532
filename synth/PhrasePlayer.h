// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>

#include <cstddef>
#include <functional>
#include <vector>

namespace velmora {

class MidiPort;
struct KeepPlan;

/// What a plan sounds like, on MIDI channel @p channel alone: programs, strikes and releases, from second 0.
/// @param step seconds of a position
[[nodiscard]] std::vector<TimedMessage> soundOf(const KeepPlan& plan, double step, int channel);

/// Sends messages when they are due, while the program goes on. Nothing is left sounding when it stops.
class PhrasePlayer : public QObject {
public:
    /// None of the score's, so that what that has set on its own stays.
    static constexpr int kChannel = 15;

    /// @param port outlives it
    explicit PhrasePlayer(MidiPort& port) : port_(port) {}
    ~PhrasePlayer() override { stop(); }

    std::function<void()> onEnd; ///< it has played to the end

    /// From the start, instead of what plays.
    void play(std::vector<TimedMessage> messages);
    void stop();
    [[nodiscard]] bool isPlaying() const { return timer_.isActive(); }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void sendDue();

    MidiPort& port_;
    std::vector<TimedMessage> messages_;
    std::size_t next_ = 0;
    QElapsedTimer clock_;
    QBasicTimer timer_;
};

} // namespace velmora
