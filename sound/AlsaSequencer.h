// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// True if ALSA's sequencer can be opened. Asked first, because RtMidi and ALSA print their complaints on the
/// terminal before they can be told not to. Thread-safe: yes.
[[nodiscard]] bool sequencerAnswers();

} // namespace velmora
