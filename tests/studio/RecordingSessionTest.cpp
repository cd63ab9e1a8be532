// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/RecordingSession.h"

#include "base/ProgramFolders.h"
#include "score/Manners.h"
#include "sound/VirtualMix.h"
#include "studio/MediaDevices.h"
#include "studio/MusicSession.h"
#include "studio/SessionPlayer.h"
#include "studio/SessionScreen.h"
#include "studio/SoundReader.h"
#include "studio/WavFile.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// A quiet tone for as long as it is on.
class Tone : public AudioSource {
public:
    bool on = false;
    void render(const AudioBlock& block) noexcept override {
        for (int i = 0; on && i < block.frames; ++i, ++frame_) {
            const float value = 0.25F * std::sin(0.05F * static_cast<float>(frame_ % 12566));
            block.samples[2 * i] += value;
            block.samples[2 * i + 1] += value;
        }
    }

private:
    int frame_ = 0;
};

/// Notes of half a second that ring for another 0.3 seconds.
class FakeNotes : public SessionPlayer {
public:
    FakeNotes(VirtualMix& mix, Tone& tone) : mix_(mix), tone_(tone) {}

    End playNotes(bool showPosition, const std::function<void(double)>& progress) override {
        shown = showPosition;
        stopped = false;
        tone_.on = isHeard;
        for (int step = 1; step <= 5 && !stopped; ++step) {
            mix_.block(seconds / 5);
            progress(step / 5.0);
            if (onStep)
                onStep(step);
        }
        return end;
    }
    void stopNotes() override {
        stopped = true;
        tone_.on = false;
    }
    std::string soundWithin() override { return device; }
    void soundAsBefore() override { ++switchedBack; }

    double seconds = 0.5;
    bool isHeard = true;
    bool shown = false;
    bool stopped = false;
    End end = End::Over;
    std::string device;
    int switchedBack = 0;
    std::function<void(int)> onStep;

private:
    VirtualMix& mix_;
    Tone& tone_;
};

class FakeScreen : public SessionScreen {
public:
    void said(const std::string& text) override { texts.push_back(text); }
    void tell(const std::string& /*title*/, const std::string& text) override { told.push_back(text); }
    bool ask(const std::string& question) override {
        questions.push_back(question);
        return agrees;
    }
    fs::path askOpen(const std::string& title, const std::string& filter) override {
        questions.push_back(title + "|" + filter);
        return chosen;
    }
    fs::path askSave(const std::string& title, const std::string& filter,
                     const std::string& /*proposed*/) override {
        questions.push_back(title + "|" + filter);
        return chosen;
    }
    void showKeyboard() override { ++keyboards; }

    std::vector<std::string> texts;
    std::vector<std::string> told;
    std::vector<std::string> questions;
    bool agrees = true;
    fs::path chosen;
    int keyboards = 0;
};

class RecordingSessionTest : public ::testing::Test {
protected:
    RecordingSessionTest() {
        mix.add(tone);
        session.show(&screen);
        media.onCommand = [this](std::string_view command, const MediaAnswer& answer) {
            commands.emplace_back(command);
            answers.push_back(answer.text());
        };
        state.Check2 = false;
    }
    ~RecordingSessionTest() override { mix.remove(tone); }

    [[nodiscard]] std::vector<fs::path> songs() const {
        std::vector<fs::path> files;
        if (fs::exists(folders.songs()))
            for (const auto& file : fs::directory_iterator(folders.songs()))
                files.push_back(file.path());
        return files;
    }
    fs::path makeWav(const char* name) {
        folders.makeSongs();
        const fs::path file = folders.songs() / name;
        WavFile wav(file);
        std::vector<float> sound(std::size_t{2} * 22050, 0.25F);
        EXPECT_EQ(wav.open(), "");
        EXPECT_EQ(wav.write(sound), "");
        EXPECT_EQ(wav.finish(), "");
        return file;
    }
    static double secondsOf(const fs::path& file) {
        const OpenedSound opened = openSound(file);
        return opened.reader ? opened.reader->info().seconds() : -1;
    }

    QTemporaryDir home;
    ProgramFolders folders{fs::path(home.path().toStdString())};
    VirtualMix mix;
    Tone tone;
    FakeNotes notes{mix, tone};
    Manners manners = Manners::careful();
    SessionState state;
    MediaDevices media{mix, mix, [] { return fs::path(); }};
    MusicSession music{state, media, mix};
    RecordingSession session{state, media, music, notes, manners, folders, mix};
    FakeScreen screen;
    std::vector<std::string> commands;
    std::vector<std::string> answers;
};

