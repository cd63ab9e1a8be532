// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/BuiltInSynth.h"

#include "RealtimeWatch.h"
#include "TestSound.h"
#include "sound/ShortMessage.h"
#include "sound/TeamOfOne.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

using namespace velmora;
using namespace velmora::testsound;
using testing::HasSubstr;

namespace {
constexpr int kOrgan = 16;
constexpr int kA4 = 69;
constexpr double kStart = 1000; // moment of the first frame

/// A mix of one source, of which time is counted in frames.
struct Listener {
    explicit Listener(BuiltInSynth& source) : synth(source) {}

    std::vector<float> hear(int frames) {
        std::vector<float> samples(std::size_t{2} * static_cast<std::size_t>(frames));
        synth.render({samples.data(), frames, now()});
        heard += frames;
        return samples;
    }
    [[nodiscard]] double now() const { return kStart + heard / double{kRate}; }

    BuiltInSynth& synth;
    int heard = 0;
};

struct BuiltInSynthTest : testing::Test {
    BuiltInSynth synth{{.soundFont = kSoundFont, .sampleRate = kRate}};
    Listener listener{synth};

    void SetUp() override { ASSERT_TRUE(synth.waitUntilReady(20)) << synth.error(); }
};

std::size_t firstSound(const std::vector<float>& samples) {
    const auto it = std::find_if(samples.begin(), samples.end(),
                                 [](float sample) { return std::abs(sample) > kSilence; });
    return static_cast<std::size_t>(it - samples.begin()) / 2;
}
} // namespace

TEST_F(BuiltInSynthTest, ANoteSoundsFromTheGridBlockOfItsMomentOn) {
    synth.send(shortmessage::programChange(0, kOrgan), kStart);
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart + 1000.0 / kRate);
    const std::vector<float> sound = listener.hear(4096);
    EXPECT_GE(firstSound(sound), 960U); // 15 * 64, the block that frame 1000 falls into
    EXPECT_LT(firstSound(sound), 1024U);
}

TEST_F(BuiltInSynthTest, TheSizesOfTheBlocksMakeNoDifference) {
    BuiltInSynth other({.soundFont = kSoundFont, .sampleRate = kRate});
    ASSERT_TRUE(other.waitUntilReady(20));
    Listener second(other);
    for (BuiltInSynth* each : {&synth, &other}) {
        each->send(shortmessage::programChange(1, kOrgan), kStart);
        for (int i = 0; i < 40; ++i) {
            const double moment = kStart + i * 0.0237;
            each->send(shortmessage::noteOn(1, 40 + i, 100), moment);
            each->send(shortmessage::noteOff(1, 38 + i), moment + 0.011);
        }
        each->reset(kStart + 1);
    }
    std::vector<float> one;
    std::vector<float> two;
    const int sizes[] = {1, 63, 64, 65, 441, 7, 1999, 480, 128, 5000};
    for (int i = 0; one.size() < std::size_t{2} * 60'000; ++i) {
        const std::vector<float> part = listener.hear(sizes[i % 10]);
        one.insert(one.end(), part.begin(), part.end());
    }
    while (two.size() < one.size()) {
        const std::vector<float> part = second.hear(256);
        two.insert(two.end(), part.begin(), part.end());
    }
    two.resize(one.size());
    EXPECT_GT(peak(one), 0.01F);
    EXPECT_TRUE(one == two);
}

TEST_F(BuiltInSynthTest, WhatIsInTheMixStaysThere) {
    std::vector<float> samples(2 * 100, 0.25F);
    synth.render({samples.data(), 100, kStart});
    EXPECT_THAT(samples, testing::Each(testing::FloatNear(0.25F, kSilence)));
}

TEST_F(BuiltInSynthTest, ALateMessageSoundsAtOnce) {
    listener.hear(kRate);
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart + 0.9);
    EXPECT_GT(peak(listener.hear(4096)), kSilence);
}

TEST_F(BuiltInSynthTest, AMomentThatIsNoNumberMeansAtOnce) {
    synth.send(shortmessage::noteOn(0, kA4, 127), std::nan(""));
    EXPECT_GT(peak(listener.hear(4096)), kSilence);
}

TEST_F(BuiltInSynthTest, AMessageOfTheFutureWaits) {
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart + 1);
    EXPECT_LT(peak(listener.hear(kRate - 64)), kSilence);
    EXPECT_GT(peak(listener.hear(4096)), kSilence);
}

