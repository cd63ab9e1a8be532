// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioOutput.h"
#include "sound/BuiltInSynth.h"
#include "sound/MidiDevices.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace velmora {

/// Everything of the program that sounds: the built-in synthesizer in the one output stream, and the port
/// that leads to it and to all other devices. It can be played from its construction on.
class LiveSound {
public:
    /// @param soundFont of the built-in synthesizer
    /// Construct it before other threads start: it writes the environment for JACK's library.
    explicit LiveSound(const std::filesystem::path& soundFont, const AudioOutputSettings& settings = {})
        : LiveSound(createMidiBackends(), soundFont, settings) {}
    /// Takes the back ends ready-made: who made them before other threads ran may construct this later.
    LiveSound(std::vector<std::unique_ptr<MidiBackend>> backends, const std::filesystem::path& soundFont,
              const AudioOutputSettings& settings = {});
    /// Ends every note, then the stream.
    ~LiveSound();
    LiveSound(const LiveSound&) = delete;
    LiveSound& operator=(const LiveSound&) = delete;

    BuiltInSynth synth;
    AudioOutput output;
    MidiDevices devices;
};

} // namespace velmora
