// SPDX-License-Identifier: GPL-2.0-or-later
// The right mouse button and its modes, and muting.
#include "composition/SetupRules.h"
#include "form1Fixture.h"
#include "shell/MenuStrip.h"
#include "shell/dotips.h"
#include "tableau/Picmain.h"

#include <QContextMenuEvent>
#include <QLabel>

using namespace velmora;

namespace {
class form1RightClickTest : public form1Fixture {
protected:
    ~form1RightClickTest() override { closePopups(); }

    /// A click; a popup that it opens is noted and closed.
    void rightPress(const char* surface) {
        QWidget& part = child(surface);
        popup_ = "none";
        QTimer::singleShot(0, &part, [this] {
            popup_ = isOpen("mnupopup7") ? "Edit" : isOpen("mnupopup6") ? "File" : "none";
            closePopups();
        });
        // The guide lets the mouse through to what it stands on.
        QWidget& met = std::string_view(surface) == "PicX" ? child("Picmain") : part;
        const QPoint at = part.mapTo(&met, part.rect().center());
        QTest::mousePress(&met, Qt::RightButton, {}, at);
        QTest::mouseRelease(&met, Qt::RightButton, {}, at);
        QApplication::processEvents();
    }
    void rightPressOnBareGround() {
        QTest::mousePress(&child<Picmain>("Picmain"), Qt::RightButton, {}, QPoint(20, 10));
    }
    /// Which of the two popups opened; it is closed again.
    std::string opened() {
        if (isOpen("mnupopup7") || isOpen("mnupopup6"))
            popup_ = isOpen("mnupopup7") ? "Edit" : "File";
        closePopups();
        return std::exchange(popup_, "none");
    }
    void closePopups() {
        for (const char* popup : {"mnupopup6", "mnupopup7"})
            menu.popup(popup).close();
    }
    frminfo& info() { return child<frminfo>("frminfo"); }
    std::string infoText() { return info().isVisible() ? text("Label1") : ""; }
    RightClick mode() { return workspace().view.RightClickMode; }

private:
    std::string popup_ = "none";
};
} // namespace

TEST_F(form1RightClickTest, AtFirstItErasesAndOpensNoMenuOverATableau) {
    shown();
    EXPECT_EQ(mode(), RightClick::Erase);
    for (const char* surface : {"MusicBox", "Beatbox", "PicX", "Pic2a", "Pic3"}) {
        rightPress(surface);
        EXPECT_EQ(opened(), "none") << surface;
        EXPECT_EQ(infoText(), "");
    }
}

TEST_F(form1RightClickTest, AfterMenuOnRightClickATableauOpensItsPopupAndNothingIsErased) {
    putNotes(score(), 0, 60, 4);
    shown().Lb1_Click(14);
    rightPress("MusicBox");
    EXPECT_EQ(opened(), "Edit");
    rightPress("Beatbox");
    EXPECT_EQ(opened(), "File");
    EXPECT_EQ(score().SongEnd, 8);
}

TEST_F(form1RightClickTest, BareGroundAndTheMenuStripOpenTheFilePopup) {
    shown();
    rightPressOnBareGround();
    EXPECT_EQ(opened(), "File");
    QWidget& strip = child("toolbMenu");
    QContextMenuEvent event(QContextMenuEvent::Mouse, {500, 10}, strip.mapToGlobal(QPoint(500, 10)));
    QApplication::sendEvent(&strip, &event);
    EXPECT_EQ(opened(), "File");
}

TEST_F(form1RightClickTest, InTipsModeEachSurfaceTellsAboutItself) {
    shown().Lb1_Click(15);
    struct Row {
        const char* surface;
        int tip;
    };
    for (const Row& row :
         {Row{"MusicBox", 1}, Row{"Beatbox", 2}, Row{"PicX", 3}, Row{"Pic2a", 4}, Row{"Pic3", 5}}) {
        rightPress(row.surface);
        EXPECT_EQ(infoText(), dotips(row.tip).text) << row.surface;
        EXPECT_EQ(opened(), "none");
    }
}

TEST_F(form1RightClickTest, InTipsModeASquareTellsAboutItselfAndIsNotMuted) {
    shown().Lb1_Click(15);
    QTest::mousePress(&square(1), Qt::RightButton);
    EXPECT_EQ(infoText(), dotips(6).text);
    EXPECT_FALSE(score().ChannelMuted[1]);
}

TEST_F(form1RightClickTest, InTipsModeBareGroundOpensTheFilePopupAsEver) {
    shown().Lb1_Click(15);
    rightPressOnBareGround();
    EXPECT_EQ(opened(), "File");
}