TEST_F(BuiltInSynthTest, InstrumentsThatWereChosenWhileLoadingSoundButOldNotesDoNot) {
    synth.send(shortmessage::programChange(0, kOrgan), kStart - 5);
    synth.send(shortmessage::controller(1, 7, 0), kStart - 5);
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart - 0.6);
    EXPECT_LT(peak(listener.hear(kRate)), kSilence);

    synth.send(shortmessage::noteOn(1, kA4, 127), listener.now()); // its volume is 0
    EXPECT_LT(peak(listener.hear(kRate)), 0.0001F);

    synth.send(shortmessage::noteOn(0, kA4, 127), listener.now());
    const float loud = peak(listener.hear(kRate));
    listener.hear(2 * kRate);
    EXPECT_GT(peak(listener.hear(kRate)), loud / 2) << "a piano, not the organ";
}

TEST_F(BuiltInSynthTest, NotesThatWaitedForLessThanHalfASecondSound) {
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart - 0.4);
    EXPECT_GT(peak(listener.hear(4096)), kSilence);
}

TEST_F(BuiltInSynthTest, ResetEndsASustainedNoteWithinSomeSeconds) {
    synth.send(shortmessage::programChange(0, kOrgan), kStart);
    synth.send(shortmessage::controller(0, 64, 127), kStart);
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart);
    EXPECT_GT(peak(listener.hear(kRate)), 0.01F);
    synth.reset(listener.now());
    EXPECT_GT(peak(listener.hear(512)), 0.001F);
    listener.hear(4 * kRate);
    EXPECT_LT(peak(listener.hear(kRate)), 0.0001F);
}

TEST_F(BuiltInSynthTest, AFloodOfNotesKeepsNoEndOut) {
    synth.send(shortmessage::programChange(0, kOrgan), kStart);
    for (std::size_t i = 0; i < BuiltInSynth::kQueueCapacity; ++i)
        synth.send(shortmessage::noteOn(0, 30 + static_cast<int>(i % 60), 100), kStart);
    for (int note = 30; note < 90; ++note)
        synth.send(shortmessage::noteOff(0, note), kStart + 1);
    EXPECT_GT(peak(listener.hear(kRate)), 0.01F);
    listener.hear(4 * kRate);
    EXPECT_LT(peak(listener.hear(kRate)), 0.0001F);
}

TEST_F(BuiltInSynthTest, EndsThatFindNoPlaceAreMadeUpFor) {
    synth.send(shortmessage::programChange(0, kOrgan), kStart);
    for (int note = 30; note < 90; ++note)
        synth.send(shortmessage::noteOn(0, note, 100), kStart);
    for (std::size_t i = 0; i < BuiltInSynth::kQueueCapacity; ++i)
        synth.send(shortmessage::controller(5, 1, 3), kStart);
    for (int note = 30; note < 90; ++note)
        synth.send(shortmessage::noteOff(0, note), kStart + 1);
    listener.hear(5 * kRate);
    EXPECT_LT(peak(listener.hear(kRate)), 0.0001F);
}

TEST_F(BuiltInSynthTest, RestsOnceNothingHasSoundedForSomeSecondsAndNoMessageWaits) {
    constexpr int kRestFrames = static_cast<int>(BuiltInSynth::kRestSeconds * kRate);
    synth.send(shortmessage::noteOn(0, kA4, 127), kStart);
    for (int i = 0; i < 40; ++i) {
        listener.hear(1000);
        ASSERT_FALSE(synth.rests());
    }
    synth.send(shortmessage::noteOff(0, kA4), listener.now());
    std::vector<float> sound;
    while (!synth.rests() && listener.heard < 60 * kRate)
        sound = listener.hear(1000);
    ASSERT_TRUE(synth.rests()) << "after a minute";
    EXPECT_FALSE(synth.sounding());
    EXPECT_LT(peak(sound), BuiltInSynth::kInaudible);

    int woken = 0;
    synth.onMessage = [&woken] { ++woken; };
    synth.send(shortmessage::controller(0, 7, 90), listener.now());
    EXPECT_EQ(woken, 1);
    EXPECT_FALSE(synth.rests());
    listener.hear(1000);
    EXPECT_FALSE(synth.rests()) << "a message begins the time anew";
    for (int frames = 0; frames < kRestFrames; frames += 1000)
        listener.hear(1000);
    EXPECT_TRUE(synth.rests());
}

