// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/SynthEngine.h"

#include "TestSound.h"
#include "sound/ShortMessage.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <thread>

using namespace velmora;
using namespace velmora::testsound;
using testing::HasSubstr;

namespace {
constexpr int kOrgan = 16;
constexpr int kA4 = 69;

/// Renders until no voice is left; seconds it took, or 20 if some never end.
double secondsUntilSilent(SynthEngine& engine) {
    double seconds = 0;
    while (engine.voicesSounding() > 0 && seconds < 20) {
        render(engine, 64);
        seconds += 64.0 / kRate;
    }
    return seconds;
}
} // namespace

TEST(SynthEngineTest, AnASoundsAt440Hertz) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::programChange(0, kOrgan));
    engine->apply(shortmessage::noteOn(0, kA4, 100));
    const std::vector<float> sound = render(*engine, kRate);
    EXPECT_GT(peak(sound), 0.01F);
    EXPECT_EQ(strongest(sound, {415.3, 427.5, 440.0, 452.9, 466.2}), 440.0);
}

TEST(SynthEngineTest, AFileThatIsNotThereIsNamedInTheError) {
    const SynthEngine::Created created = SynthEngine::create({.soundFont = "/nowhere/at all.sf2"});
    EXPECT_FALSE(created.engine);
    EXPECT_THAT(created.error, HasSubstr("/nowhere/at all.sf2"));
}

TEST(SynthEngineTest, AFileThatIsNoSoundFontIsNamedInTheError) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("song.sf2").toStdString();
    std::ofstream(path) << "not a SoundFont";
    EXPECT_THAT(SynthEngine::create({.soundFont = path}).error, HasSubstr(path));
    EXPECT_THAT(SynthEngine::create({.soundFont = "/dev/zero"}).error, HasSubstr("/dev/zero"));
}

TEST(SynthEngineTest, ASoundFontThatIsCutShortIsNamedInTheError) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("short.sf2").toStdString();
    std::ifstream whole(kSoundFont, std::ios::binary);
    std::string bytes(200'000, '\0');
    ASSERT_TRUE(whole.read(bytes.data(), static_cast<std::streamsize>(bytes.size())));
    std::ofstream(path, std::ios::binary) << bytes;
    testing::internal::CaptureStderr();
    EXPECT_THAT(SynthEngine::create({.soundFont = path}).error, HasSubstr(path));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SynthEngineTest, ASoundFontMayLackNoByte) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("font.sf2").toStdString();
    std::filesystem::copy_file(kSoundFont, path);
    const auto size = std::filesystem::file_size(path);
    std::filesystem::resize_file(path, size - 1);
    EXPECT_THAT(SynthEngine::create({.soundFont = path}).error, HasSubstr("cut short"));
    std::filesystem::copy_file(kSoundFont, path, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(SynthEngine::create({.soundFont = path}).error, "");
}

TEST(SynthEngineTest, WhatAFileIsNotIsToldFromWhatItLacks) {
    const QTemporaryDir folder;
    const auto errorOf = [&folder](std::string_view bytes) {
        const std::string path = folder.filePath("font.sf2").toStdString();
        std::ofstream(path, std::ios::binary) << bytes;
        return SynthEngine::create({.soundFont = path}).error;
    };
    using namespace std::string_view_literals;
    EXPECT_THAT(errorOf(""), HasSubstr("can't be read"));
    EXPECT_THAT(errorOf("RIFF\0\0\0\0sfb"sv), HasSubstr("can't be read"));
    EXPECT_THAT(errorOf("RIFF\0\0\0\0WAVE"sv), HasSubstr("is not a SoundFont"));
    EXPECT_THAT(errorOf("riff\0\0\0\0sfbk"sv), HasSubstr("is not a SoundFont"));
    EXPECT_THAT(errorOf("RIFF\x05\0\0\0sfbk"sv), HasSubstr("cut short")) << "a byte is missing";
    EXPECT_THAT(errorOf("RIFF\0\x01\0\0sfbk"sv), HasSubstr("cut short"));
    EXPECT_THAT(errorOf("RIFF\0\0\0\x80sfbk"sv), HasSubstr("cut short"));
}

