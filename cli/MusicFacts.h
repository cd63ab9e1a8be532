// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>

namespace velmora::cli {

/// Prints what `info` tells of a WAV or MP3 file, a line a fact; throws Failure if it can't be read. All of
/// it is decoded: length and peak are what is heard.
void printSoundFacts(const std::filesystem::path& file);
/// The same for a MIDI file.
void printMidiFacts(const std::filesystem::path& file);

} // namespace velmora::cli
