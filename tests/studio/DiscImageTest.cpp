// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscImage.h"

#include "tests/support/DiscFiles.h"
#include "tests/support/FullDisk.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

namespace velmora {

namespace {
using End = SectorOutcome::End;

class DiscImageTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const {
        return std::filesystem::path(home_.path().toStdString()) / name;
    }
    /// How many files there are.
    [[nodiscard]] std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(at("")), {});
    }
    /// Two tracks of noise, and what stands of them on the disc.
    CdTracks twoTracks() {
        const auto first = noise(588 * 700 + 17, 1);
        const auto second = noise(100, 2);
        sectors_ = filledUp(first, 701) + filledUp(second, 300);
        return tracksOf({writeWav(at("one.wav"), first), writeWav(at("two.wav"), second)});
    }

    QTemporaryDir home_;
    std::string sectors_;
};
} // namespace

TEST_F(DiscImageTest, AWavFileOfTheDiscsFormatStandsInItBitForBit) {
    const CdTracks tracks = twoTracks();
    EXPECT_EQ(writeImage(tracks, at("out.cue")).end, End::Done);
    EXPECT_EQ(readFile(at("out.bin")), sectors_);
}

TEST_F(DiscImageTest, MonoIsAlikeOnBothSides) {
    const std::vector<std::int16_t> mono{100, -200, 32767, -32768};
    const CdTracks tracks = tracksOf({writeWav(at("mono.wav"), mono, 44100, 1)});
    EXPECT_EQ(writeImage(tracks, at("out.cue")).end, End::Done);
    EXPECT_EQ(readFile(at("out.bin")), filledUp({100, 100, -200, -200, 32767, 32767, -32768, -32768}, 300));
}

TEST_F(DiscImageTest, AnotherRateIsConvertedToItsFullLength) {
    const std::vector<std::int16_t> steady(48000 * 2 * 5, 8000);
    const CdTracks tracks = tracksOf({writeWav(at("rate.wav"), steady, 48000)});
    EXPECT_EQ(writeImage(tracks, at("out.cue")).end, End::Done);
    const std::string bytes = readFile(at("out.bin"));
    ASSERT_EQ(bytes.size(), 375U * kSectorBytes);
    std::int16_t middle = 0;
    std::memcpy(&middle, bytes.data() + bytes.size() / 2, sizeof middle);
    EXPECT_NEAR(middle, 8000, 2);
}

TEST_F(DiscImageTest, TheCueFileTellsTracksTitlesAndPlaces) {
    CdTracks tracks = twoTracks();
    EXPECT_EQ(cueSheet(tracks, "folder/My disc.cue"), "FILE \"My disc.bin\" BINARY\n"
                                                      "  TRACK 01 AUDIO\n"
                                                      "    TITLE \"one\"\n"
                                                      "    INDEX 01 00:00:00\n"
                                                      "  TRACK 02 AUDIO\n"
                                                      "    TITLE \"two\"\n"
                                                      "    INDEX 01 00:09:26\n");
}

TEST_F(DiscImageTest, QuotesInATitleBecomeApostrophes) {
    const CdTracks tracks = tracksOf({writeWav(at("say \"hi\"\tnow.wav"), noise(4, 1))});
    EXPECT_THAT(cueSheet(tracks, "out.cue"), testing::HasSubstr("TITLE \"say 'hi' now\"\n"));
}

TEST_F(DiscImageTest, ALongTitleIsCutBetweenCharacters) {
    std::string name;
    for (int i = 0; i < 120; ++i)
        name += "ö";
    const CdTracks tracks = tracksOf({writeWav(at(name + ".wav"), noise(4, 1))});
    EXPECT_THAT(cueSheet(tracks, "out.cue"), testing::HasSubstr("TITLE \"" + name + "\"\n"));
    const CdTracks longer = tracksOf({writeWav(at("x" + name + "y.wav"), noise(4, 1))});
    EXPECT_THAT(cueSheet(longer, "out.cue"), testing::HasSubstr("TITLE \"x" + name.substr(2) + "\"\n"));
}

TEST_F(DiscImageTest, SharesRiseToOneWithEachTrackInTurn) {
    const CdTracks tracks = twoTracks();
    std::vector<std::size_t> order;
    double ofTrack = 0;
    double ofAll = 0;
    (void)writeImage(tracks, at("out.cue"), [&](std::size_t track, double share, double total) {
        if (order.empty() || order.back() != track) {
            EXPECT_EQ(ofTrack, order.empty() ? 0 : 1);
            order.push_back(track);
            ofTrack = 0;
        }
        EXPECT_GE(share, ofTrack);
        EXPECT_GE(total, ofAll);
        ofTrack = share;
        ofAll = total;
    });
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(ofTrack, 1);
    EXPECT_EQ(ofAll, 1);
}

TEST_F(DiscImageTest, ACancelledImageLeavesTheOldFilesAndNothingElse) {
    const CdTracks tracks = twoTracks();
    writeFile(at("out.cue"), "old sheet");
    writeFile(at("out.bin"), "old sectors");
    const auto before = files();
    std::stop_source cancel;
    const auto outcome = writeImage(
        tracks, at("out.cue"), [&](std::size_t, double, double) { cancel.request_stop(); },
        cancel.get_token());
    EXPECT_EQ(outcome.end, End::Cancelled);
    EXPECT_EQ(readFile(at("out.cue")), "old sheet");
    EXPECT_EQ(readFile(at("out.bin")), "old sectors");
    EXPECT_EQ(files(), before);
}

