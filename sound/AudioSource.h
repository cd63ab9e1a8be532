// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// A stretch of the one output stream: interleaved stereo, floats of -1 to 1.
struct AudioBlock {
    float* samples; ///< 2 * frames values
    int frames;
    /// The stream is a constant distance behind the steady clock. What was sent at `moment` (steadySeconds)
    /// belongs to frame 0, what was sent at `moment` + i / sampleRate to frame i.
    double moment;
};

/// What sounds in the mix: the built-in synthesizer, a music file.
class AudioSource {
public:
    virtual ~AudioSource() = default;
    /// Adds its sound to the block. Called from the audio thread alone.
    /// Realtime-safe: must take no lock, allocate nothing, touch no file.
    virtual void render(const AudioBlock& block) noexcept = 0;
    /// True if nothing but silence would come from it until it is told to sound. The mix then may leave it
    /// out for as long as nobody taps: for the source no time passes meanwhile. Called from the audio thread
    /// alone, between blocks. Realtime-safe: must be.
    [[nodiscard]] virtual bool rests() noexcept { return false; }
};

/// What listens to the finished mix: a recording.
class AudioTap {
public:
    virtual ~AudioTap() = default;
    /// Called from the audio thread alone, after mixing, with what goes to the device.
    /// Realtime-safe: must take no lock, allocate nothing, touch no file.
    virtual void tapped(const AudioBlock& block) noexcept = 0;
};

} // namespace velmora
