// SPDX-License-Identifier: GPL-2.0-or-later
// How long until a window stands painted on a bare X server, in turns with a window of Qt's own with as many
// children, of a program that is nothing else.
#include "BareServer.h"
#include "Share.h"
#include "base/SteadyClock.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {
using velmora::shareOf;

struct Shown {
    double seconds = -1;
    long kib = 0;
    int children = 0;
};

/// @param words what the program is told after the moment of its start
Shown show(const std::string& program, const std::string& words) {
    static const velmora::BareServer server;
    static const std::string folder =
        (std::filesystem::temp_directory_path() / "velmora-start-bench").string();
    std::filesystem::create_directories(folder);
    const auto moment = static_cast<long long>(velmora::steadySeconds() * 1e9);
    const std::string command = "exec env DISPLAY=" + server.display() +
                                " QT_QPA_PLATFORM=xcb VELMORA_HOME=" + folder + " XDG_CONFIG_HOME=" + folder +
                                " PULSE_SERVER=none " + program + " " + std::to_string(moment) + ' ' + words +
                                " 2>/dev/null";
    Shown shown;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
    if (!output || std::fscanf(output.get(), "%lf %ld %d", &shown.seconds, &shown.kib, &shown.children) != 3)
        shown.seconds = -1;
    return shown;
}

Shown showOurs(const std::string& window) {
    return show(VELMORA_START_PROBE, window);
}

void windowStart(benchmark::State& state, const std::string& window, const std::string& bare) {
    const Shown first = showOurs(window);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (auto _ : state) {
        const Shown one = showOurs(window);
        const Shown other = show(VELMORA_BARE_WINDOW, bare + ' ' + std::to_string(first.children));
        if (one.seconds < 0 || other.seconds < 0) {
            state.SkipWithError("A window did not come up; is Xvfb installed?");
            return;
        }
        state.SetIterationTime(one.seconds);
        ours.push_back(one.seconds * 1e3);
        theirs.push_back(other.seconds * 1e3);
    }
    state.counters["p50_ms"] = shareOf(ours, 0.5);
    state.counters["worst_ms"] = shareOf(ours, 1);
    state.counters["bare_ms"] = shareOf(theirs, 0.5);
    state.counters["ratio"] = shareOf(ours, 0.5) / shareOf(theirs, 0.5);
    state.counters["MiB"] = static_cast<double>(first.kib) / 1024;
    state.counters["children"] = first.children;
}

BENCHMARK_CAPTURE(windowStart, openerF, "opener", "start")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(25);
BENCHMARK_CAPTURE(windowStart, form1, "form1", "later")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);
BENCHMARK_CAPTURE(windowStart, form1_by_Return, "return 500", "later")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);
BENCHMARK_CAPTURE(windowStart, form1_by_quick_Return, "return 20", "later")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);

void skinChange(benchmark::State& state) {
    for (auto _ : state) {
        const Shown shown = showOurs("skins");
        if (shown.seconds < 0) {
            state.SkipWithError("The windows did not come up; is Xvfb installed?");
            return;
        }
        state.SetIterationTime(shown.seconds);
    }
}
BENCHMARK(skinChange)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
