// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/MusicFacts.h"

#include "cli/Commands.h"
#include "cli/ProgressBar.h"
#include "score/MidiFileReader.h"
#include "studio/SoundReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace velmora::cli {

namespace {

/// The sample that is farthest from silence; several at a time, since each comparison waits for the last.
float peakOf(std::span<const float> samples, float peak) {
    std::array<float, 8> peaks{};
    for (; samples.size() >= peaks.size(); samples = samples.subspan(peaks.size())) {
        for (std::size_t i = 0; i < peaks.size(); ++i)
            peaks[i] = std::max(peaks[i], std::abs(samples[i]));
    }
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    return std::max(peak, *std::ranges::max_element(peaks));
}

struct Heard {
    std::int64_t frames = 0;
    float peak = 0;
};

Heard listen(SoundReader& reader, const std::string& label) {
    constexpr std::size_t kBlockSamples = 16384;
    const auto channels = static_cast<std::size_t>(reader.info().channels);
    std::vector<float> block(std::max<std::size_t>(kBlockSamples / channels, 1) * channels);
    ProgressBar bar(label);
    Heard heard;
    while (const std::size_t frames = reader.read(block)) {
        heard.peak = peakOf(std::span(block).first(frames * channels), heard.peak);
        heard.frames += static_cast<std::int64_t>(frames);
        bar.show(static_cast<double>(heard.frames) / static_cast<double>(reader.info().frames));
    }
    return heard;
}

std::string decibels(float peak) {
    if (peak == 0)
        return "-inf dB";
    std::array<char, 32> text{};
    const double value = std::round(2000 * std::log10(static_cast<double>(peak))) / 100;
    std::snprintf(text.data(), text.size(), "%.2f dB", value + 0.0); // no -0.00
    return text.data();
}

} // namespace

void printSoundFacts(const std::filesystem::path& file) {
    const OpenedSound opened = openSound(file);
    if (!opened.reader)
        throw Failure(opened.error);
    const SoundInfo& info = opened.reader->info();
    const Heard heard = listen(*opened.reader, file.filename().string());
    const bool isWav = info.kind == SoundKind::Wav;
    std::printf("File: %s\nKind: %s\nRate: %d\nChannels: %d\n", file.c_str(), isWav ? "WAV" : "MP3",
                info.rate, info.channels);
    if (isWav)
        std::printf("Bits: %d\n", info.bits);
    else
        std::printf("Bitrate: %d\n", info.bitrate);
    std::printf("Frames: %lld\nSeconds: %.3f\nPeak: %s\n", static_cast<long long>(heard.frames),
                static_cast<double>(heard.frames) / info.rate, decibels(heard.peak).c_str());
    if (!info.title.empty())
        std::printf("Title: %s\n", info.title.c_str());
    if (!info.artist.empty())
        std::printf("Artist: %s\n", info.artist.c_str());
}

void printMidiFacts(const std::filesystem::path& file) {
    const MidiMusic music = readMidiFile(file);
    if (!music.error.empty())
        throw Failure(music.error);
    std::printf("File: %s\nKind: MIDI\nSeconds: %.3f\n", file.c_str(), music.seconds);
    if (!music.title.empty())
        std::printf("Title: %s\n", music.title.c_str());
}

} // namespace velmora::cli
