// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/LyricsFile.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

constexpr std::string_view kWhole =
    "Title=The Song\r\nMDIScore.Width=12000\r\nMDIScore.ActiveForm.Width=9000.5\r\nLabel3=70\r\n"
    "Lbar= 80\r\nLabel2= 50\r\nCombo1.ListIndex= 3\r\ntext4=32\r\ntext1=some words\r\n"
    " Page : 1 Left: 100 Top: 200.5 : Pic1.CurrentY= 210 Pic1.FontSize= 12 Pic1.FontName= Times New Roman"
    "  Text= la la\r\n";

constexpr std::string_view kItem = " Page : 3 Left: 1 Top: 2 : Pic1.CurrentY= 2 Pic1.FontSize= 10 "
                                   "Pic1.FontName= Arial  Text= ";

LyricsItem itemWith(std::string_view text) {
    const LyricsFile file = parseLyrics(std::string(kItem).append(text));
    EXPECT_EQ(file.items.size(), 1U) << text;
    return file.items.empty() ? LyricsItem() : file.items.front();
}

TEST(LyricsFileTest, EveryValueIsRead) {
    const LyricsFile file = parseLyrics(kWhole);
    EXPECT_EQ(file.title, "The Song");
    EXPECT_EQ(file.width, 12000);
    EXPECT_EQ(file.sheetWidth, 9000.5);
    EXPECT_EQ(file.SpacerHeight, 70);
    EXPECT_EQ(file.BarWidth, 80);
    EXPECT_EQ(file.HeaderHeight, 50);
    EXPECT_EQ(file.key, 3);
    EXPECT_EQ(file.start, 32);
    EXPECT_EQ(file.text1, "some words");
    ASSERT_EQ(file.items.size(), 1U);
    const LyricsItem& item = file.items.front();
    EXPECT_EQ(item.page, 1);
    EXPECT_EQ(item.left, 100);
    EXPECT_EQ(item.top, 200.5);
    EXPECT_EQ(item.y, 210);
    EXPECT_EQ(item.size, 12);
    EXPECT_EQ(item.font, "Times New Roman");
    EXPECT_EQ(item.text, "la la");
}

TEST(LyricsFileTest, WhatWasReadIsWrittenByteForByte) {
    EXPECT_EQ(serializeLyrics(parseLyrics(kWhole)), kWhole);
    const std::string odd = std::string(kItem) + "   far in   \r\n";
    EXPECT_EQ(serializeLyrics(parseLyrics(odd)), odd);
    EXPECT_EQ(parseLyrics(odd).items.front().text, "far in");
}

TEST(LyricsFileTest, AFileOfATitleSaysNothingElse) {
    const LyricsFile file = parseLyrics("Title=Lbar=9, Label2= 3\r\n");
    EXPECT_EQ(file.title, "Lbar=9, Label2= 3");
    EXPECT_FALSE(file.BarWidth || file.HeaderHeight || file.width || file.key || file.start || file.text1);
    EXPECT_EQ(serializeLyrics(file), "Title=Lbar=9, Label2= 3\r\n");
}

TEST(LyricsFileTest, LinesMayEndWithLfAlone) {
    std::string text(kWhole);
    std::erase(text, '\r');
    EXPECT_EQ(serializeLyrics(parseLyrics(text)), kWhole);
    text.pop_back();
    EXPECT_EQ(serializeLyrics(parseLyrics(text)), kWhole);
}

TEST(LyricsFileTest, KeysAreFoundWithinALine) {
    const LyricsFile file = parseLyrics("so: Label2=  41 \n\tLbar=80\n");
    EXPECT_EQ(file.HeaderHeight, 41);
    EXPECT_EQ(file.BarWidth, 80);
}

TEST(LyricsFileTest, TheFirstOfTwoValuesCounts) {
    EXPECT_EQ(parseLyrics("Lbar=1\nLbar=2\n").BarWidth, 1);
}

TEST(LyricsFileTest, WhatIsNoNumberCountsAs0) {
    for (const char* const text : {"", "high", "1x", "0x10", "nan", "inf", "1e999", "--1", "+-1", "1,5"}) {
        const LyricsFile file = parseLyrics(std::string("Lbar=") + text + "\ntext4=" + text);
        EXPECT_EQ(file.BarWidth, 0) << text;
        EXPECT_EQ(file.start, 0) << text;
    }
    EXPECT_EQ(parseLyrics("text4= -2.5").start, -2);
    EXPECT_EQ(parseLyrics("text4=+7").start, 7);
    EXPECT_EQ(parseLyrics("text4=1e30").start, 2147483647);
}

TEST(LyricsFileTest, KeysWithinATextDoNoHarm) {
    EXPECT_EQ(itemWith("see Page : 7 Left: 3").text, "see Page : 7 Left: 3");
    EXPECT_EQ(itemWith("Text=Text= x").text, "Text=Text= x");
    const LyricsFile file = parseLyrics(std::string(kItem) + "Lbar=5 Title=none\r\ntext1=Page : 1\r\n");
    EXPECT_FALSE(file.BarWidth || file.title);
    EXPECT_EQ(file.items.size(), 1U);
    EXPECT_EQ(file.text1, "Page : 1");
}

TEST(LyricsFileTest, LinesOfTheCleanPageComeBackBehindAllElse) {
    const LyricsFile file = parseLyrics(std::string("Words=la Lbar=9\nComposer=Page : 1\n").append(kItem));
    EXPECT_FALSE(file.BarWidth);
    EXPECT_EQ(file.items.size(), 1U);
    EXPECT_EQ(serializeLyrics(file), std::string(kItem) + "\r\nWords=la Lbar=9\r\nComposer=Page : 1\r\n");
}

TEST(LyricsFileTest, ALineWithoutAllKeysIsNoText) {
    for (std::size_t length = 0; length + 2 < kItem.size(); ++length)
        EXPECT_TRUE(parseLyrics(kItem.substr(0, length)).items.empty()) << length;
    EXPECT_EQ(itemWith("").text, "");
}

TEST(LyricsFileTest, WhatIsNotUtf8IsWindows1252) {
    EXPECT_EQ(parseLyrics("Title=F\xFCr \x93\x80\x94").title, "Für “€”");
    EXPECT_EQ(parseLyrics("Title=Für ♪").title, "Für ♪");
    EXPECT_EQ(parseLyrics("\xEF\xBB\xBFTitle=Für").title, "Für");
    EXPECT_EQ(itemWith("\xE9").line, std::string(kItem) + "é");
}

TEST(LyricsFileTest, ANewTextHasOneLine) {
    const LyricsItem item{
        .page = 2, .left = 10.5, .top = -3, .y = 4, .size = 8, .font = "Arial", .text = "a\r\nb"};
    EXPECT_EQ(lineOf(item), " Page : 2 Left: 10.5 Top: -3 : Pic1.CurrentY= 4 Pic1.FontSize= 8 "
                            "Pic1.FontName= Arial  Text= a  b");
    EXPECT_EQ(serializeLyrics({.title = "two\nlines"}), "Title=two lines\r\n");
}

TEST(LyricsFileTest, NumbersAreAsShortAsTheyCanBe) {
    EXPECT_EQ(numberText(1200000), "1200000");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(1e21), "1000000000000000000000");
    EXPECT_EQ(parseLyrics("Lbar=" + numberText(5e-324)).BarWidth, 5e-324);
    EXPECT_EQ(parseLyrics("Lbar=" + numberText(-1.7976931348623157e308)).BarWidth, -1.7976931348623157e308);
}

} // namespace
} // namespace velmora::notation
