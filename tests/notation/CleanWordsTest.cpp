// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanWords.h"

#include "tests/notation/CleanPageReader.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

TEST(CleanWords, HyphensPartSyllablesAndBlanksPartWords) {
    const auto syllables = syllablesOf("Eve-ning  comes\nhome");
    ASSERT_EQ(syllables.size(), 4U);
    EXPECT_EQ(syllables[0].text, "Eve");
    EXPECT_TRUE(syllables[0].hyphen);
    EXPECT_FALSE(syllables[1].hyphen);
    EXPECT_EQ(syllables[3].text, "home");
    EXPECT_EQ(syllables[3].from, 3);
}

TEST(CleanWords, AnUnderscoreLetsASyllableGoOn) {
    const auto syllables = syllablesOf("oh _ _ yes");
    ASSERT_EQ(syllables.size(), 2U);
    EXPECT_EQ(syllables[0].to, 2);
    EXPECT_EQ(syllables[1].from, 3);
}

TEST(CleanWords, SyllablesStandInTheMiddleBelowTheirHeads) {
    CleanPageReader page;
    page.setup.verses = {"one two three four"};
    page.tune({67, 69, 71, 72});
    page.engrave();
    const auto heads = page.boxes(Role::Head);
    const auto words = page.boxes(Role::Lyric);
    ASSERT_EQ(words.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(middleOf(words[i]), middleOf(heads[i]), 0.1);
        EXPECT_GT(words[i].top, heads[i].bottom);
    }
}

TEST(CleanWords, AHeldNoteTakesNoSyllableAndDrawsItsLine) {
    CleanPageReader page;
    page.setup.verses = {"a b"};
    page.rhythm({-8, 16, 8}, 67);
    page.engrave();
    EXPECT_EQ(page.texts(Role::Lyric), (std::vector<std::string>{"a", "b"}));
    const auto lines = page.lines(Role::Lyric);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_GT(lines[0].to.x, page.boxes(Role::Head)[1].left);
}

TEST(CleanWords, HyphensStandMidwayBetweenSyllables) {
    CleanPageReader page;
    page.setup.verses = {"Eve-ning"};
    page.rhythm({8, 8}, 67);
    page.engrave();
    const auto words = page.boxes(Role::Lyric);
    ASSERT_EQ(words.size(), 3U);
    EXPECT_NEAR(middleOf(words[1]), (words[0].right + words[2].left) / 2, 0.1);
}

TEST(CleanWords, LongSyllablesPushTheirNotesApart) {
    CleanPageReader page;
    page.setup.verses = {"breathtaking strengthening overwhelming notwithstanding"};
    page.tune({67, 69, 71, 72});
    page.engrave();
    const auto words = page.boxes(Role::Lyric);
    for (std::size_t i = 0; i + 1 < words.size(); ++i)
        EXPECT_LT(words[i].right + 2, words[i + 1].left);
}

TEST(CleanWords, SeveralVersesStandBelowEachOther) {
    CleanPageReader page;
    page.setup.verses = {"one", "two"};
    page.tune({67, 69, 71, 72});
    page.engrave();
    auto words = page.boxes(Role::Lyric);
    ASSERT_EQ(words.size(), 2U);
    std::ranges::sort(words, {}, &Box::top);
    EXPECT_GE(words[1].top, words[0].bottom);
}

TEST(CleanWords, WordsBeyondTheLastNoteAreLeftOut) {
    CleanPageReader page;
    page.setup.verses = {"one two three four five six"};
    page.tune({67, 69, 71, 72});
    page.engrave();
    EXPECT_EQ(page.texts(Role::Lyric).size(), 4U);
}

} // namespace
} // namespace velmora::notation
