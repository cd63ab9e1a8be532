// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AudioDriver.h"

#include <array>

namespace velmora {

namespace {
constexpr std::array kDrivers{
    AudioDriverRow{"pulse", makePulseDriver},
    AudioDriverRow{"alsa", makeAlsaDriver},
    AudioDriverRow{"none", makeNullDriver},
};
static_assert(kDrivers.size() == 3);
} // namespace

std::span<const AudioDriverRow> audioDriverTable() {
    return kDrivers;
}

} // namespace velmora
