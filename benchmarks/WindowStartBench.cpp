// SPDX-License-Identifier: GPL-2.0-or-later
// How long until a window stands painted on a bare X server, beside a plain window of Qt's with as many
// children.
#include "shell/SteadyClock.h"

#include <benchmark/benchmark.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

/// An X server of the benchmark's own, as long as it lives.
class BareServer {
public:
    BareServer() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            return;
        process_ = fork();
        if (process_ == 0) {
            const std::string end = std::to_string(ends[1]);
            if (!std::freopen("/dev/null", "w", stderr))
                _exit(126);
            execlp("Xvfb", "Xvfb", "-displayfd", end.c_str(), "-screen", "0", "1366x768x24", "-nolisten",
                   "tcp", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(ends[1]);
        std::array<char, 16> text{};
        if (read(ends[0], text.data(), text.size() - 1) > 0)
            display_ = ":" + std::to_string(std::atoi(text.data()));
        close(ends[0]);
    }
    ~BareServer() {
        if (process_ > 0)
            kill(process_, SIGTERM);
    }
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    [[nodiscard]] const std::string& display() const { return display_; }

private:
    pid_t process_ = -1;
    std::string display_;
};

struct Shown {
    double seconds = -1;
    long kib = 0;
    int children = 0;
};

Shown show(const std::string& what, int children) {
    static const BareServer server;
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
