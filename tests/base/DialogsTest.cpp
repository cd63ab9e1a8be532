// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Dialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmora;
using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DialogsTest, ATrailingSeparatorGivesNoFurtherFilter) {
    EXPECT_THAT(splitFilters("Score Files (*.sng) |*.sng|"),
                ElementsAre(FileFilter{"Score Files (*.sng) ", "*.sng"}));
}

TEST(DialogsTest, FiltersComeInTheirOrder) {
    EXPECT_THAT(splitFilters("Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid"),
                ElementsAre(FileFilter{"Velmora Score(*.sng)", "*.sng"}, FileFilter{"Midi(*.mid)", "*.mid"}));
}

TEST(DialogsTest, ALabelWithoutAPatternIsNoFilter) {
    EXPECT_THAT(splitFilters(""), IsEmpty());
    EXPECT_THAT(splitFilters("|"), IsEmpty());
    EXPECT_THAT(splitFilters("All files"), IsEmpty());
    EXPECT_THAT(splitFilters("A|*.a|B|"), ElementsAre(FileFilter{"A", "*.a"}));
    EXPECT_THAT(splitFilters("A|*.a||*.b|C|*.c"), ElementsAre(FileFilter{"A", "*.a"}));
}

TEST(DialogsTest, ANameKeepsItsInnerBlanksAndLosesTheOuterOnesAndAFinalNul) {
    EXPECT_EQ(tidyFileName("  my song.sng "), "my song.sng");
    EXPECT_EQ(tidyFileName("song\0"sv), "song");
    EXPECT_EQ(tidyFileName("song\0 "sv), "song");
    EXPECT_EQ(tidyFileName("   "), "");
    EXPECT_EQ(tidyFileName(""), "");
}

TEST(DialogsTest, TheExtensionIsAppendedUnlessItIsThereInAnyCase) {
    EXPECT_EQ(withExtension("song", ".sng"), "song.sng");
    EXPECT_EQ(withExtension("song.SnG", ".sng"), "song.SnG");
    EXPECT_EQ(withExtension("song.mid", ".sng"), "song.mid.sng");
    EXPECT_EQ(withExtension("sng", ".sng"), "sng.sng");
    EXPECT_EQ(withExtension("", ".mid"), ".mid");
}
