// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/FrmInst.h"

#include "sound/ShortMessage.h"
#include "tests/tableau/form1Fixture.h"

#include <QListWidget>
#include <QPushButton>

using namespace velmora;

namespace {
class FrmInstTest : public form1Fixture {
protected:
    FrmInst& picker() {
        if (!picker_) {
            picker_ = std::make_unique<FrmInst>(desk(), nullptr);
            picker_->onPicked = [this](PickedInstrument what) {
                ++picks;
                picked = what;
            };
        }
        return *picker_;
    }
    FrmInst& opened() {
        picker().open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker()));
        return picker();
    }
    QListWidget& melody() { return *picker().findChild<QListWidget*>("LstInstruments"); }
    QListWidget& percussion() { return *picker().findChild<QListWidget*>("LstInstruments2"); }
    InstrumentSelection& chosen() { return workspace().instruments; }
    void doubleClick(QListWidget& list, int row) {
        list.scrollToItem(list.item(row));
        const QPoint at = list.visualItemRect(list.item(row)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    }
    void key(QWidget& on, Qt::Key which) { QTest::keyClick(&on, which); }

    int picks = 0;
    PickedInstrument picked;

private:
    std::unique_ptr<FrmInst> picker_;
};
} // namespace

TEST_F(FrmInstTest, TheListsHoldAllNamesInTheirOrder) {
    EXPECT_EQ(melody().count(), 128);
    EXPECT_EQ(melody().item(127)->text(), "Gunshot");
    EXPECT_EQ(percussion().count(), 47);
    EXPECT_EQ(percussion().item(0)->text(), "Acoustic Bass Drum");
    EXPECT_EQ(percussion().item(39 - 35)->text(), "Hand Clap");
    EXPECT_EQ(percussion().item(42 - 35)->text(), "Closed High-Hat");
}

TEST_F(FrmInstTest, ItsTitleIsFixed) {
    EXPECT_EQ(picker().windowTitle(), "Velmora  INSTRUMENTS");
    EXPECT_EQ(picker().findChild<QPushButton*>("CmdOk")->text(), "&Ok");
    EXPECT_EQ(picker().findChild<QPushButton*>("CmdCancel")->text(), "&Cancel");
}

TEST_F(FrmInstTest, TheCurrentInstrumentsAreSelected) {
    chosen().MelodyInstrumentName = "Flute";
    chosen().PercussionInstrumentName = "Cowbell";
    EXPECT_EQ(melody().selectedItems().front()->text(), "Flute");
    EXPECT_EQ(percussion().selectedItems().front()->text(), "Cowbell");
}

TEST_F(FrmInstTest, ANameThatIsNoneSelectsNothing) {
    chosen().MelodyInstrumentName = "";
    EXPECT_TRUE(melody().selectedItems().isEmpty());
}

TEST_F(FrmInstTest, OkTakesTheInstrumentAndKeepsIt) {
    opened();
    melody().setCurrentRow(73);
    QTest::mouseClick(picker().findChild<QPushButton*>("CmdOk"), Qt::LeftButton);
    EXPECT_EQ(chosen().MelodyInstrument, 73);
    EXPECT_EQ(chosen().MelodyInstrumentName, "Flute");
    EXPECT_EQ(stored("Intrumentval"), "73");
    EXPECT_EQ(stored("Intrumentval2"), "none");
    EXPECT_EQ(picks, 1);
    EXPECT_TRUE(picked.melody);
    EXPECT_FALSE(picked.percussion);
    EXPECT_FALSE(picker().isVisible());
}

TEST_F(FrmInstTest, ADoubleClickOnAnInstrumentIsOk) {
    opened();
    doubleClick(melody(), 40);
    EXPECT_EQ(chosen().MelodyInstrumentName, "Violin");
    EXPECT_EQ(stored("Intrumentval"), "40");
    EXPECT_FALSE(picker().isVisible());
}

TEST_F(FrmInstTest, ADoubleClickOnAPercussionSoundTakesItAndCloses) {
    opened();
    doubleClick(percussion(), 0);
    EXPECT_EQ(chosen().PercussionInstrument, 128);
    EXPECT_EQ(stored("Intrumentval2"), "128");
    EXPECT_EQ(stored("Intrumentval"), "none");
    EXPECT_FALSE(picker().isVisible());
    EXPECT_EQ(picks, 1);
    EXPECT_FALSE(picked.melody);
    EXPECT_TRUE(picked.percussion);
}

