// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

/// What the first frame of an MP3 file says, behind all tags: the texts of `lblKhz`, `lblmode` and
/// `lblbitrate`.
struct Mp3Labels {
    std::string khz;     ///< whole ones: "44", "48", "32", or less below 32
    std::string mode;    ///< "stereo" or "mono"
    std::string bitrate; ///< kilobits a second
    bool operator==(const Mp3Labels&) const = default;
};
/// Nothing if the file can't be read or is no MP3 file.
[[nodiscard]] std::optional<Mp3Labels> ReadMp3Header(const std::filesystem::path& file);

} // namespace velmora