TEST(SynthEngineTest, NothingIsPrintedOnTheTerminal) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    (void)SynthEngine::create({.soundFont = "/dev/null"});
    const auto engine = makeEngine();
    engine->apply(shortmessage::controller(0, 0, 77)); // a bank that the SoundFont lacks
    engine->apply(shortmessage::programChange(0, 3));
    engine->apply(shortmessage::programChange(9, 99)); // a drum set that it lacks
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(SynthEngineTest, WordsThatAreNoChannelMessagesAreIgnored) {
    const auto engine = makeEngine();
    for (const std::uint32_t word : {0U, 0x12345678U, 0x00FFFFF0U, 0x00648090U, 0x00803C90U, 0x01643C90U})
        engine->apply(word);
    EXPECT_EQ(engine->voicesSounding(), 0);
}

TEST(SynthEngineTest, ANoteIsNoWhisperAndLeavesRoomForOthers) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::programChange(0, kOrgan));
    engine->apply(shortmessage::noteOn(0, kA4, 127));
    const float loudest = peak(render(*engine, kRate));
    EXPECT_GT(loudest, 0.09F);
    EXPECT_LT(loudest, 0.17F);
}

TEST(SynthEngineTest, AnyRateGivesTheSamePitch) {
    const auto created = SynthEngine::create({.soundFont = kSoundFont, .sampleRate = 32000});
    ASSERT_TRUE(created.engine) << created.error;
    created.engine->apply(shortmessage::programChange(0, kOrgan));
    created.engine->apply(shortmessage::noteOn(0, kA4, 100));
    const std::vector<float> sound = render(*created.engine, 32000);
    EXPECT_GT(strength(sound, 440.0, 32000), 4 * strength(sound, 440.0 * 32000 / kRate, 32000));
    EXPECT_GT(strength(sound, 440.0, 32000), 4 * strength(sound, 440.0 * kRate / 32000, 32000));
}

TEST(SynthEngineTest, APitchBendIsHeardHoweverSmall) {
    const auto bent = [](int low, int high) {
        const auto engine = makeEngine();
        engine->apply(shortmessage::programChange(0, kOrgan));
        engine->apply(shortmessage::pack(0xE0, 0, low, high));
        engine->apply(shortmessage::noteOn(0, kA4, 100));
        return render(*engine, kRate / 2);
    };
    const std::vector<float> straight = bent(0, 64);
    EXPECT_EQ(strongest(straight, {415.3, 440.0, 466.2}), 440.0);
    EXPECT_EQ(strongest(bent(0, 96), {415.3, 440.0, 466.2}), 466.2) << "half of two semitones up";
    EXPECT_EQ(strongest(bent(0, 32), {415.3, 440.0, 466.2}), 415.3);
    EXPECT_FALSE(bent(127, 64) == straight) << "three hundredths of a semitone";
}

TEST(SynthEngineTest, PressureOnAChannelMakesItWaver) {
    std::vector<std::vector<float>> sounds;
    for (const int pressure : {0, 127}) {
        const auto engine = makeEngine();
        engine->apply(shortmessage::programChange(3, kOrgan));
        engine->apply(shortmessage::pack(0xD0, 3, pressure));
        engine->apply(shortmessage::noteOn(3, kA4, 100));
        sounds.push_back(render(*engine, kRate));
    }
    EXPECT_FALSE(sounds[0] == sounds[1]);
}

TEST(SynthEngineTest, ANoteOffForASilentNoteDoesNothing) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::noteOff(3, 60));
    EXPECT_LT(peak(render(*engine, 1024)), kSilence);
}

TEST(SynthEngineTest, ResetLetsNotesRingOut) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::programChange(0, kOrgan));
    engine->apply(shortmessage::noteOn(0, kA4, 127));
    render(*engine, kRate / 2);
    engine->reset();
    EXPECT_GT(peak(render(*engine, 256)), 0.001F) << "cut off";
    EXPECT_LT(secondsUntilSilent(*engine), 3);
}

