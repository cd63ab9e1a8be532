// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "sound/AudioMixer.h"
#include "sound/Mix.h"

#include <cstdint>

namespace velmora {

/// A mix without a device and without a clock: sound is calculated as time is told to pass, and the same
/// calls give the same samples. It is the message loop of what plays in it, too: waiting in it renders.
/// Second 0 is frame 0. Thread-safe: no.
class VirtualMix : public Mix, public MessageLoop {
public:
    bool add(AudioSource& source) override;
    void remove(AudioSource& source) override;
    bool addTap(AudioTap& tap) override;
    void removeTap(AudioTap& tap) override;
    void wake() noexcept override {}
    [[nodiscard]] bool isLive() const override { return false; }

    /// Renders so many frames, in blocks of `AudioMixer::kMaxBlockFrames` at the most.
    void advance(std::int64_t frames);
    [[nodiscard]] std::int64_t frames() const { return frames_; }

    [[nodiscard]] double now() const override;
    void YieldIfInput() override {}
    /// Renders up to the first frame at @p moment or after it.
    void serveUntil(double moment) override;
    void block(double seconds) override { serveUntil(now() + seconds); }

private:
    AudioMixer mixer_;
    std::int64_t frames_ = 0;
};

} // namespace velmora
