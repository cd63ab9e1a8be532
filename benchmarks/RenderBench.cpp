// SPDX-License-Identifier: GPL-2.0-or-later
// Sound files of three dense minutes, beside what the stock commands take for the same music. All are whole
// commands whose result is on the disk at the end; each round runs them in turn, so that other work on the
// machine meets all of them, and the medians of the ratios, round by round, are told.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr int kRounds = 5;
const std::string kProbe = VELMORA_RENDER_PROBE;
const std::string kSoundFont = "/usr/share/sounds/sf2/FluidR3_GM.sf2";

struct Cost {
    double seconds = 0;
    double processor = 0; ///< seconds of all threads
    double megabytes = 0; ///< the most that one process had resident
    bool done = false;
};

Cost command(const std::string& line) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", ("{ " + line + "; } >/dev/null 2>&1").c_str(), nullptr);
        _exit(127);
    }
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

/// A folder with the music; removed at the end.
class Workshop {
public:
    Workshop() {
        std::string name = (std::filesystem::temp_directory_path() / "velmora-bench-XXXXXX").string();
        folder_ = mkdtemp(name.data());
        command(kProbe + " " + folder_.string());
    }
    ~Workshop() { std::filesystem::remove_all(folder_); }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    [[nodiscard]] std::string path(const char* name) const { return (folder_ / name).string(); }

private:
    std::filesystem::path folder_;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

using Commands = std::vector<std::pair<std::string, std::string>>; ///< name of a way, and its line

/// The last of the commands is ours.
void beside(benchmark::State& state, const Commands& commands) {
    std::vector<std::vector<double>> ratios(commands.size());
    std::vector<std::vector<double>> seconds(commands.size());
    Cost ours;
    for (auto unused : state) {
        (void)unused;
        std::vector<double> round;
        for (const auto& [name, line] : commands) {
            ours = command(line);
            if (!ours.done)
                return state.SkipWithError((name + " failed; is it installed, and the SoundFont?").c_str());
            round.push_back(ours.seconds);
        }
        state.SetIterationTime(ours.seconds);
        for (std::size_t i = 0; i < commands.size(); ++i) {
            seconds[i].push_back(round[i]);
            ratios[i].push_back(ours.seconds / round[i]);
        }
    }
    for (std::size_t i = 0; i < commands.size(); ++i) {
        state.counters[commands[i].first + "_s"] = median(seconds[i]);
        if (i + 1 < commands.size())
            state.counters["of_" + commands[i].first] = median(ratios[i]);
    }
    state.counters["cpu_s"] = ours.processor;
    state.counters["MB"] = ours.megabytes;
}

/// A file of the one workshop.
std::string file(const char* name) {
    static const Workshop workshop;
    return workshop.path(name);
}

std::string synth(const std::string& settings) {
    return "fluidsynth -niq " + settings + " -F " + file("stock.wav") + " " + kSoundFont + " " +
           file("dense.mid");
}

std::string thenFlush(const std::string& line, const char* name) {
    return line + " && sync -d " + file(name);
}

std::string ours(const char* name) {
    return kProbe + " " + file(name) + " " + kSoundFont;
}

void renderWav(benchmark::State& state) {
    const std::string tuning = "-o synth.cpu-cores=2 -o synth.dynamic-sample-loading=1 -z 4096";
    beside(state, {{"stock", thenFlush(synth(""), "stock.wav")},
                   {"tuned", thenFlush(synth(tuning), "stock.wav")},
                   {"ours", ours("ours.wav")}});
}
BENCHMARK(renderWav)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);

void renderMp3(benchmark::State& state) {
    const std::string lame = "lame --quiet -b 224 " + file("stock.wav") + " " + file("stock.mp3");
    beside(state, {{"stock", thenFlush(synth("") + " && " + lame, "stock.mp3")}, {"ours", ours("ours.mp3")}});
}
BENCHMARK(renderMp3)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);
} // namespace
