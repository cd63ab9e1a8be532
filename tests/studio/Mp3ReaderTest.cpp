// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Reader.h"

#include "tests/studio/SoundBytes.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

#include <bit>
#include <cstring>
#include <random>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::HasSubstr;
using testsinks::ask;
using testsinks::bytesOf;

namespace {
constexpr int kFrames = 100'003; ///< of the sound that is encoded

/// A stereo sound of noise under two tones, so that frames differ in length where they may.
std::string wavOf(int channels, int rate) {
    std::mt19937 random(7);
    std::vector<int> values;
    for (int i = 0; i < kFrames; ++i) {
        const double loudness = i / 20'000 % 2 == 0 ? 500 : 8000;
        for (int channel = 0; channel < channels; ++channel)
            values.push_back(static_cast<int>(6000 * std::sin(i * 0.06 * (channel + 1)) +
                                              loudness * (static_cast<double>(random() % 2001) / 1000 - 1)));
    }
    return Wav()
        .format({.channels = channels, .rate = static_cast<std::uint32_t>(rate)})
        .chunk("data", sixteenBits(values))
        .bytes();
}

std::vector<float> readAll(SoundReader& reader) {
    const auto channels = static_cast<std::size_t>(reader.info().channels);
    std::vector<float> all;
    std::vector<float> block(1001 * channels);
    while (const std::size_t frames = reader.read(block))
        all.insert(all.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(frames * channels));
    return all;
}

struct Mp3ReaderTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path mp3 = folder / "a.mp3";

    /// The bytes that the stock command makes of a sound.
    std::string encoded(const std::string& options, int channels = 2, int rate = 44100) {
        writeFile(folder / "in.wav", wavOf(channels, rate));
        const auto done =
            ask("lame --quiet " + options + " '" + (folder / "in.wav").string() + "' '" + mp3.string() + "'");
        EXPECT_EQ(done.exitCode, 0) << done.output;
        return bytesOf(mp3);
    }
    /// What another decoder makes of the file: raw floats.
    std::string witness() {
        const std::string raw = (folder / "a.raw").string();
        EXPECT_EQ(ask("mpg123 -q -e f32 -O '" + raw + "' '" + mp3.string() + "'").exitCode, 0);
        return bytesOf(raw);
    }
    std::vector<float> heard(const std::string& bytes) {
        writeFile(mp3, bytes);
        const OpenedSound sound = openSound(mp3);
        EXPECT_TRUE(sound.reader) << sound.error;
        if (!sound.reader)
            return {};
        std::vector<float> all = readAll(*sound.reader);
        EXPECT_EQ(static_cast<std::int64_t>(all.size()),
                  sound.reader->info().frames * sound.reader->info().channels);
        return all;
    }
};

bool sameBytes(const std::vector<float>& samples, const std::string& raw) {
    return raw.size() == samples.size() * sizeof(float) &&
           std::memcmp(raw.data(), samples.data(), raw.size()) == 0;
}

const std::string kOldTag = "TAG" + std::string(125, '\0');
} // namespace

TEST_F(Mp3ReaderTest, EveryFrameIsWhatAnotherDecoderHears) {
    struct Row {
        const char* options;
        int channels;
        int rate;
        int heardRate;
    };
    for (const Row& row : {Row{"-b 224", 2, 44100, 44100}, Row{"-V 4", 2, 48000, 48000},
                           Row{"-b 64", 1, 32000, 32000}, Row{"-b 48 --resample 22.05", 2, 44100, 22050},
                           Row{"--abr 110", 2, 44100, 44100}, Row{"-b 16 --resample 8", 1, 16000, 8000},
                           Row{"-t -b 128", 2, 44100, 44100}, Row{"-b 320 -m s", 2, 44100, 44100}}) {
        const std::vector<float> samples = heard(encoded(row.options, row.channels, row.rate));
        EXPECT_TRUE(sameBytes(samples, witness())) << row.options;
        EXPECT_EQ(openSound(mp3).reader->info().rate, row.heardRate);
        EXPECT_EQ(openSound(mp3).reader->info().channels, row.channels);
    }
}

TEST_F(Mp3ReaderTest, TheLengthIsThatOfWhatWasEncoded) {
    for (const char* options : {"-b 128", "-b 320", "-V 0", "-V 4", "--abr 160"}) {
        encoded(options);
        const OpenedSound sound = openSound(mp3);
        ASSERT_TRUE(sound.reader);
        EXPECT_EQ(sound.reader->info().frames, kFrames) << options;
        EXPECT_EQ(sound.reader->info().kind, SoundKind::Mp3);
        EXPECT_EQ(sound.reader->info().bits, 0);
    }
}

TEST_F(Mp3ReaderTest, TheBitrateIsTheMeanOfTheSoundsFrames) {
    encoded("-b 192");
    EXPECT_EQ(openSound(mp3).reader->info().bitrate, 192);
    const std::string varied = encoded("-V 4");
    const OpenedSound sound = openSound(mp3);
    Held held(varied);
    Mp3Frames frames(held.source);
    frames.next(); // the info frame
    double sum = 0;
    int count = 0;
    for (; const auto frame = frames.next(); ++count)
        sum += frame->header.bitrate;
    EXPECT_EQ(sound.reader->info().bitrate, static_cast<int>(std::lround(sum / count)));
    EXPECT_NE(sound.reader->info().bitrate, 32);
}

