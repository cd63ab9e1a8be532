// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/keyboard/KeyboardFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Words = std::vector<std::uint32_t>;

class KeyVoiceTest : public KeyboardFixture {
protected:
    void chords(Polynotes polynotes, int chord) {
        keyboard.setPolynotes(polynotes);
        keyboard.set(KeyboardSlider::Chord, chord);
    }
};

TEST_F(KeyVoiceTest, AKeySoundsItsNoteAtVelocity100AndItsReleaseEndsIt) {
    down(letter("z"));
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
    down(letter("0"));
    up(letter("0"));
    EXPECT_THAT(sent(), ElementsAre(on(78), off(78)));
}

TEST_F(KeyVoiceTest, OctaveShiftMovesEveryNote) {
    keyboard.Option5_Click(-2);
    down(letter("z"));
    up(letter("z"));
    keyboard.set(KeyboardSlider::Octave, 10);
    down(letter("x"));
    up(letter("x"));
    EXPECT_THAT(sent(), ElementsAre(on(12), off(12), on(48), off(48)));
}

TEST_F(KeyVoiceTest, EachChordStrikesItsStepsAboveTheRoot) {
    const std::vector<std::pair<int, Words>> table{
        {0, {on(36)}},
        {1, {on(36), on(40), on(43), on(48)}},
        {2, {on(36), on(39), on(43), on(48)}},
        {3, {on(36), on(40), on(43), on(47)}},
        {4, {on(36), on(39), on(43), on(46)}},
        {5, {on(36), on(39), on(42), on(46)}},
        {6, {on(36), on(39), on(42), on(45)}},
        {7, {on(36), on(40), on(43), on(46)}},
        {8, {on(36), on(36), on(40), on(43), on(47), on(50)}},
        {9, {on(36)}},
        {10, {on(36), on(48)}},
    };
    for (const auto& [chord, words] : table) {
        chords(Polynotes::Always, chord);
        down(letter("z"));
        EXPECT_EQ(sent(), words) << "chord " << chord;
        up(letter("z"));
        sent();
    }
}

TEST_F(KeyVoiceTest, AReleaseEndsTheRootAndThenTheWholeChord) {
    const std::vector<std::pair<int, Words>> table{
        {0, {off(36)}},
        {1, {off(36), off(36), off(40), off(43), off(48)}},
        {8, {off(36), off(36), off(40), off(43), off(47), off(50)}},
        {9, {off(36), off(36), off(39), off(43), off(46), off(50)}},
        {10, {off(36), off(36), off(48)}},
    };
    for (const auto& [chord, words] : table) {
        chords(Polynotes::Always, chord);
        down(letter("z"));
        sent();
        up(letter("z"));
        EXPECT_EQ(sent(), words) << "chord " << chord;
    }
}

TEST_F(KeyVoiceTest, TheSpaceBarStrumsTheChordFromTheTopAndStrikesTheRootAgain) {
    chords(Polynotes::OnSpacebar, 1);
    down(space());
    down(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), on(48)));
    passTo(0.0099);
    EXPECT_THAT(sent(), IsEmpty());
    passTo(0.1);
    ASSERT_EQ(port.sent.size(), 3U);
    EXPECT_NEAR(port.sent[0].moment, 0.01, 1e-9);
    EXPECT_NEAR(port.sent[1].moment, 0.02, 1e-9);
    EXPECT_NEAR(port.sent[2].moment, 0.03, 1e-9);
    EXPECT_THAT(sent(), ElementsAre(on(43), on(40), on(36)));
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(off(36), off(40), off(43), off(48)));
}

TEST_F(KeyVoiceTest, OnSpacebarAKeyAloneIsASingleNote) {
    chords(Polynotes::OnSpacebar, 1);
    down(letter("z"));
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
}

TEST_F(KeyVoiceTest, AnOctaveIsStrummedFromItsUpperNote) {
    chords(Polynotes::Always, 10);
    keyboard.setStrum(true);
    keyboard.set(KeyboardSlider::Strum, 5);
    down(letter("z"));
    passTo(0.2);
    ASSERT_EQ(port.sent.size(), 3U);
    EXPECT_NEAR(port.sent[2].moment, 0.05, 1e-9);
    EXPECT_THAT(sent(), ElementsAre(on(36), on(48), on(36)));
}

