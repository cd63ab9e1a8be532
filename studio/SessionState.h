// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Capture.h"
#include "studio/EncoderTables.h"
#include "studio/WaveFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

enum class RecordingSource : std::uint8_t { Notes, MidiFile, Keyboard };

/// The source's name as the message box says it.
[[nodiscard]] constexpr std::string_view nameOf(RecordingSource source) {
    constexpr std::array<std::string_view, 3> kNames{"Notes", "File", "Keyboard"};
    return kNames[static_cast<std::size_t>(source)];
}

/// What the Recording Studio is set to, and what it shows. The window edits the first half and shows the
/// second; the rooms read the one and write the other.
struct SessionState {
    RecordingSource source = RecordingSource::Notes; ///< `Optsourcesng`, `Optsourcemid`, `Optsourcekeyboard`
    CaptureSource capture = CaptureSource::Own;
    std::size_t cbxFormat = kDefaultOffer; ///< index of an offered format
    std::string otherFormat;               ///< a text of `kWaveFormats` in its place; blank for none
    std::size_t Combo3 = kDefaultQuality;  ///< index of kEncoderQualities
    std::size_t Combo4 = kDefaultBitrate;  ///< index of kMp3Bitrates
    bool Check2 = true;                    ///< encode after recording
    bool Check3 = true;                    ///< delete the WAV file after encoding
    bool Check4 = true;                    ///< show the playing position in the composing window
    std::string Text6;                     ///< the file of the session, as it is shown and may be typed

    std::string title; ///< for the tags of what is encoded
    std::string artist;
    std::filesystem::path cover; ///< a JPEG or PNG picture

    std::filesystem::path InputPath = "TEMP.WAV";
    std::filesystem::path OutPutPath = "TEMP.MP3";
    std::string Erbox;   ///< "Recording Messages": lines
    std::string Text2;   ///< the log, with the times of day
    std::string Label8;  ///< "Recording", "Encoding", "Stopped" or blank
    std::string Status;  ///< the share that is done, in words
    std::string lblTime; ///< "mm:ss"
    double share = 0;    ///< the same from 0 to 1, for the bar
    std::string lblKhz;  ///< of the first frame of an MP3 file
    std::string lblmode;
    std::string lblbitrate;
    bool isRecording = false;
    bool isEncoding = false; ///< `Command20` reads "Stop Encoding"
    bool isLocked = false;   ///< recording controls are disabled

    /// What the recorder takes its numbers from.
    [[nodiscard]] std::string_view formatText() const {
        return otherFormat.empty() ? offeredFormat(cbxFormat).text : std::string_view(otherFormat);
    }
};

} // namespace velmora
