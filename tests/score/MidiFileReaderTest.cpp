// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/MidiFileReader.h"

#include "sound/ShortMessage.h"

#include <gmock/gmock.h>

#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include <QTemporaryDir>

#include <sys/stat.h>

using namespace velmora;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::string big(std::size_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift);
    return text;
}

std::string header(int format, int tracks, int division) {
    return "MThd" + big(6, 4) + big(static_cast<std::size_t>(format), 2) +
           big(static_cast<std::size_t>(tracks), 2) + big(static_cast<std::size_t>(division), 2);
}

const std::string kEnd = "\0\xFF\x2F\0"s;

std::string track(const std::string& events) {
    return "MTrk" + big(events.size() + kEnd.size(), 4) + events + kEnd;
}

/// One track, 100 ticks a quarter: at the usual tempo a tick is 5 ms.
std::string file(const std::string& events) {
    return header(0, 1, 100) + track(events);
}

std::string tempo(int microseconds) {
    return "\xFF\x51\x03"s + big(static_cast<std::size_t>(microseconds), 3);
}

/// "seconds: word" a message.
std::vector<std::string> heard(const MidiMusic& music) {
    std::vector<std::string> list;
    for (const TimedMessage& one : music.messages) {
        char text[64];
        std::snprintf(text, sizeof text, "%g: %06X", one.seconds, one.word);
        list.emplace_back(text);
        EXPECT_FALSE(one.reset);
    }
    return list;
}
std::vector<std::string> heard(const std::string& bytes) {
    const MidiMusic music = readMidi(bytes);
    EXPECT_EQ(music.error, "");
    return heard(music);
}

} // namespace

TEST(MidiFileReaderTest, MessagesComeAtTheirMoments) {
    const MidiMusic music = readMidi(file("\0\xC0\x05\0\x90\x3C\x64\x64\x80\x3C\x40\x81\x48\xE3\x01\x7F"s));
    EXPECT_EQ(music.error, "");
    EXPECT_THAT(heard(music), ElementsAre("0: 0005C0", "0: 643C90", "0.5: 403C80", "1.5: 7F01E3"));
    EXPECT_EQ(music.seconds, 1.5);
}

TEST(MidiFileReaderTest, TheEndOfTheLongestTrackIsTheEndOfTheMusic) {
    const std::string silent = "\x83\x10\xFF\x2F\0"s; // 400 ticks
    EXPECT_EQ(readMidi(header(1, 2, 100) + track("\0\x90\x3C\x64"s) + "MTrk" + big(silent.size(), 4) + silent)
                  .seconds,
              2);
}

