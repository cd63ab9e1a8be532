// SPDX-License-Identifier: GPL-2.0-or-later
// The right button on `MusicBox`, mode by mode.
#include "tableau/TableauInput.h"

#include "tests/tableau/GestureFixture.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {

constexpr auto kRight = MouseButton::Right;

struct RightButtonTest : GestureFixture {
    int chordAt(int position) { return score().Polyphonics.valueOr(1, position, -9); }
};

} // namespace

// The right button

TEST_F(RightButtonTest, ARightClickOnAContinuationErasesTheWholeNote) {
    draw(1, 4, 20);
    draw(5, 6, 20);
    rightClick(3);
    EXPECT_THAT(cells(0, 8), ElementsAre(-1, -1, -1, -1, -1, 62, 1062, -1));
    EXPECT_EQ(score().NoteInstrument.at(0, 1), 0);
    EXPECT_EQ(score().NoteInstrument.at(0, 4), 0);
}

TEST_F(RightButtonTest, AnErasedNoteTakesItsChordAndEffectsWithItButNotItsVolume) {
    draw(1, 2, 20);
    for (const int position : {1, 2}) {
        score().Polyphonics.set(1, position, 3);
        score().Pan_Change.set(0, position + 1, 9);
        score().Reverb_Change.set(0, position + 1, 9);
        score().Volume.set(0, position + 1, 9);
    }
    rightClick(1);
    for (const int position : {1, 2}) {
        EXPECT_EQ(chordAt(position), 0);
        EXPECT_EQ(score().Pan_Change.at(0, position + 1), 64);
        EXPECT_EQ(score().Reverb_Change.at(0, position + 1), 0);
        EXPECT_EQ(score().Volume.at(0, position + 1), 9);
    }
}

TEST_F(RightButtonTest, TheReleaseOfTheRightButtonRepaints) {
    draw(1, 2, 20);
    press(1, 0, kRight);
    EXPECT_EQ(input().stroke().ViewCol, 1);
    screen().calls.clear();
    release(1, 0, kRight);
    EXPECT_THAT(screen().calls, ElementsAre("doNotemod 1", "melody"));
}

TEST_F(RightButtonTest, AHeadOnRowZeroCannotBeErased) {
    view().ViewTopRow = 0;
    draw(1, 1, 0);
    rightClick(1);
    EXPECT_EQ(cell(0, 1), 0);
}

TEST_F(RightButtonTest, AHeadOnRowZeroThatHasAChordCanBeErased) {
    view().ViewTopRow = 0;
    draw(1, 1, 0);
    score().Polyphonics.set(1, 1, 1);
    rightClick(1);
    EXPECT_EQ(cell(0, 1), -1);
    EXPECT_EQ(chordAt(1), 0);
}

TEST_F(RightButtonTest, AnOrphanContinuationIsErasedWithoutHarm) {
    score().NoteCell.set(0, 0, 1060);
    score().NoteCell.set(0, 1, 1060);
    score().Pan_Change.set(0, 0, 11);
    rightClick(1);
    EXPECT_THAT(cells(0, 2), ElementsAre(-1, -1));
    EXPECT_EQ(score().Pan_Change.at(0, 0), 11) << "belongs to no position";
}

TEST_F(RightButtonTest, ARightDragErasesEveryNoteThatItCrosses) {
    putNotes(score(), 0, 70, 4, 3);
    press(1, 0, kRight);
    drag(4, 3, kRight);
    drag(7, 90, kRight);
    EXPECT_THAT(cells(0, 12), ElementsAre(-1, -1, -1, -1, -1, -1, -1, -1, -1, 70, 1070, 1070));
}

TEST_F(RightButtonTest, ARightDragOutOfTheBoxToTheLeftErasesNothingMore) {
    putNotes(score(), 0, 70, 6, 3);
    view().ViewFirstColumn = 6;
    press(4, 0, kRight);
    input().MusicBox_MouseMove(kRight, 0, -4, 3);
    EXPECT_EQ(cell(0, 5), 1070);
    EXPECT_EQ(cell(0, 6), 70);
}

TEST_F(RightButtonTest, InMenuModeTheRightButtonOpensTheEditMenuAndErasesNothing) {
    draw(1, 2, 20);
    view().RightClickMode = RightClick::Menu;
    press(1, 0, kRight);
    drag(2, 0, kRight);
    EXPECT_EQ(screen().count("openEditMenu"), 1);
    EXPECT_EQ(cell(0, 1), 62);
    EXPECT_FALSE(input().stroke().PressActive) << "the menu takes the release";
}

TEST_F(RightButtonTest, InTipsModeTheRightButtonShowsTheTipAndNothingElse) {
    draw(1, 2, 20);
    view().RightClickMode = RightClick::Tips;
    screen().calls.clear();
    press(1, 0, kRight);
    drag(2, 0, kRight);
    release(2, 0, kRight);
    EXPECT_THAT(screen().calls, ElementsAre("showTip 0"));
    EXPECT_EQ(cell(0, 1), 62);
}

