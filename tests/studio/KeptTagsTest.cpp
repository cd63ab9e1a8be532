// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/KeptTags.h"

#include "studio/SongTags.h"
#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

#include <random>

using namespace velmora;
using namespace velmora::soundbytes;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {
KeptTags keptOf(const std::string& file, const Id3Tag& instead = {}, RemadeSound remade = RemadeSound::Part) {
    Held held(file);
    return keptTags(held.source, instead, remade);
}

std::string frame(std::string_view name, std::string_view content, int version = 3, unsigned flags = 0) {
    return id3Frame(name, content, version, flags);
}

SongTags tagsOf(const std::string& front) {
    Held held(front);
    ByteWindow window(held.source);
    SongTags tags;
    readId3v2(window, 0, tags);
    return tags;
}

const std::string kPicture = "\0image/png\0\3\0\x89PNG picture"s;
const std::string kBack = "\0image/png\0\4\0\x89PNG back"s;
const std::string kSound(500, '\x55');

std::string id3v1(const std::string& title, const std::string& artist) {
    std::string tag = "TAG" + title;
    tag.resize(33, '\0');
    tag += artist;
    tag.resize(127, 'x');
    return tag + '\x11';
}

std::string apeItem(const std::string& name, const std::string& value) {
    return ByteWriter().number(value.size(), 4).number(0, 4).text + name + '\0' + value;
}
std::string apeTag(const std::string& items, unsigned count, bool hasHead = true) {
    const auto end = [&](unsigned flags) {
        return "APETAGEX" +
               ByteWriter()
                   .number(2000, 4)
                   .number(items.size() + 32, 4)
                   .number(count, 4)
                   .number(flags, 4)
                   .text +
               std::string(8, '\0');
    };
    return (hasHead ? end(0xA0000000) : "") + items + end(hasHead ? 0x80000000 : 0);
}
} // namespace

TEST(KeptTagsTest, WithoutTagsThereAreOnlyThoseThatAreGiven) {
    EXPECT_EQ(keptOf(kSound).front, "");
    EXPECT_EQ(keptOf(kSound).behind, "");
    EXPECT_EQ(keptOf(kSound, {.title = "Noon"}).front, id3Bytes({.title = "Noon"}));
}

TEST(KeptTagsTest, EveryFrameStaysInEachVersion) {
    for (const int version : {2, 3, 4}) {
        const bool isShort = version == 2;
        const std::string frames = frame(isShort ? "TT2" : "TIT2", "\0Song"s, version) +
                                   frame(isShort ? "TAL" : "TALB", "\0Album"s, version) +
                                   frame(isShort ? "PIC" : "APIC", std::string(300, 'p'), version);
        const std::string tag = id3Head(frames.size() + 20, version) + frames + std::string(20, '\0');
        EXPECT_EQ(keptOf(tag + kSound).front, id3Whole(frames, version)) << version;
    }
}

TEST(KeptTagsTest, WhatIsGivenTakesThePlaceOfWhatStandsThere) {
    for (const int version : {3, 4}) {
        const std::string album = frame("TALB", "\0Album"s, version);
        const std::string back = frame("APIC", kBack, version);
        const std::string frames = frame("TIT2", "\0Song"s, version) + frame("TPE1", "\0Bob"s, version) +
                                   album + frame("APIC", kPicture, version) + back;
        const Id3Tag instead{.title = "Noon", .artist = "Ada", .cover = "\xFF\xD8\xFF face"};
        const std::string kept = keptOf(id3Head(frames.size(), version) + frames + kSound, instead).front;
        EXPECT_EQ(kept, id3Whole(id3Frames(instead, version) + album + back, version));
        EXPECT_EQ(tagsOf(kept).title, "Noon");
        EXPECT_EQ(tagsOf(kept).artist, "Ada");
    }
    const std::string frames =
        frame("TT2", "\0Song"s, 2) + frame("PIC", "\0PNG\3\0picture"s, 2) + frame("TAL", "\0Album"s, 2);
    const Id3Tag instead{.title = "Noon", .cover = "\xFF\xD8\xFF face"};
    const std::string kept = keptOf(id3Head(frames.size(), 2) + frames, instead).front;
    EXPECT_EQ(kept, id3Whole(frame("TT2", "\1\xFF\xFEN\0o\0o\0n\0"s, 2) +
                                 frame("PIC", "\0JPG\3\0\xFF\xD8\xFF face"s, 2) + frame("TAL", "\0Album"s, 2),
                             2));
    EXPECT_EQ(tagsOf(kept).title, "Noon");
}

