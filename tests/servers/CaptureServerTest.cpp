// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AudioOutput.h"
#include "studio/Capture.h"
#include "tests/servers/PulseServer.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/support/Waiting.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

using namespace velmora;
using namespace velmora::testsounds;
using testing::HasSubstr;

namespace {
struct CaptureServerTest : testing::Test {
    PulseServer server;
    QTemporaryDir temporary;
    std::filesystem::path place = temporary.filePath("take.wav").toStdString();
    std::vector<std::int16_t> noise = sixteenBitNoise(2 * 30'000);

    static bool runs(const AudioOutput& output, std::string_view name) {
        return within(4, [&] { return output.figures().driver == name; });
    }
    static bool goesOn(const Capture& capture, std::int64_t frames = 8820) {
        const std::int64_t before = capture.frames();
        return within(3, [&] { return capture.frames() - before >= frames; });
    }
    /// Where in the take that begins, in frames; none if it isn't there whole.
    [[nodiscard]] static std::optional<std::size_t> placeIn(const std::vector<std::int16_t>& take,
                                                            const std::vector<std::int16_t>& played) {
        const auto found = std::search(take.begin(), take.end(), played.begin(), played.end());
        return found == take.end() ? std::nullopt : std::optional((found - take.begin()) / 2);
    }
    void expectWhole() const {
        const std::string bytes = bytesOf(place);
        ASSERT_GE(bytes.size(), 44U);
        EXPECT_EQ(numberAt(bytes, 40), bytes.size() - 44);
    }
};
} // namespace

TEST_F(CaptureServerTest, WhatTheDefaultSinkPlaysIsRecordedFromItsMonitor) {
    server.start();
    ASSERT_TRUE(server.tell({"load-module", "module-null-sink", "sink_name=second", "rate=44100",
                             "channels=2", "format=float32le", "norewinds=1"}));
    ASSERT_TRUE(server.tell({"set-default-sink", "second"}));
    // A machine that is held up has the server run dry, and what was heard then is not what was played.
    for (int round = 0; round < 60; ++round) {
        AudioOutput output({.stream = {.buffer = 0.1}});
        ASSERT_TRUE(runs(output, "pulse"));
        Capture capture(output, place);
        capture.setSource(CaptureSource::Everything);
        ASSERT_EQ(capture.record(), "");
        SamplePlayer player(floatsOf(noise));
        output.add(player);
        ASSERT_TRUE(within(5, [&] { return player.isThrough.load(); }));
        ASSERT_TRUE(goesOn(capture));
        EXPECT_GT(capture.levels().held[0], 0.9F);
        EXPECT_TRUE(capture.stop());
        output.remove(player);
        expectWhole();
        if (output.figures().underruns > 0)
            continue;
        EXPECT_TRUE(placeIn(sixteenBitsOf(bytesOf(place)), noise).has_value());
        return;
    }
    FAIL() << "the server ran dry in each of sixty runs";
}

TEST_F(CaptureServerTest, WhenTheSinkGoesTheTakeEndsInWordsAndDoesNotGoOverToAnotherSource) {
    server.start();
    ASSERT_TRUE(server.tell({"load-module", "module-null-sink", "sink_name=second", "norewinds=1"}));
    ASSERT_TRUE(server.tell({"load-module", "module-rescue-streams"}));
    AudioOutput output;
    ASSERT_TRUE(runs(output, "pulse"));
    Capture capture(output, place);
    capture.setSource(CaptureSource::Everything);
    ASSERT_EQ(capture.record(), "");
    ASSERT_TRUE(goesOn(capture));
    ASSERT_TRUE(server.tell({"set-default-sink", "second"}));
    EXPECT_TRUE(goesOn(capture)); // another default changes nothing
    ASSERT_TRUE(server.tell({"unload-module", "0"}));
    EXPECT_TRUE(within(3, [&] { return !capture.isRecording(); }));
    EXPECT_THAT(capture.problem(), HasSubstr("\"out\" is gone"));
    EXPECT_FALSE(capture.stop());
    EXPECT_THAT(capture.problem(), HasSubstr("\"out\" is gone"));
    expectWhole();
    // From what is the default now it goes on.
    const std::int64_t before = capture.frames();
    EXPECT_EQ(capture.record(), "");
    EXPECT_TRUE(goesOn(capture));
    EXPECT_TRUE(capture.stop());
    EXPECT_GT(capture.frames(), before);
    EXPECT_EQ(capture.problem(), "");
}

TEST_F(CaptureServerTest, WhenTheServerDiesATakeOfEverythingEndsInWordsAndOneOfTheOwnMixGoesOn) {
    server.start();
    noise = sixteenBitNoise(2 * 4 * 44'100);
    AudioOutput output;
    ASSERT_TRUE(runs(output, "pulse"));
    SamplePlayer player(floatsOf(noise));
    Capture everything(output);
    everything.setSource(CaptureSource::Everything);
    Capture own(output, place);
    ASSERT_EQ(everything.record(), "");
    ASSERT_EQ(own.record(), "");
    output.add(player);
    ASSERT_TRUE(goesOn(everything));
    server.kill();
    EXPECT_TRUE(within(3, [&] { return !everything.isRecording(); }));
    EXPECT_THAT(everything.problem(), HasSubstr("server is gone"));
    ASSERT_TRUE(runs(output, "none"));
    server.start(); // and comes late
    ASSERT_TRUE(within(8, [&] { return player.isThrough.load(); }));
    ASSERT_TRUE(goesOn(own));
    EXPECT_TRUE(own.isRecording());
    EXPECT_TRUE(own.stop());
    EXPECT_EQ(own.problem(), "");
    output.remove(player);
    EXPECT_TRUE(placeIn(sixteenBitsOf(bytesOf(place)), noise).has_value());
}

TEST_F(CaptureServerTest, AMutedDesktopIsNoMatterForTheOwnMix) {
    server.start();
    ASSERT_TRUE(server.tell({"set-sink-volume", "out", "20%"}));
    ASSERT_TRUE(server.tell({"set-sink-mute", "out", "1"}));
    AudioOutput output;
    ASSERT_TRUE(runs(output, "pulse"));
    SamplePlayer player(floatsOf(noise));
    Capture everything(output);
    everything.setSource(CaptureSource::Everything);
    Capture own(output, place);
    ASSERT_EQ(everything.record(), "");
    ASSERT_EQ(own.record(), "");
    output.add(player);
    ASSERT_TRUE(within(5, [&] { return player.isThrough.load(); }));
    ASSERT_TRUE(goesOn(own));
    EXPECT_TRUE(own.stop());
    EXPECT_TRUE(everything.isSilent());
    EXPECT_GT(everything.silentSeconds(), 0.3);
    EXPECT_TRUE(everything.stop());
    output.remove(player);
    const auto at = placeIn(sixteenBitsOf(bytesOf(place)), noise);
    ASSERT_TRUE(at.has_value());
    EXPECT_LT(*at, 4410U);
}

TEST_F(CaptureServerTest, WithoutAServerOrWithOneThatDoesNotAnswerThereAreWordsAndNoFile) {
    AudioOutput output;
    Capture capture(output, place);
    capture.setSource(CaptureSource::Everything);
    EXPECT_THAT(capture.record(), HasSubstr("no sound server"));
    EXPECT_FALSE(capture.isRecording());
    server.start();
    server.freeze();
    EXPECT_THAT(capture.record(), HasSubstr("doesn't answer"));
    EXPECT_FALSE(std::filesystem::exists(place));
    server.thaw();
    EXPECT_TRUE(within(3, [&] { return capture.record().empty(); }));
    EXPECT_TRUE(goesOn(capture));
    EXPECT_TRUE(capture.stop());
    expectWhole();
}

TEST_F(CaptureServerTest, EndingAtAnyMomentIsQuick) {
    server.start();
    AudioOutput output;
    for (int wait = 0; wait < 60; wait += 3) {
        auto capture = std::make_unique<Capture>(output);
        capture->setSource(CaptureSource::Everything);
        std::this_thread::sleep_for(std::chrono::milliseconds(wait));
        const double begin = steadySeconds();
        capture.reset();
        EXPECT_LT(steadySeconds() - begin, 0.2 * kPatience);
    }
}
