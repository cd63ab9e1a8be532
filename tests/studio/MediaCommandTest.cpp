// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MediaCommand.h"

#include <gmock/gmock.h>

#include <array>
#include <limits>
#include <random>

using namespace velmora;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
/// A command that has to be understood; what it says stands in the failure otherwise.
MediaCommand understood(std::string_view line) {
    const MediaReading reading = readMediaCommand(line);
    EXPECT_TRUE(reading.command) << line << ": " << reading.error;
    EXPECT_THAT(reading.error, reading.command ? testing::StrEq("") : testing::StrEq(reading.error));
    return reading.command.value_or(MediaCommand{});
}

std::string refusal(std::string_view line) {
    const MediaReading reading = readMediaCommand(line);
    EXPECT_FALSE(reading.command) << line;
    return reading.error;
}

struct Said {
    const char* line;
    MediaAct act;
    const char* alias;
};
constexpr std::array kSaid{
    Said{"open new type waveaudio alias rec", MediaAct::OpenRecorder, "rec"},
    Said{"open a.wav type MPEGVideo alias m", MediaAct::OpenPlayer, "m"},
    Said{"play m", MediaAct::Play, "m"},
    Said{"pause m", MediaAct::Pause, "m"},
    Said{"resume m", MediaAct::Resume, "m"},
    Said{"stop m", MediaAct::Stop, "m"},
    Said{"close m", MediaAct::Close, "m"},
    Said{"close all", MediaAct::CloseAll, ""},
    Said{"set m time format frames", MediaAct::CountFrames, "m"},
    Said{"set m time format ms", MediaAct::CountMilliseconds, "m"},
    Said{"set rec samplespersec 8000 channels 1 bitspersample 8 alignment 1 bytespersec 8000",
         MediaAct::SetFormat, "rec"},
    Said{"status m length", MediaAct::AskLength, "m"},
    Said{"status m position", MediaAct::AskPosition, "m"},
    Said{"status m mode", MediaAct::AskMode, "m"},
    Said{"record rec", MediaAct::Record, "rec"},
    Said{"capability rec can save", MediaAct::AskWhetherItSaves, "rec"},
    Said{"save rec a.wav", MediaAct::Save, "rec"},
    Said{"delete rec", MediaAct::Delete, "rec"},
    Said{"wait 2.5", MediaAct::WaitSeconds, ""},
    Said{"wait m", MediaAct::WaitForPlayer, "m"},
};

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string withWideBlanks(const std::string& text) {
    std::string wide = "  \t";
    for (const char c : text)
        wide += c == ' ' ? std::string(" \t   ") : std::string(1, c);
    return wide + " \r";
}
} // namespace

TEST(MediaCommand, EachKindIsUnderstoodInAnyCaseAndWithAnyBlanks) {
    for (const Said& said : kSaid) {
        for (const std::string& line : {std::string(said.line), withWideBlanks(said.line)}) {
            const MediaCommand command = understood(line);
            EXPECT_EQ(command.act, said.act) << line;
            EXPECT_EQ(command.alias, said.alias) << line;
        }
        const MediaCommand loud = understood(upper(said.line));
        EXPECT_EQ(loud.act, said.act) << said.line;
        EXPECT_EQ(loud.alias, upper(said.alias)) << said.line;
    }
}

TEST(MediaCommand, WithAWordTooFewNoneIsUnderstoodAsItself) {
    for (const Said& said : kSaid) {
        std::string line = said.line;
        while (line.find(' ') != line.npos) {
            line.resize(line.rfind(' '));
            const MediaReading reading = readMediaCommand(line);
            // "play m" is whole, and so is the shorter "close all": it would be an alias.
            if (reading.command)
                ADD_FAILURE() << line << " was understood";
        }
    }
}

TEST(MediaCommand, WithAWordTooManyOnlyWhatEndsInAPathIsUnderstood) {
    for (const Said& said : kSaid) {
        const bool readsOn = said.act == MediaAct::Save;
        EXPECT_EQ(readMediaCommand(std::string(said.line) + " more").command.has_value(), readsOn)
            << said.line;
    }
}

