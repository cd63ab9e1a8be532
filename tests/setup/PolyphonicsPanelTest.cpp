// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/PolyphonicsPanel.h"

#include "SetupFixture.h"

using namespace velmora;
using testing::ElementsAre;

using PolyphonicsPanelTest = SetupFixture;

TEST_F(PolyphonicsPanelTest, TheChordListOffersSevenChordsAndSetsTheirSteps) {
    opened(0);
    auto& list = control<QComboBox>("Combo3");
    EXPECT_EQ(list.count(), 7);
    EXPECT_EQ(list.itemText(0), "Major (4 note chord: 5C 5E 5G 6C )");
    choose("Combo3", 5);
    EXPECT_EQ(workspace().setup.Combo3, 5);
    EXPECT_EQ(workspace().chords.ChordStep1, -12);
}

TEST_F(PolyphonicsPanelTest, AChordForAChannelIsToldOnce) {
    opened(0);
    choose("Combo3", 2);
    watcher().told.clear();
    click(control("Ch", 0));
    EXPECT_THAT(watcher().told, ElementsAre(Change::Cells | Change::Modes | Change::Undo));
    EXPECT_EQ(workspace().view.RightClickMode, RightClick::Polyphonic);
    EXPECT_TRUE(holds(score().Polyphonics, 1, 2));
    watcher().told.clear();
    click(control("Ch", 0));
    EXPECT_THAT(watcher().told, ElementsAre(Change::Cells | Change::Undo));
    EXPECT_TRUE(holds(score().Polyphonics, 1, 0));
}

TEST_F(PolyphonicsPanelTest, AnotherChannelMayHaveAChordToo) {
    opened(0);
    choose("Combo3", 2);
    click(control("Ch", 5));
    EXPECT_TRUE(workspace().setup.Ch[5]);
    EXPECT_TRUE(holds(score().Polyphonics, 6, 2));
    EXPECT_TRUE(holds(score().Polyphonics, 1, 0));
}

TEST_F(PolyphonicsPanelTest, PercussionHasNoChordBox) {
    EXPECT_EQ(toolbar().findChild<QWidget*>("Ch(8)"), nullptr);
}

TEST_F(PolyphonicsPanelTest, AStrumBoxIsKeptForItsChannel) {
    opened(0);
    click(control("Chkstrum", 7));
    EXPECT_TRUE(workspace().setup.Chkstrum[7]);
    click(control("Chkstrum", 7));
    EXPECT_FALSE(workspace().setup.Chkstrum[7]);
}