TEST(SynthEngineTest, ResetEndsWhatThePedalsHold) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::programChange(2, kOrgan));
    engine->apply(shortmessage::controller(2, 64, 127));
    engine->apply(shortmessage::noteOn(2, kA4, 127));
    engine->apply(shortmessage::noteOff(2, kA4));
    engine->apply(shortmessage::noteOn(2, kA4 + 3, 127));
    engine->apply(shortmessage::controller(2, 66, 127));
    engine->apply(shortmessage::noteOff(2, kA4 + 3));
    render(*engine, 4 * kRate);
    ASSERT_GT(engine->voicesSounding(), 1);
    engine->reset();
    EXPECT_LT(secondsUntilSilent(*engine), 3);
}

TEST(SynthEngineTest, ResetReleasesThePedalsOfEveryChannel) {
    for (const int pedal : {64, 66}) {
        const auto engine = makeEngine();
        for (int channel = 0; channel < 16; ++channel) {
            if (channel == shortmessage::kDrumChannel)
                continue; // its sounds die away by themselves
            engine->apply(shortmessage::programChange(channel, kOrgan));
            engine->apply(shortmessage::noteOn(channel, kA4, 100));
            engine->apply(shortmessage::controller(channel, pedal, 127));
            engine->apply(shortmessage::noteOff(channel, kA4));
        }
        render(*engine, 3 * kRate);
        ASSERT_GE(engine->voicesSounding(), 15) << pedal;
        engine->reset();
        EXPECT_LT(secondsUntilSilent(*engine), 3) << pedal;
        // A note that comes after it isn't held either.
        engine->apply(shortmessage::noteOn(15, kA4, 100));
        engine->apply(shortmessage::noteOff(15, kA4));
        EXPECT_LT(secondsUntilSilent(*engine), 3) << pedal;
    }
}

TEST(SynthEngineTest, ResetKeepsInstrumentsAndControllers) {
    const auto engine = makeEngine();
    engine->apply(shortmessage::programChange(0, kOrgan));
    engine->apply(shortmessage::programChange(1, kOrgan));
    engine->apply(shortmessage::controller(1, 7, 0));
    engine->reset();
    engine->apply(shortmessage::noteOn(1, kA4, 127));
    EXPECT_LT(peak(render(*engine, kRate)), 0.0001F) << "the volume is back";
    engine->apply(shortmessage::noteOn(0, kA4, 127));
    const float loud = peak(render(*engine, kRate));
    render(*engine, 2 * kRate);
    EXPECT_GT(peak(render(*engine, kRate)), loud / 2) << "it dies away as a piano does";
}

TEST(SynthEngineTest, OneAndTwoCoresGiveTheSameSamples) {
    std::vector<std::vector<float>> sounds;
    for (const int cores : {1, 2}) {
        const auto engine = makeEngine(cores);
        for (int channel = 0; channel < 16; ++channel) {
            engine->apply(shortmessage::programChange(channel, channel * 7));
            for (int note = 40; note < 80; note += 3)
                engine->apply(shortmessage::noteOn(channel, note, 60 + channel));
        }
        sounds.push_back(render(*engine, kRate));
    }
    EXPECT_GT(peak(sounds[0]), 0.1F);
    EXPECT_TRUE(sounds[0] == sounds[1]);
}

// The SoundFont is deleted between loading and choosing: only what is in memory can sound.
TEST(SynthEngineTest, APresetThatIsPreparedNeedsTheDiskNoMore) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("font.sf2").toStdString();
    std::filesystem::copy_file(kSoundFont, path);
    const auto created = SynthEngine::create({.soundFont = path, .presets = PresetLoading::Ahead});
    ASSERT_TRUE(created.engine) << created.error;
    SynthEngine& engine = *created.engine;
    engine.prepare(0, 40);
    engine.prepare(SynthEngine::kDrumBank, 8);
    std::filesystem::remove(path);

    EXPECT_TRUE(engine.apply(shortmessage::programChange(0, 40)));
    EXPECT_TRUE(engine.apply(shortmessage::noteOn(0, kA4, 100)));
    EXPECT_GT(peak(render(engine, kRate / 2)), 0.001F);
    engine.reset();
    secondsUntilSilent(engine);

    EXPECT_TRUE(engine.apply(shortmessage::programChange(9, 8)));
    EXPECT_TRUE(engine.apply(shortmessage::noteOn(9, 38, 100)));
    EXPECT_GT(peak(render(engine, kRate / 2)), 0.001F);
}

