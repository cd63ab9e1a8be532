// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnEvents.h"
#include "studio/CdTracks.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class MessageLoop;

/// What came of burning. Tracks are written at once, with nothing between them: no drive closes one by itself
/// nor is told an address to go on from, so that two of these are there for the table alone.
enum class BurnCode : std::uint8_t {
    ParametersRefused = 0,
    WriteError = 1,
    NoFile = 2,
    ClosingTrack = 3,
    ClosingSession = 4,
    Cache = 5,
    InvalidMedium = 6,
    NotEmpty = 7,
    NoAddress = 9,
    Finished = 10
};
/// The texts that tell it.
inline constexpr std::array kBurnTexts{
    std::pair{BurnCode::ParametersRefused, std::string_view("Could not send write parameters page.")},
    std::pair{BurnCode::WriteError, std::string_view("Write error (Buffer Underrun?")}, // without its bracket
    std::pair{BurnCode::NoFile, std::string_view("Could not access a file.")},
    std::pair{BurnCode::ClosingTrack, std::string_view("Error closing track.")},
    std::pair{BurnCode::ClosingSession, std::string_view("Error closing session.")},
    std::pair{BurnCode::Cache, std::string_view("Synchronizing cache failed.")},
    std::pair{BurnCode::InvalidMedium, std::string_view("Invalid medium.")},
    std::pair{BurnCode::NotEmpty, std::string_view("Disk isn't empty!")},
    std::pair{BurnCode::NoAddress, std::string_view("Could not get next writable address.")},
    std::pair{BurnCode::Finished, std::string_view("Finished.")},
};
[[nodiscard]] std::string_view burnText(BurnCode code);

/// A drive that may be written to, as the list of drives shows it.
struct CdDrive {
    std::string name;        ///< shown, and what `--device` takes
    std::string address;     ///< for the library; blank for the image
    bool isImage = false;    ///< a CUE and a BIN file
    std::vector<int> speeds; ///< that it can write at, KB/s, the fastest first

    /// "Max." first, then "N KB/s (Fx)".
    [[nodiscard]] std::vector<std::string> speedTexts() const;
};
inline constexpr std::string_view kImageDrive = "Disc image (CUE and BIN file)";

enum class DiscState : std::uint8_t {
    Blank,
    Rewritable, ///< written, and can be made blank
    Full,
    Absent,
    Unsuitable,
    NoDrive ///< it doesn't answer any more
};

struct Disc {
    DiscState state = DiscState::Absent;
    std::int64_t sectors = 0; ///< that it takes; 0 if nobody knows
};

struct BurnOutcome {
    BurnCode code = BurnCode::WriteError;
    std::string detail = {}; ///< more words, naming drive or file; blank if there are none
    bool cancelled = false;
};

/// Writes audio CDs: the drives there are, what lies in them, and burning, by a library that is loaded when
/// it is first asked; and a drive that is always there, the image. What lasts runs on a thread of its own
/// while the caller's serves its loop, and events come on the caller's. One call at a time. Thread-safe: no.
class cAudio {
public:
    /// @param loop served while a call lasts; null to serve nothing
    explicit cAudio(MessageLoop* loop = nullptr) : loop_(loop) {}
    virtual ~cAudio() = default;
    cAudio(const cAudio&) = delete;
    cAudio& operator=(const cAudio&) = delete;

    /// The burners of this machine, which may take seconds to ask, and the image as the last one.
    [[nodiscard]] virtual std::vector<CdDrive> drives();
    /// What lies in it; an image takes kLongestDisc.
    [[nodiscard]] virtual Disc disc(const CdDrive& drive);
    /// Makes a rewritable disc blank. Blank, or why not, naming the drive. Once begun it can't be cancelled.
    [[nodiscard]] virtual std::string blank(const CdDrive& drive, BurnEvents& events);
    /// The speed of what is burnt from now on.
    /// @param row of `speedTexts`; false if the drive refuses it
    [[nodiscard]] virtual bool setSpeed(const CdDrive& drive, std::size_t row);
    /// Writes the tracks, then reads every sector back and compares. Too many sectors for the disc, or a disc
    /// that isn't blank, are found before anything is written.
    /// @param image the CUE file, for the image drive
    [[nodiscard]] virtual BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks,
                                           const std::filesystem::path& image, BurnEvents& events,
                                           const std::stop_token& cancel = {});

private:
    MessageLoop* loop_;
    int speed_ = 0; ///< KB/s; 0 for what the drive can at most
};

} // namespace velmora
