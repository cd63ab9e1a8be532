// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of WAV files: any bytes.
#include "studio/WavReader.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace velmora;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}

/// Reads a few blocks from there; returns how many frames there were.
std::int64_t listen(SoundReader& reader, std::int64_t from) {
    constexpr std::size_t kBlockFrames = 100;
    constexpr int kBlocks = 20;
    std::vector<float> block(kBlockFrames * static_cast<std::size_t>(reader.info().channels));
    std::int64_t heard = 0;
    reader.seek(from);
    for (int i = 0; i < kBlocks; ++i) {
        const std::size_t frames = reader.read(block);
        for (std::size_t sample = 0; sample < frames * static_cast<std::size_t>(reader.info().channels);
             ++sample)
            expect(std::isfinite(block[sample]));
        heard += static_cast<std::int64_t>(frames);
        if (frames < kBlockFrames)
            break;
    }
    return heard;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto bytes = std::make_unique<MemoryBytes>(std::span(data, size));
    WavHeader header = readWavHeader(*bytes);
    if (!header.problem.empty())
        return 0;
    expect(header.frames > 0 && header.channels > 0 && header.rate > 0);
    expect(header.soundAt + header.frames * header.frameBytes() <= size);
    const WavHeader kept = header;
    WavReader reader(std::move(bytes), std::move(header));
    const auto frames = static_cast<std::int64_t>(kept.frames);
    constexpr std::int64_t kMost = 2000;
    expect(listen(reader, 0) == std::min(frames, kMost));
    expect(listen(reader, frames / 2) == std::min(frames - frames / 2, kMost));
    expect(listen(reader, frames) == 0);
    return 0;
}
