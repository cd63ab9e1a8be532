// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/studio/MediaFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <fstream>

using namespace velmora;
using namespace velmora::testmedia;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {
struct MediaDevicesTest : testing::Test, MediaFixture {
    int number(const std::string& line) {
        const std::string answer = send(line);
        EXPECT_THAT(answer, StartsWith("Success "));
        return answer.starts_with("Success ") ? std::stoi(answer.substr(8)) : -1;
    }
    /// The captured frames from the first sound to the last.
    std::vector<std::int16_t> savedSound() {
        EXPECT_EQ(send("save rec " + path("out.wav")), "Success");
        std::vector<std::int16_t> samples = samplesOf(path("out.wav"));
        while (!samples.empty() && samples.back() == 0)
            samples.pop_back();
        const auto first = std::ranges::find_if(samples, [](std::int16_t s) { return s != 0; });
        samples.erase(samples.begin(), first);
        return samples;
    }
};
constexpr const char* kOpenRecorder = "open new type waveaudio alias rec";
} // namespace

TEST_F(MediaDevicesTest, APlayerGoesOnByWhatPassesAndStandsAtItsEnd) {
    ASSERT_EQ(openSong(), "Success");
    EXPECT_EQ(send("status m length"), "Success 44100");
    EXPECT_EQ(send("status m position"), "Success 0");
    EXPECT_EQ(send("status m mode"), "Success stopped");
    EXPECT_EQ(send("play m"), "Success");
    EXPECT_EQ(send("status m mode"), "Success playing");
    EXPECT_EQ(send("wait 0.5"), "Success");
    EXPECT_NEAR(number("status m position"), 22050, 882);
    EXPECT_EQ(send("wait 0.6"), "Success");
    EXPECT_EQ(send("status m mode"), "Success stopped");
    EXPECT_EQ(send("status m position"), "Success 44100");
}

TEST_F(MediaDevicesTest, ARangeEndsWhereItIsSaidTo) {
    ASSERT_EQ(openSong(), "Success");
    EXPECT_EQ(send("play m from 1000 to 5000"), "Success");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status m position"), "Success 5000");
    EXPECT_EQ(send("play m to 6000"), "Success"); // from where it stands
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status m position"), "Success 6000");
    EXPECT_EQ(send("play m from 44000 to 99999999"), "Success");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status m position"), "Success 44100");
}

TEST_F(MediaDevicesTest, ARangeThatHoldsNothingIsRefused) {
    ASSERT_EQ(openSong(), "Success");
    for (const char* range : {"from 5 to 5", "from 6 to 5", "from 44101", "from 44100", "to 0",
                              "from 0 to -1", "from -1", "from -5 to -3"})
        EXPECT_THAT(send("play m " + std::string(range)), StartsWith("\"m\" ")) << range;
    EXPECT_EQ(send("status m mode"), "Success stopped");
    ASSERT_EQ(send("play m"), "Success");
    ASSERT_EQ(send("wait m"), "Success");
    EXPECT_THAT(send("play m"), StartsWith("\"m\" ")); // it stands at its end
}

TEST_F(MediaDevicesTest, WhatFindsNothingToDoFails) {
    ASSERT_EQ(openSong(), "Success");
    EXPECT_EQ(send("stop m"), "\"m\" has nothing to stop.");
    EXPECT_EQ(send("pause m"), "\"m\" has nothing to pause.");
    EXPECT_EQ(send("resume m"), "\"m\" has nothing to resume.");
    send("play m");
    EXPECT_THAT(send("resume m"), StartsWith("\"m\""));
    EXPECT_EQ(send("pause m"), "Success");
    EXPECT_EQ(send("status m mode"), "Success paused");
    EXPECT_THAT(send("pause m"), StartsWith("\"m\""));
    EXPECT_EQ(send("resume m"), "Success");
    EXPECT_EQ(send("stop m"), "Success");
    EXPECT_THAT(send("stop m"), StartsWith("\"m\""));
    EXPECT_EQ(send("close m"), "Success");
    EXPECT_EQ(send("close m"), "\"m\" isn't open.");
}

TEST_F(MediaDevicesTest, WhatIsPausedOrStoppedStandsWhereItWas) {
    ASSERT_EQ(openSong(), "Success");
    send("play m");
    send("wait 0.25");
    send("pause m");
    const int at = number("status m position");
    send("wait 1");
    EXPECT_EQ(number("status m position"), at);
    EXPECT_EQ(send("wait m"), "Success"); // it stands still already
    send("resume m");
    send("wait 0.25");
    EXPECT_NEAR(number("status m position"), at + 11025, 882);
    EXPECT_EQ(send("stop m"), "Success");
    EXPECT_NEAR(number("status m position"), at + 11025, 882);
    EXPECT_EQ(send("play m"), "Success");
    EXPECT_NEAR(number("status m position"), at + 11025, 882);
}

