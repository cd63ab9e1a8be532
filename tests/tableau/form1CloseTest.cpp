// SPDX-License-Identifier: GPL-2.0-or-later
// Leaving: the question, what is saved and what is removed; and the window's place.
#include "base/DemoMedia.h"
#include "base/Files.h"
#include "form1Fixture.h"
#include "score/SngFile.h"
#include "shell/WindowGeometry.h"

#include <fstream>

using namespace velmora;
namespace fs = std::filesystem;

namespace {
class form1CloseTest : public form1Fixture {
protected:
    void answer(const char* which) {
        driver.in<QWidget>([this, which](QWidget& box) {
            question = wordsOf(box).toStdString();
            pressIn(box, which);
        });
    }
    void expectGone() {
        EXPECT_FALSE(window().isVisible());
        EXPECT_EQ(windows.quits, 1);
        EXPECT_GE(port.closed, 1);
        EXPECT_TRUE(score().usedChannels().empty());
    }
    void expectKept() {
        EXPECT_TRUE(window().isVisible());
        EXPECT_EQ(windows.quits, 0);
        EXPECT_EQ(port.closed, 0);
        EXPECT_EQ(score().SongEnd, 8);
    }
    std::string question;
};
} // namespace

TEST_F(form1CloseTest, WithoutNotesThereIsNoQuestion) {
    shown().Command3_Click();
    expectGone();
}

TEST_F(form1CloseTest, YesSavesAndLeaves) {
    putNotes(score(), 0, 60, 4);
    shown();
    const std::string text = serializePoliFile(score(), workspace().setup);
    dialogs.answers = {{(folders.home() / "kept").string(), 1}};
    answer("yes");
    window().Command3_Click();
    EXPECT_EQ(question, "Do you want to save your composition?");
    EXPECT_EQ(readWholeFile(folders.home() / "kept.sng"), text);
    expectGone();
}

TEST_F(form1CloseTest, YesAndThenACancelKeepsWindowAndScore) {
    putNotes(score(), 0, 60, 4);
    shown();
    answer("yes");
    window().Command3_Click();
    EXPECT_EQ(dialogs.asked.size(), 1U);
    expectKept();
}

TEST_F(form1CloseTest, AWindowThatStillRecordsMayKeepTheProgram) {
    putNotes(score(), 0, 60, 4);
    shown();
    windows.letsQuit = false;
    window().Command3_Click();
    expectKept();
}

TEST_F(form1CloseTest, AFailedSaveIsSaidAndKeepsWindowAndScore) {
    putNotes(score(), 0, 60, 4);
    shown();
    fs::create_directory(folders.home() / "full.sng");
    dialogs.answers = {{(folders.home() / "full").string(), 1}};
    std::string said;
    driver.in<QWidget>([&](QWidget& box) {
        driver.in<QWidget>([&](QWidget& failure) {
            said = wordsOf(failure).toStdString();
            pressIn(failure, "ok");
        });
        pressIn(box, "yes");
    });
    window().Command3_Click();
    EXPECT_THAT(said, testing::HasSubstr("full.sng"));
    expectKept();
}

TEST_F(form1CloseTest, NotesOfMutedChannelsAreAskedAboutAndSaved) {
    putNotes(score(), 0, 60, 4);
    score().ChannelMuted[0] = true;
    shown();
    dialogs.answers = {{(folders.home() / "muted").string(), 1}};
    answer("yes");
    window().Command3_Click();
    Score read;
    SetupState setup;
    ASSERT_TRUE(OpenPoliFile(folders.home() / "muted.sng", read, setup));
    EXPECT_EQ(read.usedChannels(), std::vector{0});
    expectGone();
}

TEST_F(form1CloseTest, ASingleNoteInPositionZeroIsAskedAboutToo) {
    score().NoteCell.set(0, 0, 60);
    shown();
    answer("no");
    window().Command3_Click();
    EXPECT_EQ(question, "Do you want to save your composition?");
    expectGone();
}

TEST_F(form1CloseTest, NoLeavesWithoutSaving) {
    putNotes(score(), 0, 60, 4);
    shown();
    answer("no");
    window().Command3_Click();
    EXPECT_TRUE(dialogs.asked.empty());
    expectGone();
}

