// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Pour.h"

#include "studio/SinkThread.h"
#include "studio/SoundReader.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velmora {

namespace {
constexpr std::size_t kBlockFrames = 8192;
} // namespace

PourOutcome pour(SoundReader& sound, const std::filesystem::path& from, SampleSink& sink,
                 const std::function<void(double)>& progress, const std::stop_token& cancel) {
    using End = PourOutcome::End;
    SinkThread writing(sink);
    const auto channels = static_cast<std::size_t>(sound.info().channels);
    const auto expected = static_cast<double>(std::max<std::int64_t>(1, sound.info().frames));
    std::vector<float> block(kBlockFrames * channels);
    std::int64_t done = 0;
    bool isTaken = true;
    for (std::size_t frames = kBlockFrames; frames == kBlockFrames;) {
        frames = sound.read(block);
        if (cancel.stop_requested())
            return {End::Cancelled, {}};
        isTaken = frames == 0 || writing.give(std::span<const float>(block).first(frames * channels));
        if (!isTaken)
            break; // finishing tells why
        done += static_cast<std::int64_t>(frames);
        if (progress)
            progress(std::min(1.0, static_cast<double>(done) / expected));
    }
    if (cancel.stop_requested())
        return {End::Cancelled, {}};
    if (isTaken && done < sound.info().frames)
        return {End::Failed,
                "\"" + from.string() + "\" can't be read to its end. Is it still being written?"};
    if (std::string error = writing.finish(); !error.empty())
        return {End::Failed, std::move(error)};
    return {End::Done, {}};
}

} // namespace velmora
