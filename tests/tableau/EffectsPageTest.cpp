// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/EffectsPage.h"

#include "PagesFixture.h"
#include "shell/Slider.h"

using namespace velmora;

namespace {
struct Row {
    const char* strip;
    const char* value;
    const char* mark;
    std::int16_t EffectSelectors::*kept;
    int least;
};
constexpr std::array<Row, 5> kRows{{
    {"lblVolume", "vol3", "volumeSteps", &EffectSelectors::vol3, 0},
    {"LblMod", "T1", "Isld", &EffectSelectors::T1, 0},
    {"LblPan", "T2", "Isld1", &EffectSelectors::T2, -64},
    {"LblReverb", "T3", "Isld2", &EffectSelectors::T3, 0},
    {"LblChorus", "T4", "Isld3", &EffectSelectors::T4, 0},
}};

class EffectsPageTest : public PagesFixture {
protected:
    void opened() {
        open(ToolPanel::Effects);
        panel().refresh();
    }
    /// Drags a pointer from where it stands to a place from the strip's top.
    void dragTo(const char* strip, int y) {
        auto& slider = part<Slider>(strip);
        const QPoint from = slider.pointer().center().toPoint();
        QTest::mousePress(&slider, Qt::LeftButton, {}, from);
        QTest::mouseMove(&slider, QPoint(10, y));
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(10, y));
    }
    void choose(int item) {
        auto& list = part<QComboBox>("Combo3");
        list.setFocus();
        while (list.currentIndex() != item)
            QTest::keyClick(&list, list.currentIndex() < item ? Qt::Key_Down : Qt::Key_Up);
    }
};
} // namespace

TEST_F(EffectsPageTest, EachSliderSetsItsSelector) {
    opened();
    for (const Row& row : kRows) {
        dragTo(row.strip, -40);
        EXPECT_EQ(effects().*row.kept, row.least + 127) << row.strip;
        dragTo(row.strip, 90);
        EXPECT_EQ(effects().*row.kept, row.least) << row.strip;
        EXPECT_EQ(shownIn(row.value), std::to_string(row.least));
    }
}

TEST_F(EffectsPageTest, AValueIsCountedFromTheTopOfItsStrip) {
    opened();
    auto& strip = part<Slider>("LblMod");
    ASSERT_EQ(strip.height(), 52);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(10, 6 + 15));
    EXPECT_EQ(effects().T1, 127 - 47); // 15 of 40 pixels, 47.6
}

TEST_F(EffectsPageTest, KeysAndMarksStepAndStopAtTheEnds) {
    opened();
    for (const Row& row : kRows) {
        effects().*row.kept = 50;
        panel().refresh();
        part(row.strip).setFocus();
        key(row.strip, Qt::Key_Up);
        EXPECT_EQ(shownIn(row.value), "51") << row.strip;
        clickAt(row.mark, 0.8);
        EXPECT_EQ(effects().*row.kept, 61) << row.strip;
        EXPECT_EQ(part<Slider>(row.strip).value(), 61);
        for (int click = 0; click < 8; ++click)
            clickAt(row.mark, 0.8);
        EXPECT_EQ(effects().*row.kept, row.least + 127);
        clickAt(row.mark, 0.2);
        EXPECT_EQ(effects().*row.kept, row.least + 117);
    }
}

TEST_F(EffectsPageTest, ALookAtAPositionMovesThePointersAndKeepsTheSelectors) {
    effects().T1 = 30;
    opened();
    panel().effects().showEffects(100, -20, 64, 5);
    EXPECT_EQ(shownIn("L1a"), "100");
    EXPECT_EQ(shownIn("L2a"), "-20");
    EXPECT_EQ(shownIn("L3a"), "64");
    EXPECT_EQ(shownIn("L4a"), "5");
    EXPECT_EQ(part<Slider>("LblPan").value(), -20);
    EXPECT_EQ(part<Slider>("LblMod").value(), 100);
    EXPECT_EQ(effects().T1, 30);
    EXPECT_EQ(shownIn("T1"), "30");
}

