// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/SampleSink.h"

#include <QTemporaryDir>

#include <sys/wait.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <numbers>
#include <vector>

namespace velmora::testsinks {

/// Keeps what it is given.
struct KeepingSink : SampleSink {
    std::string open() override { return openError; }
    std::string write(std::span<const float> interleaved) override {
        samples.insert(samples.end(), interleaved.begin(), interleaved.end());
        ++writes;
        return writes == failAt ? "the disk is on fire" : "";
    }
    std::string finish() override {
        finished = true;
        return {};
    }

    std::vector<float> samples;
    std::string openError;
    int writes = 0;
    int failAt = -1; ///< counted from 1
    bool finished = false;
};

/// What a command of the system printed, and how it ended: the outside witness of a file.
struct Witness {
    std::string output;
    int exitCode = -1;
};
inline Witness ask(const std::string& command) {
    Witness witness;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return witness;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        witness.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    witness.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return witness;
}

/// A sine at half of full scale, interleaved stereo.
inline std::vector<float> sine(double frequency, int frames) {
    std::vector<float> samples;
    for (int i = 0; i < frames; ++i) {
        const auto value = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * frequency * i / 44100));
        samples.insert(samples.end(), {value, value});
    }
    return samples;
}

/// Opens, writes in blocks of a thousand frames and finishes; the first error, or blank.
inline std::string writeWhole(SampleSink& sink, std::span<const float> samples) {
    if (std::string error = sink.open(); !error.empty())
        return error;
    while (!samples.empty()) {
        const std::span<const float> block = samples.first(std::min<std::size_t>(samples.size(), 2000));
        if (std::string error = sink.write(block); !error.empty())
            return error;
        samples = samples.subspan(block.size());
    }
    return sink.finish();
}

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::size_t filesIn(const std::filesystem::path& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

} // namespace velmora::testsinks
