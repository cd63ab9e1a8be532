// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace velmora {
class AudioOutput;
}

namespace velmora::cli {

/// Plays a MIDI file to its end, or until the user interrupts. Throws Failure if it can't be played.
void playMidi(const std::filesystem::path& file, AudioOutput& output, const std::filesystem::path& soundFont);

/// Plays sound files one after the other, with nothing between them, or until the user interrupts. What can't
/// be played is told on standard error and passed over. False if there was such a file.
[[nodiscard]] bool playSounds(const std::vector<std::filesystem::path>& files, AudioOutput& output);

} // namespace velmora::cli
