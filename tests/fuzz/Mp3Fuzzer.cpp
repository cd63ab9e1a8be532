// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of MP3 files: any bytes. What is read is as long as the reader says, wherever it begins.
#include "studio/Mp3Reader.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace velmora;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}

std::int64_t listen(SoundReader& reader, std::int64_t from) {
    std::vector<float> block(std::size_t{5000} * static_cast<std::size_t>(reader.info().channels));
    std::int64_t heard = 0;
    reader.seek(from);
    while (const std::size_t frames = reader.read(block))
        heard += static_cast<std::int64_t>(frames);
    return heard;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Mp3Reader reader(std::make_unique<MemoryBytes>(std::span(data, size)));
    if (!reader.problem().empty())
        return 0;
    const std::int64_t frames = reader.info().frames;
    expect(frames > 0 && reader.info().rate > 0 && reader.info().bitrate > 0);
    constexpr std::int64_t kShortestFrame = 24; // bytes; the longest sounds for 1152 frames
    expect(frames <= (static_cast<std::int64_t>(size) / kShortestFrame + 1) * 1152);
    expect(listen(reader, 0) == frames);
    expect(listen(reader, frames / 3) == frames - frames / 3);
    return 0;
}
