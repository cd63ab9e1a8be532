// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MakerPage.h"

#include "PagesFixture.h"
#include "shell/Slider.h"
#include "tests/support/RecordingWatcher.h"

using namespace velmora;

namespace {
class MakerPageTest : public PagesFixture {
protected:
    void opened() { open(ToolPanel::Maker); }
    std::vector<int> picked() {
        std::vector<int> channels;
        for (std::size_t channel = 0; channel < edit().ChannelPicked.size(); ++channel)
            if (edit().ChannelPicked[channel])
                channels.push_back(static_cast<int>(channel));
        return channels;
    }
};
} // namespace

TEST_F(MakerPageTest, NumbersAreTyped) {
    opened();
    type("txtStart", "5");
    type("Txtlen", "60");
    type("TxtRep", "12");
    type("TxtNt", "8");
    EXPECT_EQ(edit().txtStart, 5);
    EXPECT_EQ(workspace().view.SelectStart, 4);
    EXPECT_EQ(edit().TotalNotes, 60);
    EXPECT_EQ(edit().CycleBeats, 12);
    EXPECT_EQ(edit().CycleNotes, 8);
    EXPECT_EQ(part<Slider>("ILength").value(), 60);
}

TEST_F(MakerPageTest, LettersCountAsZeroUntilTheFieldIsLeft) {
    opened();
    type("Txtlen", "60");
    type("Txtlen", "x");
    EXPECT_EQ(edit().TotalNotes, 0);
    EXPECT_EQ(shownIn("Txtlen"), "x");
    part("IStart1").setFocus();
    EXPECT_EQ(shownIn("Txtlen"), "0");
}

TEST_F(MakerPageTest, ANumberThatIsTooLargeIsNotTaken) {
    opened();
    type("Txtlen", "99999");
    EXPECT_EQ(edit().TotalNotes, 9999);
    key("VSLen", Qt::Key_Return);
    EXPECT_EQ(shownIn("Txtlen"), "9999");
}

TEST_F(MakerPageTest, TheNotesNeverPassTheirCycle) {
    opened();
    type("TxtRep", "12");
    type("TxtNt", "8");
    type("TxtNt", "15");
    EXPECT_EQ(shownIn("TxtNt"), "12");
    type("TxtRep", "7");
    EXPECT_EQ(shownIn("TxtNt"), "7");
}

TEST_F(MakerPageTest, TheStartGoesFromMeasureToMeasure) {
    score().NotesPerMeasure = 12;
    opened();
    key("vcrStart", Qt::Key_Up);
    EXPECT_EQ(shownIn("txtStart"), "13");
    key("vcrStart", Qt::Key_PageUp);
    EXPECT_EQ(shownIn("txtStart"), "133");
    key("vcrStart", Qt::Key_PageDown);
    key("vcrStart", Qt::Key_PageDown);
    EXPECT_EQ(shownIn("txtStart"), "1");
    EXPECT_EQ(edit().txtStart, 1);
}

TEST_F(MakerPageTest, TheOtherArrowsGoByOneAndStopAtZero) {
    opened();
    key("VSrep", Qt::Key_Up);
    key("VSrep", Qt::Key_Up);
    EXPECT_EQ(edit().CycleBeats, 2);
    for (int press = 0; press < 3; ++press)
        key("VSrep", Qt::Key_Down);
    EXPECT_EQ(edit().CycleBeats, 0);
    EXPECT_EQ(shownIn("TxtRep"), "0");
}

TEST_F(MakerPageTest, AClickInAHalfOfAPictureStepsByTen) {
    opened();
    clickAt("ILength", 0.9);
    clickAt("ILength", 0.6);
    EXPECT_EQ(edit().TotalNotes, 20);
    clickAt("ILength", 0.4);
    EXPECT_EQ(shownIn("Txtlen"), "10");
    clickAt("ILengthSteps", 0.75);
    EXPECT_EQ(edit().TotalNotes, 20);
    clickAt("ILengthSteps", 0.25);
    clickAt("ILengthSteps", 0.25);
    clickAt("ILengthSteps", 0.25);
    EXPECT_EQ(edit().TotalNotes, 0);
}

TEST_F(MakerPageTest, APictureStepsANumberThatItCannotReach) {
    opened();
    type("TxtRep", "500");
    clickAt("IRepeat", 0.9);
    EXPECT_EQ(edit().CycleBeats, 510);
}

TEST_F(MakerPageTest, AKeyMovesThePictureThatHasTheFocus) {
    opened();
    part("IRepeat").setFocus();
    key("IRepeat", Qt::Key_Right);
    EXPECT_EQ(edit().CycleBeats, 1);
    EXPECT_EQ(shownIn("TxtRep"), "1");
}

