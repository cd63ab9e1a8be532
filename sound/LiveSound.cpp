// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/LiveSound.h"

namespace velmora {

LiveSound::LiveSound(const std::filesystem::path& soundFont, const AudioOutputSettings& settings)
    : synth({.soundFont = soundFont, .sampleRate = AudioOutput::kRate})
    , output(settings)
    , devices(synth) {
    output.add(synth);
}

LiveSound::~LiveSound() {
    devices.close();
    output.remove(synth);
}

} // namespace velmora
