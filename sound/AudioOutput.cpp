// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AudioOutput.h"

namespace velmora {

AudioOutput::AudioOutput(const AudioOutputSettings& settings)
    : supervisor_(mixer_, settings.drivers, settings.stream, settings.times) {}

bool AudioOutput::add(AudioSource& source) {
    const bool added = mixer_.sources.add(source);
    wake();
    return added;
}

bool AudioOutput::addTap(AudioTap& tap) {
    const bool added = mixer_.taps.add(tap);
    wake();
    return added;
}

AudioOutputFigures AudioOutput::figures() const noexcept {
    return {supervisor_.driver(), mixer_.clock().distance(), mixer_.latency(),
            mixer_.frames(),      supervisor_.openings(),    supervisor_.underruns()};
}

} // namespace velmora
