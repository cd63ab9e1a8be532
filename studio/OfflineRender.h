// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"
#include "studio/PerformanceSound.h"

#include <filesystem>
#include <functional>
#include <span>
#include <stop_token>
#include <string>

namespace velmora {

class SampleSink;

/// As many threads as the machine runs at once.
[[nodiscard]] int coresHere();

struct RenderOptions {
    std::filesystem::path soundFont;
    int sampleRate = 44100;
    int cores = coresHere(); ///< threads that calculate voices; any number gives the same samples
    /// Called from the rendering thread now and then, with a part from 0 to 1 that never falls; 1 comes once,
    /// when all is done.
    std::function<void(double)> progress = {};
    std::stop_token cancel = {};
};

struct RenderResult {
    enum class End { Done, Cancelled, Failed };
    End end = End::Done;
    std::string error;  ///< why it failed, in words
    double seconds = 0; ///< of sound that were made
};

/// Renders messages as fast as it goes, with the sound of `BuiltInSynth` sample for sample, and gives the
/// sound to @p sink: frame 0 is second 0. It rings out as `PerformanceSound` does; beyond full scale the
/// limiter of the live mix holds it.
///
/// The caller's thread renders, a second one writes; the call returns when both are through. If the result is
/// not Done, the sink is not finished, and the caller lets it go.
/// @param messages in order of time; a message that is late all the same takes effect at once
[[nodiscard]] RenderResult renderOffline(std::span<const TimedMessage> messages, SampleSink& sink,
                                         const RenderOptions& options);

} // namespace velmora
