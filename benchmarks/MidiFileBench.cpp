// SPDX-License-Identifier: GPL-2.0-or-later
// Exporting the largest score as a MIDI file, in classic manners and in careful ones, which perform it;
// beside what the disk alone costs: a write, a flush, a rename.
#include "FlushedFile.h"
#include "composition/MidiExport.h"
#include "score/Manners.h"
#include "score/MidiFile.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/SetupState.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>

using namespace velmora;

namespace {
/// A head in every cell: the most events that positions can hold.
Score fullScore() {
    Score score(32767);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        std::ranges::fill(score.NoteCell.row(channel), std::int16_t{60});
        std::ranges::fill(score.NoteInstrument.row(channel),
                          static_cast<std::int16_t>(channel < kFirstPercussion ? 24 : 128));
    }
    // Above every channel that holds notes, so that emptying the channels of chords finds none.
    score.TopChannel = kUsedChannels;
    return score;
}

struct Export {
    QTemporaryDir folder{QStringLiteral("velmora_bench_XXXXXX")};
    std::filesystem::path path = folder.filePath("full.mid").toStdString();
    Score score = fullScore();
    ChordSteps steps;
    std::int32_t NumBytes = 10000;
    SetupState setup;
    Manners manners = Manners::careful();
    PerformedScore performed{score, setup, steps, manners};
};

void countBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void buildMidi(benchmark::State& state) {
    Export full;
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string built = buildMidiFile(full.score, full.steps, full.NumBytes);
        bytes = built.size();
        benchmark::DoNotOptimize(built.data());
    }
    countBytes(state, bytes);
}
BENCHMARK(buildMidi)->Unit(benchmark::kMillisecond);

void exportMidi(benchmark::State& state) {
    Export full;
    for (auto _ : state) {
        if (!MidiFile(full.path, full.score, full.steps, full.NumBytes).empty())
            state.SkipWithError("the file could not be written");
    }
    countBytes(state, std::filesystem::file_size(full.path));
}
BENCHMARK(exportMidi)->Unit(benchmark::kMillisecond)->UseRealTime();

void performScore(benchmark::State& state) {
    const Export full;
    std::size_t messages = 0;
    for (auto _ : state) {
        const Performance performance = perform(full.performed);
        messages = performance.messages.size();
        benchmark::DoNotOptimize(performance.messages.data());
    }
    state.counters["messages"] = static_cast<double>(messages);
}
BENCHMARK(performScore)->Unit(benchmark::kMillisecond);

void buildPerformedMidi(benchmark::State& state) {
    const Export full;
    const Performance performance = perform(full.performed);
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string built = midiFileOf(performance);
        bytes = built.size();
        benchmark::DoNotOptimize(built.data());
    }
    countBytes(state, bytes);
}
BENCHMARK(buildPerformedMidi)->Unit(benchmark::kMillisecond);

void exportPerformedMidi(benchmark::State& state) {
    Export full;
    for (auto _ : state) {
        if (!writeMidi(full.path, full.performed, full.NumBytes).empty())
            state.SkipWithError("the file could not be written");
    }
    countBytes(state, std::filesystem::file_size(full.path));
}
BENCHMARK(exportPerformedMidi)->Unit(benchmark::kMillisecond)->UseRealTime();

void exportFloor(benchmark::State& state) {
    Export full;
    const std::string bytes = buildMidiFile(full.score, full.steps, full.NumBytes);
    for (auto _ : state)
        writeFlushed(full.path, bytes);
    countBytes(state, bytes.size());
}
BENCHMARK(exportFloor)->Unit(benchmark::kMillisecond)->UseRealTime();
} // namespace
