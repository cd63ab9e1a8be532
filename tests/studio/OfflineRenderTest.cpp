// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/OfflineRender.h"

#include "../sound/TestSound.h"
#include "sound/BuiltInSynth.h"
#include "sound/ShortMessage.h"
#include "studio/Mp3File.h"
#include "studio/WavFile.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testsinks;
using namespace velmora::testsound;
using testing::HasSubstr;
using End = RenderResult::End;

namespace {
constexpr int kOrgan = 16;
constexpr int kA4 = 69;
constexpr float kHalfStep = 0.5F / 32768.0F; ///< of a 16-bit file, which holds it as zero

RenderOptions withTestFont() {
    return {.soundFont = kSoundFont};
}

std::vector<float> rendered(const std::vector<TimedMessage>& messages,
                            RenderOptions options = withTestFont()) {
    KeepingSink sink;
    const RenderResult result = renderOffline(messages, sink, options);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.end, End::Done);
    EXPECT_TRUE(sink.finished);
    EXPECT_DOUBLE_EQ(result.seconds, static_cast<double>(sink.samples.size() / 2) / kRate);
    return sink.samples;
}

std::vector<TimedMessage> oneNote(double start, double end) {
    return {{0, shortmessage::programChange(0, kOrgan)},
            {start, shortmessage::noteOn(0, kA4, 127)},
            {end, shortmessage::noteOff(0, kA4)}};
}

/// Some bars for three players, at moments that lie on no grid; the note-ons have the indices 2, 4, 6 and so
/// on.
std::vector<TimedMessage> someMusic() {
    std::vector<TimedMessage> music{{0, shortmessage::programChange(0, kOrgan)},
                                    {0, shortmessage::programChange(1, 11)}};
    for (int i = 0; i < 24; ++i) {
        const int channel = i % 3 == 2 ? shortmessage::kDrumChannel : i % 3;
        const double start = i * 0.0917 + 0.0123;
        music.push_back({start, shortmessage::noteOn(channel, 45 + i, 100)});
        music.push_back({start + 0.0711, shortmessage::noteOff(channel, 45 + i)});
    }
    return music;
}

std::size_t firstDifference(const std::vector<float>& a, const std::vector<float>& b) {
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin()) /
           2;
}
} // namespace

TEST(OfflineRenderTest, EveryNoteBeginsInTheGridBlockOfItsMoment) {
    const std::vector<TimedMessage> music = someMusic();
    const std::vector<float> whole = rendered(music);
    for (const std::size_t note : {2U, 4U, 6U, 26U, 48U}) {
        std::vector<TimedMessage> without = music;
        without[note].word = 0; // which means nothing
        const std::size_t onset = firstDifference(whole, rendered(without));
        const auto block = static_cast<std::size_t>(music[note].seconds * kRate) / 64 * 64;
        EXPECT_GE(onset, block) << "note " << note;
        EXPECT_LT(onset, block + 64) << "note " << note;
    }
}

TEST(OfflineRenderTest, ANoteAtTheBeginningSoundsFromTheFirstFramesOn) {
    const std::vector<float> sound = rendered(oneNote(0, 0.5));
    EXPECT_GT(peak(std::span(sound).first(2 * 64)), kSilence);
    EXPECT_EQ(strongest(sound, {415.3, 427.5, 440.0, 452.9, 466.2}), 440.0);
}

TEST(OfflineRenderTest, LiveSoundIsTheSameSampleForSample) {
    std::vector<TimedMessage> music = someMusic();
    music.push_back({2.5, 0, true});
    const std::vector<float> offline = rendered(music);

    constexpr double kStart = 5'000; // moment of the first live frame
    BuiltInSynth synth({.soundFont = kSoundFont, .sampleRate = kRate});
    ASSERT_TRUE(synth.waitUntilReady(20)) << synth.error();
    std::vector<float> live(offline.size());
    const int sizes[] = {441, 64, 1, 1023, 480, 7, 2048, 100};
    std::size_t next = 0;
    const int frames = static_cast<int>(live.size() / 2);
    for (int frame = 0, i = 0; frame < frames; ++i) {
        const int size = std::min(sizes[i % 8], frames - frame);
        const double moment = kStart + frame / double{kRate};
        for (; next < music.size() && music[next].seconds < frame / double{kRate} + 0.2; ++next) {
            if (music[next].reset)
                synth.reset(kStart + music[next].seconds);
            else
                synth.send(music[next].word, kStart + music[next].seconds);
        }
        synth.render({live.data() + std::ptrdiff_t{2} * frame, size, moment});
        frame += size;
    }
    EXPECT_GT(peak(live), 0.01F);
    EXPECT_EQ(firstDifference(offline, live), live.size() / 2) << "the first frame that differs";
}

TEST(OfflineRenderTest, OneCoreAndTwoGiveTheSameSamples) {
    RenderOptions one = withTestFont();
    one.cores = 1;
    RenderOptions two = withTestFont();
    two.cores = 2;
    EXPECT_TRUE(rendered(someMusic(), two) == rendered(someMusic(), one));
    EXPECT_GE(coresHere(), 1);
}

