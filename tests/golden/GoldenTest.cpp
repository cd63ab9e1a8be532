// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "golden/GoldenWindows.h"
#include "golden/PartsSheet.h"
#include "shell/openerF.h"
#include "tableau/form1.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
struct Case {
    int skin;
    int scale;
};
std::vector<Case> cases(std::initializer_list<int> skins) {
    std::vector<Case> list;
    for (const int skin : skins)
        for (const int scale : {1, 2})
            list.push_back({skin, scale});
    return list;
}
std::string caseName(const testing::TestParamInfo<Case>& info) {
    return "Skin" + std::to_string(info.param.skin) + "Scale" + std::to_string(info.param.scale);
}

/// What a picture is called: the window's name, the skin and the scale factor.
void expectGolden(const char* window, const Case& of, const QImage& picture) {
    const QString name = QStringLiteral("%1-skin%2-x%3").arg(window).arg(of.skin).arg(of.scale);
    const QString wrong = checkAgainstGolden(name, picture, of.scale);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
}

void settle(QWidget& window) {
    window.show();
    QCoreApplication::processEvents();
}
} // namespace

class InEverySkin : public testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Golden, InEverySkin, testing::ValuesIn(cases({1, 2, 3, 4, 5, 6, 7, 8})), caseName);

TEST_P(InEverySkin, TheStartWindowLooksAsKept) {
    GoldenProgram program(GetParam().skin);
    openerF window(program.skins, program.tips);
    settle(window);
    expectGolden("openerF", GetParam(), pictureOf(window, GetParam().scale));
}

TEST_P(InEverySkin, TheEmptyComposingWindowLooksAsKept) {
    GoldenProgram program(GetParam().skin);
    form1 window(program.desk());
    window.resize(880, 520);
    settle(window);
    expectGolden("form1", GetParam(), pictureOf(window, GetParam().scale));
}

class InSomeSkins : public testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Golden, InSomeSkins, testing::ValuesIn(cases({1, 6, 7})), caseName);

TEST_P(InSomeSkins, TheSheetOfPartsLooksAsKept) {
    GoldenProgram program(GetParam().skin);
    expectGolden("parts", GetParam(), pictureOfParts(program.skins.look(), program.menu, GetParam().scale));
}

TEST(GoldenTest, TheComposingWindowOnACommonScreenLooksAsKept) {
    GoldenProgram program(1);
    form1 window(program.desk());
    window.resize(1366, 768);
    settle(window);
    expectGolden("form1-1366x768", {1, 1}, pictureOf(window, 1));
}

TEST(GoldenPictureTest, APictureIsLikeItself) {
    QImage picture(64, 64, QImage::Format_RGB888);
    picture.fill(Qt::white);
    EXPECT_TRUE(compare(picture, picture, 1).isTolerable());
}

TEST(GoldenPictureTest, AShadeOfAnEdgeMayChange) {
    QImage one(64, 64, QImage::Format_RGB888);
    one.fill(QColor(100, 100, 100));
    QImage other = one;
    other.fill(QColor(124, 100, 76));
    EXPECT_TRUE(compare(one, other, 1).isTolerable());
    other.fill(QColor(125, 100, 100));
    EXPECT_FALSE(compare(one, other, 1).isTolerable());
}

TEST(GoldenPictureTest, ALostIconIsSeenOnALargePicture) {
    QImage one(880, 520, QImage::Format_RGB888);
    one.fill(Qt::white);
    QImage other = one;
    for (int x = 100; x < 110; ++x)
        for (int y = 100; y < 110; ++y)
            other.setPixel(x, y, qRgb(0, 0, 0));
    const Difference difference = compare(one, other, 1);
    EXPECT_EQ(difference.pixels, 100);
    EXPECT_LT(difference.share, 0.002);
    EXPECT_FALSE(difference.isTolerable());
}

TEST(GoldenPictureTest, AnotherSizeIsNeverTolerated) {
    const QImage one(10, 10, QImage::Format_RGB888);
    const QImage other(10, 11, QImage::Format_RGB888);
    EXPECT_FALSE(compare(one, other, 1).isTolerable());
}
