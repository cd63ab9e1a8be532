// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What a Standard MIDI File (format 0, 1 or 2, also in a RIFF wrapper) plays.
struct MidiMusic {
    std::vector<TimedMessage> messages = {}; ///< channel messages of all tracks, in order of time
    double seconds = 0;                      ///< to the end of the longest track
    std::string title = {};                  ///< of the first track; UTF-8
    std::string error = {};                  ///< blank, or why there is no music, as the end of a sentence
};

/// What comes later is left out: a few bytes can claim centuries.
inline constexpr double kLongestMidi = 86'400; ///< seconds

/// Reads as much as can be read: tempo changes and SMPTE times, running status, meta events and exclusive
/// messages between; of a cut file what is whole. Where two tracks send at the same moment, the one that
/// stands first in the file goes first. The patterns of a file of format 2 follow each other. No file, of
/// whatever bytes, takes more memory than some tens of times its size.
[[nodiscard]] MidiMusic readMidi(std::string_view bytes);
/// The same for a file; the error is a sentence that names it.
[[nodiscard]] MidiMusic readMidiFile(const std::filesystem::path& file);

/// Whether the name says so: ".mid" or ".midi", in any case of letters.
[[nodiscard]] bool isMidiName(const std::filesystem::path& file);

} // namespace velmora