TEST(KeptTagsTest, WhatWouldBeFalseGoes) {
    struct Row {
        std::string frame;
        bool isOfAPart;
        bool isOfALouderOne;
    };
    const std::vector<Row> rows{
        {frame("MLLT", "places"), false, false},
        {frame("TLEN", "\0001000"s), false, true},
        {frame("CHAP", "chapter"), false, true},
        {frame("SYLT", "words"), false, true},
        {frame("RVAD", "louder"), true, false},
        {frame("TXXX", "\0REPLAYGAIN_track_gain\0-3 dB"s), true, false},
        {frame("TXXX", "\1\xFF\xFEr\0e\0p\0l\0a\0y\0g\0a\0i\0n\0_\0"s), true, false},
        {frame("COMM", "\0engiTunSMPB\0 00000000"s), false, false},
        {frame("COMM", "\0engiTunNORM\0 00000000"s), true, false},
        {frame("COMM", "\0eng\0A lovely day"s), true, true},
        {frame("TXXX", "\0MOOD\0glad"s), true, true},
        {frame("PRIV", "to go", 3, 0x4000), false, false},
        {frame("USLT", "\0eng\0words"s), true, true},
    };
    for (const Row& row : rows) {
        const std::string frames = frame("TALB", "\0Album"s) + row.frame + frame("TYER", "\0002026"s);
        const std::string file = id3Head(frames.size()) + frames + kSound;
        const std::string without = id3Whole(frame("TALB", "\0Album"s) + frame("TYER", "\0002026"s), 3);
        EXPECT_EQ(keptOf(file, {}, RemadeSound::Part).front, row.isOfAPart ? id3Whole(frames, 3) : without)
            << row.frame;
        EXPECT_EQ(keptOf(file, {}, RemadeSound::Louder).front,
                  row.isOfALouderOne ? id3Whole(frames, 3) : without)
            << row.frame;
    }
}

TEST(KeptTagsTest, ZerosThatWerePutInAndLongHeadsAreTakenOut) {
    const std::string plain = frame("TIT2", "\1\xFF\xFES\0o\0"s);
    std::string stuffed = frame("TIT2", "\1\xFF\xFES\0o\0"s);
    stuffed.insert(stuffed.find('\xFF') + 1, 1, '\0');
    EXPECT_EQ(keptOf(id3Head(stuffed.size(), 3, 0x80) + stuffed + kSound).front, id3Whole(plain, 3));
    const std::string four = id3Frame("TIT2", "\1\xFF\0\xFES\0o\0"s, 4, 2);
    EXPECT_EQ(keptOf(id3Head(four.size(), 4) + four + kSound).front,
              id3Whole(id3Frame("TIT2", "\1\xFF\xFES\0o\0"s, 4), 4));
    const std::string three = "\0\0\0\6\0\0\0\0\0\0"s + plain;
    EXPECT_EQ(keptOf(id3Head(three.size(), 3, 0x40) + three + kSound).front, id3Whole(plain, 3));
    const std::string extended = "\0\0\0\6\1\0"s + id3Frame("TIT2", "\0So"s, 4);
    EXPECT_EQ(keptOf(id3Head(extended.size(), 4, 0x40) + extended + kSound).front,
              id3Whole(id3Frame("TIT2", "\0So"s, 4), 4));
}

