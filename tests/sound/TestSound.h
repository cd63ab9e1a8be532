// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/SynthEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

/// Small tools of the tests that listen. The SoundFont is a Debian package that tests need: without it they
/// fail.
namespace velmora::testsound {

inline constexpr const char* kSoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
inline constexpr int kRate = 44100;
/// FluidSynth's reverb keeps itself from denormal numbers by a trickle of 3e-8; no sound file can hold it.
inline constexpr float kSilence = 1e-6F;

inline std::unique_ptr<SynthEngine> makeEngine(int cores = 1,
                                               PresetLoading presets = PresetLoading::WhenChosen) {
    SynthEngine::Created created = SynthEngine::create(
        {.soundFont = kSoundFont, .sampleRate = kRate, .cores = cores, .presets = presets});
    EXPECT_EQ(created.error, "");
    return std::move(created.engine);
}

inline std::vector<float> render(SynthEngine& engine, int frames) {
    std::vector<float> samples(std::size_t{2} * static_cast<std::size_t>(frames));
    engine.render(samples.data(), frames);
    return samples;
}

inline float peak(std::span<const float> samples) {
    float highest = 0;
    for (const float sample : samples)
        highest = std::max(highest, std::abs(sample));
    return highest;
}

/// How strongly a frequency sounds in the left channel of interleaved stereo (Goertzel's filter).
inline double strength(std::span<const float> samples, double frequency, double rate = kRate) {
    const double turn = 2 * std::cos(2 * std::numbers::pi * frequency / rate);
    double last = 0;
    double before = 0;
    for (std::size_t i = 0; i < samples.size(); i += 2) {
        const double now = samples[i] + turn * last - before;
        before = last;
        last = now;
    }
    return std::sqrt(last * last + before * before - turn * last * before);
}

/// The frequency of @p candidates that sounds strongest.
inline double strongest(std::span<const float> samples, std::initializer_list<double> candidates) {
    return *std::max_element(candidates.begin(), candidates.end(), [samples](double a, double b) {
        return strength(samples, a) < strength(samples, b);
    });
}

} // namespace velmora::testsound
