// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrinterSummary.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

TEST(PrinterSummaryTest, EveryScaleModeHasItsWords) {
    for (const ScaleModeRow& row : kScaleModes)
        EXPECT_EQ(scaleModeText(row.mode), row.text);
    EXPECT_EQ(scaleModeText(7), "Centiimeters");
    EXPECT_EQ(scaleModeText(2), "");
}

TEST(PrinterSummaryTest, PaperAndTurnHaveTheirWords) {
    EXPECT_EQ(paperText(1), "Letter (8.5 x 11 in.)");
    EXPECT_EQ(paperText(9), "A4 (197 x 210 mm.)");
    EXPECT_EQ(paperText(5), "");
    EXPECT_EQ(turnText(1), "Portrait");
    EXPECT_EQ(turnText(2), "Landscape");
    EXPECT_EQ(turnText(0), "");
    EXPECT_EQ(paperOfCode(9), PaperSize::A4);
    EXPECT_FALSE(paperOfCode(5));
    EXPECT_FALSE(turnOfCode(3));
}

TEST(PrinterSummaryTest, APrintersOptionsAreUnderstood) {
    const auto properties = [](std::string media, std::string turn, std::string dots) {
        Printer printer;
        printer.options = {{"media", std::move(media)},
                           {"orientation-requested", std::move(turn)},
                           {"printer-resolution", std::move(dots)}};
        return propertiesOf(printer);
    };
    EXPECT_EQ(properties("iso_a4_210x297mm", "", "").PaperSize, 9);
    EXPECT_EQ(properties("na_letter_8.5x11in,tray-1", "", "").PaperSize, 1);
    EXPECT_EQ(properties("Legal", "", "").PaperSize, 5);
    EXPECT_EQ(properties("napkin", "", "").PaperSize, 0);
    EXPECT_EQ(properties("", "3", "").Orientation, 1);
    EXPECT_EQ(properties("", "4", "").Orientation, 2);
    EXPECT_EQ(properties("", "none", "").Orientation, 0);
    EXPECT_EQ(properties("", "", "1200x600dpi").quality, 1200);
    EXPECT_EQ(propertiesOf({}).PaperSize, 0);
}

} // namespace
} // namespace velmora::notation
