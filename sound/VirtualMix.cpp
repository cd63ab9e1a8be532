// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/VirtualMix.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

bool VirtualMix::add(AudioSource& source) {
    return mixer_.sources.add(source);
}

void VirtualMix::remove(AudioSource& source) {
    mixer_.sources.remove(source);
}

bool VirtualMix::addTap(AudioTap& tap) {
    return mixer_.taps.add(tap);
}

void VirtualMix::removeTap(AudioTap& tap) {
    mixer_.taps.remove(tap);
}

void VirtualMix::advance(std::int64_t frames) {
    std::array<float, std::size_t{kAudioChannels} * AudioMixer::kMaxBlockFrames> samples{};
    for (std::int64_t left = frames; left > 0;) {
        const int block = static_cast<int>(std::min<std::int64_t>(left, AudioMixer::kMaxBlockFrames));
        mixer_.mix({samples.data(), block, now()});
        frames_ += block;
        left -= block;
    }
}

double VirtualMix::now() const {
    return static_cast<double>(frames_) / kAudioRate;
}

void VirtualMix::serveUntil(double moment) {
    constexpr double kRounding = 1e-3; // of a frame: whoever waits for a frame's own moment gets that frame
    advance(static_cast<std::int64_t>(std::ceil(moment * kAudioRate - kRounding)) - frames_);
}

} // namespace velmora