TEST(SynthEngineTest, AProgramChangeToAPresetThatIsNotPreparedIsIgnored) {
    const auto engine = makeEngine(1, PresetLoading::Ahead);
    const auto plain = makeEngine();
    for (SynthEngine* each : {engine.get(), plain.get()}) {
        EXPECT_TRUE(each->apply(shortmessage::noteOn(0, kA4, 100)));
    }
    EXPECT_TRUE(engine->apply(shortmessage::programChange(0, 60)));
    for (SynthEngine* each : {engine.get(), plain.get()})
        EXPECT_TRUE(each->apply(shortmessage::noteOn(0, kA4 + 5, 100)));
    EXPECT_TRUE(render(*engine, kRate) == render(*plain, kRate));
}

// Chance decides when the two meet, so it has some tries.
TEST(SynthEngineTest, AProgramChangeThatMeetsTheLoaderIsPutOffAndNotWaitedFor) {
    bool putOff = false;
    for (int tries = 0; tries < 50 && !putOff; ++tries) {
        const auto engine = makeEngine(1, PresetLoading::Ahead);
        std::atomic<bool> loading{true};
        std::thread loader([&] {
            for (int program = 1; program < 128; ++program)
                engine->prepare(0, program);
            loading = false;
        });
        while (loading && !putOff)
            putOff = !engine->apply(shortmessage::programChange(0, 0));
        loader.join();
        EXPECT_TRUE(engine->apply(shortmessage::programChange(0, 0)));
    }
    EXPECT_TRUE(putOff);
}

TEST(SynthEngineTest, APresetThatCanNotBeReadAnyMoreIsIgnored) {
    for (const PresetLoading presets : {PresetLoading::Ahead, PresetLoading::WhenChosen}) {
        const QTemporaryDir folder;
        const std::string path = folder.filePath("font.sf2").toStdString();
        std::filesystem::copy_file(kSoundFont, path);
        const auto created = SynthEngine::create({.soundFont = path, .presets = presets});
        ASSERT_TRUE(created.engine) << created.error;
        std::filesystem::remove(path);
        created.engine->prepare(0, 60);
        EXPECT_TRUE(created.engine->apply(shortmessage::programChange(1, 60)));
        EXPECT_TRUE(created.engine->apply(shortmessage::noteOn(1, kA4, 100)));
        EXPECT_GT(peak(render(*created.engine, kRate)), 0.001F) << "the piano goes on";
    }
}

TEST(SynthEngineTest, PreparingWhatTheSoundFontLacksPreparesWhatWillSoundInstead) {
    const auto engine = makeEngine(1, PresetLoading::Ahead);
    engine->prepare(77, 40);
    engine->prepare(SynthEngine::kDrumBank, 99);
    engine->prepare(-1, 0);
    engine->prepare(0, 128);
    EXPECT_TRUE(engine->apply(shortmessage::controller(0, 0, 77)));
    EXPECT_TRUE(engine->apply(shortmessage::programChange(0, 40)));
    EXPECT_TRUE(engine->apply(shortmessage::noteOn(0, kA4, 100)));
    EXPECT_GT(peak(render(*engine, kRate / 2)), 0.001F);
}

