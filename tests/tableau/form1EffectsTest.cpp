// SPDX-License-Identifier: GPL-2.0-or-later
// Single Note Effects on the Tableau of the composing window.
#include "form1Fixture.h"
#include "tableau/EffectGraph.h"
#include "tableau/Picmain.h"

#include <QLabel>
#include <QMouseEvent>

#include <algorithm>

using namespace velmora;
using testing::ElementsAre;

namespace {
class form1EffectsTest : public form1Fixture {
protected:
    form1EffectsTest() {
        putNotes(score(), 0, 60, 3, 2); // heads at 0, 2 and 4
        workspace().effects.NoteInstrumentPick = 40;
        workspace().effects.Combo3 = 2;
    }
    void send(const char* box, QEvent::Type type, QPoint at, Qt::MouseButton button) {
        QWidget& widget = child(box);
        const bool moves = type == QEvent::MouseMove;
        const bool ends = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, widget.mapToGlobal(QPointF(at)), moves ? Qt::NoButton : button,
                          ends ? Qt::MouseButtons() : Qt::MouseButtons(button), Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    QPoint melody(int position) { return {position * 12 + 5, (60 - workspace().view.ViewTopRow) * 8 + 4}; }
    void dragOver(std::initializer_list<int> positions) {
        send("MusicBox", QEvent::MouseButtonPress, melody(*positions.begin()), Qt::RightButton);
        for (const int position : positions)
            send("MusicBox", QEvent::MouseMove, melody(position), Qt::RightButton);
        send("MusicBox", QEvent::MouseButtonRelease, melody(*(positions.end() - 1)), Qt::RightButton);
    }
    std::vector<int> programs() {
        std::vector<int> found;
        for (const auto& sent : port.sent)
            if ((sent.word & 0xF0U) == 0xC0U && sent.word != RecordingPort::kReset)
                found.push_back(static_cast<int>(sent.word >> 8 & 0x7FU));
        return found;
    }
    int noteOns() {
        int ons = 0;
        for (const auto& sent : port.notes())
            ons += (sent.word & 0xF0U) == 0x90U && sent.word != RecordingPort::kReset ? 1 : 0;
        return ons;
    }
};
} // namespace

TEST_F(form1EffectsTest, ARightDragGivesEachNoteThatItCrossesInstrumentAndChordAndSoundsIt) {
    shown().Lb1_Click(18);
    port.sent.clear();
    dragOver({0, 2, 4});
    for (int position = 0; position < 6; ++position) {
        EXPECT_EQ(score().NoteInstrument.valueOr(0, position, -1), 40) << position;
        EXPECT_EQ(score().Polyphonics.valueOr(1, position, -1), 2) << position;
        EXPECT_NE(score().NoteCell.valueOr(0, position, -1), -1) << "nothing is erased";
    }
    EXPECT_GE(noteOns(), 3 * 4) << "each note is heard, with its chord";
    EXPECT_THAT(programs(), testing::Each(40));
    EXPECT_EQ(port.sent.back().word, RecordingPort::kReset) << "and nothing is left on";
}

TEST_F(form1EffectsTest, OnAnotherPageTheRightButtonErases) {
    shown().Lb1_Click(18);
    window().Lb1_Click(19);
    dragOver({0});
    EXPECT_EQ(score().NoteCell.valueOr(0, 0, 0), -1);
}

TEST_F(form1EffectsTest, ADragAlongTheIndicatorGivesThePositionTheSelectorsValues) {
    EffectSelectors& chosen = workspace().effects;
    chosen.vol3 = 90;
    chosen.T1 = 11;
    chosen.T2 = -20;
    chosen.T3 = 33;
    chosen.T4 = 44;
    shown().Lb1_Click(18);
    send("Pic2a", QEvent::MouseButtonPress, {2 * 12 + 3, 10}, Qt::RightButton);
    send("Pic2a", QEvent::MouseMove, {4 * 12 + 3, 10}, Qt::RightButton);
    send("Pic2a", QEvent::MouseButtonRelease, {4 * 12 + 3, 10}, Qt::RightButton);
    for (const int position : {2, 4}) {
        EXPECT_EQ(score().Volume.valueOr(0, position + 1, -1), 90);
        EXPECT_EQ(score().Modulation_Change.valueOr(0, position + 1, -1), 11);
        EXPECT_EQ(score().Pan_Change.valueOr(0, position + 1, -1), 44);
        EXPECT_EQ(score().Reverb_Change.valueOr(0, position + 1, -1), 33);
        EXPECT_EQ(score().Chorus_Change.valueOr(0, position + 1, -1), 44);
    }
    EXPECT_EQ(text("LblNote"), "5");
    EXPECT_EQ(text("LblVol"), "90");
}

TEST_F(form1EffectsTest, ADragThatLeavesTheIndicatorChangesNothingOutOfSight) {
    workspace().effects.vol3 = 90;
    shown().Lb1_Click(18);
    workspace().view.ViewFirstColumn = 50;
    const int width = child("Pic2a").width();
    send("Pic2a", QEvent::MouseButtonPress, {5, 10}, Qt::RightButton);
    for (const int x : {-1, -30, width, width + 30})
        send("Pic2a", QEvent::MouseMove, {x, 10}, Qt::RightButton);
    send("Pic2a", QEvent::MouseButtonRelease, {5, 10}, Qt::RightButton);
    const auto volumes = score().Volume.row(0);
    EXPECT_EQ(volumes[50 + 1], 90);
    EXPECT_EQ(std::ranges::count(volumes, 90), 1);
}

TEST_F(form1EffectsTest, UndoAllEffectsClearsThem) {
    score().Volume.set(0, 1, 12);
    score().Polyphonics.set(1, 0, 3);
    shown().Lb1_Click(18);
    window().Lb1_Click(20);
    EXPECT_EQ(score().Volume.valueOr(0, 1, -1), 127);
    EXPECT_EQ(score().Polyphonics.valueOr(1, 0, -1), 0);
    EXPECT_EQ(score().NoteCell.valueOr(0, 0, -1), 60) << "the notes stay";
}

TEST_F(form1EffectsTest, APickedInstrumentGoesToTheSelection) {
    shown().Lb1_Click(18);
    workspace().view.SelectStart = 2;
    workspace().view.SelectEnd = 3;
    window().CmdInst_Click();
    ASSERT_TRUE(windows.onPick);
    workspace().instruments.MelodyInstrument = 56;
    windows.onPick({.melody = true});
    EXPECT_EQ(score().NoteInstrument.valueOr(0, 2, -1), 56);
    EXPECT_EQ(score().NoteInstrument.valueOr(0, 4, -1), 24);
    EXPECT_EQ(workspace().effects.NoteInstrumentPick, 56);
}

TEST_F(form1EffectsTest, AMelodyInstrumentIsRefusedOnAPercussionChannel) {
    shown().TrackSel_Click(8);
    window().CmdInst_Click();
    QString said;
    driver.in<QWidget>([&](QWidget& message) {
        said = wordsOf(message);
        pressIn(message, "ok");
    });
    workspace().instruments.MelodyInstrument = 56;
    windows.onPick({.melody = true});
    EXPECT_EQ(workspace().effects.NoteInstrumentPick, 40);
    EXPECT_EQ(said, "This is a percussion instrument");
}

TEST_F(form1EffectsTest, WhileThePageIsOpenTheGraphBoxesFollowThePlayPosition) {
    for (int position = 0; position <= 10; ++position) {
        score().Modulation_Change.set(0, position, static_cast<std::int16_t>(position * 10));
        score().Pan_Change.set(0, position, 64);
    }
    shown().Lb1_Click(18);
    std::vector<int> seen;
    loop.onWait = [&](int) { seen.push_back(child<EffectGraph>("Picture6(0)").value()); };
    window().Cmd2_Click(3);
    ASSERT_GE(seen.size(), 5U);
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_GE(seen.back(), 40);
    EXPECT_EQ(child<EffectGraph>("Picture6(1)").value(), 64);
}