TEST_F(form1RightClickTest, InTipsModeTheControlsOfTheEffectsTellAboutThemselves) {
    struct Row {
        const char* control;
        int tip;
    };
    constexpr Row kRows[]{{"CmdInst", 7},  {"Text5", 7},   {"Combo3", 8},    {"lblVolume", 9},
                          {"LblMod", 9},   {"LblPan", 9},  {"LblReverb", 9}, {"LblChorus", 9},
                          {"Lb1(20)", 10}, {"Lb1(21)", 11}};
    shown().Lb1_Click(18);
    const auto ask = [this](const char* name) {
        QWidget& control = child(name);
        QTest::mouseClick(&control, Qt::RightButton);
        const QPoint at = control.rect().center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, control.mapToGlobal(at));
        QApplication::sendEvent(&control, &event);
        return infoText();
    };
    for (const Row& row : kRows)
        EXPECT_EQ(ask(row.control), "") << row.control << " outside the mode";
    window().Lb1_Click(15);
    for (const Row& row : kRows)
        EXPECT_EQ(ask(row.control), dotips(row.tip).text) << row.control;
    EXPECT_FALSE(workspace().view.Check4) << "nothing is pressed by that";
}

TEST_F(form1RightClickTest, TheCrossOfTheTipEndsTheMode) {
    shown().Lb1_Click(15);
    rightPress("Pic3");
    QTest::mouseClick(&child("closePicture"), Qt::LeftButton);
    EXPECT_EQ(mode(), RightClick::Erase);
    EXPECT_EQ(infoText(), "");
    EXPECT_TRUE(button("Lb1", 13).isChecked());
    EXPECT_FALSE(button("Lb1", 15).isChecked());
    rightPress("Pic3");
    EXPECT_EQ(infoText(), "");
}

TEST_F(form1RightClickTest, AnotherModeTakesTheTipAway) {
    shown().Lb1_Click(15);
    rightPress("Pic3");
    window().Lb1_Click(14);
    EXPECT_EQ(infoText(), "");
}

TEST_F(form1RightClickTest, ThePartsOfTheSwitchAndTheMenuItemsFollowTheMode) {
    struct Row {
        int index;
        const char* item;
        RightClick mode;
    };
    constexpr Row kRows[]{{14, "mnuMenu", RightClick::Menu},
                          {15, "mnuTips", RightClick::Tips},
                          {13, "mnuerase", RightClick::Erase}};
    shown();
    for (const Row& row : kRows) {
        QTest::mouseClick(&button("Lb1", row.index), Qt::LeftButton);
        EXPECT_EQ(mode(), row.mode);
        for (const Row& each : kRows) {
            EXPECT_EQ(button("Lb1", each.index).isChecked(), each.index == row.index) << each.index;
            EXPECT_EQ(menu.item(each.item).isChecked(), each.index == row.index) << each.item;
        }
    }
}

TEST_F(form1RightClickTest, TipsIsAToggleAndTheOthersStay) {
    shown();
    for (const RightClick expected : {RightClick::Tips, RightClick::Erase, RightClick::Tips}) {
        menu.item("mnuTips").trigger();
        EXPECT_EQ(mode(), expected);
        EXPECT_EQ(menu.item("mnuTips").isChecked(), expected == RightClick::Tips);
    }
    QTest::mouseClick(&button("Lb1", 14), Qt::LeftButton);
    QTest::mouseClick(&button("Lb1", 14), Qt::LeftButton);
    EXPECT_EQ(mode(), RightClick::Menu);
    EXPECT_TRUE(button("Lb1", 14).isChecked()) << "a second press must not make it look as if it were off";
}

TEST_F(form1RightClickTest, EraseEndsTheSingleNoteEffects) {
    shown().Lb1_Click(18);
    ASSERT_TRUE(workspace().view.NoteEffectsOn);
    window().Lb1_Click(14);
    EXPECT_TRUE(workspace().view.NoteEffectsOn);
    window().Lb1_Click(13);
    EXPECT_FALSE(workspace().view.NoteEffectsOn);
}

TEST_F(form1RightClickTest, TipsComeAndGoWithoutEndingTheSingleNoteEffects) {
    shown().Lb1_Click(18);
    window().Lb1_Click(15);
    window().Lb1_Click(15);
    EXPECT_EQ(mode(), RightClick::Erase);
    EXPECT_TRUE(workspace().view.NoteEffectsOn);
    window().Lb1_Click(15);
    rightPress("Pic3");
    QTest::mouseClick(&child("closePicture"), Qt::LeftButton);
    EXPECT_EQ(mode(), RightClick::Erase);
    EXPECT_TRUE(workspace().view.NoteEffectsOn);
}

