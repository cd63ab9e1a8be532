// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/TakePanel.h"

#include "RecordFixture.h"
#include "recording/Waveform.h"

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
namespace fs = std::filesystem;

/// The Recording Studio with a take of a second of silence.
class TakePanelTest : public RecordFixture {
protected:
    void take() {
        opened();
        state().Check2 = false; // no MP3
        state().source = RecordingSource::Keyboard;
        click("CmdrecordSNG");
        mix().advance(44100);
        click("CmdStopRecording");
        file_ = state().Text6;
        ASSERT_TRUE(fs::exists(file_));
    }
    /// Its picture, once it is whole.
    void showTake() {
        click("showTake");
        ASSERT_TRUE(QTest::qWaitFor([this] { return isEnabled("playPart"); }));
    }
    Waveform& wave() { return control<Waveform>("waveform"); }
    bool isShown(const char* name) { return control(name).isVisible(); }
    [[nodiscard]] const fs::path& file() const { return file_; }

private:
    fs::path file_;
};
} // namespace

TEST_F(TakePanelTest, ItStandsInThePlaceOfTheMessages) {
    take();
    showTake();
    EXPECT_TRUE(isShown("takePanel"));
    EXPECT_FALSE(isShown("messagePanel"));
    EXPECT_FALSE(isShown("afterPanel"));
    click("back");
    EXPECT_FALSE(isShown("takePanel"));
    EXPECT_TRUE(isShown("messagePanel"));
    EXPECT_TRUE(control("showTake").hasFocus());
}

TEST_F(TakePanelTest, AnotherTakeBringsTheMessagesBack) {
    take();
    showTake();
    QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(state().isRecording);
    EXPECT_TRUE(isShown("messagePanel"));
}

TEST_F(TakePanelTest, ItTellsTheFileAndItsLength) {
    take();
    showTake();
    EXPECT_EQ(text("takeWords"), file().filename().string() + ", 1.0 seconds");
}

TEST_F(TakePanelTest, WithoutATakeThereIsNothingToPress) {
    opened();
    click("showTake");
    EXPECT_EQ(text("takeWords"), "No recording yet");
    for (const char* name : {"waveform", "playPart", "cut", "fade"})
        EXPECT_FALSE(isEnabled(name)) << name;
}

TEST_F(TakePanelTest, APartIsCutOutBesideTheWhole) {
    take();
    showTake();
    wave().setMarks(0.25, 0.75);
    click("cut");
    const fs::path part = file().parent_path() / (file().stem().string() + " cut.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().Text6 == part.string(); })) << state().Erbox;
    EXPECT_EQ(fs::file_size(part), 44U + 22050 * 4);
    EXPECT_EQ(fs::file_size(file()), 44U + 44100 * 4) << "which stays";
    EXPECT_THAT(state().Erbox, HasSubstr("File was saved as " + part.string()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return text("takeWords").ends_with("cut.wav, 0.5 seconds"); }));
    EXPECT_EQ(wave().begin(), 0) << "of another file";
}

TEST_F(TakePanelTest, PressingThePicturePlays) {
    take();
    showTake();
    wave().onPlay(0.5);
    EXPECT_THAT(state().Erbox, HasSubstr("File Opened\nPlaying\n"));
}

TEST_F(TakePanelTest, TheTagsAreTheSessions) {
    take();
    showTake();
    QTest::keyClicks(&control("title"), "Morning Walk");
    QTest::keyClicks(&control("artist"), "Ada");
    EXPECT_EQ(state().title, "Morning Walk");
    EXPECT_EQ(state().artist, "Ada");
    dialogs.answers.push_back({"/somewhere/face.png", 1});
    click("cover");
    EXPECT_EQ(state().cover, "/somewhere/face.png");
    EXPECT_TRUE(control<QAbstractButton>("cover").isChecked());
    click("cover");
    EXPECT_EQ(state().cover, "");
    EXPECT_FALSE(control<QAbstractButton>("cover").isChecked());
}