TEST(MediaCommand, APathIsAllUpToTheLastTypeBeforeTheAlias) {
    struct Case {
        const char* line;
        const char* path;
    };
    constexpr std::array kCases{
        Case{"open /tmp/a b  c.wav type MPEGVideo alias m", "/tmp/a b  c.wav"},
        Case{"open   /tmp/a.wav   type MPEGVideo alias m", "/tmp/a.wav"},
        Case{R"(open "/tmp/a b.wav" type MPEGVideo alias m)", "/tmp/a b.wav"},
        Case{R"(open " a " type MPEGVideo alias m)", " a "},
        Case{R"(open a"b".wav type MPEGVideo alias m)", R"(a"b".wav)"},
        Case{R"(open "a.wav type MPEGVideo alias m)", R"("a.wav)"},
        Case{R"(open " type MPEGVideo alias m)", R"(")"},
        Case{"open my type of song.mp3 type MPEGVideo alias m", "my type of song.mp3"},
        Case{"open a type MPEGVideo alias b.wav type MPEGVideo alias m", "a type MPEGVideo alias b.wav"},
        Case{R"(open "a type MPEGVideo alias b" type MPEGVideo alias m)", "a type MPEGVideo alias b"},
        Case{"open type MPEGVideo alias m", ""},
        Case{"open  type MPEGVideo Alias m parent 0 Style 1073741824", ""},
        Case{"open new type MPEGVideo alias m", "new"},
        Case{"open type type MPEGVideo alias m", "type"},
    };
    for (const Case& one : kCases) {
        const MediaCommand command = understood(one.line);
        EXPECT_EQ(command.act, MediaAct::OpenPlayer) << one.line;
        EXPECT_EQ(command.path, one.path) << one.line;
        EXPECT_EQ(command.alias, "m") << one.line;
    }
}

TEST(MediaCommand, AParentAndAStyleAreTakenAndDoNothing) {
    for (const char* tail : {" parent 12", " parent 12 style 1073741824", " style child 3 4", " style"})
        EXPECT_EQ(understood("open a.wav type MPEGVideo alias m" + std::string(tail)).path, "a.wav") << tail;
    EXPECT_THAT(refusal("open a.wav type MPEGVideo alias m parent"), HasSubstr("a.wav"));
}

TEST(MediaCommand, AnAliasMayBeCalledLikeAKeyword) {
    EXPECT_EQ(understood("open a.wav type MPEGVideo alias type").alias, "type");
    EXPECT_EQ(understood("play from from 3").from, 3);
    // "all" is what "close" means by it.
    EXPECT_THAT(refusal("open a.wav type MPEGVideo alias ALL"), HasSubstr("a.wav"));
}

TEST(MediaCommand, ATypeThatIsNoneIsRefused) {
    refusal("open a.wav type sequencer alias m");
    refusal("open a.wav type waveaudio alias m");
    refusal("open a.wav type MPEGVideo");
    refusal("open a.wav alias m");
    refusal("open");
}

