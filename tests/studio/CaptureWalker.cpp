// SPDX-License-Identifier: GPL-2.0-or-later
// Records noise until it is killed, and says what it has heard and when: a moment and a number of frames a
// line. CaptureKillTest kills it.
//
// velmora_capture_walker FILE live         a capture of a live mix without a device
// velmora_capture_walker FILE long BYTES   as quickly as it goes, over and over past so many bytes
#include "base/SteadyClock.h"
#include "sound/AudioOutput.h"
#include "studio/Capture.h"
#include "studio/GrowingWav.h"
#include "tests/studio/CaptureSounds.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

using namespace velmora;
using namespace velmora::testsounds;

namespace {
constexpr std::array kClockOnly{AudioDriverRow{"none", makeNullDriver}};

int recordLive(const std::string& file) {
    AudioOutput output({.stream = {}, .drivers = kClockOnly, .times = {}});
    SamplePlayer player(floatsOf(sixteenBitNoise(2 * 20 * 44'100)));
    Capture capture(output, file);
    if (!capture.record().empty())
        return 1;
    output.add(player);
    for (;;) {
        const std::int64_t frames = capture.frames();
        std::printf("%.6f %lld\n", steadySeconds(), static_cast<long long>(frames));
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

int growLong(const std::string& file, std::uint64_t longest) {
    const auto noise = sixteenBitNoise(2 * 50'000);
    for (int round = 0;; ++round) {
        GrowingWav wav(file, {}, longest);
        if (!wav.open().empty())
            return 1;
        std::printf("%d\n", round);
        std::fflush(stdout);
        for (std::size_t at = 0; at < noise.size(); at += 1000) {
            const auto piece = std::as_bytes(std::span(noise).subspan(at, 1000));
            if (!wav.append(piece).empty() || !wav.tell().empty())
                return 1;
        }
    }
}
} // namespace

int main(int count, char** words) {
    if (count == 3 && std::string(words[2]) == "live")
        return recordLive(words[1]);
    if (count == 4 && std::string(words[2]) == "long")
        return growLong(words[1], std::strtoull(words[3], nullptr, 10));
    return 2;
}