TEST_F(FrmInstTest, OkTakesAnotherPercussionSoundToo) {
    opened();
    percussion().setCurrentRow(4);
    picker().CmdOk_Click();
    EXPECT_EQ(chosen().PercussionInstrumentName, "Hand Clap");
    EXPECT_EQ(chosen().PercussionInstrument, 132);
    EXPECT_EQ(chosen().MelodyInstrument, 24);
    EXPECT_TRUE(picked.melody);
    EXPECT_TRUE(picked.percussion);
}

TEST_F(FrmInstTest, WithoutASelectionItAsksForOne) {
    chosen().MelodyInstrumentName = "";
    opened();
    QString words;
    driver.in<QWidget>([&](QWidget& message) {
        words = wordsOf(message);
        pressIn(message, "ok");
    });
    picker().CmdOk_Click();
    EXPECT_EQ(words, "Make a selection");
    EXPECT_TRUE(picker().isVisible());
    EXPECT_EQ(picks, 0);
}

TEST_F(FrmInstTest, ForTheSecondVoiceItTakesTheListsIndex) {
    chosen().PickSecond = true;
    opened();
    doubleClick(melody(), 2);
    EXPECT_EQ(chosen().SecondInstrument, 2);
    EXPECT_EQ(chosen().SecondInstrumentName, "Electric Grand Piano");
    EXPECT_EQ(chosen().MelodyInstrument, 24);
    EXPECT_EQ(stored("Intrumentval"), "none");
}

TEST_F(FrmInstTest, TypingFindsAName) {
    opened();
    QTest::keyClicks(&melody(), "vio");
    EXPECT_EQ(melody().currentItem()->text(), "Violin");
    key(melody(), Qt::Key_Return);
    EXPECT_EQ(chosen().MelodyInstrument, 40);
}

TEST_F(FrmInstTest, EnterInThePercussionListTakesItsSound) {
    opened();
    percussion().setFocus();
    QTest::keyClicks(&percussion(), "cow");
    key(percussion(), Qt::Key_Enter);
    EXPECT_EQ(chosen().PercussionInstrument, 56 + 93);
    EXPECT_FALSE(picker().isVisible());
}

TEST_F(FrmInstTest, ANoteTakesWhatWasPickedAndOfTwoWhatIsOfItsChannelsGroup) {
    struct Row {
        PickedInstrument picked;
        int channel;
        std::int16_t code;
    };
    InstrumentSelection selection;
    selection.MelodyInstrument = 40;
    selection.PercussionInstrument = 149;
    for (const Row& row : {Row{{true, false}, 0, 40}, Row{{false, true}, 0, 149}, Row{{true, true}, 0, 40},
                           Row{{true, false}, 8, 40}, Row{{false, true}, 8, 149}, Row{{true, true}, 8, 149}})
        EXPECT_EQ(FrmInst::codeFor(row.picked, row.channel, selection), row.code)
            << row.picked.melody << row.picked.percussion << row.channel;
}

TEST_F(FrmInstTest, EscAndCancelChangeNothing) {
    opened();
    melody().setCurrentRow(3);
    key(melody(), Qt::Key_Escape);
    EXPECT_FALSE(picker().isVisible());
    opened();
    QTest::mouseClick(picker().findChild<QPushButton*>("CmdCancel"), Qt::LeftButton);
    EXPECT_FALSE(picker().isVisible());
    EXPECT_EQ(chosen().MelodyInstrument, 24);
    EXPECT_EQ(picks, 0);
}

TEST_F(FrmInstTest, EnterOnCancelCancels) {
    opened();
    auto& cancel = *picker().findChild<QPushButton*>("CmdCancel");
    cancel.setFocus();
    key(cancel, Qt::Key_Return);
    EXPECT_FALSE(picker().isVisible());
    EXPECT_EQ(picks, 0);
}

TEST_F(FrmInstTest, ItStandsInTheMiddleOfTheApplication) {
    window().setGeometry(100, 50, 900, 560);
    FrmInst over(desk(), &window());
    over.open();
    EXPECT_LE((over.geometry().center() - window().geometry().center()).manhattanLength(), 2);
}

TEST_F(FrmInstTest, OtherWindowsWaitForIt) {
    EXPECT_EQ(picker().windowModality(), Qt::ApplicationModal);
}

// What is chosen is heard