TEST_F(RightButtonTest, InPolyphonicModeTheRightButtonGivesTheNoteItsChordAndErasesNothing) {
    draw(1, 4, 20);
    view().RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 5;
    score().Pan_Change.set(0, 3, 9);
    rightClick(3);
    EXPECT_EQ(chordAt(1), 5);
    EXPECT_EQ(chordAt(3), 5);
    EXPECT_EQ(chordAt(2), 0);
    EXPECT_THAT(cells(0, 5), ElementsAre(-1, 62, 1062, 1062, 1062));
    EXPECT_EQ(score().Pan_Change.at(0, 3), 9);
    EXPECT_GE(screen().count("melody"), 1);
    EXPECT_TRUE(workspace().undoLast());
}

TEST_F(RightButtonTest, WithNoteEffectsTheRightButtonAppliesThemToTheHeadAndErasesNothing) {
    draw(1, 3, 20);
    view().NoteEffectsOn = true;
    score().Reverb_Change.set(0, 2, 9);
    score().Reverb_Change.set(0, 3, 9);
    press(2, 0, kRight);
    for (int position = 1; position <= 3; ++position)
        EXPECT_EQ(score().NoteInstrument.at(0, position), workspace().effects.NoteInstrumentPick);
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 62, 1062, 1062));
    EXPECT_EQ(score().Reverb_Change.at(0, 2), 9) << "the head keeps its own";
    EXPECT_EQ(score().Reverb_Change.at(0, 3), 0) << "the walk to it resets what it passes";
    release(2, 0, kRight);
    EXPECT_EQ(port().words().back(), RecordingPort::kReset);
}

TEST_F(RightButtonTest, AnAppliedEffectEndsEvenIfTheToolIsLeftMeanwhile) {
    draw(1, 3, 20);
    view().NoteEffectsOn = true;
    press(2, 0, kRight);
    view().NoteEffectsOn = false;
    port().sent.clear();
    input().cancel();
    EXPECT_THAT(port().words(), ElementsAre(RecordingPort::kReset));
}

TEST_F(RightButtonTest, ARightDragAppliesEffectsOnceAMove) {
    putNotes(score(), 0, 70, 3, 2);
    view().NoteEffectsOn = true;
    workspace().effects.NoteInstrumentPick = 77;
    const auto applied = [this] { return std::ranges::count(score().NoteInstrument.row(0), 77); };
    press(0, 0, kRight);
    EXPECT_EQ(applied(), 2);
    drag(2, 0, kRight);
    EXPECT_EQ(applied(), 4);
    drag(4, 0, kRight);
    EXPECT_EQ(applied(), 6);
}

TEST_F(RightButtonTest, AnErasedNoteIsGoneAtThePress) {
    draw(1, 2, 20);
    screen().calls.clear();
    press(1, 0, kRight);
    EXPECT_EQ(screen().count("melody"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Pencil);
}

TEST_F(RightButtonTest, AChordThatTheNoteHasAlreadyIsNothingToPaint) {
    draw(1, 2, 20);
    view().RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 5;
    rightClick(1);
    screen().calls.clear();
    press(1, 0, kRight);
    EXPECT_EQ(screen().count("melody"), 0);
    release(1, 0, kRight);
    workspace().setup.Combo3 = 4;
    screen().calls.clear();
    press(1, 0, kRight);
    EXPECT_EQ(screen().count("melody"), 1);
}

TEST_F(RightButtonTest, InCarefulMannerTheWholeNoteTakesTheChordThatTheListNames) {
    beCareful();
    draw(1, 4, 20);
    draw(5, 6, 20);
    view().RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 0; // Major
    rightClick(3);
    for (int position = 0; position <= 6; ++position)
        EXPECT_EQ(chordAt(position), position >= 1 && position <= 4 ? 1 : 0) << position;
}

TEST_F(RightButtonTest, InCarefulMannerAChordOfOneNoteEndsWithIt) {
    beCareful();
    draw(1, 4, 20);
    view().RightClickMode = RightClick::Polyphonic;
    rightClick(1);
    port().sent.clear();
    press(4, 20); // on its last cell, where the chord is read that ends
    EXPECT_THAT(sounding(), testing::SizeIs(4));
    release(4, 20);
    EXPECT_THAT(sounding(), testing::IsEmpty());
}

TEST_F(RightButtonTest, AnEmptyCellWithAChordTakesEffectsToo) {
    view().NoteEffectsOn = true;
    workspace().effects.NoteInstrumentPick = 77;
    workspace().effects.Combo3 = 2;
    score().Polyphonics.set(1, 5, 3);
    rightClick(5);
    EXPECT_EQ(score().NoteInstrument.at(0, 5), 77);
    EXPECT_EQ(chordAt(5), 2);
    rightClick(6); // which has none
    EXPECT_EQ(score().NoteInstrument.at(0, 6), 0);
    EXPECT_EQ(chordAt(6), 0);
}