TEST_F(form1RightClickTest, ARightPressOnASquareMutesItsChannelAndTheNextUnmutesIt) {
    putNotes(score(), 0, 60, 3);
    putNotes(score(), 1, 62, 8);
    shown();
    EXPECT_EQ(text("LblNumnotes"), "16 Notes");
    QTest::mousePress(&square(1), Qt::RightButton);
    EXPECT_TRUE(score().ChannelMuted[1]);
    EXPECT_EQ(score().SongEnd, 6);
    EXPECT_EQ(text("LblNumnotes"), "6 Notes");
    EXPECT_TRUE(square(1).accessibleDescription().contains("muted"));
    EXPECT_EQ(score().ActiveChannel, 0) << "it is not made the active one";
    QTest::mousePress(&square(1), Qt::RightButton);
    EXPECT_FALSE(score().ChannelMuted[1]);
    EXPECT_EQ(text("LblNumnotes"), "16 Notes");
    EXPECT_FALSE(square(1).accessibleDescription().contains("muted"));
}

TEST_F(form1RightClickTest, AMutedChannelIsNotHeard) {
    putNotes(score(), 0, 60, 2);
    putNotes(score(), 1, 62, 2);
    shown();
    QTest::mousePress(&square(1), Qt::RightButton);
    window().PlayAndStop_Click(false);
    int ons = 0;
    for (const auto& sent : port.notes())
        if ((sent.word & 0xF0U) == 0x90U && sent.word != RecordingPort::kReset) {
            EXPECT_EQ(sent.word & 0x0FU, 0U);
            ++ons;
        }
    EXPECT_EQ(ons, 2);
}

TEST_F(form1RightClickTest, MutingWhileItSoundsEndsTheNote) {
    putNotes(score(), 1, 60, 1, 8);
    putNotes(score(), 0, 72, 8, 1);
    shown();
    loop.onWait = [this](int waits) {
        if (waits == 4) {
            port.sent.clear();
            QTest::mousePress(&square(1), Qt::RightButton);
            ASSERT_EQ(port.notes().size(), 1U);
            EXPECT_EQ(port.notes()[0].word & 0xFFFFU, 0x81U | 67U << 8) << "note-off on the second channel";
            port.sent.clear();
        }
    };
    window().PlayAndStop_Click(false);
    ASSERT_GE(loop.waits, 4);
    for (const auto& sent : port.notes())
        EXPECT_NE(sent.word & 0x0FU, 1U) << "nothing more of it";
}

// Chords

TEST_F(form1RightClickTest, TheSwitchShowsThatARightClickGivesChordsAndAClickLetsItEraseAgain) {
    shown();
    CommandButton& chord = button("Lb1", 31);
    EXPECT_FALSE(chord.isChecked());
    EXPECT_EQ(tips.toolTip(chord)->text, "Right click gives notes the chord of the list");
    velmora::Ch_Click(workspace(), 0, true); // in the setup toolbar
    EXPECT_TRUE(chord.isChecked());
    EXPECT_FALSE(button("Lb1", 13).isChecked());
    EXPECT_NE(text("toolText").find("chord of the list"), std::string::npos);
    QTest::mouseClick(&chord, Qt::LeftButton);
    EXPECT_EQ(mode(), RightClick::Erase);
    EXPECT_FALSE(chord.isChecked());
    EXPECT_TRUE(button("Lb1", 13).isChecked());
    EXPECT_EQ(text("toolText"), "") << "that holds no more";
    QTest::mouseClick(&chord, Qt::LeftButton);
    EXPECT_EQ(mode(), RightClick::Polyphonic);
}

TEST_F(form1RightClickTest, WhatIsAlreadySoIsNotMentioned) {
    shown();
    velmora::Ch_Click(workspace(), 0, true);
    velmora::Ch_Click(workspace(), 0, false);
    EXPECT_EQ(text("toolText"), "");
    velmora::Ch_Click(workspace(), 1, true);
    EXPECT_EQ(text("toolText"), "");
    EXPECT_EQ(mode(), RightClick::Polyphonic);
}

TEST_F(form1RightClickTest, WithNoteEffectsARightClickDoesNotErase) {
    shown();
    window().Lb1_Click(18);
    EXPECT_TRUE(workspace().view.NoteEffectsOn);
    EXPECT_FALSE(button("Lb1", 13).isChecked());
    QTest::mouseClick(&button("Lb1", 13), Qt::LeftButton);
    EXPECT_TRUE(button("Lb1", 13).isChecked());
    EXPECT_FALSE(workspace().view.NoteEffectsOn);
}