TEST_F(BuiltInSynthTest, ANoteAfterARestSoundsFromTheGridBlockOfItsMomentOn) {
    while (!synth.rests() && listener.heard < 60 * kRate)
        listener.hear(777); // no multiple of the grid: something is left of what was rendered
    ASSERT_TRUE(synth.rests());
    listener.heard += 12345; // the mix leaves it out
    synth.send(shortmessage::programChange(0, kOrgan), listener.now());
    synth.send(shortmessage::noteOn(0, kA4, 127), listener.now() + 1000.0 / kRate);
    const std::vector<float> sound = listener.hear(4096);
    EXPECT_GE(firstSound(sound), 960U);
    EXPECT_LT(firstSound(sound), 1024U);
}

TEST_F(BuiltInSynthTest, RenderingTakesNoMemoryAndNoLock) {
    for (int program = 0; program < 128; ++program)
        synth.send(shortmessage::programChange(program % 9, program), kStart);
    listener.hear(4096); // warm
    std::vector<float> samples(2 * 480);
    for (int i = 0; i < 300; ++i) {
        const double moment = listener.now();
        synth.send(shortmessage::programChange(i % 9, (i * 5) % 128), moment);
        synth.send(shortmessage::controller(i % 16, i % 128, i % 128), moment);
        synth.send(shortmessage::noteOn(i % 16, 30 + i % 60, 100), moment + 0.003);
        synth.send(shortmessage::pack(0xE0, i % 16, i % 128, 60), moment + 0.004);
        synth.send(shortmessage::noteOff(i % 16, 25 + i % 60), moment + 0.005);
        if (i % 100 == 99)
            synth.reset(moment + 0.006);
        const RealtimeWatch watch;
        synth.render({samples.data(), 480, moment});
        ASSERT_EQ(watch.memoryCalls(), 0U) << "in block " << i;
        ASSERT_EQ(watch.locks(), 0U) << "in block " << i;
        listener.heard += 480;
    }
    EXPECT_GT(peak(samples), kSilence);
}

TEST(TeamOfOneTest, StandsBeforeTheLibrarysOwn) {
    EXPECT_TRUE(teamsOfOneArePlainCalls());
}

TEST(RealtimeWatchTest, SeesMemoryAndLocks) {
    const RealtimeWatch watch;
    void* volatile piece = std::malloc(10);
    std::free(piece);
    EXPECT_EQ(watch.memoryCalls(), 2U);
    std::mutex mutex;
    mutex.lock();
    mutex.unlock();
    if (RealtimeWatch::countsLocks()) {
        EXPECT_EQ(watch.locks(), 1U);
    }
}

TEST(BuiltInSynthWithoutSoundFont, SaysWhyAndStaysSilent) {
    BuiltInSynth synth({.soundFont = "/nowhere/font.sf2"});
    EXPECT_FALSE(synth.waitUntilReady(20));
    EXPECT_FALSE(synth.ready());
    EXPECT_THAT(synth.error(), HasSubstr("/nowhere/font.sf2"));
    Listener listener(synth);
    for (int i = 0; i < 3 * int{BuiltInSynth::kQueueCapacity}; ++i)
        synth.send(shortmessage::noteOn(0, kA4, 100), kStart);
    synth.send(shortmessage::programChange(0, 5), kStart);
    EXPECT_LT(peak(listener.hear(1024)), kSilence);
}

TEST(BuiltInSynthEnds, AtAnyMomentOfLoading) {
    for (int i = 0; i < 8; ++i) {
        BuiltInSynth synth({.soundFont = kSoundFont});
        synth.send(shortmessage::programChange(0, i), kStart);
        std::this_thread::sleep_for(std::chrono::milliseconds(i * 3));
        Listener(synth).hear(64);
    }
}

TEST(BuiltInSynthThreads, SenderLoaderAndAudioThreadMeetWithoutHarm) {
    BuiltInSynth synth({.soundFont = kSoundFont, .sampleRate = kRate});
    std::atomic<bool> sending{true};
    std::atomic<double> now{kStart};
    float loudest = 0;
    std::thread audio([&] {
        Listener listener(synth);
        while (sending || listener.heard < kRate) {
            now = listener.now();
            loudest = std::max(loudest, peak(listener.hear(441)));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        loudest = std::max(loudest, peak(listener.hear(kRate)));
    });
    for (int i = 0; i < 512; ++i) {
        synth.send(shortmessage::programChange(i % 16, i / 4), kStart);
        synth.send(shortmessage::noteOn(i % 16, 40 + i % 40, 100), kStart);
        if (i % 50 == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_TRUE(synth.waitUntilReady(20));
    // The listener is faster than time, and a note that is long past when the instruments are ready stays
    // silent.
    synth.send(shortmessage::noteOn(0, kA4, 127), now + 0.2);
    sending = false;
    audio.join();
    EXPECT_GT(loudest, kSilence);
}
