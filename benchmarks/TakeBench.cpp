// SPDX-License-Identifier: GPL-2.0-or-later
// Making a score of a take of ten minutes, 60,000 ticks: as it is played, and as one note that is held;
// beside what reading the trace once costs.
#include "keyboard/Take.h"

#include <benchmark/benchmark.h>

#include <numeric>
#include <random>

using namespace velmora;

namespace {
constexpr int kTicks = 60'000;

/// Runs of up to so many ticks.
Take takeOf(unsigned longest) {
    std::mt19937 random(1);
    Take take;
    while (take.size() < kTicks) {
        const auto row = static_cast<std::int32_t>(48 + random() % 44);
        const auto length = 1 + random() % longest;
        for (unsigned tick = 0; tick < length && take.size() < kTicks; ++tick) {
            take.List1.push_back(row == 60 ? static_cast<std::int32_t>(tick + 1) : 0);
            take.List3.push_back(row);
        }
    }
    return take;
}

void convertTake(benchmark::State& state) {
    const Take take = takeOf(static_cast<unsigned>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(ConvertRecording(take, 2.5, 0));
}
BENCHMARK(convertTake)
    ->ArgName("longest_run")
    ->Arg(5)
    ->Arg(80)
    ->Arg(2 * kTicks)
    ->Unit(benchmark::kMillisecond);

void convertTakeFloor(benchmark::State& state) {
    const Take take = takeOf(80);
    for (auto _ : state)
        benchmark::DoNotOptimize(std::accumulate(take.List3.begin(), take.List3.end(), 0));
}
BENCHMARK(convertTakeFloor)->Unit(benchmark::kMillisecond);
} // namespace
