// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

using namespace velmora;

TEST(NumbersTest, ReadingStopsAtTheFirstCharacterThatIsNoPartOfANumber) {
    constexpr std::pair<const char*, double> kRows[] = {
        {"12", 12},      {"  70 ", 70}, {"\t-3", -3}, {"+5", 5},       {"1060,24", 1060}, {"12abc", 12},
        {"1 2", 1},      {"5.", 5},     {".5", 0.5},  {"-.25x", -.25}, {"1e2", 100},      {"1E+2", 100},
        {"1e-1", 0.1},   {"1e", 1},     {"1e+", 1},   {"3.7.1", 3.7},  {"0x10", 0},       {"007", 7},
        {"12e1.5", 120}, {"2d3", 2},    {"4\x80", 4}, {"1,5", 1},
    };
    for (const auto& [text, number] : kRows)
        EXPECT_EQ(leadingNumber(text), number) << '"' << text << '"';
}

TEST(NumbersTest, NothingBehindTheTextIsRead) {
    const auto begin = [](const char* text, std::size_t length) {
        return leadingNumber(std::string_view(text, length));
    };
    EXPECT_EQ(begin("12345", 2), 12);
    EXPECT_EQ(begin("5", 0), 0);
    EXPECT_EQ(leadingNumber(std::string_view()), 0) << "there is nothing at all";
    EXPECT_EQ(begin("  7", 2), 0);
    EXPECT_EQ(begin("-7", 1), 0);
    EXPECT_EQ(begin(".5", 1), 0);
    EXPECT_EQ(begin("1.75", 2), 1);
    EXPECT_EQ(begin("2e3", 2), 2);
    EXPECT_EQ(begin("2e34", 3), 2000);
    EXPECT_EQ(begin("1e-3999", 5), 1e-39);
    EXPECT_EQ(begin("1e9999", 5), std::numeric_limits<double>::infinity());
}

TEST(NumbersTest, ATextWithoutANumberIsZero) {
    for (const char* text : {"", " ", "-", "+", ".", "-.", "+-5", "-+5", "--5", "e5", "abc", "inf", "nan",
                             "-inf", "- 5", "=5", "\n5"})
        EXPECT_EQ(leadingNumber(text), 0) << '"' << text << '"';
    EXPECT_EQ(leadingNumber(std::string_view("\0"
                                             "5",
                                             2)),
              0);
    EXPECT_EQ(leadingNumber(std::string_view("5\0"
                                             "5",
                                             3)),
              5);
}

TEST(NumbersTest, ANumberTooLargeForADoubleIsInfiniteAndOneTooSmallIsZero) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::string nines(400, '9');
    const std::string smallest = "0." + std::string(400, '0') + "1";
    const std::pair<std::string, double> rows[] = {
        {"1e999", kInfinity},
        {"-1e999", -kInfinity},
        {"1e-999", 0},
        {"-1e-999", 0},
        {nines, kInfinity},
        {nines + "e-1", kInfinity},
        {nines + "e-400", 1},
        {smallest, 0},
        {smallest + "e1", 0},
        {smallest + "e401", 1},
        {"1e99999999999999999999999", kInfinity},
        {"1e-99999999999999999999999", 0},
        {"1e+99999999999999999999999", kInfinity},
        {"0e99999999999999999999999", 0},
        {"0e999", 0},
    };
    for (const auto& [text, number] : rows)
        EXPECT_EQ(leadingNumber(text), number) << text;
}

TEST(NumbersTest, HalvesAreRoundedToTheEvenNumber) {
    constexpr std::pair<double, double> kRows[] = {{0.5, 0},   {1.5, 2},    {2.5, 2},       {3.5, 4},
                                                   {-0.5, 0},  {-1.5, -2},  {-2.5, -2},     {2.4999, 2},
                                                   {2.501, 3}, {82.55, 83}, {127 * .8, 102}};
    for (const auto& [value, rounded] : kRows)
        EXPECT_EQ(roundHalfEven(value), rounded) << value;
}

TEST(NumbersTest, WhatA16BitNumberCannotHoldIsNothing) {
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_EQ(toInt16(32767.5), std::nullopt);
    EXPECT_EQ(toInt16(-32768.5), -32768);
    EXPECT_EQ(toInt16(-32768.6), std::nullopt);
    EXPECT_EQ(toInt16(std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(toInt16(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(parseInt16("32768"), std::nullopt);
    EXPECT_EQ(parseInt16("-32768"), -32768);
    EXPECT_EQ(parseInt16("1e4"), 10000);
    EXPECT_EQ(parseInt16("2.5"), 2);
    EXPECT_EQ(parseInt16(""), 0);
}

TEST(NumbersTest, WhatA32BitNumberCannotHoldIsNothing) {
    EXPECT_EQ(toInt32(2147483647.4), 2147483647);
    EXPECT_EQ(toInt32(2147483647.5), std::nullopt);
    EXPECT_EQ(parseInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(parseInt32("-2147483649"), std::nullopt);
    EXPECT_EQ(parseInt32("200000 notes"), 200000);
}