TEST_F(DiscImageTest, AFileThatHasGoneOrChangedIsToldAndNothingIsLeft) {
    const CdTracks tracks = twoTracks();
    writeFile(at("out.bin"), "old sectors");
    writeWav(at("two.wav"), noise(101, 2));
    auto outcome = writeImage(tracks, at("out.cue"));
    EXPECT_EQ(outcome.end, End::Unreadable);
    EXPECT_THAT(outcome.error, testing::HasSubstr("two.wav"));
    std::filesystem::remove(at("two.wav"));
    outcome = writeImage(tracks, at("out.cue"));
    EXPECT_EQ(outcome.end, End::Unreadable);
    EXPECT_THAT(outcome.error, testing::HasSubstr("two.wav"));
    EXPECT_EQ(readFile(at("out.bin")), "old sectors");
    EXPECT_EQ(files(), 2);
}

TEST_F(DiscImageTest, AFileThatIsCutShortMeanwhileIsTold) {
    const CdTracks tracks = twoTracks();
    bool cut = false;
    const auto outcome = writeImage(tracks, at("out.cue"), [&](std::size_t, double, double) {
        if (!std::exchange(cut, true))
            std::filesystem::resize_file(at("one.wav"), 1000);
    });
    EXPECT_EQ(outcome.end, End::Unreadable);
    EXPECT_THAT(outcome.error, testing::HasSubstr("one.wav"));
    EXPECT_FALSE(std::filesystem::exists(at("out.bin")));
}

TEST_F(DiscImageTest, ADiskWithoutRoomIsToldBeforeAnythingIsRead) {
    const CdTracks tracks = twoTracks();
    bool began = false;
    const auto outcome = [&] {
        const FullDisk disk(100'000);
        return writeImage(tracks, at("out.cue"), [&began](std::size_t, double, double) { began = true; });
    }();
    EXPECT_EQ(outcome.end, End::Unwritable);
    EXPECT_THAT(outcome.error, testing::HasSubstr("out.bin"));
    EXPECT_FALSE(began);
    EXPECT_EQ(files(), 2);
}

TEST_F(DiscImageTest, WithoutAPlaceForTheSheetTheOldSectorsStay) {
    const CdTracks tracks = twoTracks();
    writeFile(at("out.bin"), "old sectors");
    std::filesystem::create_directory(at("out.cue"));
    const auto outcome = writeImage(tracks, at("out.cue"));
    EXPECT_EQ(outcome.end, End::Unwritable);
    EXPECT_THAT(outcome.error, testing::HasSubstr("out.cue"));
    EXPECT_EQ(readFile(at("out.bin")), "old sectors");
    EXPECT_EQ(files(), 4);
}

TEST_F(DiscImageTest, ASheetThatFailsAtTheLastMomentBringsTheOldSectorsBack) {
    const CdTracks tracks = twoTracks();
    writeFile(at("out.bin"), "old sectors");
    // The place of the sheet is taken while the sectors are compared, so that moving it there fails.
    const auto takePlace = [this](std::size_t, double, double) {
        std::filesystem::create_directories(at("out.cue"));
    };
    const auto outcome = writeImage(tracks, at("out.cue"), {}, {}, takePlace);
    EXPECT_EQ(outcome.end, End::Unwritable);
    EXPECT_EQ(readFile(at("out.bin")), "old sectors");
    EXPECT_EQ(files(), 4);
    std::filesystem::remove(at("out.bin"));
    std::filesystem::remove(at("out.cue"));
    EXPECT_EQ(writeImage(tracks, at("out.cue"), {}, {}, takePlace).end, End::Unwritable);
    EXPECT_FALSE(std::filesystem::exists(at("out.bin")));
}

TEST_F(DiscImageTest, ANameThatASheetCantHoldIsRefused) {
    const auto outcome = writeImage(twoTracks(), at("my \"disc\".cue"));
    EXPECT_EQ(outcome.end, End::Unwritable);
    EXPECT_EQ(files(), 2);
}

TEST_F(DiscImageTest, ComparingFindsASingleBit) {
    const CdTracks tracks = twoTracks();
    ASSERT_EQ(writeImage(tracks, at("out.cue")).end, End::Done);
    const auto compared = [&] {
        const int file = open(at("out.bin").c_str(), O_RDONLY | O_CLOEXEC);
        const SectorOutcome outcome = compareSectors(tracks, file, at("out.bin"));
        close(file);
        return outcome;
    };
    EXPECT_EQ(compared().end, End::Done);
    std::string bytes = readFile(at("out.bin"));
    bytes[702 * kSectorBytes] = static_cast<char>(bytes[702 * kSectorBytes] ^ 1);
    writeFile(at("out.bin"), bytes);
    const SectorOutcome outcome = compared();
    EXPECT_EQ(outcome.end, End::Different);
    EXPECT_THAT(outcome.error, testing::HasSubstr("\"two\" at 00:00:00"));
    bytes.resize(1000 * kSectorBytes);
    writeFile(at("out.bin"), bytes);
    EXPECT_EQ(compared().end, End::Different);
}

} // namespace velmora
