// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Labels.h"

#include "studio/Mp3Frames.h"

namespace velmora {

std::optional<Mp3Labels> ReadMp3Header(const std::filesystem::path& file) {
    const OpenedBytes opened = openBytes(file);
    if (!opened.bytes)
        return std::nullopt;
    const Mp3Frames frames(*opened.bytes);
    if (!frames.first())
        return std::nullopt;
    const Mp3FrameHeader& header = frames.first()->header;
    constexpr int kKilo = 1000;
    return Mp3Labels{std::to_string(header.rate / kKilo), header.channels == 1 ? "mono" : "stereo",
                     std::to_string(header.bitrate)};
}

} // namespace velmora
