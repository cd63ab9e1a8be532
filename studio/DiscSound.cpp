// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscSound.h"

#include "studio/WavHeader.h"

namespace velmora {

std::optional<DiscSound> discSound(const std::filesystem::path& file) {
    const OpenedBytes opened = openBytes(file);
    if (!opened.bytes)
        return std::nullopt;
    const WavHeader header = readWavHeader(*opened.bytes);
    constexpr int kRate = 44100;
    const bool isOfADisc = header.problem.empty() && header.encoding == WavEncoding::Plain &&
                           header.sampleBytes() == 2 && header.channels == 2 && header.rate == kRate &&
                           !header.isBigEndian;
    if (!isOfADisc)
        return std::nullopt;
    return DiscSound{header.soundAt, header.frames * header.frameBytes()};
}

} // namespace velmora