TEST_F(MakerPageTest, AMovedStartIsTold) {
    opened();
    RecordingWatcher watcher(workspace());
    type("TxtRep", "4");
    EXPECT_THAT(watcher.told, testing::IsEmpty());
    type("txtStart", "4");
    EXPECT_THAT(watcher.told, testing::ElementsAre(Changes(Change::Marks)));
}

TEST_F(MakerPageTest, ABoxPicksItsChannel) {
    opened();
    tick("chkChannel(0)");
    tick("chkChannel(8)");
    tick("chkChannel(9)");
    tick("chkChannel(11)");
    EXPECT_THAT(picked(), testing::ElementsAre(0, 8, 10, 12));
    tick("chkChannel(9)");
    EXPECT_THAT(picked(), testing::ElementsAre(0, 8, 12));
}

TEST_F(MakerPageTest, TheTwoBoxesPickAllOfTheirKind) {
    opened();
    tick("Chkmelody");
    EXPECT_THAT(picked(), testing::ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_TRUE(isTicked("chkChannel(7)"));
    tick("Chkperc");
    tick("Chkmelody");
    EXPECT_THAT(picked(), testing::ElementsAre(8, 10, 11, 12));
    tick("chkChannel(8)");
    EXPECT_FALSE(isTicked("Chkperc")) << "not all any more";
}

TEST_F(MakerPageTest, ASmallWindowHasNoPictures) {
    opened();
    EXPECT_TRUE(part("IStart1").isVisible());
    window().resize(880, 520);
    QApplication::processEvents();
    EXPECT_FALSE(part("IStart1").isVisible());
    EXPECT_FALSE(part("INotesSteps").isVisible());
    EXPECT_TRUE(part("txtStart").isVisible());
}

// In careful manner

namespace {
class CarefulMakerTest : public MakerPageTest {
protected:
    CarefulMakerTest() { store("Classic", "0"); }
    std::string greyedIn(const char* field) { return part<QLineEdit>(field).placeholderText().toStdString(); }
};
} // namespace

TEST_F(CarefulMakerTest, BlankFieldsShowTheWorkedExampleGreyed) {
    opened();
    EXPECT_EQ(shownIn("txtStart"), "1");
    for (const auto& [field, greyed] : {std::pair{"Txtlen", "60"}, {"TxtRep", "12"}, {"TxtNt", "8"}}) {
        EXPECT_EQ(shownIn(field), "") << field;
        EXPECT_EQ(greyedIn(field), greyed) << field;
    }
    EXPECT_EQ(part<Slider>("ILength").value(), 60);
}

TEST_F(CarefulMakerTest, ATypedNumberCountsAndAClearedFieldIsGreyedAgain) {
    opened();
    type("TxtNt", "4");
    EXPECT_EQ(edit().CycleNotes, 4);
    EXPECT_EQ(shownIn("TxtNt"), "4");
    type("TxtRep", "6");
    part<QLineEdit>("TxtNt").selectAll();
    key("TxtNt", Qt::Key_Delete);
    EXPECT_EQ(edit().CycleNotes, 0);
    EXPECT_EQ(shownIn("TxtNt"), "");
    EXPECT_EQ(greyedIn("TxtNt"), "6") << "as many as the loop has";
    type("Txtlen", "x");
    part("IStart1").setFocus();
    EXPECT_EQ(shownIn("Txtlen"), "");
}

TEST_F(CarefulMakerTest, ArrowsStartFromTheGreyedNumberAndStopAtOne) {
    opened();
    key("VSrep", Qt::Key_Up);
    EXPECT_EQ(edit().CycleBeats, 13);
    clickAt("ILength", 0.9);
    EXPECT_EQ(edit().TotalNotes, 70);
    type("TxtNt", "2");
    key("VSnt", Qt::Key_Down);
    key("VSnt", Qt::Key_Down);
    EXPECT_EQ(shownIn("TxtNt"), "1");
}

TEST_F(CarefulMakerTest, OnAFreshTuneCreateMelodyRepeatsWhatWasDrawn) {
    opened();
    edit().ChannelPicked[0] = true;
    putNotes(score(), 0, 60, 2);
    window().Cmdo_Click();
    for (const int position : {0, 2, 12, 14, 24, 60, 62})
        EXPECT_EQ(score().NoteCell.at(0, position), 60) << position;
}

TEST_F(CarefulMakerTest, ClassicMannerShowsNoughtsAtOnce) {
    opened();
    workspace().setManners(Manners::classic());
    for (const char* field : {"Txtlen", "TxtRep", "TxtNt"}) {
        EXPECT_EQ(shownIn(field), "0") << field;
        EXPECT_EQ(greyedIn(field), "") << field;
    }
    key("VSrep", Qt::Key_Up);
    EXPECT_EQ(edit().CycleBeats, 1);
}
