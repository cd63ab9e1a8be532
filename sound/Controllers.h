// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora::controllers {

// Numbers of MIDI's controllers, as MIDI 1.0 gives them.

inline constexpr int kModulation = 1;
inline constexpr int kVolume = 7;
inline constexpr int kPan = 10;
inline constexpr int kSustain = 64;
inline constexpr int kReverb = 91;
inline constexpr int kChorus = 93;

} // namespace velmora::controllers
