// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioMixer.h"
#include "sound/Limiter.h"
#include "sound/Mix.h"
#include "sound/VirtualMix.h"
#include "tests/sound/RealtimeWatch.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <thread>
#include <vector>

namespace velmora::testmixes {

/// What a mix gives, from the first frame on that its limiter was given.
class Hearing : public AudioTap {
public:
    explicit Hearing(Mix& mix) : mix_(mix) { mix_.addTap(*this); }
    ~Hearing() override { mix_.removeTap(*this); }
    Hearing(const Hearing&) = delete;
    Hearing& operator=(const Hearing&) = delete;

    void tapped(const AudioBlock& block) noexcept override {
        const int skipped = std::min(block.frames, Limiter::kDelay - skipped_);
        skipped_ += skipped;
        samples.insert(samples.end(), block.samples + std::ptrdiff_t{2} * skipped,
                       block.samples + std::ptrdiff_t{2} * block.frames);
    }

    std::vector<float> samples;

private:
    Mix& mix_;
    int skipped_ = 0;
};

/// A virtual mix that is listened to.
class HeardMix : public VirtualMix {
public:
    HeardMix() : hearing_(*this) {}
    /// All that sounded so far, frame 0 first. What the limiter still holds comes out by its delay of
    /// silence, or of what plays on.
    std::vector<float> heard() {
        const std::int64_t before = frames();
        advance(Limiter::kDelay);
        return {hearing_.samples.begin(), hearing_.samples.begin() + static_cast<std::ptrdiff_t>(2 * before)};
    }

private:
    Hearing hearing_;
};

/// A mix with an audio thread that never sleeps: as if the device were in a hurry. Blocks have many lengths.
/// What the thread does that it must not do is counted.
class HastyMix : public Mix {
public:
    /// @param pause after some 3,000 frames
    explicit HastyMix(std::chrono::microseconds pause = std::chrono::microseconds(500))
        : pause_(pause)
        , thread_([this] { run(); }) {}
    ~HastyMix() override { end(); }
    HastyMix(const HastyMix&) = delete;
    HastyMix& operator=(const HastyMix&) = delete;

    bool add(AudioSource& source) override { return mixer_.sources.add(source); }
    void remove(AudioSource& source) override { mixer_.sources.remove(source); }
    bool addTap(AudioTap& tap) override { return mixer_.taps.add(tap); }
    void removeTap(AudioTap& tap) override { mixer_.taps.remove(tap); }
    void wake() noexcept override {}
    [[nodiscard]] bool isLive() const override { return true; }

    /// All that sounded, without what was exactly silent; ends the audio thread.
    [[nodiscard]] std::vector<float> heard() {
        end();
        std::vector<float> sound;
        for (std::size_t i = 0; i + 1 < samples_.size(); i += 2)
            if (samples_[i] != 0 || samples_[i + 1] != 0)
                sound.insert(sound.end(), {samples_[i], samples_[i + 1]});
        return sound;
    }
    /// All of it.
    [[nodiscard]] const std::vector<float>& samples() {
        end();
        return samples_;
    }
    [[nodiscard]] bool isSilent() {
        end();
        return mixer_.isSilent();
    }
    [[nodiscard]] std::int64_t frames() const { return mixer_.frames(); }
    std::atomic<std::size_t> memoryCalls{0};
    std::atomic<std::size_t> locks{0};

private:
    void end() {
        isEnding_ = true;
        if (thread_.joinable())
            thread_.join();
    }
    void run() {
        constexpr std::array kLengths{441, 64, 1, 1023, 480, 7, 1024, 100};
        constexpr std::size_t kMost = 44'100 * 120;
        samples_.reserve(2 * kMost);
        std::vector<float> block(2 * std::size_t{AudioMixer::kMaxBlockFrames});
        for (std::size_t i = 0; !isEnding_ && samples_.size() + block.size() <= 2 * kMost; ++i) {
            const int frames = kLengths[i % kLengths.size()];
            {
                const RealtimeWatch watch;
                mixer_.mix({block.data(), frames, 0});
                memoryCalls += watch.memoryCalls();
                locks += watch.locks();
            }
            samples_.insert(samples_.end(), block.begin(), block.begin() + std::ptrdiff_t{2} * frames);
            if (i % 8 == 0)
                std::this_thread::sleep_for(pause_);
        }
    }

    const std::chrono::microseconds pause_;
    AudioMixer mixer_;
    std::vector<float> samples_;
    std::atomic<bool> isEnding_{false};
    std::thread thread_;
};

} // namespace velmora::testmixes
