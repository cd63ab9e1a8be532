// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <span>
#include <string>

namespace velmora {

/// What takes finished sound: a WAV file, an MP3 file. One thread at a time calls it: `open` once, `write`
/// for each block, `finish` once. A call returns blank, or in words why it failed; after a failure nothing
/// else may be called. A sink that ends before it is finished leaves no trace.
class SampleSink {
public:
    virtual ~SampleSink() = default;
    /// Checks what was asked for and takes what is needed, before any sound is made.
    [[nodiscard]] virtual std::string open() = 0;
    /// Takes the next frames: interleaved stereo, floats of -1 to 1.
    [[nodiscard]] virtual std::string write(std::span<const float> interleaved) = 0;
    /// Completes the sound and puts it in its place.
    [[nodiscard]] virtual std::string finish() = 0;
};

} // namespace velmora
