// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioMixer.h"
#include "sound/AudioSource.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velmora {

/// One frame's click for each moment that is sent, each of another loudness, so that it can be told from the
/// others.
class ClickSource : public AudioSource {
public:
    static constexpr int kCapacity = 1024;

    /// The loudness of the nth click (from 0).
    [[nodiscard]] static float loudness(int number) {
        return static_cast<float>(kCapacity + number) / (4 * kCapacity);
    }
    /// From one thread; no more than `kCapacity` in all.
    void send(double moment) {
        const int number = sent_.load(std::memory_order_relaxed);
        moments_[static_cast<std::size_t>(number)] = moment;
        sent_.store(number + 1, std::memory_order_release);
    }
    void render(const AudioBlock& block) noexcept override {
        const int sent = sent_.load(std::memory_order_acquire);
        for (; done_ < sent; ++done_) {
            const double after = moments_[static_cast<std::size_t>(done_)] - block.moment;
            const long frame = std::lround(after * kAudioRate);
            if (frame >= block.frames) {
                break; // a later block's
            }
            if (frame < 0) {
                late_.fetch_add(1, std::memory_order_relaxed);
            }
            float* const there = block.samples + 2 * std::max(frame, 0L);
            there[0] += loudness(done_);
            there[1] += loudness(done_);
        }
    }
    [[nodiscard]] double moment(int number) const { return moments_[static_cast<std::size_t>(number)]; }
    /// Clicks whose moment had been rendered already when they came.
    [[nodiscard]] int late() const { return late_.load(std::memory_order_relaxed); }

private:
    std::array<double, kCapacity> moments_{};
    std::atomic<int> sent_{0};
    int done_ = 0;
    std::atomic<int> late_{0};
};

/// Noise that never repeats, within full scale.
class NoiseSource : public AudioSource {
public:
    void render(const AudioBlock& block) noexcept override {
        for (int i = 0; i < 2 * block.frames; ++i) {
            state_ = state_ * 1664525U + 1013904223U;
            block.samples[i] += static_cast<float>(static_cast<std::int32_t>(state_)) * 0x1p-32F;
        }
    }

private:
    std::uint32_t state_ = 1;
};

/// Keeps what it hears, as long as there is the room that was made beforehand.
class Listener : public AudioTap {
public:
    explicit Listener(std::size_t frames = 200000) {
        samples.reserve(2 * frames);
        blocks.reserve(frames / 16);
    }
    void tapped(const AudioBlock& block) noexcept override {
        if (samples.size() + 2 * static_cast<std::size_t>(block.frames) <= samples.capacity() &&
            blocks.size() < blocks.capacity()) {
            samples.insert(samples.end(), block.samples, block.samples + std::ptrdiff_t{2} * block.frames);
            blocks.push_back(block);
        }
        heard.fetch_add(block.frames);
    }
    /// The largest time by which a block begins after the end of the one before, and, second, before it;
    /// seconds.
    [[nodiscard]] std::pair<double, double> largestGapAndOverlap() const {
        double gap = 0;
        double overlap = 0;
        for (std::size_t i = 1; i < blocks.size(); ++i) {
            const double end = blocks[i - 1].moment + double(blocks[i - 1].frames) / kAudioRate;
            gap = std::max(gap, blocks[i].moment - end);
            overlap = std::max(overlap, end - blocks[i].moment);
        }
        return {gap, overlap};
    }

    // To be read once the tap is removed.
    std::vector<float> samples;
    std::vector<AudioBlock> blocks;
    std::atomic<std::int64_t> heard{0};
};

} // namespace velmora
