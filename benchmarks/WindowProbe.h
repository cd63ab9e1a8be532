// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "BareServer.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace velmora {

/// The one that all probes of windows use.
inline const BareServer& bareServer() {
    static const BareServer bare;
    return bare;
}

/// Runs a program with these words on the bare server; the three numbers that it prints are counters of these
/// names. A blank name leaves its number out.
inline void probeWindow(benchmark::State& state, const std::string& program, const std::string& words,
                        const std::array<const char*, 3>& names) {
    const std::string command = "exec env DISPLAY=" + bareServer().display() + " QT_QPA_PLATFORM=xcb " +
                                program + " " + words + " 2>/dev/null";
    std::array<double, 3> numbers{-1, -1, -1};
    for (auto _ : state) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
        if (!output || std::fscanf(output.get(), "%lf %lf %lf", &numbers[0], &numbers[1], &numbers[2]) != 3) {
            state.SkipWithError("The window did not come up; is Xvfb installed?");
            return;
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        if (*names[i])
            state.counters[names[i]] = numbers[i];
}

} // namespace velmora
