// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeepWindow.h"

#include "shell/ReadOut.h"
#include "sound/ShortMessage.h"
#include "synth/PhrasePaper.h"
#include "tests/tableau/form1Fixture.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class KeepWindowTest : public form1Fixture {
protected:
    KeepWindowTest() {
        loop.block(10);
        window(); // the composing window is there first
    }
    /// Quarters at 100 beats a minute.
    void play(std::initializer_list<int> notes, double beats = 1) {
        for (const int note : notes) {
            played.struck(0, note, 90, 24, loop.now());
            loop.block(0.6 * beats * 0.9);
            played.ended(0, note, loop.now());
            loop.block(0.6 * beats * 0.1);
        }
    }
    KeepWindow& keeping() {
        if (!window_)
            window_ = std::make_unique<KeepWindow>(desk(), nullptr);
        return *window_;
    }
    KeepWindow& opened() {
        keeping().open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&keeping()));
        return keeping();
    }
    template<class Part>
    Part& part(const char* name) {
        return *keeping().findChild<Part*>(name);
    }
    void click(const char* name) { QTest::mouseClick(&part<QAbstractButton>(name), Qt::LeftButton); }
    std::string words(const char* name) { return part<QLabel>(name).text().toStdString(); }

private:
    std::unique_ptr<KeepWindow> window_;
};
} // namespace

TEST_F(KeepWindowTest, ItTellsWhatWasPlayed) {
    play({60, 62, 64, 65, 67});
    EXPECT_EQ(keeping().windowTitle(), "Keep what I just played");
    EXPECT_EQ(words("words"), "The last phrase: 5 notes, 3 seconds, about 100 beats per minute");
    EXPECT_EQ(words("grid"), "1/4 Note");
    EXPECT_TRUE(part<QRadioButton>("legato").isChecked());
    EXPECT_EQ(part<QAbstractButton>("channel").accessibleName(), "Goes to Channel 1");
    EXPECT_EQ(part<PhrasePaper>("paper").accessibleDescription(), "5 notes on 20 positions");
    EXPECT_FALSE(part<QLabel>("notice").isVisibleTo(&keeping()));
}

TEST_F(KeepWindowTest, WithNothingPlayedItSaysSoAndKeepsNothing) {
    opened();
    EXPECT_EQ(words("words"), "Nothing has been played on the keyboard in the last ten minutes.");
    for (const char* name : {"keep", "listen", "coarser", "finer", "legato", "asPlayed", "channel"})
        EXPECT_FALSE(part<QWidget>(name).isEnabled()) << name;
    EXPECT_TRUE(part<QPushButton>("cancel").hasFocus());
    QTest::keyClick(&keeping(), Qt::Key_Return);
    EXPECT_FALSE(keeping().isVisible());
    EXPECT_EQ(workspace().undoStep(), "");
}

TEST_F(KeepWindowTest, KeepWritesTheNotesAndClosesIt) {
    store("Classic", "0");
    workspace().setManners(Manners::careful());
    play({60, 62, 64, 65});
    opened();
    click("keep");
    EXPECT_FALSE(keeping().isVisible());
    EXPECT_EQ(workspace().undoStep(), "Keep what I just played");
    EXPECT_EQ(score().NoteCell.at(0, 0), 127 - 60);
    EXPECT_EQ(score().NoteCell.at(0, 12), 127 - 65);
    EXPECT_EQ(score().NoteInstrument.at(0, 12), 24);
    EXPECT_TRUE(played.kept());
}

TEST_F(KeepWindowTest, EnterKeepsAndEscapeDoesNot) {
    play({60, 62, 64, 65});
    opened();
    EXPECT_TRUE(part<QPushButton>("keep").hasFocus());
    QTest::keyClick(&keeping(), Qt::Key_Escape);
    EXPECT_FALSE(keeping().isVisible());
    EXPECT_EQ(score().NoteCell.at(0, 0), -1);
    EXPECT_FALSE(played.kept());
    opened();
    QTest::keyClick(&keeping(), Qt::Key_Return);
    EXPECT_EQ(score().NoteCell.at(0, 0), 127 - 60);
}

TEST_F(KeepWindowTest, CoarserAndFinerStepThroughTheGridsThatThereAre) {
    play({60, 62, 64, 65});
    std::vector<std::string> grids{words("grid")};
    EXPECT_FALSE(part<QWidget>("coarser").isEnabled());
    while (part<QWidget>("finer").isEnabled() && grids.size() < 10) {
        click("finer");
        grids.push_back(words("grid"));
    }
    EXPECT_THAT(grids,
                ElementsAre("1/4 Note", "1/8 Note", "1/8 Triplet", "1/16 Note", "1/16 Triplet", "1/32 Note"));
    click("coarser");
    EXPECT_EQ(words("grid"), "1/16 Triplet");
    EXPECT_EQ(keeping().plan().choice.grid, NoteGrid::SixteenthTriplet);
}

TEST_F(KeepWindowTest, EveryChangeRedrawsAtOnce) {
    for (const int note : {60, 62, 64, 65, 67}) { // held for half of each beat
        played.struck(0, note, 90, 24, loop.now());
        loop.block(0.3);
        played.ended(0, note, loop.now());
        loop.block(0.3);
    }
    opened();
    click("finer");
    const auto picture = [this] { return part<PhrasePaper>("paper").grab().toImage(); };
    QImage before = picture();
    for (const char* name : {"asPlayed", "coarser", "finer"}) {
        click(name);
        EXPECT_NE(picture(), before) << name;
        before = picture();
    }
    keeping().setChannel(2);
    EXPECT_NE(picture(), before);
}

