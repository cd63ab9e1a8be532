// SPDX-License-Identifier: GPL-2.0-or-later
// What a recording costs: the processor while music plays, alone and recorded, as a share of a core; the
// level meters; and how fast a take is written where no clock holds it, beside writing the same bytes.
#include "sound/AudioOutput.h"
#include "sound/VirtualMix.h"
#include "studio/Capture.h"
#include "studio/LevelMeter.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace velmora;

namespace {
constexpr std::array kClockOnly{AudioDriverRow{"none", makeNullDriver}};
constexpr double kPlayed = 4; ///< seconds

/// Something that sounds and costs next to nothing.
struct Hum : AudioSource {
    Hum() {
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] =
                static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * static_cast<double>(i) / 100));
    }
    void render(const AudioBlock& block) noexcept override {
        for (int i = 0; i < 2 * block.frames; ++i)
            block.samples[i] += table[static_cast<std::size_t>(at++ % 100)];
    }
    std::array<float, 100> table{};
    int at = 0;
};

double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::filesystem::path takeFile() {
    return std::filesystem::temp_directory_path() / "velmora-bench-take.wav";
}

enum class Taken { Nothing, AsItIs, AtAnotherRate };

void playing(benchmark::State& state, Taken taken) {
    AudioOutput output({.stream = {}, .drivers = kClockOnly, .times = {}});
    Hum hum;
    output.add(hum);
    double share = 0;
    for (auto _ : state) {
        std::optional<Capture> capture;
        if (taken != Taken::Nothing) {
            capture.emplace(output, takeFile());
            if (taken == Taken::AtAnotherRate)
                capture->setFormat({48000, 16, 2});
            if (!capture->record().empty())
                state.SkipWithError("it doesn't record");
        }
        const double begin = processorSeconds();
        std::this_thread::sleep_for(std::chrono::duration<double>(kPlayed));
        share = (processorSeconds() - begin) / kPlayed;
    }
    output.remove(hum);
    state.counters["percent_of_a_core"] = 100 * share;
    std::filesystem::remove(takeFile());
}
BENCHMARK_CAPTURE(playing, alone, Taken::Nothing)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(playing, recorded, Taken::AsItIs)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(playing, recorded_at_48000, Taken::AtAnotherRate)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void meter(benchmark::State& state) {
    LevelMeter levels;
    const std::vector<float> block(2048, 0.25F);
    for (auto _ : state)
        levels.hear(block);
    const double played = static_cast<double>(state.iterations()) * 1024 / kAudioRate;
    state.counters["times_real_time"] = benchmark::Counter(played, benchmark::Counter::kIsRate);
}
BENCHMARK(meter);

constexpr std::int64_t kTake = std::int64_t{3} * 60 * kAudioRate; ///< frames of three minutes

void captureWithoutAClock(benchmark::State& state) {
    for (auto _ : state) {
        VirtualMix mix;
        Hum hum;
        mix.add(hum);
        Capture capture(mix, takeFile());
        if (!capture.record().empty())
            state.SkipWithError("it doesn't record");
        mix.advance(kTake);
        capture.stop();
        mix.remove(hum);
    }
    state.counters["times_real_time"] =
        benchmark::Counter(180.0 * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    std::filesystem::remove(takeFile());
}
BENCHMARK(captureWithoutAClock)->Unit(benchmark::kMillisecond)->UseRealTime();

void mixWithoutAClockFloor(benchmark::State& state) {
    for (auto _ : state) {
        VirtualMix mix;
        Hum hum;
        mix.add(hum);
        mix.advance(kTake);
        mix.remove(hum);
    }
}
BENCHMARK(mixWithoutAClockFloor)->Unit(benchmark::kMillisecond);

void sameBytesFloor(benchmark::State& state) {
    const std::vector<char> block(4096);
    for (auto _ : state) {
        std::ofstream file(takeFile(), std::ios::binary);
        for (std::int64_t frames = 0; frames < kTake; frames += 1024)
            file.write(block.data(), 4096);
    }
    std::filesystem::remove(takeFile());
}
BENCHMARK(sameBytesFloor)->Unit(benchmark::kMillisecond);
} // namespace