TEST_F(MediaDevicesTest, TheUnitIsTheAliasesOwn) {
    ASSERT_EQ(openSong(22050, 22050), "Success");
    ASSERT_EQ(send("open " + path("song.wav") + " type MPEGVideo alias other"), "Success");
    EXPECT_EQ(send("set M time format MS"), "Success");
    EXPECT_EQ(send("status m length"), "Success 1000");
    EXPECT_EQ(send("status other length"), "Success 22050");
    EXPECT_EQ(send("play m from 250 to 500"), "Success");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status m position"), "Success 500");
    EXPECT_EQ(send("set m time format frames"), "Success");
    EXPECT_EQ(send("status m position"), "Success 11025");
}

TEST_F(MediaDevicesTest, TheLengthInMillisecondsMeansTheWhole) {
    ASSERT_EQ(openSong(44110), "Success"); // 1000.2 ms
    send("set m time format ms");
    ASSERT_EQ(send("status m length"), "Success 1000");
    ASSERT_EQ(send("play m from 0 to 1000"), "Success");
    send("wait m");
    send("set m time format frames");
    EXPECT_EQ(send("status m position"), "Success 44110");
}

TEST_F(MediaDevicesTest, AnAliasStandsForOneDevice) {
    ASSERT_EQ(openSong(), "Success");
    EXPECT_EQ(send("open " + path("song.wav") + " type MPEGVideo alias M"), "\"M\" is in use.");
    EXPECT_EQ(send("open new type waveaudio alias m"), "\"m\" is in use.");
    EXPECT_EQ(send("STATUS M LENGTH"), "Success 44100");
    EXPECT_NE(media.player("M"), nullptr);
    EXPECT_EQ(media.recorder("m"), nullptr);
}

TEST_F(MediaDevicesTest, WhatCantBeOpenedIsNamed) {
    EXPECT_THAT(send("open " + path("none.wav") + " type MPEGVideo alias m"), HasSubstr("none.wav"));
    std::ofstream(folder / "text.wav") << "no sound at all";
    EXPECT_THAT(send("open " + path("text.wav") + " type MPEGVideo alias m"), HasSubstr("text.wav"));
    EXPECT_THAT(send("open  type MPEGVideo alias m"), HasSubstr("\"m\""));
    const std::string deep = folder.string() + "/" + std::string(200, 'd') + "/none.wav";
    const std::string error = send("open " + deep + " type MPEGVideo alias m");
    EXPECT_LE(error.size(), 128U);
    EXPECT_THAT(error, HasSubstr("none.wav"));
    EXPECT_EQ(media.player("m"), nullptr);
}

TEST_F(MediaDevicesTest, APathMayHaveBlanksAndWordsOfCommands) {
    const auto file = writeWav(folder / "a type MPEGVideo alias b  .wav", ramp(100));
    EXPECT_EQ(send("open " + file.string() + " type MPEGVideo alias one"), "Success");
    EXPECT_EQ(send("open \"" + file.string() + "\" type MPEGVideo alias two parent 5 style 1073741824"),
              "Success");
    EXPECT_EQ(send("status two length"), "Success 100");
}

TEST_F(MediaDevicesTest, ARowOfFilesIsOnePiece) {
    const auto one = writeWav(folder / "one song.wav", ramp(3001));
    const auto two = writeWav(folder / "two.wav", ramp(2000, 3001));
    ASSERT_EQ(send("open \"" + one.string() + "\" \"" + two.string() + "\" type MPEGVideo alias m"),
              "Success");
    EXPECT_EQ(send("status m length"), "Success 5001");
    send(kOpenRecorder);
    send("record rec");
    send("play m");
    EXPECT_EQ(send("wait m"), "Success");
    send("wait 0.1");
    send("stop rec");
    EXPECT_EQ(savedSound(), ramp(5001));
    EXPECT_THAT(send("open \"" + one.string() + "\" \"" + path("none.wav") + "\" type MPEGVideo alias n"),
                HasSubstr("none.wav"));
    // A file of that very name goes before a row.
    const auto odd = writeWav(folder / "x\" \"y.wav", ramp(7));
    ASSERT_EQ(send("open \"" + odd.string() + "\" type MPEGVideo alias odd"), "Success");
    EXPECT_EQ(send("status odd length"), "Success 7");
}