TEST(OfflineRenderTest, TheSoundGoesOnUntilItHasDied) {
    const std::vector<float> sound = rendered(oneNote(0, 1));
    EXPECT_GT(sound.size(), 2U * kRate * 11 / 10);
    EXPECT_LT(sound.size(), 2U * kRate * 8);
    EXPECT_LE(peak(std::span(sound).last(2 * 11'025)), kHalfStep);
    EXPECT_GT(peak(std::span(sound).last(2 * (11'025 + 1'024))), kHalfStep) << "too much silence at the end";
}

TEST(OfflineRenderTest, TheSilenceOfVoicesThatRingOutUnheardIsLeftOutAndNothingElse) {
    for (const int program : {0, 11, 46, 48, 89, 122}) {
        std::vector<TimedMessage> music = oneNote(0, 0.3);
        music.front().word = shortmessage::programChange(0, program);
        const std::vector<float> sound = rendered(music);
        music.push_back({9, 0}); // means nothing, but comes late
        const std::vector<float> whole = rendered(music);
        ASSERT_LT(sound.size(), whole.size());
        EXPECT_EQ(firstDifference(sound, whole), sound.size() / 2) << "program " << program;
        EXPECT_LE(peak(std::span(whole).subspan(sound.size())), kHalfStep) << "program " << program;
        EXPECT_GT(peak(std::span(sound).last(2 * (11'025 + 1'024))), kHalfStep) << "program " << program;
    }
}

TEST(OfflineRenderTest, ANoteWithoutAnEndEndsAfterTheLongestTail) {
    std::vector<TimedMessage> music = oneNote(0, 1);
    music.pop_back();
    const double seconds = static_cast<double>(rendered(music).size() / 2) / kRate;
    EXPECT_NEAR(seconds, kLongestTail, 0.1);
}

TEST(OfflineRenderTest, AResetEndsWhatSounds) {
    std::vector<TimedMessage> music = oneNote(0, 1);
    music.back() = {1, 0, true};
    EXPECT_LT(rendered(music).size(), 2U * kRate * 8);
}

TEST(OfflineRenderTest, TwoHundredAndFiftyVoicesStayWithinFullScale) {
    std::vector<TimedMessage> music;
    for (int channel = 0; channel < 9; ++channel) {
        music.push_back({0, shortmessage::programChange(channel, kOrgan + channel % 3)});
        music.push_back({0, shortmessage::controller(channel, 7, 127)});
        for (int note = 40; note < 70; ++note)
            music.push_back({0.1, shortmessage::noteOn(channel, note, 127)});
    }
    music.push_back({2, 0, true});
    const std::vector<float> sound = rendered(music);
    EXPECT_GT(peak(sound), 0.9F) << "not loud enough to tell";
    EXPECT_LE(peak(sound), 32767.0F / 32768);
}

TEST(OfflineRenderTest, NoMessagesMakeAShortSilence) {
    const std::vector<float> sound = rendered({});
    EXPECT_LT(sound.size(), 2U * kRate);
    EXPECT_LT(peak(sound), kSilence);
}

TEST(OfflineRenderTest, ALateMessageTakesEffectAtOnce) {
    std::vector<TimedMessage> music = oneNote(0.5, 1);
    music[1].seconds = 0.2;
    music[0].seconds = 0.5; // now the note is late
    const std::vector<float> sound = rendered(music);
    EXPECT_LT(peak(std::span(sound).first(2 * 22'016)), kSilence);
    EXPECT_GT(peak(std::span(sound).subspan(2 * 22'016, 2 * 2000)), kSilence);
}

TEST(OfflineRenderTest, ProgressRisesToOne) {
    std::vector<double> parts;
    RenderOptions options = withTestFont();
    options.progress = [&parts](double part) { parts.push_back(part); };
    rendered(someMusic(), options);
    EXPECT_GT(parts.size(), 10U);
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end()));
    EXPECT_GE(parts.front(), 0);
    EXPECT_EQ(parts.back(), 1);
    EXPECT_EQ(std::count(parts.begin(), parts.end(), 1.0), 1);
}

TEST(OfflineRenderTest, CancellingLeavesTheOldFile) {
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.filePath("sound").toStdString();
    std::ofstream(path) << "the old sound";
    const auto cancelled = [](SampleSink&& sink) {
        std::stop_source stop;
        RenderOptions options = withTestFont();
        options.cancel = stop.get_token();
        options.progress = [&stop](double part) {
            if (part > 0.3)
                stop.request_stop();
        };
        return renderOffline(oneNote(0, 60), sink, options);
    };
    for (const RenderResult& result : {cancelled(WavFile(path)), cancelled(Mp3File(path))}) {
        EXPECT_EQ(result.end, End::Cancelled);
        EXPECT_LT(result.seconds, 30);
        EXPECT_EQ(result.error, "");
    }
    EXPECT_EQ(bytesOf(path), "the old sound");
    EXPECT_EQ(filesIn(folder.path().toStdString()), 1U);
}

TEST(OfflineRenderTest, ASinkThatFailsEndsItWithTheSinksWords) {
    KeepingSink sink;
    sink.failAt = 2;
    const RenderResult result = renderOffline(oneNote(0, 600), sink, withTestFont());
    EXPECT_EQ(result.end, End::Failed);
    EXPECT_EQ(result.error, "the disk is on fire");
    EXPECT_FALSE(sink.finished);

    WavFile full("/dev/full");
    EXPECT_THAT(renderOffline(oneNote(0, 1), full, withTestFont()).error, HasSubstr("No space left"));
}

TEST(OfflineRenderTest, ASinkThatDoesNotOpenEndsItBeforeAnySound) {
    KeepingSink sink;
    sink.openError = "no such folder";
    EXPECT_EQ(renderOffline(oneNote(0, 1), sink, withTestFont()).error, "no such folder");
    EXPECT_EQ(sink.writes, 0);
}

TEST(OfflineRenderTest, AMissingSoundFontIsNamed) {
    KeepingSink sink;
    const RenderResult result = renderOffline(oneNote(0, 1), sink, {.soundFont = "/nowhere/font.sf2"});
    EXPECT_EQ(result.end, End::Failed);
    EXPECT_THAT(result.error, HasSubstr("/nowhere/font.sf2"));
    EXPECT_FALSE(sink.finished);
}
