// SPDX-License-Identifier: GPL-2.0-or-later
// Sound files of three dense minutes, beside what the stock commands take for the same music.
#include "DenseScore.h"
#include "studio/Mp3File.h"
#include "studio/OfflineRender.h"
#include "studio/WavFile.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <map>

using namespace velmora;

namespace {
constexpr double kSeconds = 180;
constexpr const char* kSoundFont = "/usr/share/sounds/sf2/FluidR3_GM.sf2";

/// The score and a folder for what is made of it; removed at the end.
struct Workshop {
    DenseScore score = makeDenseScore(kSeconds);
    std::filesystem::path folder;

    Workshop() {
        std::string name = (std::filesystem::temp_directory_path() / "velmora-bench-XXXXXX").string();
        folder = mkdtemp(name.data());
        std::ofstream(folder / "dense.mid", std::ios::binary) << score.midiFile;
    }
    ~Workshop() { std::filesystem::remove_all(folder); }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    [[nodiscard]] std::string path(const char* name) const { return (folder / name).string(); }
};
const Workshop& workshop() {
    static const Workshop only;
    return only;
}

struct Cost {
    double seconds = 0;
    double processor = 0; ///< seconds of all threads: what a busy machine can't distort much
    double megabytes = 0; ///< the most that was resident
    bool done = false;
};

/// Runs a piece of work in a process of its own.
Cost inChild(const std::function<bool()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    const auto total = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return {taken.count(), total(usage.ru_utime) + total(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024, WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

Cost command(std::string line) {
    return inChild([&line] {
        line += " >/dev/null 2>&1";
        execl("/bin/sh", "sh", "-c", ("exec " + line).c_str(), nullptr);
        return false;
    });
}

bool ours(SampleSink&& sink) {
    const RenderResult result = renderOffline(workshop().score.messages, sink, {.soundFont = kSoundFont});
    std::fputs(result.error.c_str(), stderr);
    return result.end == RenderResult::End::Done;
}

/// One way to a sound file. The fastest run of each is kept, as other work on the machine only ever adds;
/// ours, which come after the stock way, tell the ratio.
struct Way {
    const char* name;
    std::function<Cost()> run;
    const char* beside; ///< the stock way to compare with; blank for a stock way
};

std::map<std::string, double> fastest;

void measure(benchmark::State& state, const Way& way) {
    double most = 0;
    double least = std::numeric_limits<double>::infinity();
    double processor = 0;
    for (auto unused : state) {
        (void)unused;
        const Cost cost = way.run();
        if (!cost.done)
            return state.SkipWithError("it failed; are the SoundFont and the stock commands installed?");
        state.SetIterationTime(cost.seconds);
        least = std::min(least, cost.seconds);
        processor += cost.processor;
        most = std::max(most, cost.megabytes);
    }
    fastest[way.name] = least;
    state.counters["fastest_s"] = least;
    state.counters["MB"] = most;
    state.counters["cpu_s"] = processor / static_cast<double>(state.iterations());
    if (*way.beside)
        state.counters["ratio"] = least / fastest[way.beside];
}

std::string synthCommand(const char* settings) {
    return std::string("fluidsynth -niq ") + settings + " -F " + workshop().path("stock.wav") + " " +
           kSoundFont + " " + workshop().path("dense.mid");
}

const Way kWays[] = {
    {"Wav/fluidsynth", [] { return command(synthCommand("")); }, ""},
    {"Wav/fluidsynth, tuned",
     [] { return command(synthCommand("-o synth.cpu-cores=2 -o synth.dynamic-sample-loading=1 -z 4096")); },
     ""},
    {"Wav/ours", [] { return inChild([] { return ours(WavFile(workshop().path("ours.wav"))); }); },
     "Wav/fluidsynth"},
    {"Mp3/fluidsynth, then lame",
     [] {
         const Cost sound = command(synthCommand(""));
         const Cost music = command("lame --quiet -b 224 " + workshop().path("stock.wav") + " " +
                                    workshop().path("stock.mp3"));
         return Cost{sound.seconds + music.seconds, sound.processor + music.processor,
                     std::max(sound.megabytes, music.megabytes), sound.done && music.done};
     },
     ""},
    {"Mp3/ours", [] { return inChild([] { return ours(Mp3File(workshop().path("ours.mp3"))); }); },
     "Mp3/fluidsynth, then lame"},
};

[[maybe_unused]] const bool registered = [] {
    for (const Way& way : kWays) {
        benchmark::RegisterBenchmark((std::string("Render/") + way.name).c_str(), measure, way)
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();
} // namespace