namespace {
class HeardInstrumentTest : public FrmInstTest {
protected:
    struct Note {
        bool on;
        int channel;
        int note;
        bool operator==(const Note&) const = default;
    };
    std::vector<Note> notes() {
        std::vector<Note> list;
        for (const auto& sent : port.notes())
            list.push_back({shortmessage::status(sent.word) == 0x90, shortmessage::channel(sent.word),
                            shortmessage::data1(sent.word)});
        return list;
    }
    int begun() {
        const auto heard = notes();
        return static_cast<int>(std::ranges::count(heard, true, &Note::on));
    }
    bool wait(int count) {
        return QTest::qWaitFor([this, count] { return begun() >= count; });
    }
    /// Whether each note that was begun has ended.
    bool isSilent() { return begun() * 2 == static_cast<int>(notes().size()); }
    bool waitForSilence() {
        return QTest::qWaitFor([this] { return isSilent(); });
    }
    void click(QListWidget& list, int row) {
        list.scrollToItem(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
    }
    /// Longer than a sample rests before its first note.
    void letTimePass() { QTest::qWait(150); }
};
} // namespace

TEST_F(HeardInstrumentTest, AnInstrumentPlaysFourNotesOnAChannelThatNoScoreUses) {
    opened();
    port.sent.clear();
    click(melody(), 40);
    ASSERT_TRUE(wait(4));
    ASSERT_TRUE(waitForSilence());
    EXPECT_THAT(notes(), testing::ElementsAre(Note{true, 15, 60}, Note{false, 15, 60}, Note{true, 15, 64},
                                              Note{false, 15, 64}, Note{true, 15, 67}, Note{false, 15, 67},
                                              Note{true, 15, 72}, Note{false, 15, 72}));
    EXPECT_THAT(port.words(), testing::Contains(shortmessage::programChange(15, 40)).Times(1));
    for (const std::uint32_t word : port.words())
        EXPECT_EQ(shortmessage::channel(word), 15);
}

TEST_F(HeardInstrumentTest, APercussionSoundPlaysItsKeyAndSetsNoProgram) {
    opened();
    port.sent.clear();
    click(percussion(), 4); // Hand Clap
    ASSERT_TRUE(wait(4));
    ASSERT_TRUE(waitForSilence());
    EXPECT_THAT(notes(), testing::Each(testing::AnyOf(Note{true, 9, 39}, Note{false, 9, 39})));
    EXPECT_EQ(port.words().size(), 8U);
}

TEST_F(HeardInstrumentTest, AnArrowKeyLetsHearToo) {
    opened();
    port.sent.clear();
    key(melody(), Qt::Key_Down);
    ASSERT_TRUE(wait(1));
    EXPECT_THAT(port.words(), testing::Contains(shortmessage::programChange(15, 25)));
}

TEST_F(HeardInstrumentTest, AnotherRowEndsTheOneThatSounds) {
    opened();
    port.sent.clear();
    click(melody(), 40);
    ASSERT_TRUE(wait(1));
    click(percussion(), 0);
    EXPECT_TRUE(isSilent());
    ASSERT_TRUE(wait(2));
    EXPECT_EQ(notes().back(), (Note{true, 9, 35}));
}

TEST_F(HeardInstrumentTest, RowsThatPassQuicklyAreSilent) {
    opened();
    port.sent.clear();
    for (int press = 0; press < 5; ++press)
        key(melody(), Qt::Key_Down);
    ASSERT_TRUE(wait(1));
    EXPECT_EQ(begun(), 1);
    EXPECT_THAT(port.words(), testing::Contains(shortmessage::programChange(15, 29)));
}

TEST_F(HeardInstrumentTest, AClickOnTheSelectedRowLetsItBeHeardAgain) {
    opened();
    port.sent.clear();
    click(melody(), 24); // which is selected
    ASSERT_TRUE(wait(1));
    EXPECT_THAT(port.words(), testing::Contains(shortmessage::programChange(15, 24)));
}

TEST_F(HeardInstrumentTest, OpeningIsSilentAndSoIsClosingInTheMiddle) {
    opened();
    letTimePass();
    EXPECT_EQ(begun(), 0);
    click(melody(), 40);
    ASSERT_TRUE(wait(1));
    picker().CmdCancel_Click();
    EXPECT_TRUE(isSilent());
    const int before = begun();
    letTimePass();
    EXPECT_EQ(begun(), before);
}

TEST_F(HeardInstrumentTest, APickerThatIsDestroyedLeavesNoNote) {
    {
        FrmInst one(desk(), nullptr);
        one.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&one));
        click(*one.findChild<QListWidget*>("LstInstruments"), 40);
        ASSERT_TRUE(wait(1));
    }
    EXPECT_TRUE(isSilent());
}

TEST_F(HeardInstrumentTest, WhileTheScorePlaysNothingIsAdded) {
    opened();
    workspace().play.Playing = true;
    port.sent.clear();
    click(melody(), 40);
    letTimePass();
    EXPECT_TRUE(port.sent.empty());
}
