// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Encoder.h"

#include "studio/FittingSink.h"
#include "studio/Mp3File.h"
#include "studio/SoundReader.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;
using End = EncodeOutcome::End;

namespace {
constexpr int kUsualRate = 44100;

EncodeOutcome failed(std::string error) {
    EncodeOutcome outcome;
    outcome.error = std::move(error);
    return outcome;
}
/// Blank, or why the WAV file is still there.
std::string deleteEncoded(const fs::path& wav, const fs::path& encoded) {
    std::error_code error;
    const bool isWhole =
        fs::is_regular_file(encoded, error) && !fs::equivalent(encoded, wav, error) && !error;
    if (isWhole && fs::remove(wav, error))
        return {};
    return "\"" + wav.string() + "\" is encoded but can't be deleted" +
           (error ? ": " + error.message() : std::string()) + ".";
}

} // namespace

EncoderFormat encodedFormat(const EncodeSettings& settings, int rate, int channels) {
    if (settings.format)
        return kEncoderFormats[std::min(*settings.format, kEncoderFormats.size() - 1)];
    return {.rate = std::ranges::find(kMp3Rates, rate) != kMp3Rates.end() ? rate : kUsualRate,
            .mode = channels == 1 ? kMono : kJointStereo};
}

std::unique_ptr<SampleSink> makeMp3Sink(fs::path mp3, EncodeSettings settings, int rate, int channels) {
    const EncoderFormat format = encodedFormat(settings, rate, channels);
    const std::size_t quality = std::min(settings.quality, kEncoderQualities.size() - 1);
    const SoundFit fit{.rate = rate,
                       .channels = channels,
                       .wantedRate = format.rate,
                       .wantedChannels = format.mode == kMono ? 1 : 2};
    auto file = std::make_unique<Mp3File>(mp3, Mp3Options{.bitrate = settings.bitrate,
                                                          .sampleRate = format.rate,
                                                          .mode = format.mode,
                                                          .preset = kEncoderQualities[quality].preset,
                                                          .title = std::move(settings.title),
                                                          .artist = std::move(settings.artist),
                                                          .cover = std::move(settings.cover),
                                                          .front = std::move(settings.front),
                                                          .behind = std::move(settings.behind)});
    return std::make_unique<FittingSink>(std::move(file), fit, std::move(mp3));
}

EncodeOutcome encodeThrough(const EncodeJob& job,
                            const std::function<std::unique_ptr<SampleSink>(const SoundInfo&)>& makeSink,
                            const std::function<void(double)>& progress, const std::stop_token& cancel) {
    std::error_code error;
    if (fs::equivalent(job.wav, job.mp3, error))
        return failed("\"" + job.mp3.string() +
                      "\" would replace the sound that it is made from. Take another name.");
    const OpenedSound opened = openSound(job.wav);
    if (!opened.reader)
        return failed(opened.error);
    const auto sink = makeSink(opened.reader->info());
    if (std::string problem = sink->open(); !problem.empty())
        return failed(std::move(problem));
    PourOutcome poured = pour(*opened.reader, job.wav, *sink, progress, cancel);
    EncodeOutcome outcome{.end = poured.end, .error = std::move(poured.error)};
    if (outcome.end == End::Done && job.deleteWav)
        outcome.error = deleteEncoded(job.wav, job.mp3);
    return outcome;
}

EncodeOutcome encode(const EncodeJob& job, const std::function<void(double)>& progress,
                     const std::stop_token& cancel) {
    int rate = 0;
    const auto makeSink = [&](const SoundInfo& info) {
        rate = encodedFormat(job.settings, info.rate, info.channels).rate;
        return makeMp3Sink(job.mp3, job.settings, info.rate, info.channels);
    };
    EncodeOutcome outcome = encodeThrough(job, makeSink, progress, cancel);
    if (outcome.end == End::Done) {
        outcome.rate = rate;
        outcome.bitrate = bitrateAt(rate, job.settings.bitrate);
    }
    return outcome;
}

} // namespace velmora