TEST_F(KeepWindowTest, TheSquareOffersTheMelodyChannels) {
    play({60, 62, 64});
    opened();
    click("channel");
    auto* popup = keeping().findChild<QMenu*>();
    ASSERT_TRUE(popup);
    ASSERT_EQ(popup->actions().size(), kMelodyChannels);
    EXPECT_EQ(popup->actions()[2]->text(), "Channel 3");
    popup->actions()[2]->trigger();
    popup->close();
    EXPECT_EQ(keeping().plan().choice.channel, 2);
    EXPECT_EQ(part<QAbstractButton>("channel").accessibleName(), "Goes to Channel 3");
}

TEST_F(KeepWindowTest, WhatIsReplacedIsTold) {
    putNotes(score(), 0, 50, 3);
    play({60, 62, 64});
    EXPECT_EQ(words("notice"), "3 notes that stand there are replaced.");
    EXPECT_TRUE(part<QLabel>("notice").isVisibleTo(&keeping()));
    const int tall = keeping().height();
    keeping().setChannel(1);
    EXPECT_EQ(words("notice"), "");
    EXPECT_LT(keeping().height(), tall);
}

TEST_F(KeepWindowTest, ListenPlaysWhatWouldBeKeptAndLeavesNothingSounding) {
    play({60, 62}, 0.5);
    opened();
    click("listen");
    EXPECT_EQ(part<QPushButton>("listen").text(), "Stop");
    EXPECT_TRUE(QTest::qWaitFor([this] { return part<QPushButton>("listen").text() == "Listen"; }, 20000));
    const auto messages = port.words();
    EXPECT_THAT(messages, testing::Contains(shortmessage::programChange(15, 24)));
    EXPECT_THAT(messages, testing::Contains(shortmessage::noteOn(15, 62, 90)));
    EXPECT_EQ(messages.back(), shortmessage::noteOff(15, 62));
    EXPECT_EQ(score().NoteCell.at(0, 0), -1);
}

TEST_F(KeepWindowTest, AnotherPressOrAnotherChoiceEndsListening) {
    play({60, 62, 64, 65}, 4);
    opened();
    for (const char* end : {"listen", "finer", "cancel"}) {
        port.sent.clear();
        click("listen");
        ASSERT_TRUE(QTest::qWaitFor([this] { return port.words().size() >= 2; }));
        click(end);
        const auto messages = port.words();
        EXPECT_THAT(messages, testing::Contains(shortmessage::noteOff(15, 60))) << end;
        QTest::qWait(20);
        EXPECT_EQ(port.words(), messages) << end;
    }
    EXPECT_FALSE(keeping().isVisible());
}

TEST_F(KeepWindowTest, TheHelpIsAKeyAway) {
    opened();
    QTest::keyClick(&keeping(), Qt::Key_F1);
    EXPECT_THAT(windows.pages, ElementsAre("keep"));
}

TEST_F(KeepWindowTest, TheComposingWindowAsksForItByKeyAndMenu) {
    QTest::keyClick(&shown(), Qt::Key_K, Qt::ControlModifier);
    EXPECT_THAT(windows.keptOver, ElementsAre(&window()));
    menu.item("keepPlayed").trigger();
    EXPECT_EQ(windows.keptOver.size(), 2U);
}

TEST_F(KeepWindowTest, EveryControlHasAName) {
    play({60, 62, 64});
    opened();
    for (const QWidget* control : keeping().findChildren<QWidget*>())
        if (control->focusPolicy() != Qt::NoFocus && control->isVisible()) {
            const QString name = control->accessibleName();
            const auto* button = qobject_cast<const QAbstractButton*>(control);
            EXPECT_TRUE(!name.isEmpty() || (button && !button->text().isEmpty()))
                << control->metaObject()->className() << control->objectName().toStdString();
        }
}

TEST_F(KeepWindowTest, WhatIsPlayedAtOneMomentEndsBeforeItBegins) {
    KeepPlan plan;
    plan.mark = 4;
    plan.notes = {{0, 4, 7, 60, 90, 3}, {0, 8, 11, 60, 80, 5}};
    const auto messages = soundOf(plan, 0.5, 15);
    std::vector<std::uint32_t> found;
    for (const TimedMessage& message : messages)
        found.push_back(message.word);
    using namespace shortmessage;
    EXPECT_THAT(found, ElementsAre(programChange(15, 3), noteOn(15, 60, 90), noteOff(15, 60),
                                   programChange(15, 5), noteOn(15, 60, 80), noteOff(15, 60)));
    EXPECT_EQ(messages[0].seconds, 0);
    EXPECT_EQ(messages[2].seconds, 2);
    EXPECT_EQ(messages[5].seconds, 4);
}

TEST_F(KeepWindowTest, PaperFitsAPhraseOfAnyLengthAndRange) {
    for (int i = 0; i < 300; ++i)
        play({30 + i % 60}, 0.5);
    opened();
    const auto& paper = part<PhrasePaper>("paper");
    const KeepPlan& plan = keeping().plan();
    EXPECT_LE(paper.xOf(plan.end()), paper.width());
    for (const KeptNote& note : plan.notes) {
        EXPECT_GT(paper.yOf(note.note), 20);
        EXPECT_LT(paper.yOf(note.note), paper.height());
    }
}