TEST_F(MediaDevicesTest, WhatIsPlayedInTheWaitsIsCapturedFrameForFrame) {
    ASSERT_EQ(openSong(10000), "Success");
    ASSERT_EQ(send(kOpenRecorder), "Success");
    EXPECT_EQ(send("record rec"), "Success");
    EXPECT_EQ(send("status rec mode"), "Success recording");
    EXPECT_EQ(send("status rec length"), "Success 0");
    send("play m");
    send("wait 0.5");
    EXPECT_EQ(send("stop rec"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 22050");
    EXPECT_EQ(send("status rec mode"), "Success stopped");
    EXPECT_EQ(savedSound(), ramp(10000));
    EXPECT_EQ(samplesOf(path("out.wav")).size(), 2U * 22050);
}

TEST_F(MediaDevicesTest, WaitingForAPlayerTakesJustItsTime) {
    ASSERT_EQ(openSong(10000), "Success");
    send(kOpenRecorder);
    send("record rec");
    send("play m to 3333");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 3333");
    send("play m");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 10000");
    send("wait 0.02"); // the mix is a little late
    send("stop rec");
    EXPECT_EQ(savedSound(), ramp(10000)); // with nothing between the two
}

TEST_F(MediaDevicesTest, ASecondRecordingGoesBehindTheFirst) {
    send(kOpenRecorder);
    EXPECT_EQ(send("record rec"), "Success");
    EXPECT_EQ(send("record rec"), "\"rec\" records already.");
    send("wait 0.1");
    EXPECT_EQ(send("stop rec"), "Success");
    EXPECT_EQ(send("stop rec"), "\"rec\" has nothing to stop.");
    send("wait 5");
    send("record rec");
    send("wait 0.2");
    send("stop rec");
    EXPECT_EQ(send("status rec length"), "Success 13230");
    EXPECT_EQ(send("set rec time format ms"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 300");
    EXPECT_EQ(send("status rec position"), "Success 300");
    EXPECT_EQ(send("delete rec"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 0");
}

TEST_F(MediaDevicesTest, WhatGoesOnRecordingForgetsAndGoesOn) {
    send(kOpenRecorder);
    send("record rec");
    send("wait 0.5");
    EXPECT_EQ(send("delete rec"), "Success");
    EXPECT_EQ(send("status rec mode"), "Success recording");
    send("wait 0.1");
    send("stop rec");
    EXPECT_EQ(send("status rec length"), "Success 4410");
}

TEST_F(MediaDevicesTest, ARecorderSavesAWholeFileInPlaceOfAnOldOne) {
    send(kOpenRecorder);
    std::ofstream(folder / "old.wav") << "an old file";
    send("record rec");
    send("wait 0.1");
    EXPECT_THAT(send("save rec " + path("old.wav")), HasSubstr("rec"));
    EXPECT_EQ(bytesOf(folder / "old.wav"), "an old file");
    send("stop rec");
    EXPECT_EQ(send("save rec " + path("old.wav")), "Success");
    EXPECT_EQ(bytesOf(folder / "old.wav").size(), 44U + 4 * 4410);
    EXPECT_EQ(send("save rec \"" + path("a name  of blanks.wav") + "\""), "Success");
    EXPECT_EQ(bytesOf(folder / "a name  of blanks.wav"), bytesOf(folder / "old.wav"));
    EXPECT_THAT(send("save rec " + path("no folder") + "/x.wav"), HasSubstr("x.wav"));
    send("delete rec");
    EXPECT_EQ(send("save rec " + path("none.wav")), "Success");
    EXPECT_EQ(bytesOf(folder / "none.wav").size(), 44U);
}

TEST_F(MediaDevicesTest, AFormatThatDoesntGoTogetherChangesNothing) {
    send(kOpenRecorder);
    const auto set = [this](const char* numbers) {
        int rate = 0;
        int channels = 0;
        int bits = 0;
        int alignment = 0;
        int bytes = 0;
        std::istringstream(numbers) >> rate >> channels >> bits >> alignment >> bytes;
        return send("set rec samplespersec " + std::to_string(rate) + " channels " +
                    std::to_string(channels) + " bitspersample " + std::to_string(bits) + " alignment " +
                    std::to_string(alignment) + " bytespersec " + std::to_string(bytes));
    };
    EXPECT_EQ(set("22050 1 8 1 22050"), "Success");
    for (const char* wrong :
         {"7999 2 16 4 31996", "192001 2 16 4 768004", "44100 0 16 0 0", "44100 3 16 6 264600",
          "44100 2 24 6 264600", "44100 2 16 2 176400", "44100 2 16 4 88200", "44100 2 16 4 1764000"})
        EXPECT_THAT(set(wrong), StartsWith("\"rec\" ")) << wrong;
    EXPECT_EQ(media.recorder("rec")->format(), (WaveFormat{22050, 8, 1}));
    EXPECT_EQ(set("8000 1 8 1 8000"), "Success");
    EXPECT_EQ(set("192000 2 16 4 768000"), "Success");
    send("record rec");
    EXPECT_THAT(set("44100 2 16 4 176400"), StartsWith("\"rec\" "));
    send("wait 0.1");
    send("stop rec");
    EXPECT_EQ(media.recorder("rec")->format(), (WaveFormat{192000, 16, 2}));
    EXPECT_EQ(send("status rec length"), "Success 19200");
    // What is captured keeps its format until it is forgotten.
    EXPECT_THAT(set("44100 2 16 4 176400"), StartsWith("\"rec\" "));
    EXPECT_EQ(set("192000 2 16 4 768000"), "Success");
    EXPECT_EQ(send("status rec length"), "Success 19200");
    send("delete rec");
    EXPECT_EQ(set("44100 2 16 4 176400"), "Success");
}

TEST_F(MediaDevicesTest, APlayerIsNoRecorderAndTheOtherWayRound) {
    ASSERT_EQ(openSong(), "Success");
    send(kOpenRecorder);
    for (const char* line :
         {"record m", "delete m", "save m x.wav",
          "set m samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176400"})
        EXPECT_EQ(send(line), "\"m\" is no recorder but a player.") << line;
    for (const char* line : {"play rec", "pause rec", "resume rec", "wait rec"})
        EXPECT_EQ(send(line), "\"rec\" is no player but a recorder.") << line;
    EXPECT_EQ(send("capability m can save"), "Success false");
    EXPECT_EQ(send("capability rec can save"), "Success true");
}

TEST_F(MediaDevicesTest, WhatIsNotOpenIsNamed) {
    for (const char* line :
         {"play No", "pause No", "resume No", "stop No", "close No", "status No length", "record No",
          "delete No", "save No x.wav", "capability No can save", "wait No", "set No time format ms"})
        EXPECT_EQ(send(line), "\"No\" isn't open.") << line;
    EXPECT_EQ(send("close all"), "Success");
}

TEST_F(MediaDevicesTest, ClosingAllClosesEachDevice) {
    ASSERT_EQ(openSong(), "Success");
    send(kOpenRecorder);
    send("play m");
    send("record rec");
    EXPECT_EQ(send("close all"), "Success");
    EXPECT_EQ(send("close all"), "Success");
    EXPECT_EQ(media.player("m"), nullptr);
    EXPECT_EQ(media.recorder("rec"), nullptr);
    send("wait 0.1");
    EXPECT_EQ(openSong(), "Success");
}

TEST_F(MediaDevicesTest, ATakeGrowsWhereItIsToBeKept) {
    media.keepNextTakeAt(folder / "take.wav");
    send(kOpenRecorder);
    send("open new type waveaudio alias other");
    send("record rec");
    send("record other");
    send("wait 0.1");
    send("stop rec");
    send("close all");
    EXPECT_EQ(bytesOf(folder / "take.wav").size(), 44U + 4 * 4410);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

TEST_F(MediaDevicesTest, AMidiFilePlays44100FramesASecond) {
    writeMidi(folder / "a.mid");
    ASSERT_EQ(send("open " + path("a.mid") + " type MPEGVideo alias m"), "Success");
    EXPECT_EQ(media.player("m")->rate(), 44100);
    EXPECT_GE(number("status m length"), 44100);
    send(kOpenRecorder);
    send("record rec");
    EXPECT_EQ(send("play m"), "Success");
    EXPECT_EQ(send("wait m"), "Success");
    EXPECT_EQ(send("status m mode"), "Success stopped");
    EXPECT_EQ(number("status m position"), number("status m length"));
    send("stop rec");
    EXPECT_FALSE(media.recorder("rec")->isSilent());
}

TEST_F(MediaDevicesTest, EachCommandIsToldWithItsAnswer) {
    std::vector<std::string> told;
    media.onCommand = [&told](std::string_view command, const MediaAnswer& answer) {
        told.emplace_back(command);
        told.push_back(answer.text());
    };
    send("Close all");
    send("stop m");
    EXPECT_THAT(told, ElementsAre("Close all", "Success", "stop m", "\"m\" isn't open."));
}

namespace {
/// A loop that the program's end leaves: no wait lasts.
struct LeftLoop : VirtualMix {
    void serveUntil(double /*moment*/) override {}
};
} // namespace

TEST(MediaWaits, AWaitThatIsEndedFails) {
    LeftLoop loop;
    MediaDevices media(loop, loop, {});
    EXPECT_FALSE(media.send("wait 1").succeeded());
    EXPECT_TRUE(media.send("wait 0").succeeded());
}