TEST_F(RecordingSessionTest, ATakeOfNotesGoesThroughTheCommandsInOrder) {
    session.CmdrecordSNG_Click();
    const std::string file = state.InputPath.string();
    EXPECT_THAT(commands,
                ElementsAre("open new type waveaudio alias capture",
                            "set capture samplespersec 44100 channels 2 bitspersample 16 alignment 4 "
                            "bytespersec 176400",
                            "record capture", "stop capture", "capability capture can save",
                            "save capture " + file, "delete capture", "close capture"));
    EXPECT_THAT(answers, ::testing::Each("Success"));
    EXPECT_THAT(screen.texts,
                ElementsAre("Recording source is 'Notes'...", "Recording to a Temp file: " + file,
                            "Recording", "  Started playing notes", "Recording Stopped!", "File Can be saved",
                            "File was saved as " + file, "Recording buffer Deleted! ", "Recording Closed "));
    EXPECT_EQ(state.Text6, file);
    EXPECT_EQ(state.Label8, "");
    EXPECT_FALSE(state.isRecording || state.isLocked);
}

TEST_F(RecordingSessionTest, TheTakeHoldsTheNotesAndTheEndThatRingsOut) {
    notes.onStep = [this](int step) { tone.on = step < 5; };
    session.CmdrecordSNG_Click();
    EXPECT_GE(secondsOf(state.InputPath), 0.5);
    EXPECT_LE(secondsOf(state.InputPath), 0.5 + 0.5);

    tone.on = true; // nothing ends it
    notes.onStep = nullptr;
    session.CmdrecordSNG_Click();
    EXPECT_NEAR(secondsOf(state.InputPath), 0.5 + RecordingSession::kRingOutSeconds, 0.2);
}

TEST_F(RecordingSessionTest, TheLogTellsEachMessageWithItsTime) {
    session.CmdrecordSNG_Click();
    EXPECT_THAT(state.Text2,
                ::testing::ContainsRegex("[0-9][0-9]:[0-9][0-9]:[0-9][0-9]  Recording Stopped!\n"));
    EXPECT_THAT(state.Erbox, HasSubstr("  Started playing notes\n"));
}

TEST_F(RecordingSessionTest, EveryOfferedFormatIsSetByItsText) {
    const std::vector<std::string> numbers{
        "samplespersec 44100 channels 1 bitspersample 8 alignment 1 bytespersec 44100",
        "samplespersec 44100 channels 2 bitspersample 8 alignment 2 bytespersec 88200",
        "samplespersec 44100 channels 1 bitspersample 16 alignment 2 bytespersec 88200",
        "samplespersec 44100 channels 2 bitspersample 16 alignment 4 bytespersec 176400",
        "samplespersec 48000 channels 2 bitspersample 16 alignment 4 bytespersec 192000"};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        commands.clear();
        state.cbxFormat = i;
        session.CmdrecordSNG_Click();
        EXPECT_EQ(commands[1], "set capture " + numbers[i]);
        EXPECT_EQ(answers[1], "Success");
    }
}

TEST_F(RecordingSessionTest, ProgressIsShownInPerCent) {
    std::vector<std::string> shown;
    notes.onStep = [&](int) { shown.push_back(state.Status); };
    session.CmdrecordSNG_Click();
    EXPECT_THAT(shown, ElementsAre("20 %", "40 %", "60 %", "80 %", "100 %"));
    EXPECT_EQ(state.Status, "");
}

TEST_F(RecordingSessionTest, ShowingThePositionIsTheUsersChoice) {
    session.CmdrecordSNG_Click();
    EXPECT_TRUE(notes.shown);
    state.Check4 = false;
    session.CmdrecordSNG_Click();
    EXPECT_FALSE(notes.shown);
}

TEST_F(RecordingSessionTest, StoppingEndsTheSongToo) {
    notes.onStep = [this](int step) {
        if (step == 2)
            session.CmdStopRecording_Click();
    };
    session.CmdrecordSNG_Click();
    EXPECT_TRUE(notes.stopped);
    EXPECT_NEAR(secondsOf(state.InputPath), 0.2, 0.05);
    EXPECT_EQ(std::ranges::count(commands, "stop capture"), 1);
}

TEST_F(RecordingSessionTest, ASongThatIsPausedIsRecordedToItsEnd) {
    notes.end = SessionPlayer::End::Paused;
    session.CmdrecordSNG_Click();
    EXPECT_TRUE(state.isRecording);
    tone.on = false;
    mix.block(1);
    notes.onEnded();
    EXPECT_FALSE(state.isRecording);
    EXPECT_GE(secondsOf(state.InputPath), 1.5);
}

