// SPDX-License-Identifier: GPL-2.0-or-later
// Writing music as notation, in memory: 1,000 measures of five staves, and the first page of them.
#include "notation/Engraver.h"
#include "notation/ModScore.h"
#include "notation/TextMeasure.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <benchmark/benchmark.h>

using namespace velmora;
using namespace velmora::notation;

namespace {

constexpr int kMeasures = 1000;
constexpr int kStaves = 5;

/// Runs of eighths and sixteenths with quarters and rests between, another in each channel.
Score longScore() {
    Score score(kMeasures * 16);
    for (int channel = 0; channel < kStaves; ++channel)
        for (int position = channel; position < kMeasures * 16;) {
            const int length = 1 + (position * 7 + channel * 3) % 4;
            const int row = 48 + (position * 5 + channel * 11) % 30;
            for (int i = 0; i < length; ++i)
                score.NoteCell.set(channel, position + i,
                                   static_cast<std::int16_t>(i == 0 ? row : row + 1000));
            position += length + (position % 5 == 0 ? 2 : 0);
        }
    score.FindEndOfSong();
    return score;
}

ScoreSetup setupOf(bool classic) {
    ScoreSetup setup;
    setup.classicPage = classic;
    setup.joinNotes = 4;
    return setup;
}

void read(benchmark::State& state, bool classic) {
    const Score score = longScore();
    const ScoreSetup setup = setupOf(classic);
    for (auto _ : state)
        benchmark::DoNotOptimize(readScore(score, {}, setup));
}

void write(benchmark::State& state, bool classic) {
    const Score score = longScore();
    const ScoreSetup setup = setupOf(classic);
    PlainTextMeasure measure;
    std::size_t marks = 0;
    std::size_t pages = 0;
    for (auto _ : state) {
        const EngravedScore engraved = WriteScore(readScore(score, {}, setup), setup, measure);
        pages = engraved.pages.size();
        marks = 0;
        for (const EngravedPage& page : engraved.pages)
            marks += page.marks.size();
    }
    state.counters["pages"] = static_cast<double>(pages);
    state.counters["marks"] = static_cast<double>(marks);
}

void writeFirstPage(benchmark::State& state, bool classic) {
    const Score score = longScore();
    const ScoreSetup setup = setupOf(classic);
    PlainTextMeasure measure;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            WriteScore(readScore(score, {}, setup), setup, measure, [](int) { return false; }));
}

} // namespace

BENCHMARK_CAPTURE(read, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read, clean, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, clean, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFirstPage, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFirstPage, clean, false)->Unit(benchmark::kMillisecond);
