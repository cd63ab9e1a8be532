// SPDX-License-Identifier: GPL-2.0-or-later
// How quickly the Recording Studio's window opens, and what its moving parts cost, on a bare X server.
#include "WindowProbe.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace {

void probe(benchmark::State& state, const std::string& words, const std::array<const char*, 3>& names) {
    velmora::probeWindow(state, VELMORA_RECORD_PROBE, words, names);
}

void recordOpen(benchmark::State& state) {
    probe(state, "open", {"open_ms", "plain_window_ms", "ratio"});
}
BENCHMARK(recordOpen)->Iterations(1);

void recordLevels(benchmark::State& state) {
    probe(state, "levels", {"with_core_percent", "without_core_percent", "core_percent"});
}
BENCHMARK(recordLevels)->Iterations(1);

} // namespace