TEST_F(RecordingSessionTest, TheKeyboardIsRecordedUntilTheStop) {
    state.source = RecordingSource::Keyboard;
    session.CmdrecordSNG_Click();
    EXPECT_EQ(screen.keyboards, 1);
    EXPECT_TRUE(state.isRecording);
    EXPECT_EQ(state.Label8, "Recording");
    tone.on = true;
    mix.block(1);
    session.CmdStopRecording_Click();
    EXPECT_NEAR(secondsOf(state.InputPath), 1, 0.05);
}

TEST_F(RecordingSessionTest, AMidiSourceWantsAFile) {
    state.source = RecordingSource::MidiFile;
    session.CmdrecordSNG_Click();
    EXPECT_THAT(screen.questions, ElementsAre("Open MIDI File|Midi(*.mid)|*.mid"));
    EXPECT_THAT(screen.texts, ElementsAre("Recording source is 'File'. Opening File...",
                                          "You must enter a File Name to start recording"));
    EXPECT_THAT(songs(), IsEmpty());
    state.Text6 = "/nowhere/at/all.mid";
    session.CmdrecordSNG_Click();
    EXPECT_EQ(screen.texts.back(), "You must enter a File Name to start recording");
}

TEST_F(RecordingSessionTest, AMidiFileThatCannotBePlayedLeavesNoTake) {
    state.source = RecordingSource::MidiFile;
    folders.makeSongs();
    const fs::path broken = folders.songs() / "broken.mid";
    std::ofstream(broken) << "no music";
    state.Text6 = broken.string();
    session.CmdrecordSNG_Click();
    EXPECT_THAT(screen.texts, ::testing::Contains("An error occurred."));
    EXPECT_EQ(screen.texts.back(), "Recording Cancelled");
    EXPECT_THAT(songs(), ElementsAre(broken));
    EXPECT_FALSE(state.isRecording || state.isLocked);
}

TEST_F(RecordingSessionTest, ASecondStartFailsAndTheFirstGoesOn) {
    state.source = RecordingSource::Keyboard;
    session.CmdrecordSNG_Click();
    const fs::path first = state.InputPath;
    tone.on = true;
    mix.block(0.5);
    session.CmdrecordSNG_Click();
    EXPECT_EQ(screen.texts.back(), "Error opening waveaudio");
    mix.block(0.5);
    session.CmdStopRecording_Click();
    EXPECT_NEAR(secondsOf(first), 1, 0.05);
}

TEST_F(RecordingSessionTest, AStopWithoutARecordingSaysSo) {
    session.CmdStopRecording_Click();
    EXPECT_THAT(screen.texts,
                ElementsAre("Stopping recording failed!", "File Cannot be saved", "File was NOT saved",
                            "Deleting Recording buffer failed!", "Closing Recording  failed! "));
    EXPECT_FALSE(fs::exists("TEMP.WAV"));
}

TEST_F(RecordingSessionTest, ATakeIsEncodedAndThenGone) {
    state.Check2 = true;
    session.CmdrecordSNG_Click();
    ASSERT_THAT(songs(), ElementsAre(state.OutPutPath));
    EXPECT_EQ(state.OutPutPath.extension(), ".mp3");
    EXPECT_EQ(state.Text6, state.OutPutPath.string());
    EXPECT_NEAR(secondsOf(state.OutPutPath), 0.5 + RecordingSession::kRingOutSeconds, 0.2);
    EXPECT_EQ(screen.texts.back(), "Finished Encoding " + state.InputPath.string());
    EXPECT_THAT(screen.questions, IsEmpty());
    EXPECT_EQ(session.failure(), "");
}

TEST_F(RecordingSessionTest, ATakeStaysWhereItIsNotToBeDeleted) {
    state.Check2 = true;
    state.Check3 = false;
    session.CmdrecordSNG_Click();
    EXPECT_EQ(songs().size(), 2U);
}

