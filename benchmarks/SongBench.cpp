// SPDX-License-Identifier: GPL-2.0-or-later
// How quickly the Songwriter's window opens, scrolls a page and shows many, on a bare X server.
#include "WindowProbe.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace {

void probe(benchmark::State& state, const std::string& words, const std::array<const char*, 3>& names) {
    velmora::probeWindow(state, VELMORA_SONG_PROBE, words, names);
}

void songOpen(benchmark::State& state) {
    probe(state, "open", {"open_ms", "plain_window_ms", "ratio"});
}
BENCHMARK(songOpen)->Iterations(1);

void songScroll(benchmark::State& state) {
    probe(state, "scroll", {"step_ms", "plain_picture_ms", "pictures_made"});
}
BENCHMARK(songScroll)->Iterations(1);

void songWrite(benchmark::State& state) {
    probe(state, "write " + std::to_string(state.range(0)), {"write_s", "next_page_ms", ""});
}
BENCHMARK(songWrite)->Arg(16'000)->Arg(200'000)->Iterations(1);

} // namespace
