// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>

namespace velmora {

class SampleSink;
class SoundReader;

struct PourOutcome {
    enum class End : std::uint8_t { Done, Cancelled, Failed };
    End end = End::Failed;
    std::string error; ///< why it failed, in a sentence
};
/// Reads a sound from its beginning to its end into a sink that is open, and finishes it. Reading and writing
/// go side by side. Unless it is Done, the sink is to be thrown away.
/// @param from the file that is read, for words
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] PourOutcome pour(SoundReader& sound, const std::filesystem::path& from, SampleSink& sink,
                               const std::function<void(double)>& progress, const std::stop_token& cancel);

} // namespace velmora
