// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MusicPlayer.h"

#include "../sound/TestSound.h"
#include "sound/ShortMessage.h"
#include "studio/Mp3File.h"
#include "studio/OfflineRender.h"
#include "studio/SoundReader.h"
#include "tests/studio/TestMixes.h"
#include "tests/studio/TestSinks.h"
#include "tests/studio/TestWaves.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testmixes;
using namespace velmora::testsinks;
using namespace velmora::testsound;
using namespace velmora::testwaves;
using namespace std::string_literals;
using testing::HasSubstr;

namespace {
namespace fs = std::filesystem;

constexpr int kOrgan = 16;

std::vector<float> part(const std::vector<float>& samples, std::size_t from, std::size_t to) {
    return {samples.begin() + static_cast<std::ptrdiff_t>(2 * from),
            samples.begin() + static_cast<std::ptrdiff_t>(2 * to)};
}

std::vector<TimedMessage> someMusic() {
    std::vector<TimedMessage> music{{0, shortmessage::programChange(0, kOrgan)},
                                    {0, shortmessage::programChange(1, 11)}};
    for (int i = 0; i < 24; ++i) {
        const int channel = i % 3 == 2 ? shortmessage::kDrumChannel : i % 3;
        const double start = i * 0.0917 + 0.0123;
        music.push_back({start, shortmessage::noteOn(channel, 45 + i, 100)});
        music.push_back({start + 0.0711, shortmessage::noteOff(channel, 45 + i)});
    }
    music.push_back({2.5, 0, true});
    return music;
}

std::vector<float> asConverted(const std::vector<TimedMessage>& messages) {
    KeepingSink sink;
    EXPECT_EQ(renderOffline(messages, sink, {.soundFont = kSoundFont}).error, "");
    return sink.samples;
}

/// As `HastyMix` tells of what it heard.
std::vector<float> withoutSilence(const std::vector<float>& samples) {
    std::vector<float> sound;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2)
        if (samples[i] != 0 || samples[i + 1] != 0)
            sound.insert(sound.end(), {samples[i], samples[i + 1]});
    return sound;
}

struct MusicPlayerTest : testing::Test {
    QTemporaryDir folder;
    HeardMix mix;

    fs::path place(const std::string& name) { return folder.filePath(name.c_str()).toStdString(); }
    fs::path file(const std::string& name, const std::string& bytes) {
        std::ofstream(place(name), std::ios::binary) << bytes;
        return place(name);
    }
    static std::unique_ptr<MusicPlayer> expectOpened(OpenedMusic opened) {
        EXPECT_EQ(opened.error, "");
        return std::move(opened.player);
    }
    std::unique_ptr<MusicPlayer> open(const fs::path& path) {
        return expectOpened(MusicPlayer::open(path, mix, kSoundFont));
    }
    /// Plays all of it and returns what sounded until it stood still.
    std::vector<float> playWhole(MusicPlayer& player) {
        EXPECT_TRUE(player.play(0, player.length()));
        while (player.mode() == MediaMode::Playing)
            mix.advance(1'000);
        return mix.heard();
    }
    /// What a file sounds like in a mix of its own.
    static std::vector<float> alone(const fs::path& path) {
        HeardMix own;
        const auto player =
            expectOpened(MusicPlayer::openRow({path, path}, own)); // counts in the mix's frames
        const std::int64_t length = player->length() / 2;
        EXPECT_TRUE(player->play(0, length));
        own.advance(length);
        return own.heard();
    }
};
} // namespace

