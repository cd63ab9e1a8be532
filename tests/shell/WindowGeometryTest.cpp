// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/WindowGeometry.h"

#include <limits>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QSize kLeast(880, 520);

struct Opening {
    const char* about;
    QRect stored;
    QRect screen;
    QRect opens;
};
constexpr int kHuge = std::numeric_limits<int>::max() / 64;
const std::vector<Opening> kOpenings{
    {"never stored on a common screen", {7, 13, 1353, 741}, {0, 0, 1366, 768}, {33, 33, 1233, 701}},
    {"never stored on a small screen", {7, 13, 1011, 573}, {0, 0, 1024, 600}, {33, 33, 891, 533}},
    {"a small window on a large screen stays",
     {100, 200, 900, 560},
     {0, 0, 3840, 2160},
     {100, 200, 900, 560}},
    {"half as wide as the screen is sized", {0, 0, 960, 400}, {0, 0, 1920, 1080}, {33, 33, 1787, 1013}},
    {"four tenths as high is sized", {0, 0, 900, 432}, {0, 0, 1920, 1080}, {33, 33, 1787, 1013}},
    {"just below both is not", {4, 5, 959, 431}, {0, 0, 1920, 1080}, {4, 5, 959, 520}},
    {"beyond the right lower corner", {5000, 4000, 900, 560}, {0, 0, 3840, 2160}, {2940, 1600, 900, 560}},
    {"beyond the left upper corner", {-5000, -4000, 900, 560}, {0, 0, 3840, 2160}, {0, 0, 900, 560}},
    {"smaller than the least", {10, 10, 20, 20}, {0, 0, 3840, 2160}, {10, 10, 880, 520}},
    {"no size at all", {10, 10, 0, 0}, {0, 0, 3840, 2160}, {10, 10, 880, 520}},
    {"a screen smaller than the least", {0, 0, 900, 560}, {0, 0, 640, 480}, {0, 0, 640, 480}},
    {"a screen that begins elsewhere", {0, 0, 1800, 900}, {1920, 24, 1366, 744}, {1953, 57, 1233, 677}},
    {"a place far too large", {kHuge, kHuge, 900, 560}, {0, 0, 3840, 2160}, {2940, 1600, 900, 560}},
    {"a size far too large", {0, 0, kHuge, kHuge}, {0, 0, 1366, 768}, {33, 33, 1233, 701}},
};
} // namespace

TEST(WindowGeometryTest, TheComposingWindowOpensByTheStartRule) {
    for (const Opening& row : kOpenings)
        EXPECT_EQ(openingFrame(row.stored, row.screen, kLeast), row.opens) << row.about;
}

TEST(WindowGeometryTest, TheComposingWindowIsAlwaysOnTheScreen) {
    for (const Opening& row : kOpenings)
        EXPECT_TRUE(row.screen.contains(openingFrame(row.stored, row.screen, kLeast))) << row.about;
}

TEST(WindowGeometryTest, StoredLengthsAreInTwips) {
    using Limits = std::numeric_limits<float>;
    EXPECT_EQ(pixelsOfTwips(0), 0);
    EXPECT_EQ(pixelsOfTwips(500), 33);
    EXPECT_EQ(pixelsOfTwips(-1500), -100);
    EXPECT_EQ(pixelsOfTwips(Limits::quiet_NaN()), 0);
    EXPECT_EQ(pixelsOfTwips(Limits::max()), 1'000'000);
    EXPECT_EQ(pixelsOfTwips(-Limits::infinity()), -1'000'000);
}

TEST(WindowGeometryTest, AnyStoredFrameOpensOnTheScreen) {
    const QRect screen(0, 0, 1366, 768);
    for (const float x : {-3e38F, 0.0F, 3e38F})
        for (const float size : {-3e38F, 0.0F, 3e38F}) {
            const QRect stored(pixelsOfTwips(x), pixelsOfTwips(x), pixelsOfTwips(size), pixelsOfTwips(size));
            EXPECT_TRUE(screen.contains(openingFrame(stored, screen, kLeast))) << x << " " << size;
        }
}

TEST(WindowGeometryTest, ThePiecesOfAFrameMeetAndDoNotOverlap) {
    constexpr QSize kWindow(100, 60);
    std::vector<QRect> pieces;
    for (const Qt::Edges edges : kFrameEdges)
        pieces.push_back(framePiece(edges, kWindow, 4, 8));
    EXPECT_THAT(pieces, testing::ElementsAre(QRect(0, 8, 4, 44), QRect(96, 8, 4, 44), QRect(8, 0, 84, 4),
                                             QRect(8, 56, 84, 4), QRect(0, 0, 8, 8), QRect(92, 0, 8, 8),
                                             QRect(0, 52, 8, 8), QRect(92, 52, 8, 8)));
    for (std::size_t i = 0; i < pieces.size(); ++i)
        for (std::size_t j = i + 1; j < pieces.size(); ++j)
            EXPECT_FALSE(pieces[i].intersects(pieces[j])) << i << " and " << j;
}

TEST(WindowGeometryTest, AWindowSmallerThanItsCornersHasNoSides) {
    EXPECT_TRUE(framePiece(Qt::LeftEdge, {10, 10}, 4, 8).isEmpty());
    EXPECT_TRUE(framePiece(Qt::TopEdge, {10, 10}, 4, 8).isEmpty());
}