TEST_F(RecordingSessionTest, TheMp3FileBesideATakeIsWhatEncodingTheTakeGives) {
    state.Check2 = true;
    state.Check3 = false;
    session.CmdrecordSNG_Click();
    const fs::path again = folders.songs() / "again.mp3";
    EncodeJob job{.wav = state.InputPath, .mp3 = again};
    ASSERT_EQ(encode(job).end, EncodeOutcome::End::Done);
    const auto bytes = [](const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    EXPECT_EQ(bytes(again), bytes(state.OutPutPath));
}

TEST_F(RecordingSessionTest, AFileThatTheUserOpenedIsNeverDeleted) {
    const fs::path own = makeWav("mine.wav");
    state.Text6 = own.string();
    session.Command20_Click();
    EXPECT_TRUE(fs::exists(own));
    EXPECT_TRUE(fs::exists(folders.songs() / "mine.mp3"));
    EXPECT_EQ(screen.texts.back(), "Finished Encoding " + own.string());
}

TEST_F(RecordingSessionTest, AnOldMp3FileIsReplacedOnlyIfTheUserAgrees) {
    const fs::path own = makeWav("mine.wav");
    const fs::path old = folders.songs() / "mine.mp3";
    std::ofstream(old) << "old";
    state.Text6 = own.string();
    screen.agrees = false;
    session.Command20_Click();
    EXPECT_THAT(screen.questions,
                ElementsAre(old.string() + " already exists. Do you want to replace the file?",
                            "Save As|MP3 (*.mp3)|*.mp3"));
    EXPECT_EQ(screen.texts.back(), "Encoding Cancelled ");
    EXPECT_EQ(fs::file_size(old), 3U);

    screen.chosen = folders.songs() / "another name"; // with a blank, and nothing behind it is cut
    session.Command20_Click();
    EXPECT_TRUE(fs::exists(folders.songs() / "another name.mp3"));
    EXPECT_EQ(fs::file_size(old), 3U);

    screen.agrees = true;
    session.Command20_Click();
    EXPECT_EQ(screen.texts.back(),
              "The Source file is not a Wave file."); // the name shown is the MP3 file's now
    state.Text6 = own.string();
    session.Command20_Click();
    EXPECT_GT(fs::file_size(old), 1000U);
}

TEST_F(RecordingSessionTest, WhatCannotBeEncodedIsTold) {
    state.Text6 = "";
    session.Command20_Click();
    EXPECT_THAT(screen.texts, IsEmpty());
    state.Text6 = "song.mp3";
    session.Command20_Click();
    EXPECT_EQ(screen.texts.back(), "The Source file is not a Wave file.");
    state.Text6 = "/nowhere/song.WAV ";
    session.Command20_Click();
    EXPECT_EQ(screen.texts.back(), "The Source file is not a Wave file, or does not exist.");
    EXPECT_FALSE(state.isEncoding || state.isLocked);
}

TEST_F(RecordingSessionTest, ATakeWhoseEncodingFailsIsKept) {
    state.Check2 = true;
    notes.onStep = [this](int step) {
        if (step == 5)
            fs::create_directory(state.OutPutPath); // no file can take that place
    };
    session.CmdrecordSNG_Click();
    EXPECT_TRUE(fs::exists(state.InputPath));
    EXPECT_NE(session.failure(), "");
}

TEST_F(RecordingSessionTest, ASilentTakeIsToldWhileItRuns) {
    state.source = RecordingSource::Keyboard;
    session.CmdrecordSNG_Click();
    for (int i = 0; i < 35; ++i) {
        mix.block(0.1);
        session.update();
    }
    EXPECT_EQ(std::ranges::count(screen.texts, "Nothing has sounded for 3 seconds."), 1);
    EXPECT_EQ(state.lblTime, "00:03");
    session.CmdStopRecording_Click();
    EXPECT_TRUE(session.wasSilent());
    EXPECT_NEAR(secondsOf(state.InputPath), 3.5, 0.05);
}

TEST_F(RecordingSessionTest, AnotherMidiDeviceIsNamedAndComesBack) {
    notes.device = "Outer Synth";
    session.CmdrecordSNG_Click();
    EXPECT_THAT(screen.texts, ::testing::Contains(HasSubstr("\"Outer Synth\"")));
    EXPECT_EQ(notes.switchedBack, 1);
}

TEST_F(RecordingSessionTest, EndingAllKeepsTheTake) {
    state.Check2 = true;
    state.source = RecordingSource::Keyboard;
    session.CmdrecordSNG_Click();
    EXPECT_TRUE(session.isBusy());
    tone.on = true;
    mix.block(1);
    session.endAll();
    EXPECT_FALSE(session.isBusy());
    EXPECT_THAT(songs(), ElementsAre(state.InputPath));
    EXPECT_NEAR(secondsOf(state.InputPath), 1, 0.05);
    EXPECT_EQ(screen.texts.back(), "Closed");
}

TEST_F(RecordingSessionTest, ClassicMannersEncodeByTheRowOfTheList) {
    manners = Manners::classic();
    state.Check2 = true;
    session.CmdrecordSNG_Click(); // row 3: 44,100 Hz, mono
    const OpenedSound opened = openSound(state.OutPutPath);
    ASSERT_TRUE(opened.reader);
    EXPECT_EQ(opened.reader->info().channels, 1);
    EXPECT_EQ(opened.reader->info().rate, 44100);
}

} // namespace
} // namespace velmora
