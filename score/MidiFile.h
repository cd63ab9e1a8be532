// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace velmora {

struct ChordSteps;
struct Score;

/// The score as a Standard MIDI File, format 1: a track of tempo and meter, then one track a channel.
///
/// 48 ticks make a quarter, 12 a position. `Tempo` counts as beats per minute here, so a file doesn't run at
/// the speed of the player. No controllers are written.
///
/// Chords are spread over the channels from `TopChannel` on before they are written, and those channels are
/// emptied afterwards, whatever the user had on them: so repeated exports give the same file. @p steps is
/// left at the last chord's. `SongEnd` stays raised by one until the next `FindEndOfSong`.
/// @param NumBytes the size that the settings remember (start value 10000), raised where a file outgrows it
[[nodiscard]] std::string buildMidiFile(Score& score, ChordSteps& steps, std::int32_t& NumBytes);
[[nodiscard]] std::string buildMidiFile(Score& score, ChordSteps& steps);

/// Writes it.
/// @return the reason in words if that failed, an old file being untouched; blank otherwise
[[nodiscard]] std::string MidiFile(const std::filesystem::path& path, Score& score, ChordSteps& steps,
                                   std::int32_t& NumBytes);

} // namespace velmora
