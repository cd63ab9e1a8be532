// SPDX-License-Identifier: GPL-2.0-or-later
// Reading and writing score files of three lengths, each beside its floor.
#include "FlushedFile.h"
#include "base/Files.h"
#include "score/Score.h"
#include "score/SngFile.h"
#include "score/UndoSnapshot.h"
#include "sound/SetupState.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <random>

using namespace velmora;

namespace {
/// Every cell of every channel filled, half of them heads; varied effects.
Score fullScore(int numNotes) {
    Score score(numNotes);
    std::minstd_rand random(1);
    const auto below = [&random](int bound) {
        return static_cast<std::int16_t>(random() % static_cast<unsigned>(bound));
    };
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        std::ranges::generate(score.NoteCell.row(channel), [&] {
            const int row = below(128);
            return static_cast<std::int16_t>(below(2) ? row + 1000 : row);
        });
        std::ranges::generate(score.NoteInstrument.row(channel), [&] { return below(175); });
        for (ChannelGrid* grid : {&score.Volume, &score.Modulation_Change, &score.Pan_Change,
                                  &score.Reverb_Change, &score.Chorus_Change})
            std::ranges::generate(grid->row(channel), [&] { return below(128); });
    }
    for (int row = 1; row <= kMelodyChannels; ++row)
        std::ranges::generate(score.Polyphonics.row(row), [&] { return below(8); });
    score.FindEndOfSong();
    return score;
}

/// What a user's score looks like: the same few values over long stretches.
Score plainScore(int numNotes) {
    Score score(numNotes);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        for (int position = 0; position <= numNotes; ++position) {
            score.NoteCell.set(channel, position, position % 4 == 0 ? 60 : position % 4 == 3 ? -1 : 1060);
            score.NoteInstrument.set(channel, position, position % 4 == 3 ? 0 : 24);
        }
    }
    score.FindEndOfSong();
    return score;
}

Score scoreFor(const benchmark::State& state) {
    const int positions = static_cast<int>(state.range(1));
    return state.range(0) == 0 ? plainScore(positions) : fullScore(positions);
}

void kindsAndLengths(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"random", "positions"})->Unit(benchmark::kMillisecond)->UseRealTime();
    for (const int random : {0, 1})
        for (const int positions : {1000, 32767, 200000})
            bench->Args({random, positions});
}
void lengths(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"random", "positions"})->Unit(benchmark::kMillisecond)->UseRealTime();
    for (const int positions : {1000, 32767, 200000})
        bench->Args({0, positions});
}

void countBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void readScore(benchmark::State& state) {
    Score score = scoreFor(state);
    SetupState setup;
    const std::string text = serializePoliFile(score, setup);
    for (auto _ : state) {
        parseSng(text, SngReader::OpenPoliFile, score, setup);
        benchmark::DoNotOptimize(score.SongEnd);
    }
    countBytes(state, text.size());
}
BENCHMARK(readScore)->Apply(kindsAndLengths);

void readFloor(benchmark::State& state) {
    const std::string text = serializePoliFile(scoreFor(state), SetupState{});
    for (auto _ : state) {
        const char* at = text.data();
        const char* const end = at + text.size();
        int sum = 0;
        while (at < end) {
            int value = 0;
            at = std::from_chars(at, end, value).ptr + 1;
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    countBytes(state, text.size());
}
BENCHMARK(readFloor)->Apply(kindsAndLengths);

void writeScore(benchmark::State& state) {
    const Score score = scoreFor(state);
    const SetupState setup;
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string text = serializePoliFile(score, setup);
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    countBytes(state, bytes);
}
BENCHMARK(writeScore)->Apply(kindsAndLengths);

void writeFloor(benchmark::State& state) {
    const std::string text = serializePoliFile(scoreFor(state), SetupState{});
    for (auto _ : state) {
        const std::string copy = text;
        benchmark::DoNotOptimize(copy.data());
    }
    countBytes(state, text.size());
}
BENCHMARK(writeFloor)->Apply(kindsAndLengths);

/// What opening does before anything is painted.
void openScoreFile(benchmark::State& state) {
    const QTemporaryDir folder(QStringLiteral("velmora_bench_XXXXXX"));
    Score score = scoreFor(state);
    SetupState setup;
    score.currentFile = folder.filePath("full.sng").toStdString();
    if (!SavePoliFile(score, setup).empty())
        state.SkipWithError("the file could not be written");
    for (auto _ : state) {
        const auto text = readWholeFile(score.currentFile);
        benchmark::DoNotOptimize(longestRow(*text));
        parseSng(*text, SngReader::OpenPoliFile, score, setup);
        benchmark::ClobberMemory();
    }
    countBytes(state, std::filesystem::file_size(score.currentFile));
}
BENCHMARK(openScoreFile)->Apply(kindsAndLengths);

void saveScoreFile(benchmark::State& state) {
    const QTemporaryDir folder(QStringLiteral("velmora_bench_XXXXXX"));
    Score score = scoreFor(state);
    score.currentFile = folder.filePath("full.sng").toStdString();
    for (auto _ : state) {
        if (!SavePoliFile(score, SetupState{}).empty())
            state.SkipWithError("the file could not be written");
    }
    countBytes(state, std::filesystem::file_size(score.currentFile));
}
BENCHMARK(saveScoreFile)->Apply(lengths);

void saveFloor(benchmark::State& state) {
    const QTemporaryDir folder(QStringLiteral("velmora_bench_XXXXXX"));
    const std::filesystem::path path = folder.filePath("full.sng").toStdString();
    const std::string text = serializePoliFile(scoreFor(state), SetupState{});
    for (auto _ : state)
        writeFlushed(path, text);
    countBytes(state, text.size());
}
BENCHMARK(saveFloor)->Apply(lengths);

void saveForUndo(benchmark::State& state) {
    const QTemporaryDir folder(QStringLiteral("velmora_bench_XXXXXX"));
    UndoSnapshot undo(folder.filePath("temp.sng").toStdString());
    const Score score = plainScore(static_cast<int>(state.range(0)));
    for (auto _ : state)
        undo.SaveforUndo(score, SetupState{});
    if (undo.UndoChannel < 0)
        state.SkipWithError("the snapshot could not be written");
}
BENCHMARK(saveForUndo)
    ->ArgName("positions")
    ->Arg(1000)
    ->Arg(32767)
    ->Arg(200000)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
} // namespace
