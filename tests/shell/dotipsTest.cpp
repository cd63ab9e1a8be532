// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/dotips.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

using namespace velmora;
using testing::HasSubstr;
using testing::StartsWith;

TEST(dotipsTest, EveryRowHasItsTitleAndTheWordsOfItsControl) {
    struct Row {
        std::string_view title;
        std::string_view words;
    };
    constexpr std::array<Row, kLongTipCount> kRows{{
        {"Melody Tableau", "place your curser on the tableau, depress your left mousebutton"},
        {"Percussion Tableau",
         "If you need to enlarge the tableau height, place your cursor on it, hold down the "
         "right mousebutton and slide it downwards to expose as much space as you need."},
        {"Note Guide", "guide"},
        {"Note Indicator and Identifier", "Single Note Effects"},
        {"Polynote Selector", "chord"},
        {"Channel Squares", "Left Click to activate Channel \nRight click to Activate/Deactivate Channel "},
        {"Instrument Selector", "Select Single note Instrument"},
        {"Chord Selector", "Select Single note Chord Type"},
        {"Single Note Effects", "Select Single note Reverb"},
        {"Undo all Single Note Effects", "Click this button to undo all Individual Note Effects. Caution: "
                                         "this action is permanent and can't be "
                                         "undone. Save your score before you undo effects."},
        {"Static Note Test", "Click on Notes to Play, Not edit them"},
    }};
    for (int index = 1; index <= kLongTipCount; ++index) {
        const auto& row = kRows[static_cast<std::size_t>(index - 1)];
        EXPECT_EQ(dotips(index).title, row.title);
        EXPECT_THAT(dotips(index).text, HasSubstr(row.words)) << index;
    }
}

TEST(dotipsTest, TheTableausTipsBeginAsTheyAlwaysDid) {
    EXPECT_THAT(
        dotips(1).text,
        StartsWith("The Melody Tableau is the main interface for creating notes. To draw a note, place your "
                   "curser on the tableau, depress your left mousebutton and drag the mouse over the tableau "
                   "from Left to Right "));
    EXPECT_THAT(dotips(2).text,
                StartsWith("The Percussion Tableau is the interface for creating percussion sounds."));
}

TEST(dotipsTest, EveryEffectHasItsWordsInTheTipOfTheSliders) {
    for (const char* effect : {"Volume", "Modulation", "Pan", "Reverb", "Chorus"})
        EXPECT_THAT(dotips(9).text, HasSubstr(std::string("Select Single note ") + effect));
}

TEST(dotipsTest, NoTwoTipsAreAlikeAndOthersAreBlank) {
    std::set<std::string_view> texts;
    for (int index = 1; index <= kLongTipCount; ++index)
        texts.insert(dotips(index).text);
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(kLongTipCount));
    for (const int index : {-1, 0, kLongTipCount + 1})
        EXPECT_EQ(dotips(index).text, "") << index;
}
