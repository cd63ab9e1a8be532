// SPDX-License-Identifier: GPL-2.0-or-later
// How quickly the keyboard's window answers, on a bare X server.
#include "WindowProbe.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace {

void probe(benchmark::State& state, const std::string& words, const std::array<const char*, 3>& names) {
    velmora::probeWindow(state, VELMORA_KEYBOARD_PROBE, words, names);
}

void keyboardStrikeByHand(benchmark::State& state) {
    probe(state, "hand", {"event_to_port_p50_us", "event_to_port_p99_us", "event_to_port_worst_us"});
}
BENCHMARK(keyboardStrikeByHand)->Iterations(1);

void keyboardSamplesWhileKeysAreStruck(benchmark::State& state) {
    probe(state, "sample", {"late_p50_us", "late_p99_us", "late_worst_us"});
}
BENCHMARK(keyboardSamplesWhileKeysAreStruck)->Iterations(1);

void keyboardIdleWithMetronome(benchmark::State& state) {
    probe(state, "idle", {"core_percent", "", ""});
}
BENCHMARK(keyboardIdleWithMetronome)->Iterations(1);

void keyboardKeyPainted(benchmark::State& state) {
    probe(state, "paint", {"white_us", "black_us", "p99_us"});
}
BENCHMARK(keyboardKeyPainted)->Iterations(1);

void keyboardOpen(benchmark::State& state) {
    probe(state, "open", {"open_ms", "plain_window_ms", "ratio"});
}
BENCHMARK(keyboardOpen)->Iterations(1);

} // namespace