TEST(KeptTagsTest, LengthsOfVersion4ThatAreThoseOfVersion3AreUnderstood) {
    const std::string cover(300, 'p');
    const std::string wrong = frame("APIC", cover, 3) + frame("TALB", "\0Album"s, 3);
    EXPECT_EQ(keptOf(id3Head(wrong.size(), 4) + wrong + kSound).front,
              id3Whole(frame("APIC", cover, 4) + frame("TALB", "\0Album"s, 4), 4));
}

TEST(KeptTagsTest, TheOldTagBehindStaysWithWhatIsGivenInIt) {
    const std::string old = id3v1("Song", "Bob");
    EXPECT_EQ(keptOf(kSound + old).behind, old);
    EXPECT_EQ(keptOf(kSound + old, {.title = "Für Noon"}).behind, id3v1("F\xFCr Noon", "Bob"));
}

TEST(KeptTagsTest, AnApeTagStaysWithoutTheGainOfALouderFile) {
    const std::string album = apeItem("Album", "The Best");
    const std::string gain = apeItem("REPLAYGAIN_TRACK_GAIN", "-3 dB") + apeItem("MP3GAIN_UNDO", "+1");
    for (const bool hasHead : {false, true}) {
        const std::string file = kSound + apeTag(gain + album, 3, hasHead) + id3v1("Song", "Bob");
        EXPECT_EQ(keptOf(file).behind, apeTag(gain + album, 3) + id3v1("Song", "Bob"));
        EXPECT_EQ(keptOf(file, {}, RemadeSound::Louder).behind, apeTag(album, 1) + id3v1("Song", "Bob"));
    }
    EXPECT_EQ(keptOf(kSound + apeTag(gain, 2), {}, RemadeSound::Louder).behind, "");
}

TEST(KeptTagsTest, SeveralTagsInFrontStayInTheirOrder) {
    const std::string one = id3Bytes({.title = "Song"});
    const std::string two = id3Bytes({.artist = "Bob"});
    EXPECT_EQ(keptOf(one + two + kSound).front, one + two);
}

TEST(KeptTagsTest, BrokenTagsGiveWhatIsWholeOfThem) {
    const std::string frames =
        frame("TALB", "\0Album"s) + frame("APIC", std::string(300, 'p')).substr(0, 100);
    EXPECT_EQ(keptOf(id3Head(frames.size()) + frames + kSound).front, id3Whole(frame("TALB", "\0Album"s), 3));
    EXPECT_EQ(keptOf(id3Head(5) + "TALBx" + kSound).front, "");
    EXPECT_EQ(keptOf(id3Head(8, 7) + "whatever" + kSound, {.title = "Noon"}).front,
              id3Bytes({.title = "Noon"}));
}

TEST(KeptTagsTest, NoBytesDoAnyHarm) {
    std::minstd_rand random(11);
    const std::string frames = frame("TIT2", "\0Song"s) + frame("APIC", kPicture) + frame("COMM", "\0engx"s);
    for (int i = 0; i < 20'000; ++i) {
        std::string file = id3Head(frames.size(), 2 + static_cast<int>(random() % 3), random() % 2 * 0xC0) +
                           frames + kSound.substr(0, 40) + apeTag(apeItem("Album", "x"), 1) +
                           id3v1("Song", "Bob");
        for (unsigned k = random() % 6; k > 0; --k)
            file[random() % file.size()] = static_cast<char>(random() >> 8U);
        file.resize(file.size() - random() % 3 * (random() % file.size()) / 4);
        const KeptTags kept = keptOf(file, {.title = "Noon"}, RemadeSound::Louder);
        ASSERT_LE(kept.front.size() + kept.behind.size(), file.size() + 200);
        ASSERT_THAT(kept.error, IsEmpty());
        ASSERT_THAT(kept.front, HasSubstr("N\0o\0o\0n\0"s));
    }
}
