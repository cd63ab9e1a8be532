// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/GuidePainter.h"

#include "score/Score.h"
#include "shell/SkinPainter.h"
#include "tableau/TableauFixture.h"

#include <QFontMetrics>
#include <QPainter>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
constexpr QRgb kGround = qRgb(102, 122, 121);
const QRect kPicX(6, 0, 42, 400);

QImage painted(const ViewState& view, qreal scale = 1) {
    QImage image = surfaceOf(60, 400, scale);
    QPainter painter(&image);
    paintGuide(painter, kPicX, view);
    return image;
}
std::vector<std::string> namesOf(const std::array<int, 5>& rows) {
    std::vector<std::string> names;
    for (const int row : rows)
        names.push_back(NoteNames()[static_cast<std::size_t>(row)]);
    return names;
}
int inked(const QImage& image) {
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = kPicX.left(); x <= kPicX.right(); ++x)
            pixels += image.pixel(x, y) != kGround ? 1 : 0;
    return pixels;
}
} // namespace

TEST(GuidePainterTest, StaffLinesBelongToTheRowsOfTheirNames) {
    EXPECT_THAT(namesOf(kTrebleRows), ElementsAre("6F", "6D", "5B", "5G", "5E"));
    EXPECT_THAT(namesOf(kBassRows), ElementsAre("4A", "4F", "4D", "3B", "3G"));
}

TEST(GuidePainterTest, AStaffLineStandsFivePixelsBelowTheTopOfItsRow) {
    const auto linesOf = [](const std::array<int, 5>& rows) {
        std::vector<double> lines;
        for (const int row : rows)
            lines.push_back(staffLineY(row, ViewState{}));
        return lines;
    };
    EXPECT_THAT(linesOf(kTrebleRows), ElementsAre(69, 93, 117, 149, 173));
    EXPECT_THAT(linesOf(kBassRows), ElementsAre(229, 261, 285, 309, 341));
}

TEST(GuidePainterTest, ARowIsSharpExactlyIfItsNameEndsSo) {
    for (int row = 0; row <= kLastRow; ++row)
        EXPECT_EQ(isSharpRow(row), NoteNames()[static_cast<std::size_t>(row)].ends_with('#')) << row;
    EXPECT_FALSE(isSharpRow(-1));
    EXPECT_FALSE(isSharpRow(128));
}

TEST(GuidePainterTest, StaffNamesAreBlackAndOthersWhite) {
    const ViewState view;
    const QImage image = painted(view, 2).copy(12, 0, 84, 800);
    for (int row = 48; row < 80; ++row) {
        const bool staff = std::ranges::count(kTrebleRows, row) + std::ranges::count(kBassRows, row) > 0;
        int white = 0;
        int black = 0;
        const int top = (row - view.ViewTopRow) * view.Line_Height * 2;
        for (int y = top + 5; y < top + 15; ++y)
            for (int x = 0; x < image.width(); ++x) {
                white += qGray(image.pixel(x, y)) > 200 ? 1 : 0;
                black += qGray(image.pixel(x, y)) < 40 ? 1 : 0;
            }
        EXPECT_GT(staff ? black : white, 5) << row;
        EXPECT_EQ(staff ? white : black, 0) << row;
    }
}

TEST(GuidePainterTest, NamesAreLargerFromARowHeightOfNine) {
    ViewState view;
    view.ViewRows = 20;
    const int small = inked(painted(view));
    view.Line_Height = 9;
    EXPECT_GT(inked(painted(view)), small);
}

TEST(GuidePainterTest, NothingIsPaintedOutsideOfIt) {
    const QImage image = painted(ViewState{});
    for (int y = 0; y < 400; ++y) {
        ASSERT_EQ(image.pixel(5, y), qRgb(1, 2, 3));
        ASSERT_EQ(image.pixel(48, y), qRgb(1, 2, 3));
    }
}

TEST(GuidePainterTest, RowsWithoutANameLeaveTheGroundBare) {
    ViewState view;
    view.ViewTopRow = 200;
    EXPECT_EQ(inked(painted(view)), 0);
    EXPECT_EQ(sideBarText(view), "");
    view.ViewTopRow = -300;
    EXPECT_EQ(inked(painted(view)), 0);
}

TEST(GuidePainterTest, ARowHeightOfNothingDoesNoHarm) {
    ViewState view;
    for (const int height : {0, -8, 32767}) {
        view.Line_Height = height;
        EXPECT_EQ(painted(view).pixel(10, 399), kGround) << height;
    }
}

TEST(GuidePainterTest, TheSideBarHoldsTheNamesALineEach) {
    ViewState view;
    view.ViewTopRow = 66;
    view.ViewRows = 3;
    EXPECT_EQ(sideBarText(view), "5C#\n5C\n4B\n4Bb");
    view.ViewTopRow = 126;
    EXPECT_EQ(sideBarText(view), "0C#\n0C");
}

TEST(GuidePainterTest, NamesGrowWithTheirRowsAndStayOnTheGuide) {
    int before = 0;
    for (const int height : {8, 9, 14, 20, 24, 40}) {
        const int size = rowNameSize(height, RowNames::Growing);
        EXPECT_GE(size, before);
        EXPECT_LE(QFontMetrics(textFont(size)).horizontalAdvance("6Bb"), 47 - 10 - 8) << "the guide's room";
        before = size;
    }
    EXPECT_GT(rowNameSize(24, RowNames::Growing), rowNameSize(9, RowNames::Growing));
    EXPECT_EQ(rowNameSize(24, RowNames::OfTwoSizes), rowNameSize(9, RowNames::OfTwoSizes));
}

TEST(GuidePainterTest, ANameStandsOnTheLineThroughItsRow) {
    for (const int height : {8, 12, 24}) {
        ViewState view;
        view.Line_Height = height;
        view.ViewTopRow = view.ViewRows = 0; // "9G" alone
        QImage image = surfaceOf(60, 400);
        QPainter painter(&image);
        paintGuide(painter, kPicX, view, RowNames::Growing);
        painter.end();
        int first = 400;
        int last = 0;
        for (int y = 0; y < 400; ++y)
            for (int x = kPicX.left(); x <= kPicX.right(); ++x)
                if (image.pixel(x, y) != kGround) {
                    first = std::min(first, y);
                    last = std::max(last, y);
                }
        EXPECT_NEAR((first + last) / 2.0, staffLineY(0, view), 1.5) << height;
    }
}