TEST_F(KeyVoiceTest, AStrumWhoseKeyGoesUpStrikesNoFurtherNote) {
    chords(Polynotes::Always, 1);
    keyboard.setStrum(true);
    keyboard.set(KeyboardSlider::Strum, 11);
    down(letter("z"));
    passTo(0.12);
    up(letter("z"));
    sent();
    passTo(2);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(KeyVoiceTest, AStrumGoesOnWithTheNotesOfTheOneThatCameAfterIt) {
    chords(Polynotes::Always, 1);
    keyboard.setStrum(true);
    keyboard.set(KeyboardSlider::Strum, 2);
    down(letter("z"));
    passTo(0.01);
    sent();
    down(letter("x")); // two higher
    EXPECT_THAT(sent(), ElementsAre(on(38), on(50)));
    passTo(0.02);
    EXPECT_THAT(sent(), ElementsAre(on(45)));
}

TEST_F(KeyVoiceTest, AtTheFastestStrumAReleaseCutsAllSound) {
    chords(Polynotes::Always, 1);
    keyboard.setStrum(true);
    down(letter("z"));
    passTo(1);
    sent();
    up(letter("z"));
    EXPECT_EQ(sent().back(), kReset);
    keyboard.drag(KeyboardSlider::Strum, 0.05); // the same tempo, but not the left end
    EXPECT_EQ(keyboard.controls().Text1, 1);
    down(letter("z"));
    up(letter("z"));
    EXPECT_NE(sent().back(), kReset);
}

TEST_F(KeyVoiceTest, TheRootEndsAlsoWhereNoChordStandsForIt) {
    chords(Polynotes::OnSpacebar, 0);
    down(space());
    down(letter("z"));
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
    chords(Polynotes::OnSpacebar, 1);
    down(letter("z"));
    keyboard.setPolynotes(Polynotes::Single);
    passTo(1);
    sent();
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(off(36)));
}

TEST_F(KeyVoiceTest, ClassicallyTheUpperNotesGoOnWhereTheSpaceBarGoesUpFirst) {
    chords(Polynotes::OnSpacebar, 1);
    down(space());
    down(letter("z"));
    passTo(1);
    up(space());
    up(letter("z"));
    EXPECT_EQ(ringing(), 3);
}

TEST_F(KeyVoiceTest, ClassicallyAReleaseUnderAnotherOctaveEndsOtherNotes) {
    down(letter("z"));
    keyboard.Option5_Click(1);
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), off(48)));
}

TEST_F(KeyVoiceTest, CarefullyAReleaseEndsWhatItsPressStruck) {
    beCareful();
    chords(Polynotes::OnSpacebar, 8);
    down(space());
    down(letter("z"));
    passTo(1);
    up(space());
    keyboard.Option5_Click(1);
    keyboard.set(KeyboardSlider::Chord, 2);
    up(letter("z"));
    EXPECT_EQ(ringing(), 0);
}

TEST_F(KeyVoiceTest, CarefullyANoteThatTwoKeysHoldEndsWithTheSecond) {
    beCareful();
    chords(Polynotes::Always, 10);
    down(letter("z")); // with the C above, which is the key of ","
    down(sign(","));
    sent();
    up(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(off(36)));
    up(sign(","));
    EXPECT_THAT(sent(), ElementsAre(off(48), off(60)));
}

TEST_F(KeyVoiceTest, ANoteEndsOnTheChannelOfItsStrike) {
    for (const bool careful : {false, true}) {
        manners = Manners::of(!careful);
        keyboard.set(KeyboardSlider::Channel, 3);
        down(letter("z"));
        keyboard.set(KeyboardSlider::Channel, 5);
        sent();
        up(letter("z"));
        EXPECT_THAT(sent(), ElementsAre(off(36, 3)));
    }
}

TEST_F(KeyVoiceTest, TheMousePlaysOneNoteBesideAllChords) {
    chords(Polynotes::Always, 1);
    keyboard.CmdKey_MouseDown(5, 20);
    keyboard.CmdKey_MouseUp();
    EXPECT_THAT(sent(), ElementsAre(on(41), off(41)));
    beCareful();
    keyboard.CmdKey_MouseDown(5, 20);
    keyboard.CmdKey_MouseUp();
    EXPECT_THAT(sent(), ElementsAre(on(41, 0, 20), off(41)));
}

TEST_F(KeyVoiceTest, AMouseReleaseEndsTheNoteThatTheMouseStruck) {
    keyboard.CmdKey_MouseDown(0);
    down(letter("q"));
    keyboard.Option5_Click(2);
    sent();
    keyboard.CmdKey_MouseUp();
    EXPECT_THAT(sent(), ElementsAre(off(36)));
    keyboard.CmdKey_MouseUp();
    EXPECT_THAT(sent(), IsEmpty());
}

} // namespace
} // namespace velmora
