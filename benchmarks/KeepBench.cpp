// SPDX-License-Identifier: GPL-2.0-or-later
// What is played is kept: a strike in the log, and ten minutes of playing brought to a grid.
#include "base/VirtualLoop.h"
#include "keyboard/PlayedLog.h"
#include "keyboard/Quantiser.h"
#include "keyboard/TempoFinder.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

using namespace velmora;

namespace {
/// Quarters and eighths at 120 beats a minute, somewhat beside the beat.
std::vector<PlayedNote> played(double seconds) {
    std::vector<PlayedNote> notes;
    std::minstd_rand random(1);
    std::normal_distribution<double> jitter(0, 0.02);
    double moment = 1;
    while (moment < seconds) {
        const double length = random() % 3 == 0 ? 0.5 : 0.25;
        const double onset = moment + jitter(random);
        notes.push_back({.onset = onset, .end = onset + length * 0.9});
        moment += length;
    }
    return notes;
}

void findTempoAndGrid(benchmark::State& state) {
    const auto notes = played(static_cast<double>(state.range(0)));
    for (auto _ : state) {
        const Pulse pulse = findPulse(onsetsOf(notes), {});
        benchmark::DoNotOptimize(simplestGrid(notes, pulse, {}));
    }
    state.counters["notes"] = static_cast<double>(notes.size());
}
BENCHMARK(findTempoAndGrid)->ArgName("seconds")->Arg(6)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond);

/// Each press of Finer does this.
void quantiseAgain(benchmark::State& state) {
    const auto notes = played(static_cast<double>(state.range(0)));
    const Pulse pulse = findPulse(onsetsOf(notes), {});
    for (auto _ : state)
        benchmark::DoNotOptimize(quantise(notes, pulse, {}, NoteGrid::ThirtySecond, NoteLengths::Legato));
}
BENCHMARK(quantiseAgain)->ArgName("seconds")->Arg(6)->Arg(600)->Unit(benchmark::kMillisecond);

void strikeInTheLog(benchmark::State& state) {
    const QTemporaryDir home{QStringLiteral("velmora_bench_XXXXXX")};
    VirtualLoop loop;
    PlayedLog log(home.filePath("played").toStdString(), loop);
    for (auto _ : state) {
        loop.block(0.5);
        log.struck(0, 60, 90, 0, loop.now());
        log.ended(0, 60, loop.now());
    }
}
BENCHMARK(strikeInTheLog)->Unit(benchmark::kNanosecond);
} // namespace
