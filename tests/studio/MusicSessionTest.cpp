// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MusicSession.h"

#include "studio/SessionScreen.h"
#include "tests/studio/MediaFixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <set>

using namespace velmora;
using namespace velmora::testmedia;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A virtual clock with things to do at its moments.
struct ScriptedLoop : MessageLoop {
    explicit ScriptedLoop(VirtualMix& whole) : mix(whole) {}
    [[nodiscard]] double now() const override { return mix.now(); }
    void YieldIfInput() override { ++yields; }
    void serveUntil(double moment) override {
        while (!hasLeft && !due.empty() && due.begin()->first <= moment) {
            mix.serveUntil(std::max(due.begin()->first, now()));
            const auto act = due.extract(due.begin());
            act.mapped()();
        }
        if (!hasLeft)
            mix.serveUntil(std::max(moment, now()));
    }
    void block(double seconds) override { serveUntil(now() + seconds); }

    VirtualMix& mix;
    std::multimap<double, std::function<void()>> due;
    int yields = 0;
    bool hasLeft = false;
};

struct FakeScreen : SessionScreen {
    void said(const std::string& text) override { texts.push_back(text); }
    void sessionChanged() override {
        if (onChange)
            onChange();
    }
    bool ask(const std::string& question) override {
        asked.push_back(question);
        return agrees;
    }
    fs::path askOpen(const std::string& title, const std::string& filter) override {
        asked.push_back(title + ": " + filter);
        return chosen;
    }
    fs::path askSave(const std::string& title, const std::string& filter,
                     const std::string& proposed) override {
        asked.push_back(title + ": " + filter + ": " + proposed);
        if (names.empty())
            return {};
        const fs::path name = names.front();
        names.erase(names.begin());
        return name;
    }
    void openScore(const fs::path& file) override { score = file; }

    std::vector<std::string> texts;
    std::vector<std::string> asked;
    std::function<void()> onChange;
    fs::path chosen;
    std::vector<fs::path> names; ///< that are given one after the other; then it is cancelled
    bool agrees = false;
    fs::path score;
};

struct MusicSessionTest : testing::Test, MediaFixture {
    MusicSessionTest() { music.show(&screen); }
    /// What was said since the last call.
    std::vector<std::string> taken() { return std::exchange(screen.texts, {}); }
    fs::path song(int frames = 44100, const char* name = "song.wav") {
        return writeWav(folder / name, ramp(frames));
    }
    bool open(int frames = 44100) {
        const bool opened = music.OpenMP3(song(frames));
        taken();
        return opened;
    }

    ScriptedLoop loop{mix};
    SessionState state;
    FakeScreen screen;
    MusicSession music{state, media, loop};
};
} // namespace

TEST_F(MusicSessionTest, AnOpenedFileIsPlayedToItsEndAndClosed) {
    EXPECT_TRUE(music.OpenMP3(song()));
    EXPECT_EQ(state.Text6, path("song.wav"));
    EXPECT_TRUE(music.isOpen());
    EXPECT_FALSE(music.isPlaying());
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("File Opened", "Playing", "Music File closed."));
    EXPECT_FALSE(music.isOpen());
    EXPECT_NEAR(mix.now(), 1, 0.1);
    EXPECT_EQ(state.Status, "100 %");
    EXPECT_EQ(state.lblTime, "00:01");
}

TEST_F(MusicSessionTest, WhatIsHeardIsTheFile) {
    media.send("open new type waveaudio alias rec");
    media.send("record rec");
    ASSERT_TRUE(open(10000));
    music.PlayMP3();
    media.send("stop rec");
    media.send("save rec " + path("out.wav"));
    auto heard = samplesOf(path("out.wav"));
    heard.erase(heard.begin(), std::ranges::find(heard, 1)); // the mix is a little late
    heard.resize(20000);
    EXPECT_EQ(heard, ramp(10000));
}

