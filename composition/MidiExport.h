// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Performance.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace velmora {

/// A performance as a Standard MIDI File, format 1: a track of tempo and meter, then a named track for each
/// channel of the Score, 0 to 12. Every message that is MIDI stands there at its moment, and each track ends
/// with the performance, silently.
///
/// Four positions make a quarter, two or one where a quarter of four would be slower than a file can tell. A
/// quarter has so many ticks that moments are kept to a millisecond, and where the tracks are merged again,
/// messages are in the order of playing. Where no whole number of microseconds is the length of a quarter,
/// the tempo changes by one now and then, so that nothing adds up.
///
/// What playing waits before its first position is a measure of its own, so that measures begin where they do
/// in the score.
[[nodiscard]] std::string midiFileOf(const Performance& performance);

/// Writes the score as a MIDI file: what is heard, in careful manners, and in classic ones `MidiFile` of a
/// copy, since that empties the channels which it spreads chords over.
/// @param NumBytes as for `MidiFile`
/// @return the reason in words if that failed, an old file being untouched; blank otherwise
[[nodiscard]] std::string writeMidi(const std::filesystem::path& path, const PerformedScore& performed,
                                    std::int32_t& NumBytes);

} // namespace velmora
