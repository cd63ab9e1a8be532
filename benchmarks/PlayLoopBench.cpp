// SPDX-License-Identifier: GPL-2.0-or-later
// How late a step of playing begins, and what waiting for it costs. A step of the fastest usual score is 27.6
// ms.
#include "base/QtMessageLoop.h"
#include "base/SteadyClock.h"
#include "score/StopWatch.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <vector>

using namespace velmora;

namespace {
constexpr double kStepSeconds = 0.0276;
constexpr int kSteps = 150;

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Times @p wait, a call that returns after one step, and counts lateness in microseconds and processor time
/// in percent of one core.
template<class Wait>
void measureSteps(benchmark::State& state, Wait wait) {
    std::vector<double> late;
    const double processorBefore = threadSeconds();
    const double before = steadySeconds();
    for (auto _ : state) {
        const double due = steadySeconds() + kStepSeconds;
        wait(due);
        late.push_back(1e6 * (steadySeconds() - due));
    }
    state.counters["cpu_percent"] = 100 * (threadSeconds() - processorBefore) / (steadySeconds() - before);
    std::ranges::sort(late);
    const auto last = static_cast<double>(late.size() - 1);
    state.counters["late_p50_us"] = late[static_cast<std::size_t>(std::lround(0.5 * last))];
    state.counters["late_p99_us"] = late[static_cast<std::size_t>(std::lround(0.99 * last))];
}

void StepOnAStopWatchInQtsEventLoop(benchmark::State& state) {
    int argumentCount = 1;
    char name[] = "bench";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    QtMessageLoop loop;
    mStopWatch watches(loop);
    const int watch = watches.create();
    watches.start(watch);
    measureSteps(state, [&](double) { watches.WaitSeconds(watch, kStepSeconds); });
}
BENCHMARK(StepOnAStopWatchInQtsEventLoop)->Iterations(kSteps)->UseRealTime();

/// The floor: nothing is served.
void StepBySleepingAndPolling(benchmark::State& state) {
    measureSteps(state, [](double due) {
        const double wake = due - 0.0001;
        const auto seconds = static_cast<time_t>(wake);
        const timespec time{.tv_sec = seconds,
                            .tv_nsec = static_cast<long>(1e9 * (wake - static_cast<double>(seconds)))};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
        while (steadySeconds() < due) {
        }
    });
}
BENCHMARK(StepBySleepingAndPolling)->Iterations(kSteps)->UseRealTime();
} // namespace
