// SPDX-License-Identifier: GPL-2.0-or-later
// How long until a window stands painted on a bare X server, beside a plain window of Qt's with as many
// children.
#include "BareServer.h"
#include "base/SteadyClock.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace {

struct Shown {
    double seconds = -1;
    long kib = 0;
    int children = 0;
};

Shown show(const std::string& what, int children) {
    static const velmora::BareServer server;
    static const std::string folder =
        (std::filesystem::temp_directory_path() / "velmora-start-bench").string();
    std::filesystem::create_directories(folder);
    const auto moment = static_cast<long long>(velmora::steadySeconds() * 1e9);
    const std::string command = "exec env DISPLAY=" + server.display() +
                                " QT_QPA_PLATFORM=xcb VELMORA_HOME=" + folder + " XDG_CONFIG_HOME=" + folder +
                                " PULSE_SERVER=none " VELMORA_START_PROBE " " + std::to_string(moment) + ' ' +
                                what + ' ' + std::to_string(children) + " 2>/dev/null";
    Shown shown;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
    if (!output || std::fscanf(output.get(), "%lf %ld %d", &shown.seconds, &shown.kib, &shown.children) != 3)
        shown.seconds = -1;
    return shown;
}

void windowStart(benchmark::State& state, const std::string& window, const std::string& plain) {
    const int children = show(window, 0).children;
    double ours = 0;
    double theirs = 0;
    long kib = 0;
    for (auto _ : state) {
        const Shown one = show(window, 0);
        const Shown other = show(plain, children);
        if (one.seconds < 0 || other.seconds < 0) {
            state.SkipWithError("A window did not come up; is Xvfb installed?");
            return;
        }
        state.SetIterationTime(one.seconds);
        ours += one.seconds;
        theirs += other.seconds;
        kib = one.kib;
    }
    state.counters["plain_ms"] = theirs / static_cast<double>(state.iterations()) * 1e3;
    state.counters["ratio"] = ours / theirs;
    state.counters["MiB"] = static_cast<double>(kib) / 1024;
    state.counters["children"] = children;
}

BENCHMARK_CAPTURE(windowStart, openerF, "opener", "plain")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);
BENCHMARK_CAPTURE(windowStart, form1, "form1", "plain-later")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);

void skinChange(benchmark::State& state) {
    for (auto _ : state) {
        const Shown shown = show("skins", 0);
        if (shown.seconds < 0) {
            state.SkipWithError("The windows did not come up; is Xvfb installed?");
            return;
        }
        state.SetIterationTime(shown.seconds);
    }
}
BENCHMARK(skinChange)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
