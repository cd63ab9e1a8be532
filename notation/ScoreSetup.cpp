// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ScoreSetup.h"

#include <algorithm>

namespace velmora::notation {

namespace {
constexpr std::array kBoxChannels{0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12};
constexpr int kMelodyBoxes = 8;
} // namespace

int channelOfBox(int box) {
    return kBoxChannels.at(static_cast<std::size_t>(box));
}

int boxOfChannel(int channel) {
    const auto* const found = std::ranges::find(kBoxChannels, channel);
    return found == kBoxChannels.end() ? -1 : static_cast<int>(found - kBoxChannels.begin());
}

int StaffChoice::TrebleStaves() const {
    int count = 0;
    for (std::size_t box = 0; box < kMelodyBoxes; ++box)
        count += chkChannel[box] && !ChkNotetype[box] ? 1 : 0;
    return count;
}

int StaffChoice::BassStaves() const {
    int count = 0;
    for (std::size_t box = 0; box < kMelodyBoxes; ++box)
        count += chkChannel[box] && ChkNotetype[box] ? 1 : 0;
    return count;
}

int StaffChoice::DrumStaves() const {
    return static_cast<int>(std::count(chkChannel.begin() + kMelodyBoxes, chkChannel.end(), true));
}

} // namespace velmora::notation