TEST_F(MusicSessionTest, ProgressIsShownInPercentAndMinutes) {
    ASSERT_TRUE(open(44100 * 65));
    std::set<std::string> percents;
    std::set<std::string> times;
    screen.onChange = [&] {
        percents.insert(state.Status);
        times.insert(state.lblTime);
    };
    music.PlayMP3();
    EXPECT_TRUE(percents.contains(" %")); // nothing is shown for 0
    EXPECT_TRUE(percents.contains("7 %"));
    EXPECT_TRUE(percents.contains("50 %"));
    EXPECT_EQ(percents.size(), 102U); // with the blank one of the start
    EXPECT_TRUE(times.contains("00:59"));
    EXPECT_TRUE(times.contains("01:05"));
}

TEST_F(MusicSessionTest, AFileThatCantBeOpenedIsTold) {
    EXPECT_FALSE(music.OpenMP3(path("none.mp3")));
    EXPECT_THAT(taken(), ElementsAre("Error: Can't open this file. Try another file.",
                                     "Check the filename for errors: " + path("none.mp3") +
                                         " Try using a short filename instead."));
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Error: Can't play this file. Try another file."));
}

TEST_F(MusicSessionTest, StoppingAndClosingTwiceIsTold) {
    ASSERT_TRUE(open());
    loop.due.emplace(0.3, [this] { music.StopMP3(); });
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Playing", "Music Stopped"));
    EXPECT_TRUE(music.isOpen());
    EXPECT_LT(mix.now(), 0.5);
    music.StopMP3();
    music.CloseMP3();
    music.CloseMP3();
    EXPECT_THAT(taken(), ElementsAre("Music File was previously stopped.", "Music File closed.",
                                     "Music File was previously closed."));
    EXPECT_EQ(state.Status, "");
}

TEST_F(MusicSessionTest, PausingTwiceGoesOn) {
    ASSERT_TRUE(open());
    int at = 0;
    loop.due.emplace(0.2, [this] { music.PauseMP3(); });
    loop.due.emplace(1.2, [&] {
        EXPECT_TRUE(music.isPaused());
        at = std::stoi(send("status audiomp3 position").substr(8));
        music.PauseMP3();
        EXPECT_TRUE(music.isPlaying());
    });
    music.PlayMP3();
    EXPECT_NEAR(at, 8820, 2205);
    EXPECT_NEAR(mix.now(), 2, 0.15);
    EXPECT_THAT(taken(), ElementsAre("Playing", "Paused", "Playing", "Music File closed."));
}

TEST_F(MusicSessionTest, PlayingOnWhatIsPausedResumesItAndWhatPlaysIsLeftAlone) {
    ASSERT_TRUE(open());
    loop.due.emplace(0.2, [this] { music.PlayMP3(); });
    loop.due.emplace(0.4, [this] { music.PauseMP3(); });
    loop.due.emplace(0.6, [this] { music.PlayMP3(); });
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Playing", "Paused", "Playing", "Music File closed."));
    EXPECT_NEAR(mix.now(), 1.2, 0.15);
}

TEST_F(MusicSessionTest, ANewerPlayEndsTheOlderOne) {
    ASSERT_TRUE(open());
    const fs::path other = song(22050, "other.wav");
    bool olderGoesOn = true;
    loop.due.emplace(0.2, [&] {
        ASSERT_TRUE(music.OpenMP3(other));
        music.PlayMP3();
        olderGoesOn = false;
        EXPECT_NEAR(mix.now(), 0.7, 0.15);
        taken();
    });
    music.PlayMP3();
    EXPECT_FALSE(olderGoesOn);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_NEAR(mix.now(), 0.7, 0.15);
}

TEST_F(MusicSessionTest, AClosedFileEndsItsPlay) {
    ASSERT_TRUE(open());
    loop.due.emplace(0.2, [this] { music.CloseMP3(); });
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Playing", "Music File closed."));
    EXPECT_LT(mix.now(), 0.4);
}

