// SPDX-License-Identifier: GPL-2.0-or-later
// A recording process is killed at any moment, VELMORA_KILLS times (3 unless set): what it recorded opens, in
// other programs too, and is what was played.
#include "base/SteadyClock.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/KilledProcess.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <sndfile.h>
#include <sstream>

using namespace velmora;
using namespace velmora::testsounds;

namespace {
int kills() {
    const char* set = std::getenv("VELMORA_KILLS");
    return set ? std::atoi(set) : 3;
}

/// The frames that the walker had heard a second before that moment.
std::int64_t heardBy(const std::string& said, double moment) {
    std::istringstream lines(said);
    std::int64_t heard = 0;
    double when = 0;
    for (std::int64_t frames = 0; lines >> when >> frames && when <= moment;)
        heard = frames;
    return heard;
}

/// What sox makes of the file.
std::vector<std::int16_t> soxReads(const std::string& file) {
    const std::string raw = file + ".raw";
    const auto witness = testsinks::ask("sox '" + file + "' -t raw -e signed -b 16 '" + raw + "'");
    EXPECT_EQ(witness.exitCode, 0) << witness.output;
    return sixteenBitsOf(bytesOf(raw), 0);
}

/// So many values of the noise at its beginning, after silence.
void expectBeginning(std::vector<std::int16_t> heard, const std::vector<std::int16_t>& noise) {
    const auto isSound = [](std::int16_t value) { return value != 0; };
    heard.erase(heard.begin(), std::find_if(heard.begin(), heard.end(), isSound));
    ASSERT_LE(heard.size(), noise.size());
    EXPECT_TRUE(std::equal(heard.begin(), heard.end(), noise.begin()));
}
} // namespace

TEST(CaptureKillTest, AllButTheLastSecondOfWhatWasRecordedOpensInAnotherProgram) {
    const QTemporaryDir home;
    const std::string file = home.filePath("take.wav").toStdString();
    const auto noise = sixteenBitNoise(2 * 20 * 44'100);
    std::mt19937 random(std::random_device{}());
    for (int round = 0; round < kills(); ++round) {
        const std::chrono::milliseconds after(1300 + random() % 1500);
        const std::string said = linesUntilKilled(VELMORA_CAPTURE_WALKER, {file, "live"}, after);
        const std::int64_t sure = heardBy(said, steadySeconds() - 1);
        const std::string bytes = bytesOf(file);
        ASSERT_GE(bytes.size(), 44U);
        EXPECT_GE(static_cast<std::int64_t>(numberAt(bytes, 40) / 4), sure);
        EXPECT_LE(44 + numberAt(bytes, 40), bytes.size());
        const auto heard = soxReads(file);
        EXPECT_EQ(2 * heard.size(), numberAt(bytes, 40));
        expectBeginning(heard, noise);
    }
}

TEST(CaptureKillTest, AtTheMomentAtWhichAFileBecomesLongItOpensToo) {
    const QTemporaryDir home;
    const std::string file = home.filePath("take.wav").toStdString();
    std::mt19937 random(std::random_device{}());
    for (int round = 0; round < 10 * kills(); ++round) {
        const std::chrono::microseconds after(20'000 + random() % 30'000);
        linesUntilKilled(VELMORA_CAPTURE_WALKER, {file, "long", "20000"}, after);
        if (!std::filesystem::exists(file))
            continue; // it had not begun
        SF_INFO info{};
        SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &info);
        ASSERT_NE(sound, nullptr) << sf_strerror(nullptr);
        EXPECT_EQ(info.channels, 2);
        EXPECT_LE(info.frames, 50'000 + 2'048); // room that was just made may still be empty
        sf_close(sound);
    }
}