TEST_F(EffectsPageTest, AChordIsChosenWithItsSteps) {
    opened();
    std::vector<int> told;
    panel().effects().onChord = [&](int type) { told.push_back(type); };
    choose(5);
    EXPECT_EQ(effects().Combo3, 5);
    EXPECT_EQ(workspace().chords.ChordStep2, 6);
    EXPECT_EQ(shownIn("chordHint"), "4 note chord: 5C 5D# 5G 5A#");
    EXPECT_EQ(told.back(), 5);
}

TEST_F(EffectsPageTest, TheLastChordLeavesTheHintAsItWas) {
    opened();
    choose(7);
    EXPECT_EQ(effects().Combo3, 7);
    EXPECT_EQ(shownIn("chordHint"), "2 notes: 5C 4C");
}

TEST_F(EffectsPageTest, TheInstrumentIsAskedForInThreeWays) {
    effects().NoteInstrumentPick = 48;
    opened();
    EXPECT_EQ(shownIn("Text5"), "String Ensemble 1");
    int asked = 0;
    panel().effects().onPickInstrument = [&] { ++asked; };
    clickAt("CmdInst", 0.5);
    QTest::mouseDClick(&part("Text5"), Qt::LeftButton);
    EXPECT_EQ(asked, 2);
    port.sent.clear();
    part("Text5").setFocus();
    key("Text5", Qt::Key_Space);
    EXPECT_EQ(asked, 3);
    EXPECT_TRUE(port.notes().empty()) << "nothing played";
}

TEST_F(EffectsPageTest, TheTipHasTheWholeNameOfTheInstrument) {
    effects().NoteInstrumentPick = 0;
    opened();
    EXPECT_EQ(tips.toolTip(part("Text5"))->title, "Acoustic Grand Piano");
    EXPECT_EQ(part("Text5").accessibleName(), "Instrument");
}

TEST_F(EffectsPageTest, ThePageComesUpSwitchedOn) {
    open(ToolPanel::Effects);
    EXPECT_TRUE(workspace().view.NoteEffectsOn);
    EXPECT_TRUE(part<QAbstractButton>("Check1").isChecked());
    bool on = true;
    panel().effects().onNoteEffects = [&](bool now) { on = now; };
    clickAt("Check1", 0.5);
    EXPECT_FALSE(workspace().view.NoteEffectsOn);
    EXPECT_FALSE(on);
}

TEST_F(EffectsPageTest, TheChordListKeepsSpaceToItself) {
    putNotes(score(), 0, 60, 2);
    opened();
    part("Combo3").setFocus(Qt::TabFocusReason);
    port.sent.clear();
    key("Combo3", Qt::Key_Space);
    QWidget* popup = QApplication::activePopupWidget();
    EXPECT_TRUE(popup);
    if (popup)
        popup->close();
    EXPECT_TRUE(port.notes().empty());
}

TEST_F(EffectsPageTest, WhatANoteHasStandsBehindANoteAndOnlyOnceOneWasLookedAt) {
    opened();
    const std::array numbers{"L1a", "L2a", "L3a", "L4a"};
    for (const char* number : numbers) {
        EXPECT_EQ(shownIn(number), "");
        EXPECT_FALSE(part<QLabel>(std::string(number) + "note").isVisible());
    }
    panel().effects().showEffects(127, -64, 0, 90);
    for (const char* number : numbers) {
        auto& sign = part<QLabel>(std::string(number) + "note");
        auto& value = part<QLabel>(number);
        EXPECT_TRUE(sign.isVisible());
        EXPECT_EQ(sign.geometry().right() + 1, value.geometry().left());
        EXPECT_LE(value.fontMetrics().horizontalAdvance(value.text()), value.width()) << "cut";
        EXPECT_LE(sign.fontMetrics().horizontalAdvance(sign.text()), sign.width() + 1) << "cut";
    }
}

TEST_F(EffectsPageTest, ItsButtonTellsWhatARightClickGives) {
    opened();
    const auto told = [this] { return tips.toolTip(part("Check1"))->text.toStdString(); };
    EXPECT_EQ(told().find("the volume and the effects"), std::string::npos);
    workspace().setManners(Manners::careful());
    EXPECT_NE(told().find("the volume and the effects"), std::string::npos);
}