TEST(MediaCommand, SeveralQuotedPathsAreARow) {
    const MediaCommand command = understood(R"(open "a b.wav"  "c.mp3" "d" type MPEGVideo alias m)");
    EXPECT_THAT(command.row, ElementsAre("a b.wav", "c.mp3", "d"));
    EXPECT_EQ(command.path, R"(a b.wav"  "c.mp3" "d)");
    for (const char* one : {R"("a")", R"("a" b)", R"("a" "b)", R"("a" "")", "a b"})
        EXPECT_THAT(understood("open " + std::string(one) + " type MPEGVideo alias m").row, IsEmpty()) << one;
}

TEST(MediaCommand, ARangeMayLackEitherEnd) {
    EXPECT_EQ(understood("play m").from, std::nullopt);
    EXPECT_EQ(understood("play m").to, std::nullopt);
    EXPECT_EQ(understood("play m from 5").from, 5);
    EXPECT_EQ(understood("play m to 7").to, 7);
    const MediaCommand both = understood("play m FROM 5 TO 7");
    EXPECT_EQ(both.from, 5);
    EXPECT_EQ(both.to, 7);
    EXPECT_EQ(understood("play m from 0 to -1").to, -1);
    EXPECT_EQ(understood("play m to 99999999999999999999").to, std::numeric_limits<std::int64_t>::max());
    for (const char* wrong : {"play m from", "play m from x", "play m from 1.5", "play m from +1",
                              "play m from - 1", "play m to 7 from 5", "play m from 1 from 2", "play m 5"})
        EXPECT_THAT(refusal(wrong), EndsWith("play A [from X] [to Y]")) << wrong;
}

TEST(MediaCommand, AFormatsNumbersAreReadAsTheyAreGiven) {
    const WaveNumbers format =
        understood("set r samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176400")
            .format;
    EXPECT_EQ(format.rate, 44100);
    EXPECT_EQ(format.channels, 2);
    EXPECT_EQ(format.bits, 16);
    EXPECT_EQ(format.alignment, 4);
    EXPECT_EQ(format.bytesPerSecond, 176400);
    refusal("set r samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec many");
    refusal("set r samplespersec 44100 channels -2 bitspersample 16 alignment 4 bytespersec 176400");
}

TEST(MediaCommand, TheRestOfTheLineIsWhereToSave) {
    EXPECT_EQ(understood("save r  /tmp/a  b.wav ").path, "/tmp/a  b.wav");
    EXPECT_EQ(understood(R"(save r "/tmp/a b.wav")").path, "/tmp/a b.wav");
    refusal("save r");
    refusal(R"(save r "")");
}

TEST(MediaCommand, ANumberIsATimeToWaitAndAnythingElseAnAlias) {
    EXPECT_EQ(understood("wait 0").seconds, 0);
    EXPECT_EQ(understood("wait 1.25").seconds, 1.25);
    EXPECT_EQ(understood("wait .5").seconds, 0.5);
    for (const char* alias : {"inf", "nan", "1e9", "-1", "0x10", "1.2.3"})
        EXPECT_EQ(understood("wait " + std::string(alias)).alias, alias);
}

TEST(MediaCommand, WhatIsNoCommandIsNamed) {
    EXPECT_EQ(refusal("jump m"), "\"jump m\" is no media command.");
    EXPECT_EQ(refusal("stop"), "\"stop\" isn't understood; say: stop A");
    EXPECT_EQ(refusal("set m time format bytes"),
              "\"set m time format bytes\" isn't understood; say: set A time format frames");
    EXPECT_THAT(refusal(std::string_view("stop m\0m", 8)), HasSubstr("stop m"));
}

TEST(MediaCommand, ARefusalIsOneShortLineWhateverWasSaid) {
    std::mt19937 random(3);
    const std::array<std::string, 12> kWords{"open", "play",  "set",  "type", "alias",
                                             "\n",   "close", "wait", "\"",   std::string(300, 'x'),
                                             "é",    "save"};
    for (int i = 0; i < 2000; ++i) {
        std::string line;
        for (unsigned words = random() % 8; words > 0; --words)
            line += kWords[random() % kWords.size()] + (random() % 4 ? " " : "");
        const std::string error = readMediaCommand(line).error;
        ASSERT_LE(error.size(), kMediaErrorBytes) << line;
        ASSERT_EQ(error.find_first_of("\n\r"), error.npos) << line;
    }
}

TEST(MediaSentence, ALongNameLosesItsMiddleAndKeepsItsEnd) {
    const std::string path = "/home/" + std::string(300, 'a') + "/take.wav";
    const std::string text = mediaSentence(path, "isn't there.");
    EXPECT_THAT(text, SizeIs(kMediaErrorBytes));
    EXPECT_THAT(text, EndsWith("aaa/take.wav\" isn't there."));
    EXPECT_EQ(mediaSentence("m", "isn't open."), "\"m\" isn't open.");
}

TEST(MediaSentence, NoCharacterIsCutInPieces) {
    std::string name;
    for (int i = 0; i < 100; ++i)
        name += "ö";
    for (int i = 0; i < 4; ++i, name += 'x') {
        const std::string text = mediaSentence(name, "isn't open.");
        EXPECT_LE(text.size(), kMediaErrorBytes);
        for (std::size_t at = 0; at < text.size(); ++at)
            if (text[at] == '\xC3')
                ASSERT_EQ(text.at(++at), '\xB6');
            else
                ASSERT_NE(text[at], '\xB6');
    }
}

TEST(MediaSentence, ASentenceOfAnotherRoomStillNamesItsFile) {
    const std::string folder = "/home/" + std::string(200, 'a');
    const std::string path = folder + "/take.wav";
    const std::string text =
        mediaSentenceHolding("The file \"" + path + "\" can't be read:\nno such file.", path);
    EXPECT_LE(text.size(), kMediaErrorBytes);
    EXPECT_THAT(text, HasSubstr("/take.wav\" can't be read: no such file."));
    EXPECT_EQ(mediaSentenceHolding("The disk is full.", "m"), "The disk is full.");
    EXPECT_THAT(mediaSentenceHolding(std::string(200, 'x'), "take.wav"), HasSubstr("\"take.wav\""));
}