TEST_F(form1CloseTest, EscLosesNothing) {
    putNotes(score(), 0, 60, 4);
    shown();
    driver.in<QWidget>([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    window().Command3_Click();
    expectKept();
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(form1CloseTest, ASecondCloseQuitsNoSecondTime) {
    shown().close();
    window().close();
    EXPECT_EQ(windows.quits, 1);
}

TEST_F(form1CloseTest, TheUndoFileAndTheDemoMediaGo) {
    const fs::path packed = folders.home() / "data" / "demos";
    fs::create_directories(packed);
    for (const std::string_view name : kDemoMedia)
        std::ofstream(packed / name) << "piece " << name;
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    workspace().undo.SaveforUndo(score(), workspace().setup);
    ASSERT_TRUE(fs::exists(folders.undoFile()));
    std::ofstream(folders.media() / "mine.sng") << "60";
    shown().close();
    EXPECT_FALSE(fs::exists(folders.undoFile()));
    for (const std::string_view name : kDemoMedia)
        EXPECT_FALSE(fs::exists(folders.media() / name)) << name;
    EXPECT_TRUE(fs::exists(folders.media() / "mine.sng"));
    EXPECT_TRUE(fs::exists(packed / "104a.sng"));
}

TEST_F(form1CloseTest, PlacePercussionAndStyleAreSaved) {
    store("Notationstyle", "1");
    shown().setGeometry(30, 40, 1000, 600);
    window().Lb1_Click(9);
    store("Percussion", "True"); // as if another hand had been there
    window().close();
    EXPECT_EQ(settings::read(settings, settings::form1_left), 30 * 15);
    EXPECT_EQ(settings::read(settings, settings::form1_top), 40 * 15);
    EXPECT_EQ(settings::read(settings, settings::form1_Width), 1000 * 15);
    EXPECT_EQ(settings::read(settings, settings::form1_Height), 600 * 15);
    EXPECT_FALSE(settings::read(settings, settings::Percussion));
    EXPECT_EQ(stored("Notationstyle"), "1");
    EXPECT_EQ(stored("form1 width"), "none") << "the key with the small w is read and never written";
}

TEST_F(form1CloseTest, ThePlaceIsReadAtLoadAndSavedAtOnce) {
    store("form1 left", "150");
    store("form1 top", "450");
    store("form1 width", "3000");
    store("form1 Width", "99999"); // read by nobody
    store("form1 Height", "1500");
    const form1 made(desk());
    const QRect screen = made.screen()->availableGeometry();
    const QRect expected = openingFrame({10, 30, 200, 100}, screen, kLeastForm);
    EXPECT_EQ(made.pos(), expected.topLeft());
    EXPECT_EQ(made.size(), expected.size().expandedTo(kLeastForm));
    EXPECT_EQ(settings::read(settings, settings::form1_left), float(made.x() * 15));
    EXPECT_EQ(settings::read(settings, settings::form1_top), float(made.y() * 15));
    EXPECT_EQ(settings::read(settings, settings::form1_Width), float(made.width() * 15));
    EXPECT_EQ(settings::read(settings, settings::form1_Height), float(made.height() * 15));
    EXPECT_EQ(stored("form1 width"), "3000");
}

TEST_F(form1CloseTest, AWindowStoredOffTheScreenIsPulledBack) {
    store("form1 left", "-90000");
    store("form1 top", "900000");
    store("form1 width", "3000");
    store("form1 Height", "1500");
    const form1 made(desk());
    const QRect screen = made.screen()->availableGeometry();
    EXPECT_GE(made.x(), screen.left());
    EXPECT_GE(made.y(), screen.top());
    EXPECT_TRUE(screen.contains(made.pos() + QPoint(100, 10))) << "its title is on the screen";
}

TEST_F(form1CloseTest, AMoveThatEndsSavesTheTop) {
    shown();
    window().move(12, 77);
    settings.SaveSetting("Settings", "form1 top", "0");
    QMouseEvent press(QEvent::MouseButtonPress, {50, 10}, window().mapToGlobal(QPointF(50, 10)),
                      Qt::LeftButton, Qt::LeftButton, {});
    QWidget& title = child("lblTitle");
    QApplication::sendEvent(&title, &press);
    window().move(12, 90);
    QMouseEvent release(QEvent::MouseButtonRelease, {50, 10}, window().mapToGlobal(QPointF(50, 10)),
                        Qt::LeftButton, {}, {});
    QApplication::sendEvent(&title, &release);
    EXPECT_EQ(settings::read(settings, settings::form1_top), 90 * 15);
}
