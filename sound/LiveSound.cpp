// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/LiveSound.h"

#include <utility>

namespace velmora {

LiveSound::LiveSound(std::vector<std::unique_ptr<MidiBackend>> backends,
                     const std::filesystem::path& soundFont, const AudioOutputSettings& settings)
    : synth({.soundFont = soundFont, .sampleRate = AudioOutput::kRate})
    , output(settings)
    , devices(synth, std::move(backends)) {
    synth.onMessage = [this] { output.wake(); };
    output.add(synth);
}

LiveSound::~LiveSound() {
    devices.close();
    output.remove(synth);
}

} // namespace velmora
