// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_render_probe FOLDER: leaves three dense minutes there as dense.mid.
// velmora_render_probe FILE.wav|FILE.mp3 SOUNDFONT: makes a sound file of them, as the program does.
#include "DenseScore.h"
#include "studio/Mp3File.h"
#include "studio/OfflineRender.h"
#include "studio/WavFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {
constexpr double kSeconds = 180;
}

int main(int argc, char* argv[]) {
    using namespace velmora;
    const DenseScore score = makeDenseScore(kSeconds);
    if (argc == 2)
        return std::ofstream(std::filesystem::path(argv[1]) / "dense.mid", std::ios::binary) << score.midiFile
                   ? 0
                   : 1;
    if (argc != 3)
        return 2;
    const std::filesystem::path path = argv[1];
    std::unique_ptr<SampleSink> sink;
    if (path.extension() == ".mp3")
        sink = std::make_unique<Mp3File>(path);
    else
        sink = std::make_unique<WavFile>(path);
    const RenderResult result = renderOffline(score.messages, *sink, {.soundFont = argv[2]});
    std::fputs(result.error.c_str(), stderr);
    return result.end == RenderResult::End::Done ? 0 : 1;
}