TEST_F(MusicSessionTest, ACancelledPlaySaysSoAndStops) {
    ASSERT_TRUE(open());
    loop.due.emplace(0.2, [this] { music.cancelPlayback(); });
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Playing", "Cancelled"));
    EXPECT_FALSE(music.isPlaying());
    music.PlayMP3(); // that is over
    EXPECT_THAT(taken(), ElementsAre("Playing", "Music File closed."));
}

TEST_F(MusicSessionTest, TheProgramsEndEndsAPlay) {
    ASSERT_TRUE(open());
    loop.due.emplace(0.2, [this] { loop.hasLeft = true; });
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("Playing", "Cancelled"));
}

TEST_F(MusicSessionTest, WhatWasPlayedAndClosedIsOpenedAgain) {
    ASSERT_TRUE(open(4410));
    music.PlayMP3();
    taken();
    music.PlayMP3();
    EXPECT_THAT(taken(), ElementsAre("File Opened", "Playing", "Music File closed."));
}

TEST_F(MusicSessionTest, ARowIsPlayedAsOnePiece) {
    const fs::path one = song(4410, "one song.wav");
    const fs::path two = song(8820, "two.wav");
    EXPECT_TRUE(music.openRow({one, two}));
    EXPECT_EQ(state.Text6, one.string());
    EXPECT_EQ(send("status audiomp3 length"), "Success 13230");
    music.PlayMP3();
    EXPECT_NEAR(mix.now(), 0.3, 0.1);
    music.PlayMP3(); // again, both
    EXPECT_NEAR(mix.now(), 0.6, 0.2);
    EXPECT_FALSE(music.openRow({}));
}

TEST_F(MusicSessionTest, AnotherFileIsOpenedInPlaceOfTheFirst) {
    ASSERT_TRUE(open());
    EXPECT_TRUE(music.OpenMP3(song(100, "other.wav")));
    EXPECT_THAT(taken(), ElementsAre("Music File closed.", "File Opened"));
    EXPECT_EQ(music.file(), path("other.wav"));
}

TEST_F(MusicSessionTest, TheOpenCommandAsksForAMusicFile) {
    screen.chosen = song();
    music.open_Click();
    EXPECT_THAT(screen.asked, ElementsAre("Open File: Midi, score, wav, mp3(*.sng;*.mid;*.wav;*mp3)|"
                                          "*.sng;*.mid;*.wav;*mp3"));
    EXPECT_THAT(taken(), ElementsAre("File Opened"));
    screen.chosen.clear();
    music.open_Click();
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_TRUE(music.isOpen());
}

TEST_F(MusicSessionTest, AMidiFileIsPlayedAsItIsChosen) {
    screen.chosen = writeMidi(path("a.mid"));
    music.open_Click();
    EXPECT_THAT(taken(), ElementsAre("File Opened", "Playing", "Music File closed."));
    EXPECT_GT(mix.now(), 0.9);
}

TEST_F(MusicSessionTest, AScoreGoesToTheComposingWindow) {
    ASSERT_TRUE(open());
    screen.chosen = path("tune.SNG");
    music.open_Click();
    EXPECT_EQ(screen.score, path("tune.SNG"));
    EXPECT_THAT(taken(), ElementsAre("Music File closed."));
}

TEST_F(MusicSessionTest, EveryMessageGoesToTheBoxAndWithItsTimeToTheLog) {
    ASSERT_TRUE(open(100));
    EXPECT_EQ(state.Erbox, "File Opened\n");
    EXPECT_THAT(state.Text2, testing::MatchesRegex("[0-9][0-9]:[0-9][0-9]:[0-9][0-9]  File Opened\n"));
}

