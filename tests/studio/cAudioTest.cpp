// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/cAudio.h"

#include "base/VirtualLoop.h"
#include "studio/DiscImage.h"
#include "tests/support/DiscFiles.h"

#include <QTemporaryDir>

namespace velmora {

namespace {
struct ImageEvents : BurnEvents {
    void StartWriting(std::size_t track) override { told.push_back("write " + std::to_string(track)); }
    void WriteProgress(double /*track*/, double total) override { rise(written, total); }
    void Comparing(double share) override { rise(compared, share); }
    void Finished() override { told.push_back("finished"); }
    static void rise(double& last, double share) {
        EXPECT_GE(share, last);
        last = share;
    }
    std::vector<std::string> told;
    double written = 0;
    double compared = 0;
};

/// The drive that is always there.
class cAudioTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path at(const std::string& name) const {
        return std::filesystem::path(home_.path().toStdString()) / name;
    }
    CdDrive image_{.name = std::string(kImageDrive), .address = {}, .isImage = true, .speeds = {}};
    QTemporaryDir home_;
    VirtualLoop loop_;
    cAudio audio_{&loop_};
    ImageEvents events_;
};
} // namespace

TEST_F(cAudioTest, TheImageIsTheLastDriveOfAll) {
    const std::vector<CdDrive> drives = audio_.drives();
    ASSERT_FALSE(drives.empty());
    EXPECT_TRUE(drives.back().isImage);
    EXPECT_EQ(drives.back().name, "Disc image (CUE and BIN file)");
    EXPECT_THAT(drives.back().speedTexts(), testing::ElementsAre("Max."));
    EXPECT_TRUE(audio_.setSpeed(image_, 0));
    EXPECT_FALSE(audio_.setSpeed(image_, 1));
    EXPECT_EQ(audio_.disc(image_).state, DiscState::Blank);
    EXPECT_EQ(audio_.disc(image_).sectors, kLongestDisc);
}

TEST_F(cAudioTest, AnImageIsWrittenComparedAndFinished) {
    const auto first = noise(588 * 301, 1);
    const CdTracks tracks = tracksOf({writeWav(at("a.wav"), first), writeWav(at("b.wav"), noise(5, 2))});
    const BurnOutcome outcome = audio_.burn(image_, tracks, at("out.cue"), events_);
    EXPECT_EQ(outcome.code, BurnCode::Finished) << outcome.detail;
    EXPECT_EQ(readFile(at("out.bin")), filledUp(first, 301) + filledUp(noise(5, 2), 300));
    EXPECT_EQ(readFile(at("out.cue")), cueSheet(tracks, at("out.cue")));
    EXPECT_THAT(events_.told, testing::ElementsAre("write 0", "write 1", "finished"));
    EXPECT_EQ(events_.written, 1);
    EXPECT_EQ(events_.compared, 1);
}

TEST_F(cAudioTest, AFileThatIsGoneHasItsCode) {
    const CdTracks tracks = tracksOf({writeWav(at("a.wav"), noise(5, 2))});
    std::filesystem::remove(at("a.wav"));
    const BurnOutcome outcome = audio_.burn(image_, tracks, at("out.cue"), events_);
    EXPECT_EQ(outcome.code, BurnCode::NoFile);
    EXPECT_THAT(outcome.detail, testing::HasSubstr("a.wav"));
    EXPECT_TRUE(events_.told.empty());
}

TEST_F(cAudioTest, AFolderThatCantBeWrittenToIsToldByName) {
    const CdTracks tracks = tracksOf({writeWav(at("a.wav"), noise(5, 2))});
    const BurnOutcome outcome = audio_.burn(image_, tracks, at("absent/out.cue"), events_);
    EXPECT_EQ(outcome.code, BurnCode::WriteError);
    EXPECT_THAT(outcome.detail, testing::HasSubstr("absent/out.cue"));
}

TEST_F(cAudioTest, NoTracksAndTooManySectorsAreRefused) {
    EXPECT_EQ(audio_.burn(image_, {}, at("out.cue"), events_).code, BurnCode::InvalidMedium);
    // Few samples, but at a low rate: an hour a track.
    const auto file = writeWav(at("a.wav"), std::vector<std::int16_t>(60 * 60 * 100, 1), 100, 1);
    const CdTracks tracks = tracksOf({file, file});
    ASSERT_GT(tracks.sectors(), kLongestDisc);
    EXPECT_EQ(audio_.burn(image_, tracks, at("out.cue"), events_).code, BurnCode::InvalidMedium);
    EXPECT_FALSE(std::filesystem::exists(at("out.bin")));
}

TEST_F(cAudioTest, ACancelLeavesNothing) {
    const CdTracks tracks = tracksOf({writeWav(at("a.wav"), noise(5, 2))});
    std::stop_source cancel;
    cancel.request_stop();
    EXPECT_TRUE(audio_.burn(image_, tracks, at("out.cue"), events_, cancel.get_token()).cancelled);
    EXPECT_FALSE(std::filesystem::exists(at("out.cue")));
    EXPECT_FALSE(std::filesystem::exists(at("out.bin")));
}

TEST(BurnTextsTest, EachCodeHasItsWords) {
    EXPECT_EQ(burnText(static_cast<BurnCode>(0)), "Could not send write parameters page.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(1)), "Write error (Buffer Underrun?");
    EXPECT_EQ(burnText(static_cast<BurnCode>(2)), "Could not access a file.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(3)), "Error closing track.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(4)), "Error closing session.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(5)), "Synchronizing cache failed.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(6)), "Invalid medium.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(7)), "Disk isn't empty!");
    EXPECT_EQ(burnText(static_cast<BurnCode>(8)), "");
    EXPECT_EQ(burnText(static_cast<BurnCode>(9)), "Could not get next writable address.");
    EXPECT_EQ(burnText(static_cast<BurnCode>(10)), "Finished.");
}

} // namespace velmora
