// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"
#include "studio/Mp3File.h"
#include "studio/OfflineRender.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct Workspace;

enum class ExportFormat : std::uint8_t { Midi, Wav, Mp3 };

/// What a score can be exported as.
struct ExportKind {
    ExportFormat format;
    std::string_view extension;
    std::string_view title;  ///< of the dialog that asks for a name
    std::string_view filter; ///< of that dialog
};
inline constexpr std::array kExportKinds{
    ExportKind{ExportFormat::Midi, ".mid", "Export as MIDI", "MIDI (*.mid)|*.mid"},
    ExportKind{ExportFormat::Wav, ".wav", "Export as WAV", "Wave Audio (*.wav)|*.wav"},
    ExportKind{ExportFormat::Mp3, ".mp3", "Export as MP3", "MP3 (*.mp3)|*.mp3"},
};
[[nodiscard]] const ExportKind& exportKind(ExportFormat format);

/// Where an export of the score goes unless the user says otherwise: its own name, in its own folder if files
/// can be made there, else in @p songs.
[[nodiscard]] std::filesystem::path exportPlace(const std::filesystem::path& score,
                                                const std::filesystem::path& songs, ExportFormat format);

/// A file of sound that is to be made. It holds all that is needed, so the score may change meanwhile.
struct SoundJob {
    std::vector<TimedMessage> messages;
    std::filesystem::path file;
    ExportFormat format = ExportFormat::Wav; ///< `Wav` or `Mp3`
    std::filesystem::path soundFont;         ///< blank where none is installed, which is then the failure
    Mp3Options mp3 = {};
    int cores = coresHere();
};

struct ExportOutcome {
    enum class End : std::uint8_t { Done, Cancelled, Failed };
    End end = End::Failed;
    std::string error;       ///< why it failed, in a sentence that names the file
    double seconds = 0;      ///< that the music lasts
    std::uintmax_t size = 0; ///< of the file, in bytes
};

/// Makes the file. Unless the outcome is Done, an old file of that name is as it was, and no new one is left.
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] ExportOutcome exportSound(const SoundJob& job, const std::function<void(double)>& progress = {},
                                        const std::stop_token& cancel = {});

/// Writes the score as a MIDI file, in milliseconds.
[[nodiscard]] ExportOutcome exportMidi(const Workspace& workspace, const std::filesystem::path& file);

/// What the user is told at the end: what was written where, or what became of the file that wasn't.
[[nodiscard]] std::string exportWords(const ExportOutcome& outcome, const std::filesystem::path& file);

} // namespace velmora