TEST_F(Mp3ReaderTest, TagsAndJunkAroundTheSoundDoNoHarm) {
    const std::string plain = encoded("-b 128");
    const std::vector<float> samples = heard(plain);
    std::string picture = id3Head(2'000'000);
    std::mt19937 random(3);
    while (picture.size() < 2'000'010)
        picture += static_cast<char>(random());
    for (const std::string& front : {std::string(), picture, std::string(50'000, 'j')}) {
        for (const std::string& back : {std::string(), kOldTag, std::string(7000, '\0')})
            EXPECT_EQ(heard(front + plain + back), samples) << front.size() << ' ' << back.size();
    }
}

TEST_F(Mp3ReaderTest, CutFilesAreWhatAnotherDecoderHears) {
    const std::string plain = encoded("-b 160");
    for (const std::size_t length : {plain.size() / 2, plain.size() - 100, plain.size() * 9 / 10}) {
        const std::vector<float> samples = heard(plain.substr(0, length));
        EXPECT_TRUE(sameBytes(samples, witness())) << length;
    }
    const std::vector<float> samples = heard(plain.substr(7'777));
    EXPECT_TRUE(sameBytes(samples, witness()));
}

TEST_F(Mp3ReaderTest, FilesPutTogetherAreHeardTogether) {
    const std::string first = encoded("-b 128");
    const std::string second = encoded("-V 2");
    const std::vector<float> samples = heard(first + kOldTag + second);
    EXPECT_TRUE(sameBytes(samples, witness()));
    EXPECT_GT(samples.size(), 4U * kFrames);
}

TEST_F(Mp3ReaderTest, DamageCostsNoMoreThanItsPlaceAndNoTime) {
    for (const char* options : {"-b 224", "-t -b 128", "-V 3"}) {
        const std::string plain = encoded(options);
        const std::vector<float> whole = heard(plain);
        for (const std::string& damage : {std::string(2000, '\0'), std::string(2000, '\xFF')}) {
            std::string damaged = plain;
            damaged.replace(plain.size() / 2, damage.size(), damage);
            const std::vector<float> samples = heard(damaged);
            const std::size_t away = whole.size() * 3 / 5; // behind the damage, and where it is forgotten
            if (options == std::string("-V 3")) {
                EXPECT_NEAR(static_cast<double>(samples.size()), static_cast<double>(whole.size()),
                            0.05 * static_cast<double>(whole.size()));
                continue; // how many frames stood there can't be known
            }
            ASSERT_EQ(samples.size(), whole.size()) << options;
            for (std::size_t i = 0; i < whole.size(); ++i) {
                if (i < whole.size() * 2 / 5 || i > away) {
                    ASSERT_NEAR(samples[i], whole[i], 1e-6) << options << i;
                }
            }
        }
    }
}

TEST_F(Mp3ReaderTest, APlaceThatIsSoughtSoundsAsItDoesInPassing) {
    for (const char* options : {"-b 224", "-V 4", "-b 40 --resample 24", "-b 64 -m m"}) {
        encoded(options);
        const OpenedSound sound = openSound(mp3);
        ASSERT_TRUE(sound.reader);
        const auto channels = static_cast<std::ptrdiff_t>(sound.reader->info().channels);
        const std::vector<float> whole = readAll(*sound.reader);
        for (const std::int64_t frame :
             {std::int64_t{0}, std::int64_t{1}, std::int64_t{33'333}, std::int64_t{50'000},
              sound.reader->info().frames - 1, sound.reader->info().frames}) {
            sound.reader->seek(frame);
            EXPECT_EQ(readAll(*sound.reader),
                      std::vector<float>(whole.begin() + channels * frame, whole.end()))
                << options << frame;
        }
    }
}

TEST_F(Mp3ReaderTest, TitleAndArtistAreInTheTags) {
    encoded("-b 128 --add-id3v2 --tt 'Tüne ☃' --ta Who");
    EXPECT_EQ(openSound(mp3).reader->info().title, "Tüne ☃");
    EXPECT_EQ(openSound(mp3).reader->info().artist, "Who");
    encoded("-b 128 --id3v1-only --tt Old --ta One");
    EXPECT_EQ(openSound(mp3).reader->info().title, "Old");
}

TEST_F(Mp3ReaderTest, NoSoundIsRefusedInWords) {
    const auto refusal = [this](const std::string& bytes) {
        writeFile(mp3, bytes);
        const OpenedSound sound = openSound(mp3);
        EXPECT_FALSE(sound.reader);
        EXPECT_THAT(sound.error, HasSubstr(mp3.string()));
        return sound.error;
    };
    EXPECT_THAT(refusal(""), HasSubstr("neither a WAV nor an MP3"));
    EXPECT_THAT(refusal(std::string(10'000, 'x')), HasSubstr("neither"));
    EXPECT_THAT(refusal(mp3Frame(kFrameOf128)), HasSubstr("neither"));
    // Delay and padding that leave nothing.
    const std::string plain = encoded("-b 128");
    std::string empty = plain.substr(0, plain.find("Info", 0) + 2000);
    const std::size_t delayAt = empty.find("LAME") + 21;
    empty.replace(delayAt, 3, "\xFF\xFF\xFF");
    EXPECT_THAT(refusal(empty), HasSubstr("no sound"));
}

TEST_F(Mp3ReaderTest, AFileOfManyHoursTakesNoMoreMemoryForItsPlaces) {
    // Frames of the lowest bitrate, more than there are places for; every one is found again.
    std::string bytes;
    const std::string frame = mp3Frame(24, 1, 1, 3, 2);
    for (int i = 0; i < 40'000; ++i)
        bytes += frame;
    Mp3Reader reader(std::make_unique<OwnBytes>(bytes));
    ASSERT_EQ(reader.problem(), "");
    EXPECT_EQ(reader.info().frames, 40'000 * 576);
    reader.seek(39'999 * 576);
    EXPECT_EQ(readAll(reader).size(), 576U);
    reader.seek(20'001 * 576 + 5);
    std::vector<float> some(100);
    EXPECT_EQ(reader.read(some), 100U);
}
