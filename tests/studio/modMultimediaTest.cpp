// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/modMultimedia.h"

#include "tests/studio/MediaFixture.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::modMultimedia;
using namespace velmora::testmedia;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
struct modMultimediaTest : testing::Test, MediaFixture {
    modMultimediaTest() {
        media.onCommand = [this](std::string_view command, const MediaAnswer& /*answer*/) {
            sent.emplace_back(command);
        };
    }
    /// What was sent since the last call.
    std::vector<std::string> taken() { return std::exchange(sent, {}); }

    std::vector<std::string> sent;
};
} // namespace

TEST_F(modMultimediaTest, EachOperationIsOneCommandOfItsOwnSpelling) {
    openMedia(media, "/no such/a b.mp3", "MPEGVideo", "audiomp3", 77);
    play(media, "audiomp3", 5, 9);
    play(media, "audiomp3", -3, 9);
    close(media, "audiomp3");
    pause(media, "audiomp3");
    resume(media, "audiomp3");
    stop(media, "audiomp3");
    saveCapture(media, "/no such/x.wav");
    stopCapture(media);
    closeCapture(media);
    closeAll(media);
    (void)position(media, "audiomp3");
    EXPECT_THAT(taken(),
                ElementsAre("open /no such/a b.mp3 type MPEGVideo Alias audiomp3 parent 77 Style 1073741824",
                            "play audiomp3 from 5 to 9", "play audiomp3 from 0 to 9", "Close audiomp3",
                            "Pause audiomp3", "Resume audiomp3", "Stop audiomp3",
                            "Save capture /no such/x.wav", "stop capture", "close capture ", "Close All",
                            "status audiomp3 position"));
}

TEST_F(modMultimediaTest, APathKeepsTheBlanksAtItsEnds) {
    openMedia(media, " a.wav", "MPEGVideo", "m");
    saveCapture(media, "b ");
    EXPECT_THAT(taken(), ElementsAre("open \" a.wav\" type MPEGVideo Alias m parent 0 Style 1073741824",
                                     "Save capture \"b \""));
}

TEST_F(modMultimediaTest, TextsAreSuccessOrWhatWentWrong) {
    ASSERT_EQ(openSong(), "Success");
    EXPECT_EQ(openMedia(media, path("song.wav"), "MPEGVideo", "audiomp3"), "Success");
    EXPECT_EQ(play(media, "audiomp3", 0, 0), "Success");
    EXPECT_EQ(pause(media, "audiomp3"), "Success");
    EXPECT_EQ(resume(media, "audiomp3"), "Success");
    EXPECT_EQ(stop(media, "audiomp3"), "Success");
    EXPECT_THAT(stop(media, "audiomp3"), HasSubstr("nothing to stop"));
    EXPECT_EQ(close(media, "audiomp3"), "Success");
    EXPECT_THAT(close(media, "audiomp3"), HasSubstr("isn't open"));
    EXPECT_THAT(stopCapture(media), HasSubstr("isn't open"));
    EXPECT_THAT(openMedia(media, "", "MPEGVideo", "audiomp3"), HasSubstr("audiomp3"));
    EXPECT_EQ(closeAll(media), "Success");
}

TEST_F(modMultimediaTest, PlayingToNothingIsPlayingToTheEnd) {
    ASSERT_EQ(openSong(3000), "Success");
    taken();
    EXPECT_EQ(play(media, "m", 0, 0), "Success");
    EXPECT_THAT(taken(), ElementsAre("set m time format frames", "status m length", "play m from 0 to 3000"));
    EXPECT_EQ(play(media, "none", 0, 0), "\"none\" isn't open.");
}

TEST_F(modMultimediaTest, ALengthInMillisecondsLeavesFramesBehind) {
    ASSERT_EQ(openSong(88200), "Success");
    taken();
    EXPECT_EQ(lengthInFrames(media, "m"), 88200);
    EXPECT_THAT(taken(), ElementsAre("set m time format frames", "status m length"));
    EXPECT_EQ(lengthInMilliseconds(media, "m"), 2000);
    EXPECT_THAT(taken(), ElementsAre("set m time format ms", "status m length", "set m time format frames"));
    EXPECT_EQ(send("status m length"), "Success 88200");
}

TEST_F(modMultimediaTest, NumbersAreMinusOneWhereACommandFails) {
    EXPECT_EQ(lengthInFrames(media, "none"), -1);
    EXPECT_EQ(lengthInMilliseconds(media, "none"), -1);
    EXPECT_EQ(position(media, "none"), -1);
    EXPECT_EQ(framesPerSecond(media, "none"), -1);
}

TEST_F(modMultimediaTest, FramesPerSecondAreRounded) {
    ASSERT_EQ(openSong(22050 * 3 + 7, 22050), "Success");
    // 66157 frames in 3000 ms
    EXPECT_EQ(framesPerSecond(media, "m"), 22052);
    writeWav(folder / "short.wav", ramp(10));
    send("open " + path("short.wav") + " type MPEGVideo alias short");
    EXPECT_EQ(framesPerSecond(media, "short"), -1); // less than a millisecond tells no rate
}

TEST_F(modMultimediaTest, TheEndIsTheLengthOrAFrameBefore) {
    ASSERT_EQ(openSong(3000), "Success");
    std::int32_t length = 0;
    EXPECT_FALSE(isAtEnd(media, "m", length));
    EXPECT_EQ(length, 3000);
    for (const auto& [to, atEnd] : {std::pair{2998, false}, {2999, true}, {3000, true}}) {
        play(media, "m", 1, to);
        send("wait m");
        EXPECT_EQ(isAtEnd(media, "m", length), atEnd) << to;
    }
    taken();
    (void)isAtEnd(media, "m", length);
    EXPECT_THAT(taken(), ElementsAre("status m position")); // the length is known
    std::int32_t unknown = 0;
    EXPECT_FALSE(isAtEnd(media, "none", unknown));
}

TEST(MciDriver, MusicFilesPlayThroughTheirDriver) {
    MemorySettings store;
    EXPECT_EQ(ReadMciDriver(store, "MPEGVideo"), "None");
    chooseMusicDriver(store);
    EXPECT_EQ(store.values, (SettingsMap{{{"MCI", "MPEGVideo"}, "mciqtz.drv"}}));
    EXPECT_EQ(ReadMciDriver(store, "MPEGVideo"), "mciqtz.drv");
    WriteMciDriver(store, "MPEGVideo", "another.drv");
    chooseMusicDriver(store);
    EXPECT_EQ(ReadMciDriver(store, "MPEGVideo"), "mciqtz.drv");
    WriteMciDriver(store, "long", std::string(300, 'x'));
    EXPECT_EQ(ReadMciDriver(store, "long").size(), 255U);
}

namespace {
struct CountingSettings : MemorySettings {
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override {
        ++saves;
        MemorySettings::SaveSetting(section, key, value);
    }
    int saves = 0;
};
} // namespace

TEST(MciDriver, ADriverThatIsChosenIsNotWrittenAgain) {
    CountingSettings store;
    chooseMusicDriver(store);
    chooseMusicDriver(store);
    EXPECT_EQ(store.saves, 1);
}
