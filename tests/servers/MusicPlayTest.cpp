// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SteadyClock.h"
#include "sound/AudioOutput.h"
#include "studio/MusicPlayer.h"
#include "tests/servers/MonitorRecorder.h"
#include "tests/servers/PulseServer.h"
#include "tests/studio/TestWaves.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <utility>
#include <vector>

using namespace velmora;
using namespace velmora::testwaves;

namespace {
struct MusicPlayTest : testing::Test {
    PulseServer server;
    QTemporaryDir folder;

    std::filesystem::path file(const std::string& name, const std::vector<std::int16_t>& values) {
        const std::filesystem::path path = folder.filePath(name.c_str()).toStdString();
        std::ofstream(path, std::ios::binary) << wavOf(values);
        return path;
    }

    /// What the sink's monitor has of what @p act does with a player of the files; once more if the server
    /// ran dry, as it may on a machine that is held up for longer than the buffer lasts.
    std::vector<float> recordingOf(const std::vector<std::filesystem::path>& files,
                                   const std::function<void(MusicPlayer&)>& act) {
        server.start();
        for (int attempt = 0; attempt < 60; ++attempt) {
            AudioOutput output({.stream = {.buffer = 0.1}});
            EXPECT_TRUE(within(3, [&] { return output.figures().driver == "pulse"; }));
            MonitorRecorder recorder;
            const OpenedMusic opened = MusicPlayer::openRow(files, output);
            EXPECT_EQ(opened.error, "");
            act(*opened.player);
            const std::size_t end = recorder.frames() + AudioOutput::kRate / 4; // what is still on its way
            EXPECT_TRUE(within(3, [&] { return recorder.frames() > end; }));
            if (output.figures().underruns == 0)
                return recorder.samples();
        }
        ADD_FAILURE() << "the server ran dry in each of sixty runs";
        return {};
    }
};

void playWhole(MusicPlayer& player) {
    ASSERT_TRUE(player.play(0, player.length()));
    ASSERT_TRUE(within(5, [&] { return player.mode() == MediaMode::Stopped; }));
    EXPECT_EQ(player.position(), player.length());
}

/// Where sound begins and ends, without the silence around it.
std::vector<float> soundOf(const std::vector<float>& samples) {
    const auto sounds = [](float sample) { return sample != 0; };
    const auto begin = std::ranges::find_if(samples, sounds);
    const auto end = std::find_if(samples.rbegin(), samples.rend(), sounds).base();
    return begin < end ? std::vector<float>(begin, end) : std::vector<float>();
}
} // namespace

TEST_F(MusicPlayTest, ASoundFileReachesTheServerBitForBit) {
    const std::vector<std::int16_t> values = noise(44'100, 1);
    EXPECT_TRUE(soundOf(recordingOf({file("a.wav", values)}, playWhole)) == exact(values));
}

TEST_F(MusicPlayTest, NothingStandsBetweenTheFilesOfARow) {
    const std::vector<std::int16_t> one = noise(10'001, 2);
    const std::vector<std::int16_t> two = noise(20'000, 3);
    std::vector<float> both = exact(one);
    for (const float sample : exact(two))
        both.push_back(sample);
    EXPECT_TRUE(soundOf(recordingOf({file("1.wav", one), file("2.wav", two)}, playWhole)) == both);
}

TEST_F(MusicPlayTest, APauseIsSilentAndLosesNoFrame) {
    const std::vector<std::int16_t> values = noise(44'100, 4);
    std::int64_t paused = 0;
    const std::vector<float> heard = recordingOf({file("a.wav", values)}, [&](MusicPlayer& player) {
        ASSERT_TRUE(player.play(0, player.length()));
        ASSERT_TRUE(within(5, [&] { return player.position() > 10'000; }));
        ASSERT_TRUE(player.pause());
        paused = player.position();
        const double begin = steadySeconds();
        ASSERT_TRUE(within(5, [&] { return steadySeconds() - begin > 0.3; }));
        EXPECT_EQ(player.position(), paused);
        ASSERT_TRUE(player.resume());
        ASSERT_TRUE(within(5, [&] { return player.mode() == MediaMode::Stopped; }));
    });
    const std::vector<float> sound = soundOf(heard);
    const std::vector<float> whole = exact(values);
    const auto seam = static_cast<std::ptrdiff_t>(2 * paused);
    ASSERT_GT(sound.size(), whole.size());
    EXPECT_TRUE(std::equal(whole.begin(), whole.begin() + seam, sound.begin()));
    EXPECT_TRUE(std::equal(whole.rbegin(), whole.rend() - seam, sound.rbegin()));
    const auto gap = static_cast<std::ptrdiff_t>(sound.size() - whole.size());
    EXPECT_GT(gap, 2 * 44'100 / 5);
    // The way to silence, then silence.
    EXPECT_TRUE(std::all_of(sound.begin() + seam + 2 * 300, sound.begin() + seam + gap,
                            [](float sample) { return sample == 0; }));
}
