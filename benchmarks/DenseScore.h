// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"

#include <string>
#include <vector>

namespace velmora {

/// A piece as full as composers make them: about 37 notes a second on nine instruments and a drum set, on a
/// grid of an eighth of a second, the same at every call.
struct DenseScore {
    std::vector<TimedMessage> messages; ///< in order of time
    std::string midiFile;               ///< the same music as a Standard MIDI File
    int notes = 0;
};

/// @param seconds length, up to the end of the last note
[[nodiscard]] DenseScore makeDenseScore(double seconds);

} // namespace velmora