TEST_F(MusicPlayerTest, AFileOfTheMixsRateComesOutBitForBit) {
    const auto values = noise(50'000, 1);
    const auto player = open(file("a.wav", wavOf(values)));
    EXPECT_EQ(player->rate(), 44'100);
    EXPECT_EQ(player->length(), 50'000);
    const std::vector<float> heard = playWhole(*player);
    EXPECT_TRUE(part(heard, 0, 50'000) == exact(values));
    EXPECT_EQ(peak(std::span(heard).subspan(100'000)), 0);
    EXPECT_EQ(player->position(), 50'000);
}

TEST_F(MusicPlayerTest, ARangeComesOutBitForBitFromItsFirstFrameToItsLast) {
    const auto values = noise(50'000, 2);
    const auto player = open(file("a.wav", wavOf(values)));
    ASSERT_TRUE(player->play(12'345, 23'456));
    mix.advance(20'000);
    const std::vector<float> heard = mix.heard();
    EXPECT_TRUE(part(heard, 0, 11'111) == part(exact(values), 12'345, 23'456));
    EXPECT_EQ(peak(std::span(heard).subspan(22'222)), 0);
    EXPECT_EQ(player->position(), 23'456);
}

TEST_F(MusicPlayerTest, MonoSoundsAlikeOnBothSides) {
    const auto values = noise(5'000, 3, 1);
    const std::vector<float> heard = playWhole(*open(file("mono.wav", wavOf(values, 44'100, 1))));
    for (std::size_t i = 0; i < 5'000; ++i) {
        ASSERT_EQ(heard[2 * i], static_cast<float>(values[i]) / 32768);
        ASSERT_EQ(heard[2 * i + 1], heard[2 * i]);
    }
}

TEST_F(MusicPlayerTest, AnotherRateCountsInTheFilesFramesAndKeepsItsLengthAndPitch) {
    std::vector<std::int16_t> values;
    for (int i = 0; i < 48'000; ++i) {
        const auto value =
            static_cast<std::int16_t>(std::lround(16'000 * std::sin(2 * M_PI * 1'000 * i / 48'000)));
        values.insert(values.end(), {value, value});
    }
    const auto player = open(file("a.wav", wavOf(values, 48'000)));
    EXPECT_EQ(player->rate(), 48'000);
    EXPECT_EQ(player->length(), 48'000);
    ASSERT_TRUE(player->play(24'000, 48'000));
    mix.advance(11'025);
    EXPECT_EQ(player->position(), 36'000);
    EXPECT_EQ(player->mode(), MediaMode::Playing);
    mix.advance(11'025);
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    EXPECT_EQ(player->position(), 48'000);
    const std::vector<float> heard = mix.heard();
    EXPECT_EQ(strongest(heard, {900, 950, 1'000, 1'050, 1'100}), 1'000);
    // In the midst, the sine itself: 24,000 frames of 48,000 a second are a whole number of its turns.
    for (std::size_t i = 2'000; i < 20'000; ++i)
        ASSERT_NEAR(heard[2 * i], 16'000.0 / 32768 * std::sin(2 * M_PI * 1'000 * double(i) / 44'100), 2e-4)
            << i;
}

TEST_F(MusicPlayerTest, AnMp3FileSoundsAsItIsDecoded) {
    Mp3File mp3(place("a.mp3"));
    ASSERT_EQ(writeWhole(mp3, sine(440, 30'000)), "");
    const OpenedSound decoded = openSound(place("a.mp3"));
    ASSERT_EQ(decoded.error, "");
    std::vector<float> samples(2 * 30'000);
    ASSERT_EQ(decoded.reader->read(samples), 30'000U);
    const auto player = open(place("a.mp3"));
    EXPECT_EQ(player->length(), 30'000);
    EXPECT_TRUE(part(playWhole(*player), 0, 30'000) == samples);
}

TEST_F(MusicPlayerTest, NothingStandsBetweenTheFilesOfARow) {
    const auto one = noise(10'001, 4);
    const auto two = noise(1, 5);
    const auto three = noise(7'777, 6);
    const auto row = expectOpened(MusicPlayer::openRow(
        {file("1.wav", wavOf(one)), file("2.wav", wavOf(two)), file("3.wav", wavOf(three))}, mix));
    EXPECT_EQ(row->rate(), 44'100);
    EXPECT_EQ(row->length(), 17'779);
    std::vector<float> whole = exact(one);
    for (const auto& values : {two, three})
        for (const float sample : exact(values))
            whole.push_back(sample);
    EXPECT_TRUE(part(playWhole(*row), 0, 17'779) == whole);
    EXPECT_EQ(row->position(), 17'779);
}

TEST_F(MusicPlayerTest, ARowIsPlayedFromAnyPlace) {
    const auto one = noise(10'000, 7);
    const auto two = noise(10'000, 8);
    const auto row =
        expectOpened(MusicPlayer::openRow({file("1.wav", wavOf(one)), file("2.wav", wavOf(two))}, mix));
    ASSERT_TRUE(row->play(12'000, 13'000));
    mix.advance(1'000);
    ASSERT_TRUE(row->play(9'000, 11'000)) << "back to a file that was closed";
    mix.advance(2'000);
    ASSERT_TRUE(row->play(10'000, 10'001));
    mix.advance(1);
    const std::vector<float> heard = mix.heard();
    EXPECT_TRUE(part(heard, 0, 1'000) == part(exact(two), 2'000, 3'000));
    EXPECT_TRUE(part(heard, 1'000, 2'000) == part(exact(one), 9'000, 10'000));
    EXPECT_TRUE(part(heard, 2'000, 3'000) == part(exact(two), 0, 1'000));
    EXPECT_TRUE(part(heard, 3'000, 3'001) == part(exact(two), 0, 1));
}

TEST_F(MusicPlayerTest, ARowJoinsFilesOfAllRates) {
    const auto quiet = [](std::vector<std::int16_t> values) { // converted, noise overshoots
        for (std::int16_t& value : values)
            value = static_cast<std::int16_t>(value / 4);
        return values;
    };
    const auto one = file("1.wav", wavOf(quiet(noise(3'001, 9)), 22'050));
    const auto two = file("2.wav", wavOf(quiet(noise(4'000, 10, 1)), 48'000, 1));
    const auto three = file("3.wav", wavOf(quiet(noise(500, 11))));
    const auto row = expectOpened(MusicPlayer::openRow({one, two, three}, mix));
    std::vector<float> joined;
    for (const auto& path : {one, two, three}) {
        const std::vector<float> sound = alone(path);
        joined.insert(joined.end(), sound.begin(), sound.end());
    }
    EXPECT_EQ(row->length(), 6'002 + 3'675 + 500);
    const std::vector<float> heard = playWhole(*row);
    EXPECT_TRUE(part(heard, 0, 10'177) == joined);
}

TEST_F(MusicPlayerTest, WhatCannotBePlayedSaysWhy) {
    for (const auto& path : {file("junk.wav", "no sound at all"), file("junk.mp3", "no sound at all"),
                             file("junk.mid", "no music at all"), place("nowhere.wav"), place("nowhere.mid"),
                             file("empty.wav", wavOf({}))}) {
        const OpenedMusic opened = MusicPlayer::open(path, mix, kSoundFont);
        EXPECT_FALSE(opened.player) << path;
        EXPECT_THAT(opened.error, HasSubstr(path.string()));
    }
    const OpenedMusic row = MusicPlayer::openRow({file("a.wav", wavOf(noise(10, 12))), place("b.wav")}, mix);
    EXPECT_FALSE(row.player);
    EXPECT_THAT(row.error, HasSubstr("b.wav"));
    EXPECT_THAT(MusicPlayer::perform({}, mix, place("none.sf2")).error, HasSubstr("none.sf2"));
    EXPECT_FALSE(MusicPlayer::openRow({}, mix).player);
}

TEST_F(MusicPlayerTest, AFileThatIsCutWhileItPlaysIsTold) {
    const auto values = noise(200'000, 13);
    const auto path = file("a.wav", wavOf(values));
    const auto player = open(path);
    ASSERT_TRUE(player->play(0, 200'000));
    mix.advance(1'000);
    fs::resize_file(path, 44 + 4 * 60'000);
    while (player->mode() == MediaMode::Playing)
        mix.advance(1'000);
    EXPECT_THAT(player->problem(), HasSubstr(path.string()));
    EXPECT_THAT(player->problem(), HasSubstr("cut"));
    const std::int64_t stood = player->position();
    EXPECT_LE(stood, 60'000);
    EXPECT_TRUE(part(mix.heard(), 0, static_cast<std::size_t>(stood)) ==
                part(exact(values), 0, static_cast<std::size_t>(stood)));
}

TEST_F(MusicPlayerTest, AFileThatIsRemovedBeforeItsTurnIsPassedOverAndTold) {
    const auto one = noise(10'000, 14);
    const auto three = noise(10'000, 15);
    const auto gone = file("2.wav", wavOf(noise(10'000, 16)));
    const auto row = expectOpened(
        MusicPlayer::openRow({file("1.wav", wavOf(one)), gone, file("3.wav", wavOf(three))}, mix));
    fs::remove(gone);
    const std::vector<float> heard = playWhole(*row);
    EXPECT_TRUE(part(heard, 0, 10'000) == exact(one));
    EXPECT_TRUE(part(heard, 10'000, 20'000) == exact(three));
    EXPECT_THAT(row->problem(), HasSubstr(gone.string()));
}

TEST_F(MusicPlayerTest, APerformanceComesOutAsItIsConvertedSampleForSample) {
    const std::vector<float> converted = asConverted(someMusic());
    const auto player = expectOpened(MusicPlayer::perform(someMusic(), mix, kSoundFont));
    ASSERT_TRUE(player->play(0, player->length()));
    while (player->isSounding())
        mix.advance(777);
    EXPECT_EQ(player->position(), player->length());
    const std::vector<float> heard = mix.heard();
    EXPECT_GT(peak(heard), 0.01F);
    EXPECT_TRUE(part(heard, 0, converted.size() / 2) == converted);
    EXPECT_EQ(peak(std::span(heard).subspan(converted.size())), 0);
}

TEST_F(MusicPlayerTest, APerformanceStandsStillAtItsEndAndRingsOut) {
    const auto player = expectOpened(MusicPlayer::perform(someMusic(), mix, kSoundFont));
    ASSERT_TRUE(player->play(0, player->length()));
    mix.advance(player->length());
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    EXPECT_FALSE(player->stop()) << "there is nothing to stop";
    EXPECT_TRUE(player->isSounding());
    mix.advance(2'000);
    EXPECT_GT(peak(part(mix.heard(), static_cast<std::size_t>(player->length()),
                        static_cast<std::size_t>(player->length()) + 2'000)),
              0.0001F);
}

TEST_F(MusicPlayerTest, APerformanceIsTheSameInEachPlaying) {
    const auto player = expectOpened(MusicPlayer::perform(someMusic(), mix, kSoundFont));
    ASSERT_TRUE(player->play(0, 30'000));
    mix.advance(30'000);
    ASSERT_TRUE(player->play(0, 30'000));
    mix.advance(30'000);
    const std::vector<float> heard = mix.heard();
    EXPECT_GT(peak(heard), 0.01F);
    EXPECT_TRUE(part(heard, 0, 29'000) == part(heard, 30'000, 59'000));
}

TEST_F(MusicPlayerTest, APausedPerformanceIsSilentAndGoesOnAsIfNothingHadBeen) {
    const std::vector<float> converted = asConverted(someMusic());
    const auto player = expectOpened(MusicPlayer::perform(someMusic(), mix, kSoundFont));
    ASSERT_TRUE(player->play(0, 50'000));
    mix.advance(20'000);
    ASSERT_TRUE(player->pause());
    mix.advance(10'000);
    ASSERT_TRUE(player->resume());
    mix.advance(30'000);
    const std::vector<float> heard = mix.heard();
    EXPECT_TRUE(part(heard, 0, 20'000) == part(converted, 0, 20'000));
    EXPECT_EQ(peak(part(heard, 20'000, 30'000)), 0);
    EXPECT_TRUE(part(heard, 30'000, 60'000) == part(converted, 20'000, 50'000));
}

TEST_F(MusicPlayerTest, AMidiFileSoundsAtItsPitchAndTime) {
    // 100 ticks a quarter of half a second: an organ's A4 after half a second, for a second; ends after two.
    const std::string events = "\0\xC0\x10\x64\x90\x45\x7F\x81\x48\x45\0\x64\xFF\x2F\0"s;
    const std::string midi =
        "MThd\0\0\0\x06\0\0\0\x01\0\x64MTrk\0\0\0"s + static_cast<char>(events.size()) + events;
    const auto player = open(file("tune.MID", midi));
    EXPECT_EQ(player->rate(), 44'100);
    EXPECT_EQ(player->length(), 2 * 44'100);
    const std::vector<float> heard = playWhole(*player);
    EXPECT_LT(peak(part(heard, 0, 22'016)), kSilence);
    EXPECT_GT(peak(part(heard, 22'016, 22'200)), kSilence);
    EXPECT_EQ(strongest(part(heard, 22'050, 66'000), {415.3, 427.5, 440.0, 452.9, 466.2}), 440.0);
    EXPECT_GT(peak(part(heard, 64'000, 66'000)), 0.02F);
    EXPECT_LT(peak(part(heard, 80'000, 82'000)), 0.02F);
}

TEST_F(MusicPlayerTest, ALiveMixPlaysRowsAndPerformancesAsAVirtualOneDoes) {
    const auto one = noise(30'000, 17);
    const auto two = noise(20'000, 18);
    const std::vector<fs::path> files{file("1.wav", wavOf(one)), file("2.wav", wavOf(two))};
    const std::vector<float> converted = asConverted(someMusic());
    std::vector<float> heard;
    {
        HastyMix live;
        const auto row = expectOpened(MusicPlayer::openRow(files, live));
        ASSERT_TRUE(row->play(0, row->length()));
        ASSERT_TRUE(within(10, [&] { return row->mode() == MediaMode::Stopped; }));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::vector<float> sound = exact(one);
        for (const float sample : exact(two))
            sound.push_back(sample);
        EXPECT_TRUE(live.heard() == withoutSilence(sound));
        EXPECT_EQ(live.memoryCalls, 0U);
        EXPECT_EQ(live.locks, 0U);
    }
    HastyMix live;
    const auto player = expectOpened(MusicPlayer::perform(someMusic(), live, kSoundFont));
    ASSERT_TRUE(player->play(0, player->length()));
    ASSERT_TRUE(within(30, [&] { return !player->isSounding(); }));
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(live.memoryCalls, 0U);
    EXPECT_EQ(live.locks, 0U);
    EXPECT_LT(peak(converted), 32'767.0F / 32'768) << "the limiter would tell where it was late";
    EXPECT_TRUE(live.heard() == withoutSilence(converted));
}
