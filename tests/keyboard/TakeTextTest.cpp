// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeText.h"

#include "tests/support/Walks.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace velmora;

namespace {
std::string textOf(const KeptTake& kept) {
    TakeRuns runs;
    runs.extend(kept.take);
    return takeText(kept.when, kept.length, runs);
}
std::string whole(std::string text) {
    return text + takeChecksumLine(text);
}
} // namespace

TEST(TakeTextTest, RunsOfARowAreALineEach) {
    const KeptTake kept{
        1'700'000'000'123, 90, {{1, 2, 3, 1, 0, 0, 0, 0, 1}, {70, 70, 70, 70, 70, 72, 72, 70, 70}}};
    const std::string text = textOf(kept);
    EXPECT_TRUE(text.starts_with("Velmora take\nWhen=1700000000123\nLength=90\n"
                                 "3 70 1\n1 70 1\n1 70\n2 72\n1 70\n1 70 1\nSum="));
    EXPECT_EQ(parseTakeText(text), kept);
}

TEST(TakeTextTest, ATakeThatGrowsGivesTheTextOfTheWhole) {
    std::mt19937 random(8);
    for (int n = 0; n < stepsOfWalk(500); ++n) {
        KeptTake kept{static_cast<std::int64_t>(random()), static_cast<std::int64_t>(random()), {}};
        TakeRuns growing;
        const unsigned sort = 1 + random() % 4;
        for (unsigned tick = 0; tick < random() % 300; ++tick) {
            const bool goesOn = random() % 5 != 0 && !kept.take.List1.empty();
            kept.take.List1.push_back(goesOn ? kept.take.List1.back() + (kept.take.List1.back() != 0 ? 1 : 0)
                                             : static_cast<std::int32_t>(random() % sort) - 1);
            kept.take.List3.push_back(goesOn ? kept.take.List3.back()
                                             : static_cast<std::int32_t>(random() % sort) + 50);
            if (random() % 7 == 0)
                growing.extend(kept.take);
        }
        growing.extend(kept.take);
        ASSERT_EQ(takeText(kept.when, kept.length, growing), textOf(kept));
        ASSERT_EQ(growing.ticks(), kept.take.size());
        ASSERT_EQ(parseTakeText(textOf(kept)), kept) << textOf(kept);
    }
}

TEST(TakeTextTest, AChangedByteAnywhereIsSeen) {
    const std::string text = textOf({5, 6, {{1, 2, 0, 0}, {70, 70, 72, 72}}});
    ASSERT_TRUE(parseTakeText(text));
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string damaged = text;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        EXPECT_EQ(parseTakeText(damaged), std::nullopt) << at;
        EXPECT_EQ(parseTakeText(text.substr(0, at)), std::nullopt) << at;
    }
    EXPECT_EQ(parseTakeText(text + "\n"), std::nullopt);
}

TEST(TakeTextTest, WhatNobodyWroteIsRefused) {
    const std::string head = "Velmora take\nWhen=1\nLength=2\n";
    EXPECT_TRUE(parseTakeText(whole(head)));
    EXPECT_TRUE(parseTakeText(whole(head + "8640000 70\n")));
    for (const std::string& text : {std::string(),
                                    std::string("Velmora take\n"),
                                    std::string("Velmora take\nWhen=1\n"),
                                    std::string("Velmora takes\nWhen=1\nLength=2\n"),
                                    std::string("Velmora take\nWhen=-1\nLength=2\n"),
                                    std::string("Velmora take\nWhen=1\nLength=\n"),
                                    head + "\n",
                                    head + "1\n",
                                    head + "1 \n",
                                    head + "1 70 \n1 70\n",
                                    head + "0 70\n",
                                    head + "-1 70\n",
                                    head + "1 70 1 1\n",
                                    head + "1 x\n",
                                    head + "1 70",
                                    head + "8640001 70\n",
                                    head + "8640000 70\n1 70\n",
                                    head + "99999999999 70\n",
                                    head + "1 2000000000\n",
                                    head + "1 70\r\n"})
        EXPECT_EQ(parseTakeText(whole(text)), std::nullopt) << text;
}
