// SPDX-License-Identifier: GPL-2.0-or-later
// How late the event loop ends a wait, and what waiting costs. Moments are judged from the beginning of the
// whole, so that a loop that falls behind shows; each step does a little work, as a step of playing does.
// Steps are shorter than any of playing's, so that there are thousands.
#include "Share.h"
#include "base/QtMessageLoop.h"
#include "base/SteadyClock.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <ctime>
#include <vector>

using namespace velmora;

namespace {
constexpr double kStepSeconds = 0.005;
constexpr double kWorkSeconds = 0.0005;
constexpr int kSteps = 3000;

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

void work() {
    for (const double end = steadySeconds() + kWorkSeconds; steadySeconds() < end;) {
    }
}

/// Times @p wait, a call that returns at a moment, and counts lateness in microseconds and processor time,
/// the work left out, in percent of one core.
template<class Wait>
void measureSteps(benchmark::State& state, Wait wait) {
    std::vector<double> late;
    const double processorBefore = threadSeconds();
    const double before = steadySeconds();
    for (auto _ : state) {
        const double due = before + kStepSeconds * static_cast<double>(late.size() + 1);
        wait(due);
        late.push_back(1e6 * (steadySeconds() - due));
        work();
    }
    const double worked = kWorkSeconds * static_cast<double>(late.size());
    state.counters["cpu_percent"] =
        100 * (threadSeconds() - processorBefore - worked) / (steadySeconds() - before);
    state.counters["late_p50_us"] = shareOf(late, 0.5);
    state.counters["late_p99_us"] = shareOf(late, 0.99);
    state.counters["late_worst_us"] = shareOf(late, 1);
}

void stepInQtsEventLoop(benchmark::State& state) {
    int argumentCount = 1;
    char name[] = "bench";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    QtMessageLoop loop;
    measureSteps(state, [&](double due) { loop.serveUntil(due); });
}
BENCHMARK(stepInQtsEventLoop)->Iterations(kSteps)->UseRealTime();

/// The floor: nothing is served.
void stepBySleepingAndPolling(benchmark::State& state) {
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
BENCHMARK(stepBySleepingAndPolling)->Iterations(kSteps)->UseRealTime();
} // namespace
