// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Accidentals.h"

#include "CleanMusicReader.h"
#include "notation/Spelling.h"

#include <gmock/gmock.h>

using namespace velmora::notation;

namespace {
struct AccidentalsTest : testing::Test, CleanMusicReader {};
struct SpellingTest : testing::Test, CleanMusicReader {};
} // namespace

TEST_F(AccidentalsTest, ASignHoldsUntilTheBarLine) {
    EXPECT_EQ(key("C").tune({66, 66, 67, 66, 66}).names(), "F## F# G F# F##");
}
TEST_F(AccidentalsTest, ANaturalTakesASignBack) {
    EXPECT_EQ(key("C").tune({66, 65, 65, 66}).names(), "F## Fn F F##");
    EXPECT_EQ(key("G").tune({65, 66, 66, 67}).names(), "Fn F## F# G");
}
TEST_F(AccidentalsTest, ASignHoldsForItsOctaveOnly) {
    EXPECT_EQ(key("C").tune({66, 78, 66, 78}).names(), "F## F## F# F#");
}
TEST_F(AccidentalsTest, TheBarBehindASignRemindsOnce) {
    EXPECT_EQ(key("C").tune({66, 67, 67, 67, 65, 65, 67, 67, 65}).names(), "F## G G G F(n) F G G F");
}
TEST_F(AccidentalsTest, AHeldNoteNeedsNoSign) {
    EXPECT_EQ(key("C").stroke(0, 66, 12, 8).stroke(0, 66, 20, 4).stroke(0, 65, 32, 4).names(),
              "F## -F# F## F(n)");
}
TEST_F(AccidentalsTest, AHeldSignRemindsInItsOwnBar) {
    EXPECT_EQ(key("C").stroke(0, 66, 12, 8).stroke(0, 65, 20, 4).names(), "F## -F# F(n)");
}
TEST_F(AccidentalsTest, TheSignatureNeedsNoSigns) {
    EXPECT_EQ(key("D").tune({66, 73, 67}).names(), "F# C# G");
    EXPECT_EQ(key("Gb").tune({71, 66, 59}).names(), "Cb Gb Cb");
}
TEST_F(AccidentalsTest, VoicesOfAStaffShareTheirSigns) {
    setup.staves.chkChannel[1] = true;
    setup.twoVoices = true;
    key("C").stroke(0, 78, 8, 4).stroke(0, 79, 0, 8).stroke(1, 78, 4, 2);
    std::string signs;
    for (const Written& item : read().items)
        for (const Pitch& pitch : item.pitches)
            if (pitch.name == "F#")
                signs += std::to_string(item.voice) + (pitch.sign == Sign::Sharp ? "#" : "-");
    EXPECT_EQ(signs, "0-1#");
}

TEST_F(SpellingTest, TheLeadingToneOfTheMinorKeyIsSharp) {
    EXPECT_EQ(spell(68, 0).name(), "G#");
    EXPECT_EQ(spell(75, 1).name(), "D#");
    EXPECT_EQ(spell(61, -1).name(), "C#");
    EXPECT_EQ(spell(65, 3).name(), "E#");
    EXPECT_EQ(spell(60, 4).name(), "B#");
}
TEST_F(SpellingTest, TheLoweredSeventhAndThirdAreFlat) {
    EXPECT_EQ(spell(70, 0).name(), "Bb");
    EXPECT_EQ(spell(75, 0).name(), "Eb");
    EXPECT_EQ(spell(65, 1).name(), "F");
    EXPECT_EQ(spell(63, -1).name(), "Eb");
}
TEST_F(SpellingTest, ASemitoneUpwardsIsALeadingTone) {
    EXPECT_EQ(spell(75, 0, 76).name(), "D#");
    EXPECT_EQ(spell(70, 0, 71).name(), "A#");
}
TEST_F(SpellingTest, ASemitoneDownwardsIsAFlat) {
    EXPECT_EQ(spell(68, 0, 67).name(), "Ab");
    EXPECT_EQ(spell(61, 0, 60).name(), "Db");
}
TEST_F(SpellingTest, EachKeySpellsItsOwnScaleWithoutASign) {
    for (const Key& key : kKeys)
        for (const int degree : {0, 2, 4, 5, 7, 9, 11}) {
            const SpelledNote note = spell(60 + (key.fifths * 7 + 84 + degree) % 12, key.fifths);
            EXPECT_EQ(note.alter, alterInKey(note.line, key.fifths)) << key.text << ' ' << note.name();
        }
}
TEST_F(SpellingTest, NoKeyNeedsAStrangeName) {
    for (const Key& key : kKeys)
        for (int note = 0; note < 128; ++note)
            for (int next = note - 2; next <= note + 2; ++next) {
                const SpelledNote spelled = spell(note, key.fifths, next);
                const std::string name = spelled.name();
                EXPECT_TRUE(name != "B#" || key.fifths >= 4);
                EXPECT_NE(name, "Fb");
                EXPECT_TRUE(name != "Cb" || key.fifths == -6);
                EXPECT_LE(std::abs(spelled.alter), 1);
                constexpr std::array kNatural{0, 2, 4, 5, 7, 9, 11};
                EXPECT_EQ(spelled.line / 7 * 12 + kNatural[static_cast<std::size_t>(spelled.line % 7)] +
                              spelled.alter,
                          note);
            }
}
