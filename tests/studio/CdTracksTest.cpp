// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/CdTracks.h"

#include "tests/support/DiscFiles.h"

#include <QTemporaryDir>

namespace velmora {

namespace {
class CdTracksTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const {
        return std::filesystem::path(home_.path().toStdString()) / name;
    }
    std::filesystem::path wav(const std::string& name, std::size_t frames, int rate = 44100,
                              int channels = 2) const {
        return writeWav(at(name), std::vector<std::int16_t>(frames * static_cast<std::size_t>(channels), 1),
                        rate, channels);
    }

private:
    QTemporaryDir home_;
};
} // namespace

TEST_F(CdTracksTest, ATrackIsFilledUpToAWholeSector) {
    const CdTracks tracks = tracksOf({wav("a.wav", 588 * 400), wav("b.wav", 588 * 400 + 1)});
    EXPECT_EQ(tracks.list()[0].sectors, 400);
    EXPECT_EQ(tracks.list()[1].sectors, 401);
    EXPECT_EQ(tracks.sectors(), 801);
}

TEST_F(CdTracksTest, NoTrackIsShorterThanFourSeconds) {
    EXPECT_EQ(tracksOf({wav("a.wav", 1)}).sectors(), 300);
}

TEST_F(CdTracksTest, AnotherRateCountsByItsTime) {
    EXPECT_EQ(tracksOf({wav("a.wav", 48000 * 8, 48000, 1)}).sectors(), 600);
}

TEST_F(CdTracksTest, ATitleIsTheNameWithoutFolderAndExtension) {
    EXPECT_EQ(tracksOf({wav("A Window. On the Bay.wav", 9)}).list()[0].title, "A Window. On the Bay");
}

TEST_F(CdTracksTest, WhatIsNoSoundFileIsRefusedByItsName) {
    writeFile(at("text.wav"), "no sound at all");
    std::filesystem::copy(wav("a.wav", 9), at("a.txt"));
    std::filesystem::create_directory(at("folder.wav"));
    CdTracks tracks;
    for (const char* name : {"text.wav", "a.txt", "folder.wav", "absent.mp3"})
        EXPECT_EQ(tracks.add(at(name)), at(name).string() + " is not supported.");
    EXPECT_TRUE(tracks.list().empty());
}

TEST_F(CdTracksTest, ThereAreNinetyNineTracksAtMost) {
    const auto file = wav("a.wav", 9);
    CdTracks tracks;
    for (int i = 0; i < 99; ++i)
        EXPECT_EQ(tracks.add(file), "");
    EXPECT_EQ(tracks.add(file), "Only 99 tracks allowed!");
    EXPECT_EQ(tracks.list().size(), 99U);
    tracks.remove(98);
    EXPECT_EQ(tracks.add(file), "");
}

TEST_F(CdTracksTest, TracksMoveUpAndDownAsFarAsTheEnds) {
    CdTracks tracks = tracksOf({wav("a.wav", 9), wav("b.wav", 9), wav("c.wav", 9)});
    const auto titles = [&tracks] {
        std::string all;
        for (const CdTrack& track : tracks.list())
            all += track.title;
        return all;
    };
    EXPECT_TRUE(tracks.moveUp(2));
    EXPECT_EQ(titles(), "acb");
    EXPECT_TRUE(tracks.moveDown(0));
    EXPECT_EQ(titles(), "cab");
    EXPECT_FALSE(tracks.moveUp(0));
    EXPECT_FALSE(tracks.moveDown(2));
    EXPECT_FALSE(tracks.moveUp(3));
    EXPECT_FALSE(tracks.moveDown(static_cast<std::size_t>(-1)));
    EXPECT_EQ(titles(), "cab");
    tracks.remove(1);
    tracks.remove(7);
    EXPECT_EQ(titles(), "cb");
}

TEST(DiscTimeTest, CountsSeventyFiveSectorsASecond) {
    EXPECT_EQ(discTime(0), "00:00:00");
    EXPECT_EQ(discTime(74), "00:00:74");
    EXPECT_EQ(discTime(75 * 61 + 5), "01:01:05");
    EXPECT_EQ(discTime(kDiscOf80Minutes), "79:57:74");
    EXPECT_EQ(discTime(kLongestDisc), "99:59:74");
    EXPECT_EQ(discTime(kLongestDisc + 1), "100:00:00");
}

} // namespace velmora