TEST(WindowGeometryTest, ADraggedEdgeMovesAloneAndStopsAtTheLeastSize) {
    const QRect frame(100, 100, 200, 100);
    struct Row {
        Qt::Edges edges;
        QPoint by;
        QRect becomes;
    };
    const std::vector<Row> rows{
        {Qt::LeftEdge, {-10, 5}, {90, 100, 210, 100}},
        {Qt::RightEdge, {10, 5}, {100, 100, 210, 100}},
        {Qt::TopEdge, {5, -10}, {100, 90, 200, 110}},
        {Qt::BottomEdge, {5, 10}, {100, 100, 200, 110}},
        {Qt::LeftEdge | Qt::TopEdge, {10, 10}, {110, 110, 190, 90}},
        {Qt::RightEdge | Qt::TopEdge, {10, 10}, {100, 110, 210, 90}},
        {Qt::LeftEdge | Qt::BottomEdge, {10, 10}, {110, 100, 190, 110}},
        {Qt::RightEdge | Qt::BottomEdge, {10, 10}, {100, 100, 210, 110}},
        {Qt::LeftEdge, {500, 0}, {250, 100, 50, 100}},
        {Qt::RightEdge, {-500, 0}, {100, 100, 50, 100}},
        {Qt::TopEdge, {0, 500}, {100, 160, 200, 40}},
        {Qt::BottomEdge, {0, -500}, {100, 100, 200, 40}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(resizedFrame(frame, row.edges, row.by, {50, 40}), row.becomes)
            << static_cast<int>(row.edges) << " by " << row.by.x() << ", " << row.by.y();
}

namespace {
constexpr QSize kWhole(520, 340);
constexpr QSize kFoldedTool(520, 72);
} // namespace

TEST(WindowGeometryTest, AToolFirstStandsBesideItsWindowWhereThereIsRoom) {
    const QRect screen(0, 0, 1920, 1080);
    EXPECT_EQ(firstPlace(QRect(33, 33, 1233, 701), screen, kWhole, kFoldedTool),
              (FirstPlace{QPoint(33 + 1232 + 8, 33), false}));
}

TEST(WindowGeometryTest, OtherwiseInItsLowerRightAndFoldedWhereItWouldCoverHalf) {
    const FirstPlace large =
        firstPlace(QRect(33, 33, 1233, 701), QRect(0, 0, 1366, 768), kWhole, kFoldedTool);
    EXPECT_EQ(large, (FirstPlace{QPoint(33 + 1232 - 28 - 520, 33 + 700 - 56 - 340), false}));
    const FirstPlace small = firstPlace(QRect(33, 33, 891, 533), QRect(0, 0, 1024, 600), kWhole, kFoldedTool);
    EXPECT_EQ(small, (FirstPlace{QPoint(33 + 890 - 28 - 520, 33 + 532 - 56 - 72), true}));
}

TEST(WindowGeometryTest, AToolIsOnTheScreenInAnyCase) {
    const QRect screen(100, 50, 640, 480);
    for (const QRect& around : {QRect(-5000, -5000, 300, 200), QRect(9000, 9000, 2000, 1500), QRect()}) {
        const FirstPlace place = firstPlace(around, screen, kWhole, kFoldedTool);
        EXPECT_TRUE(screen.contains(QRect(place.corner, place.folded ? kFoldedTool : kWhole)));
    }
    EXPECT_EQ(onScreen({-10, 900}, {700, 500}, screen), QPoint(100, 50)) << "too large for it";
}

TEST(WindowGeometryTest, AWindowToBeReadStandsBesideOrLeavesTheMenusSeen) {
    constexpr QSize kReadable(880, 640);
    constexpr QSize kLeastReadable(560, 360);
    const QRect wide(0, 0, 2560, 1440);
    EXPECT_EQ(readingFrame(QRect(33, 33, 1233, 701), wide, kReadable, kLeastReadable, 52),
              QRect(QPoint(1266, 33), kReadable));
    for (const auto& [around, screen] : {std::pair(QRect(33, 33, 1233, 701), QRect(0, 0, 1366, 768)),
                                         std::pair(QRect(33, 33, 891, 533), QRect(0, 0, 1024, 600)),
                                         std::pair(QRect(0, 0, 1366, 768), QRect(0, 0, 1366, 768))}) {
        const QRect frame = readingFrame(around, screen, kReadable, kLeastReadable, 52);
        EXPECT_GE(frame.top(), around.top() + 52);
        EXPECT_TRUE(screen.contains(frame));
        EXPECT_NEAR(frame.center().x(), around.center().x(), 60);
        EXPECT_GE(frame.height(), kLeastReadable.height());
    }
}

TEST(WindowGeometryTest, OnWaylandNobodySaysWhereAWindowStands) {
    EXPECT_FALSE(tellsPlaces(u"wayland"));
    EXPECT_FALSE(tellsPlaces(u"wayland-egl"));
    EXPECT_TRUE(tellsPlaces(u"xcb"));
    EXPECT_TRUE(tellsPlaces(u"offscreen"));
}