// The SoundFont is deleted before anything is chosen: only what was prepared can sound.
TEST(SynthEngineTest, WhatSoundsForAPresetThatTheSoundFontLacksIsWhatWasPreparedForIt) {
    struct Row {
        int bank, program; ///< asked for
        int channel;
        int instead; ///< program of the usual bank
        const char* what;
    };
    for (const Row& row :
         {Row{77, 40, 0, 40, "a violin of another bank is the violin"},
          Row{SynthEngine::kDrumBank, 99, 9, 0, "a drum set that isn't there is the first one"},
          Row{0, 40, 0, 40, "what is there is itself"}}) {
        const QTemporaryDir folder;
        const std::string path = folder.filePath("font.sf2").toStdString();
        std::filesystem::copy_file(kSoundFont, path);
        const auto created = SynthEngine::create({.soundFont = path, .presets = PresetLoading::Ahead});
        ASSERT_TRUE(created.engine) << created.error;
        created.engine->prepare(row.bank, row.program);
        std::filesystem::remove(path);
        if (row.channel != 9)
            created.engine->apply(shortmessage::controller(row.channel, 0, row.bank));
        created.engine->apply(shortmessage::programChange(row.channel, row.program));
        const auto plain = makeEngine();
        plain->apply(shortmessage::programChange(row.channel, row.instead));
        for (SynthEngine* each : {created.engine.get(), plain.get()})
            each->apply(shortmessage::noteOn(row.channel, 50, 100));
        const std::vector<float> sound = render(*created.engine, kRate / 2);
        EXPECT_GT(peak(sound), 0.001F) << row.what;
        EXPECT_TRUE(sound == render(*plain, kRate / 2)) << row.what;
    }
}

TEST(SynthEngineTest, WhatASynthesizerStartsWithIsThereWithoutBeingPrepared) {
    struct Row {
        int channel, bank, other, asked;
    };
    for (const Row& row :
         {Row{0, 0, 40, 0}, Row{9, SynthEngine::kDrumBank, 8, 0},
          Row{9, SynthEngine::kDrumBank, 8, 99}}) { // 99 is none, and the first drum set sounds
        const auto engine = makeEngine(1, PresetLoading::Ahead);
        engine->prepare(row.bank, row.other);
        engine->apply(shortmessage::programChange(row.channel, row.other));
        engine->apply(shortmessage::programChange(row.channel, row.asked));
        const auto plain = makeEngine();
        for (SynthEngine* each : {engine.get(), plain.get()})
            each->apply(shortmessage::noteOn(row.channel, 38, 100));
        EXPECT_TRUE(render(*engine, kRate / 2) == render(*plain, kRate / 2))
            << row.channel << ' ' << row.asked;
    }
}

TEST(SynthEngineTest, WherePresetsLoadWhenChosenPreparingDoesNothing) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath("font.sf2").toStdString();
    std::filesystem::copy_file(kSoundFont, path);
    const auto created = SynthEngine::create({.soundFont = path});
    ASSERT_TRUE(created.engine) << created.error;
    created.engine->prepare(0, 60);
    std::filesystem::remove(path);
    created.engine->apply(shortmessage::programChange(0, 60));
    const auto plain = makeEngine();
    for (SynthEngine* each : {created.engine.get(), plain.get()})
        each->apply(shortmessage::noteOn(0, kA4, 100));
    EXPECT_TRUE(render(*created.engine, kRate / 2) == render(*plain, kRate / 2)) << "the piano goes on";
}

TEST(SynthEngineTest, AProgramThatIsChosenAgainIsTheSame) {
    const auto engine = makeEngine();
    const auto plain = makeEngine();
    for (const int program : {40, 60, 40})
        engine->apply(shortmessage::programChange(0, program));
    plain->apply(shortmessage::programChange(0, 40));
    for (SynthEngine* each : {engine.get(), plain.get()})
        each->apply(shortmessage::noteOn(0, kA4, 100));
    EXPECT_TRUE(render(*engine, kRate / 2) == render(*plain, kRate / 2));
}

#if !VELMORA_SANITIZED // a sanitizer locks nothing
TEST(SynthEngineTest, SamplesStayInMemoryForAnAudioThreadAndForAFileNeedNot) {
    const auto lockedKilobytes = [] {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;)
            if (int number = 0; word == "VmLck:" && status >> number)
                return number;
        return -1;
    };
    const int before = lockedKilobytes();
    const auto file = makeEngine();
    EXPECT_EQ(lockedKilobytes(), before);
    const auto live = makeEngine(1, PresetLoading::Ahead);
    EXPECT_GT(lockedKilobytes(), before);
}
#endif
