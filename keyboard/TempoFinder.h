// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PhraseMeter.h"
#include "keyboard/Pulse.h"

#include <span>

namespace velmora {

/// The beats that notes were played to, found from their onsets alone, which never fall. A tempo that drifts
/// is followed. Beat 0 is one near the first onset. Of no onsets, or one, nothing can be told: their beats
/// are of half a second, and begin with the first.
[[nodiscard]] Pulse findPulse(std::span<const double> onsets, PhraseMeter meter);

/// The beats of a metronome that ran: @p interval seconds, one of them at @p beat. A hand that is steadily
/// ahead of it, or behind, is taken for being on it.
[[nodiscard]] Pulse pulseOfMetronome(std::span<const double> onsets, PhraseMeter meter, double beat,
                                     double interval);

} // namespace velmora