TEST_F(MusicSessionTest, AnMp3FilesHeaderIsShownUntilItIsStopped) {
    ASSERT_EQ(
        std::system(("ffmpeg -loglevel error -y -f lavfi -i sine=frequency=440:duration=1 -ac 1 -ar 48000 "
                     "-b:a 96k -metadata title=x '" +
                     path("a.mp3") + "'")
                        .c_str()),
        0);
    ASSERT_TRUE(music.OpenMP3(path("a.mp3")));
    EXPECT_EQ(state.lblKhz, "48");
    EXPECT_EQ(state.lblmode, "mono");
    EXPECT_EQ(state.lblbitrate, "96");
    music.StopMP3();
    EXPECT_EQ(state.lblKhz + state.lblmode + state.lblbitrate, "");
    ASSERT_TRUE(open());
    EXPECT_EQ(state.lblKhz + state.lblmode + state.lblbitrate, "");
}

// Save File As

TEST_F(MusicSessionTest, EachTypeIsSavedUnderANameOfItsOwn) {
    struct Row {
        const char* name;
        const char* asked;
    };
    for (const Row& row : {Row{"a.WAV", "Save As: Wave Audio (*.wav)|*.wav: "},
                           Row{"a.mid", "Save As: MIDI (*.mid)|*.mid: audio.mid"},
                           Row{"a.mp3", "Save As: MP3 (*.mp3)|*.mp3: audio.mp3"},
                           Row{"a.sng", "Save As: SNG (*.sng)|*.sng: audio.sng"}}) {
        if (fs::path(row.name).extension() == ".mid")
            writeMidi(path(row.name));
        else
            song(100, row.name); // by its contents a WAV file, each
        ASSERT_TRUE(music.OpenMP3(path(row.name))) << row.name;
        screen.asked.clear();
        taken();
        music.RenameFile();
        EXPECT_THAT(screen.asked, ElementsAre(row.asked));
        EXPECT_THAT(taken(), ElementsAre("Cancelled"));
    }
    song(100, "a.xyz");
    ASSERT_TRUE(music.OpenMP3(path("a.xyz")));
    taken();
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre("Invalid source file"));
}

TEST_F(MusicSessionTest, ACopyStandsUnderTheWholeNewName) {
    ASSERT_TRUE(open());
    screen.names = {path("a name of words")};
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre(path("song.wav") + " has been saved as " + path("a name of words.wav")));
    EXPECT_EQ(bytesOf(path("a name of words.wav")), bytesOf(path("song.wav")));
    EXPECT_GT(loop.yields, 0);
}

TEST_F(MusicSessionTest, ARefusalToReplaceMeansAnotherName) {
    ASSERT_TRUE(open());
    std::ofstream(folder / "old.wav") << "old";
    screen.names = {path("old"), path("new")};
    music.RenameFile();
    EXPECT_EQ(bytesOf(path("old.wav")), "old");
    EXPECT_EQ(bytesOf(path("new.wav")), bytesOf(path("song.wav")));
    EXPECT_THAT(screen.asked[1], HasSubstr("old.wav already exists. Do you want to replace the file?"));
    screen.names = {path("old")};
    screen.agrees = true;
    music.RenameFile();
    EXPECT_EQ(bytesOf(path("old.wav")), bytesOf(path("song.wav")));
}

TEST_F(MusicSessionTest, ACopyThatFailsIsToldAndLeavesTheOldFile) {
    ASSERT_TRUE(open());
    screen.names = {path("no folder") + "/x.wav"};
    taken();
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre("Can't rename as " + path("no folder") + "/x.wav"));
    screen.names = {path("song.wav")};
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre("Can't use the name " + path("song.wav")));
    EXPECT_GT(bytesOf(path("song.wav")).size(), 44U);
    fs::create_directory(folder / "dir.wav");
    screen.names = {path("dir.wav")};
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre("Can't use the name " + path("dir.wav")));
    std::ofstream(folder / "old.wav") << "old";
    fs::remove(path("song.wav"));
    screen.names = {path("old.wav")};
    music.RenameFile();
    EXPECT_THAT(taken(), ElementsAre("Can't rename as " + path("old.wav")));
    EXPECT_EQ(bytesOf(path("old.wav")), "old");
}
