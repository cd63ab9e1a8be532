// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/CdTracks.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What came of burning.
enum class BurnCode {
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
/// The text that tells it.
[[nodiscard]] std::string_view burnText(BurnCode code);

/// What burning tells of, on the thread that called `cAudio::burn`; each may serve events.
class BurnEvents {
public:
    virtual ~BurnEvents() = default;
    virtual void StartCaching(std::size_t /*track*/) {}
    virtual void CacheProgress(double /*trackShare*/, double /*totalShare*/) {}
    virtual void StartWriting(std::size_t /*track*/) {}
    /// Shares from 0 to 1 that never fall within a track, or the whole.
    virtual void WriteProgress(double /*trackShare*/, double /*totalShare*/) {}
    virtual void ClosingTrack(std::size_t /*track*/) {}
    virtual void ClosingSession() {}
    virtual void Comparing(double /*share*/) {} ///< every sector is read back
    virtual void Finished() {}
};

/// A drive that may be written to, as the list of drives shows it.
struct CdDrive {
    std::string name;                ///< shown, and what `--device` takes
    std::string address;             ///< for the library; blank for the image
    bool isImage = false;            ///< a CUE and a BIN file
    std::vector<std::string> speeds; ///< "Max." first, then "N KB/s (Fx)"
};

enum class DiscState { Blank, Rewritable, Full, Absent, Unsuitable };

struct BurnOutcome {
    BurnCode code = BurnCode::WriteError;
    std::string detail; ///< more words, naming drive or file; blank if there are none
    bool cancelled = false;
};

/// Writes audio CDs: the drives there are, what stands in them, and burning. Libraries and files behind it
/// are chosen by the drive. Thread-safe: no.
class cAudio {
public:
    cAudio();
    ~cAudio();
    cAudio(const cAudio&) = delete;
    cAudio& operator=(const cAudio&) = delete;

    /// The burners of this machine, which may take seconds to ask, and the image as the last one.
    [[nodiscard]] std::vector<CdDrive> drives();
    /// The disc in it, and how many sectors it takes; an image takes kLongestDisc.
    struct Disc {
        DiscState state = DiscState::Absent;
        std::int64_t sectors = 0;
    };
    [[nodiscard]] Disc disc(const CdDrive& drive);
    /// Makes a rewritable disc blank. Blank, or why not.
    [[nodiscard]] std::string blank(const CdDrive& drive, BurnEvents& events, const std::stop_token& cancel);
    /// @param index into the drive's speeds; false if the drive refuses it
    bool setSpeed(const CdDrive& drive, std::size_t index);
    /// Writes the tracks, then reads every sector back and compares.
    /// @param image the CUE file, for the image drive
    [[nodiscard]] BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks,
                                   const std::filesystem::path& image, BurnEvents& events,
                                   const std::stop_token& cancel = {});

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
