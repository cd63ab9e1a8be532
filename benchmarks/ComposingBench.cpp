// SPDX-License-Identifier: GPL-2.0-or-later
// How quickly the composing window answers, on a bare X server.
#include "WindowProbe.h"

#include <benchmark/benchmark.h>

#include <array>
#include <csignal>
#include <sys/wait.h>

namespace {

/// A hand that moves the mouse over the toolbars, as long as it lives.
class RestlessMouse {
public:
    explicit RestlessMouse(const std::string& display) : process_(fork()) {
        if (process_ != 0)
            return;
        setpgid(0, 0);
        setenv("DISPLAY", display.c_str(), 1);
        // One process, so that the mouse alone is what disturbs.
        execlp("sh", "sh", "-c",
               "i=0; while [ $i -lt 9000 ]; do i=$((i + 1)); x=$((20 + i * 7 % 1200)); "
               "echo \"mousemove $x $((60 + x % 90))\"; echo 'sleep 0.01'; done | xdotool -",
               static_cast<char*>(nullptr));
        _exit(127);
    }
    ~RestlessMouse() {
        if (process_ > 0) {
            kill(-process_, SIGTERM);
            waitpid(process_, nullptr, 0);
        }
    }
    RestlessMouse(const RestlessMouse&) = delete;
    RestlessMouse& operator=(const RestlessMouse&) = delete;

private:
    pid_t process_;
};

/// The three numbers of the probe as counters of these names.
void probe(benchmark::State& state, const std::string& words, const std::array<const char*, 3>& names) {
    velmora::probeWindow(state, VELMORA_COMPOSING_PROBE, words, names);
}

void composingPress(benchmark::State& state) {
    probe(state, "press", {"press_to_port_us", "drag_step_us", "release_us"});
}
BENCHMARK(composingPress)->Iterations(1);

void composingPressByHand(benchmark::State& state) {
    probe(state, "hand", {"hand_to_port_p50_us", "hand_to_port_p99_us", "hand_to_port_worst_us"});
}
BENCHMARK(composingPressByHand)->Iterations(1);

void composingOpen(benchmark::State& state) {
    probe(state, "open " + std::to_string(state.range(0)), {"open_ms", "clear_ms", "undo_ms"});
}
BENCHMARK(composingOpen)->ArgName("positions")->Arg(1000)->Arg(32767)->Arg(200000)->Iterations(1);

void composingScroll(benchmark::State& state) {
    probe(state, "scroll", {"scroll_ms", "scroll_worst_ms", "steps_a_second"});
}
BENCHMARK(composingScroll)->Iterations(1);

void composingPlayForAMinute(benchmark::State& state) {
    const RestlessMouse mouse(velmora::bareServer().display());
    probe(state, "play 60", {"late_p50_us", "late_p99_us", "slower_percent"});
}
BENCHMARK(composingPlayForAMinute)->Iterations(1);

/// Each step waits its time after its work.
void composingPlayForAMinuteInClassicManners(benchmark::State& state) {
    const RestlessMouse mouse(velmora::bareServer().display());
    probe(state, "play 60 500 classic", {"late_p50_us", "late_p99_us", "slower_percent"});
}
BENCHMARK(composingPlayForAMinuteInClassicManners)->Iterations(1);

} // namespace
