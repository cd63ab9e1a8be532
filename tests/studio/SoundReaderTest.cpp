// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SoundReader.h"

#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::AllOf;
using testing::HasSubstr;

namespace {
struct SoundReaderTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
};
} // namespace

TEST_F(SoundReaderTest, TheContentsSayWhatAFileIsAndNotItsName) {
    writeFile(folder / "a.mp3", Wav().format().chunk("data", sixteenBits({1, 2})).bytes());
    ASSERT_TRUE(openSound(folder / "a.mp3").reader);
    EXPECT_EQ(openSound(folder / "a.mp3").reader->info().kind, SoundKind::Wav);
    writeFile(folder / "a.wav", mp3Frame(kFrameOf128) + mp3Frame(kFrameOf128));
    ASSERT_TRUE(openSound(folder / "a.wav").reader);
    EXPECT_EQ(openSound(folder / "a.wav").reader->info().kind, SoundKind::Mp3);
}

TEST_F(SoundReaderTest, WhatCannotBeOpenedIsNamed) {
    const auto errorOf = [](const std::filesystem::path& file) {
        const OpenedSound sound = openSound(file);
        EXPECT_FALSE(sound.reader);
        return sound.error;
    };
    EXPECT_THAT(errorOf(folder / "none.wav"), AllOf(HasSubstr("none.wav"), HasSubstr("No such file")));
    EXPECT_THAT(errorOf(folder), AllOf(HasSubstr(folder.string()), HasSubstr("no regular file")));
    ASSERT_EQ(mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    EXPECT_THAT(errorOf(folder / "pipe.wav"), HasSubstr("no regular file"));
    EXPECT_THAT(errorOf("/dev/zero"), HasSubstr("no regular file"));
    writeFile(folder / "broken.wav", Wav().format({.channels = 0}).chunk("data", "1234").bytes());
    EXPECT_THAT(errorOf(folder / "broken.wav"), AllOf(HasSubstr("broken.wav"), HasSubstr("no channel")));
}

TEST_F(SoundReaderTest, SoundFilesAreKnownByTheirNames) {
    for (const char* name : {"a.wav", "/b/c.MP3", "d e.Wav", "f.g.mP3"})
        EXPECT_TRUE(isSoundName(name)) << name;
    for (const char* name : {"a.mid", "wav", "a.wave", "a.mp3 ", "a.wav/b", ""})
        EXPECT_FALSE(isSoundName(name)) << name;
}