TEST(MidiFileReaderTest, TracksSoundTogetherAndTheFirstOneGoesFirst) {
    EXPECT_THAT(heard(header(1, 3, 100) + track("\0"s + tempo(250'000)) +
                      track("\0\x90\x3C\x64\x64\x91\x3C\x64"s) + track("\0\x92\x3C\x64\x32\x93\x3C\x64"s)),
                ElementsAre("0: 643C90", "0: 643C92", "0.125: 643C93", "0.25: 643C91"));
}

TEST(MidiFileReaderTest, TempoChangesOfEveryTrackHoldForAll) {
    EXPECT_THAT(heard(header(1, 2, 100) +
                      track("\x32\x90\x01\x01\x64\x90\x02\x02\x64\x90\x03\x03"s) + // ticks 50, 150, 250
                      track("\x64"s + tempo(1'000'000) + "\x64"s + tempo(100'000))),
                ElementsAre("0.25: 010190", "1: 020290", "1.55: 030390"));
}

TEST(MidiFileReaderTest, ATempoOfNothingChangesNothing) {
    EXPECT_THAT(heard(file("\0"s + tempo(0) + "\x64\x90\x01\x01"s)), ElementsAre("0.5: 010190"));
}

TEST(MidiFileReaderTest, PatternsFollowEachOtherEachAtATempoOfItsOwn) {
    EXPECT_THAT(heard(header(2, 2, 100) + track("\0"s + tempo(1'000'000) + "\x64\x90\x01\x01"s) +
                      track("\0\x90\x02\x02\x64\x90\x03\x03"s)),
                ElementsAre("1: 010190", "1: 020290", "1.5: 030390"));
}

TEST(MidiFileReaderTest, FilmTimeKnowsNoTempo) {
    struct Row {
        int frames;
        int ticks;
        double seconds; ///< of 100 ticks
    };
    for (const Row& row : {Row{24, 4, 100 / 96.0}, Row{25, 40, 0.1}, Row{29, 80, 100 * 1.001 / 2400},
                           Row{30, 100, 100 / 3000.0}}) {
        const MidiMusic music = readMidi(header(0, 1, (256 - row.frames) << 8 | row.ticks) +
                                         track("\0"s + tempo(123'456) + "\x64\x90\x01\x01"s));
        ASSERT_EQ(music.messages.size(), 1U) << row.frames;
        EXPECT_DOUBLE_EQ(music.messages[0].seconds, row.seconds) << row.frames;
    }
}

TEST(MidiFileReaderTest, AStatusMayBeLeftOut) {
    EXPECT_THAT(heard(file("\0\x90\x3C\x64\x64\x3C\0\0\xC1\x07\0\x08"s)),
                ElementsAre("0: 643C90", "0.5: 003C90", "0.5: 0007C1", "0.5: 0008C1"));
}

TEST(MidiFileReaderTest, AStatusMayBeLeftOutBehindOtherEvents) {
    EXPECT_THAT(heard(file("\0\x90\x3C\x64\0\xFF\x01\x02hi\0\x3D\x64\0\xF0\x03\x7E\x7F\xF7\0\x3E\x64"s)),
                ElementsAre("0: 643C90", "0: 643D90", "0: 643E90"));
}

TEST(MidiFileReaderTest, ExclusiveMessagesArePassedOverWhole) {
    EXPECT_THAT(heard(file("\0\xF0\x05\x90\x3C\x64\x12\xF7\0\xF7\x03\x90\x3C\x64\0\x91\x3C\x64"s)),
                ElementsAre("0: 643C91"));
}

TEST(MidiFileReaderTest, WhatHasNoPlaceInAFileIsPassedOver) {
    EXPECT_THAT(heard(file("\0\xF2\x01\x02\0\xF3\x01\0\xF8\0\xFE\0\x90\x3C\x64"s)), ElementsAre("0: 643C90"));
    EXPECT_THAT(heard(file("\0\x3C\0\x90\x3C\x64"s)), ElementsAre("0: 643C90")) << "data without a status";
    EXPECT_THAT(heard(file("\0\x90\x3C\xC8\0\x90\x3D\x64"s)), ElementsAre("0: 643D90")) << "no data";
}

TEST(MidiFileReaderTest, NothingBehindTheEndOfATrackCounts) {
    EXPECT_THAT(heard(header(0, 1, 100) + "MTrk" + big(12, 4) + "\0\x90\x01\x01"s + kEnd + "\0\x90\x02\x02"s),
                ElementsAre("0: 010190"));
}

TEST(MidiFileReaderTest, ChunksOfOtherKindsAndALongerHeaderArePassedOver) {
    const std::string other = "XFIH" + big(5, 4) + "MTrk!";
    const std::string long_ = "MThd" + big(8, 4) + big(1, 2) + big(1, 2) + big(100, 2) + "\xFF\xFF";
    EXPECT_THAT(heard(long_ + other + track("\0\x90\x01\x01"s) + other), ElementsAre("0: 010190"));
}

TEST(MidiFileReaderTest, LengthsThatLieLoseNoTrack) {
    const std::string one = "\0\x90\x01\x01"s + kEnd;
    const std::string two = "\0\x90\x02\x02\0\x90\x03\x03"s + kEnd;
    const auto with = [&](std::size_t first, std::size_t second) {
        return header(1, 2, 100) + "MTrk" + big(first, 4) + one + "MTrk" + big(second, 4) + two;
    };
    for (const std::size_t first : {std::size_t{8}, std::size_t{0}, std::size_t{3}, std::size_t{12},
                                    std::size_t{20}, std::size_t{0xFFFFFFFF}, std::size_t{0x7FFFFFFF}})
        for (const std::size_t second :
             {std::size_t{12}, std::size_t{0}, std::size_t{5}, std::size_t{100}, std::size_t{0xFFFFFFFF}})
            EXPECT_THAT(heard(with(first, second)), ElementsAre("0: 010190", "0: 020290", "0: 030390"))
                << first << ", " << second;
}

TEST(MidiFileReaderTest, TheCountOfTracksMayBeWrong) {
    for (const int tracks : {0, 1, 65535})
        EXPECT_THAT(heard(header(1, tracks, 100) + track("\0\x90\x01\x01"s) + track("\0\x90\x02\x02"s)),
                    ElementsAre("0: 010190", "0: 020290"));
}

TEST(MidiFileReaderTest, OfACutFileComesWhatIsWhole) {
    const std::string whole = file("\0\x90\x01\x01\x64\x90\x02\x02\x64\xFF\x01\x02hi\0\x90\x03\x03"s);
    std::size_t most = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const MidiMusic music = readMidi(std::string_view(whole).substr(0, size));
        EXPECT_EQ(music.error.empty(), size >= 22) << size; // the header and the head of a track
        EXPECT_GE(music.messages.size(), most);
        most = music.messages.size();
    }
    EXPECT_EQ(most, 3U);
}

TEST(MidiFileReaderTest, AWrapperIsOpened) {
    const std::string midi = file("\0\x90\x01\x01"s);
    const auto little = [](std::size_t value) {
        const std::string text = big(value, 4);
        return std::string(text.rbegin(), text.rend());
    };
    const std::string riff = "RMID"s + "LIST" + little(3) + "abc\0"s + "data" + little(midi.size()) + midi;
    EXPECT_THAT(heard("RIFF" + little(riff.size()) + riff), ElementsAre("0: 010190"));
    EXPECT_THAT(heard(std::string(128, '\0') + midi), ElementsAre("0: 010190")) << "something in front";
}

TEST(MidiFileReaderTest, TheTitleIsThatOfTheFirstTrack) {
    const auto titled = [](const std::string& title) {
        return readMidi(header(1, 2, 100) + track("\0\xFF\x03"s + static_cast<char>(title.size()) + title) +
                        track("\0\xFF\x03\x05other"s))
            .title;
    };
    EXPECT_EQ(titled("A tune"), "A tune");
    EXPECT_EQ(titled(""), "");
    EXPECT_EQ(titled("Gr\xC3\xBC\xC3\x9F"
                     "e"),
              "Grüße")
        << "UTF-8";
    EXPECT_EQ(titled("Gr\xFC\xDF"
                     "e"),
              "Grüße")
        << "Latin-1";
    EXPECT_EQ(titled(" two\r\nlines \0 hidden"s), "two lines");
}

TEST(MidiFileReaderTest, WhatIsNoMusicSaysWhy) {
    EXPECT_EQ(readMidi("").error, "it is no MIDI file");
    EXPECT_EQ(readMidi("RIFF\x10\0\0\0WAVEfmt "s).error, "it is no MIDI file");
    EXPECT_EQ(readMidi("MThd").error, "it is cut short");
    EXPECT_EQ(readMidi(header(1, 1, 100)).error, "it has no track");
    EXPECT_EQ(readMidi(header(1, 1, 0) + track("")).error, "its header doesn't say how long a note lasts");
    EXPECT_EQ(readMidi(header(1, 1, 0xE200) + track("")).error,
              "its header doesn't say how long a note lasts");
}

TEST(MidiFileReaderTest, NothingComesLaterThanADay) {
    std::string events = "\0"s + tempo(0xFFFFFF);
    for (int i = 0; i < 1000; ++i)
        events += "\xFF\xFF\xFF\x7F\x90\x01\x01"s;
    const MidiMusic music = readMidi(header(0, 1, 1) + track("\0\x90\x02\x02"s + events));
    EXPECT_EQ(music.messages.size(), 1U);
    EXPECT_EQ(music.seconds, kLongestMidi);
}

TEST(MidiFileReaderTest, AnyBytesAreReadInTheTimeThatTheyExplain) {
    std::minstd_rand random(11);
    std::string bytes = header(2, 1, 96);
    while (bytes.size() < 3'000'000) // a track each eight bytes, with lengths that lie
        bytes += "MTrk" + big(random() % 3 == 0 ? random() : 0, 4);
    EXPECT_EQ(readMidi(bytes).error, "");
    bytes = file("");
    for (int i = 0; i < 1'000'000; ++i)
        bytes += static_cast<char>(random());
    const MidiMusic music = readMidi(bytes);
    EXPECT_LE(music.messages.size(), bytes.size() / 2);
    for (const TimedMessage& one : music.messages)
        EXPECT_TRUE(shortmessage::isValid(one.word));
}

TEST(MidiFileReaderTest, AFileIsNamedWhereItFails) {
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.filePath("tune.mid").toStdString();
    EXPECT_THAT(readMidiFile(path).error, HasSubstr(path.string()));
    std::ofstream(path, std::ios::binary) << "MThd";
    EXPECT_EQ(readMidiFile(path).error,
              "The file \"" + path.string() + "\" can't be played: it is cut short.");
    std::ofstream(path, std::ios::binary) << file("\0\x90\x01\x01"s);
    EXPECT_THAT(heard(readMidiFile(path)), ElementsAre("0: 010190"));
    std::filesystem::resize_file(path, 100'000'000);
    EXPECT_THAT(readMidiFile(path).error, HasSubstr("is too large"));
    const std::string pipe = folder.filePath("pipe.mid").toStdString();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THAT(readMidiFile(pipe).error, HasSubstr(pipe));
    EXPECT_TRUE(isMidiName("/a/b.MiD"));
    EXPECT_FALSE(isMidiName("/a/b.sng"));
}
