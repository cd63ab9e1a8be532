// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/CommandRow.h"

#include <gtest/gtest.h>

using namespace velmora;

namespace {
constexpr auto kRows = std::to_array<CommandRow>({
    {"begin", "play", "", "Begin", "Begins"},
    {"end it", "stop", "", "End", "Ends"},
});
constexpr auto kTwins = std::to_array<CommandRow>({
    {"begin", "play", "", "Begin", "Begins"},
    {"begin", "stop", "", "End", "Ends"},
});
constexpr auto kNameless = std::to_array<CommandRow>({
    {"begin", "play", "", "Begin", "Begins"},
    {"", "stop", "", "End", "Ends"},
});
} // namespace

TEST(CommandRowTest, ACommandIsFoundByItsName) {
    EXPECT_EQ(indexOf(kRows, "begin"), 0);
    EXPECT_EQ(indexOf(kRows, "end it"), 1);
}

TEST(CommandRowTest, ATableWithoutANameForEachOfItsRowsIsNotWhole) {
    EXPECT_TRUE(eachHasAName(kRows));
    EXPECT_FALSE(eachHasAName(kTwins));
    EXPECT_FALSE(eachHasAName(kNameless));
}
