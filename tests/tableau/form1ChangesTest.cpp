// SPDX-License-Identifier: GPL-2.0-or-later
// What is announced once is painted once, whoever changed it.
#include "composition/RecoveryFile.h"
#include "form1Fixture.h"
#include "score/SngFile.h"
#include "setup/frmsetup.h"
#include "tests/support/RecordingWatcher.h"

#include <QLabel>
#include <QLineEdit>

using namespace velmora;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
/// The composing window with percussion, and the setup toolbar over it.
class form1ChangesTest : public form1Fixture {
protected:
    form1ChangesTest() { store("Percussion", "-1"); }

    void open() {
        shown();
        toolbar_ = std::make_unique<frmsetup>(desk(), &window());
        toolbar_->open(Windows::Focus::Leave);
        watcher_ = std::make_unique<RecordingWatcher>(workspace());
        QApplication::processEvents();
    }
    frmsetup& toolbar() { return *toolbar_; }

    /// How often each Tableau was painted, and those who show were told.
    struct Shown {
        int melody = 0;
        int percussion = 0;
        std::size_t told = 0;
        bool operator==(const Shown&) const = default;
        friend void PrintTo(const Shown& shown, std::ostream* out) {
            *out << shown.melody << " and " << shown.percussion << " paintings, told " << shown.told;
        }
    };
    Shown during(const std::function<void()>& command) {
        watcher_->told.clear();
        const int melody = window().paintings(Box::MusicBox);
        const int percussion = window().paintings(Box::Beatbox);
        command();
        QApplication::processEvents();
        return {window().paintings(Box::MusicBox) - melody, window().paintings(Box::Beatbox) - percussion,
                watcher_->told.size()};
    }
    static constexpr Shown kOnce{1, 1, 1};

private:
    std::unique_ptr<frmsetup> toolbar_;
    std::unique_ptr<RecordingWatcher> watcher_;
};
} // namespace

TEST_F(form1ChangesTest, AChannelThatIsClickedInEitherWindowIsShownOnce) {
    open();
    EXPECT_EQ(during([&] { QTest::mouseClick(&square(3), Qt::LeftButton); }), kOnce);
    auto* button = toolbar().findChild<QAbstractButton*>("TrackSel(5)");
    EXPECT_EQ(during([&] { QTest::mouseClick(button, Qt::LeftButton); }), kOnce);
    EXPECT_TRUE(square(5).isChecked());
    EXPECT_EQ(during([&] { window().TrackSel_Click(2); }), kOnce);
    EXPECT_TRUE(toolbar().findChild<QAbstractButton*>("TrackSel(2)")->isChecked());
}

TEST_F(form1ChangesTest, AMutedChannelIsShownOnceWhoeverMutesIt) {
    putNotes(score(), 3, 60, 4);
    open();
    EXPECT_EQ(during([&] { QTest::mousePress(&square(3), Qt::RightButton); }), kOnce);
    EXPECT_TRUE(toolbar().findChild<QAbstractButton*>("TrackHide(3)")->isChecked());
    EXPECT_EQ(during([&] { toolbar().TrackHide_Click(3, false); }), kOnce);
    EXPECT_FALSE(score().ChannelMuted[3]);
}

TEST_F(form1ChangesTest, AnOpenedScoreIsShownOnceAndInTheToolbarToo) {
    putNotes(score(), 0, 60, 4);
    putNotes(score(), 8, 44, 4);
    score().Tempo = 88;
    score().currentFile = (folders.home() / "tune.sng").string();
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");
    score().ClearAll();
    open();
    EXPECT_EQ(during([&] { window().openScore(folders.home() / "tune.sng"); }), kOnce);
    EXPECT_EQ(window().windowTitle(), "Velmora - tune.sng");
    EXPECT_EQ(toolbar().findChild<QLineEdit*>("TempoLabel")->text(), "88");
}

TEST_F(form1ChangesTest, ClearAndUndoAreShownOnce) {
    putNotes(score(), 0, 60, 4);
    open();
    EXPECT_EQ(during([&] { window().ClearAll(); }), kOnce);
    EXPECT_EQ(during([&] { window().OpenforUndo(); }), kOnce);
    EXPECT_EQ(score().usedChannels(), std::vector{0});
}

TEST_F(form1ChangesTest, EachBlockCommandIsShownOnce) {
    struct Row {
        const char* name;
        void (form1::*press)();
    };
    static constexpr Row kRows[]{
        {"copy", &form1::copyIt},
        {"cut", &form1::CutBut_Click},
        {"overwrite", &form1::PasteBut_Click},
        {"insert", &form1::PasteIntoBut_Click},
        {"spaces", &form1::InsertColumnBut_Click},
        {"duplicate", &form1::CopyNotes_Click},
        {"create melody", &form1::Cmdo_Click},
    };
    putNotes(score(), 0, 60, 40);
    putNotes(score(), 8, 44, 40);
    open();
    workspace().edit.CycleNotes = 8;
    for (const Row& row : kRows) {
        workspace().view.SelectStart = workspace().view.PlayMark = 4;
        workspace().view.SelectEnd = 12;
        EXPECT_EQ(during([&] { (window().*row.press)(); }), kOnce) << row.name;
    }
}

TEST_F(form1ChangesTest, AStrokePaintsItsOwnTableauOnce) {
    open();
    QWidget& paper = child("MusicBox");
    const auto stroke = [&] {
        QTest::mousePress(&paper, Qt::LeftButton, {}, {60, 100});
        QTest::mouseRelease(&paper, Qt::LeftButton, {}, {90, 100});
    };
    EXPECT_EQ(during(stroke).melody, 1);
    EXPECT_EQ(during(stroke).percussion, 0);
}

TEST_F(form1ChangesTest, MarksArePaintedOnTheMelodyAlone) {
    open();
    EXPECT_EQ(during([&] { announce(workspace(), Change::Marks); }), (Shown{1, 0, 1}));
}

TEST_F(form1ChangesTest, WhatIsNotPaintedOnATableauPaintsNone) {
    open();
    for (const Change change : {Change::Modes, Change::Undo, Change::Tools, Change::Sound, Change::Device,
                                Change::Instruments, Change::Name, Change::Effects})
        EXPECT_EQ(during([&] { announce(workspace(), change); }), (Shown{0, 0, 1}));
}

TEST_F(form1ChangesTest, PaintingChangesNothing) {
    putNotes(score(), 0, 60, 4);
    open();
    RecordingWatcher watcher(workspace());
    const auto inUse = score().ChannelInUse;
    child("Picmain").hide();
    child("Picmain").show();
    QApplication::processEvents();
    EXPECT_THAT(watcher.told, IsEmpty());
    EXPECT_EQ(score().ChannelInUse, inUse);
}

TEST_F(form1ChangesTest, AScoreThatIsBroughtBackIsShownUnderItsOldName) {
    Workspace run(settings, folders);
    putNotes(run.score, 4, 60, 6);
    const LeftScore left{
        .file = {}, .score = serializePoliFile(run.score, run.setup), .currentFile = "/home/me/tune.sng"};
    open();
    EXPECT_EQ(during([&] { window().bringBack(left); }), kOnce);
    EXPECT_EQ(window().windowTitle(), "Velmora - tune.sng");
    EXPECT_EQ(score().usedChannels(), std::vector{4});
}
