// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/EngravedGolden.h"
#include "golden/EngravingPage.h"
#include "golden/EngravingRules.h"
#include "golden/GoldenPicture.h"
#include "golden/GoldenPieces.h"
#include "golden/ReadingText.h"
#include "notation/EngravedText.h"
#include "notation/Engraver.h"
#include "notation/MarkBox.h"
#include "notation/ModScore.h"
#include "notation/PageFiles.h"
#include "notation/PngFile.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QString>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

using namespace velmora;
using notation::EngravedScore;
using notation::ScoreSetup;

namespace {
constexpr int kRulesScale = 2;
constexpr int kRulesHeight = 600;
constexpr int kMargin = 12; ///< round what is drawn, in the picture's pixels
constexpr double kPieceWidth = 794;
constexpr std::size_t kPagesWithPictures = 2;

QString textOf(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

EngravedScore engraved(const TypedMusic& music) {
    const auto measure = notation::fontMeasure();
    return WriteScore(readScore(music.score, music.meter, music.setup), music.setup, *measure);
}

TypedMusic musicOf(const GoldenPiece& piece, bool isClassic) {
    TypedMusic music(piece.music);
    ScoreSetup& setup = music.setup;
    setup.classicPage = isClassic;
    if (isClassic) // finds no key by itself
        setup.key = readClean(music.score, music.meter, setup).key;
    setup.title = piece.title;
    setup.composer = piece.composer;
    setup.tempoWords = piece.tempoWords;
    setup.tempo = piece.tempo;
    if (!piece.words.empty())
        setup.verses = {std::string(piece.words)};
    setup.pageWidth = kPieceWidth;
    setup.pageHeight = piece.height;
    return music;
}

EngravedScore pageAlone(const EngravedScore& score, std::size_t index) {
    return {score.width, score.height, score.styles, {score.pages[index]}};
}

/// Every page of a piece is as kept, of the later ones their marks alone; and there are no others.
void expectAsKept(const GoldenPiece& piece, bool isClassic) {
    const EngravedScore score = engraved(musicOf(piece, isClassic));
    const QString name =
        QStringLiteral("pieces/%1-%2-%3").arg(textOf(piece.name), isClassic ? "classic" : "clean");
    for (std::size_t i = 0; i < score.pages.size(); ++i) {
        const EngravedScore page = pageAlone(score, i);
        const QString pageName = name.arg(i + 1);
        const std::string list = engravedText(page);
        const QString wrong = i < kPagesWithPictures
                                  ? checkEngraved(pageName, list, pngOf(page, page.pages[0], 1), 1)
                                  : checkKeptText("tests/golden/" + pageName + ".txt", list);
        EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    }
    const QString more = checkNotKept(name.arg(score.pages.size() + 1));
    EXPECT_TRUE(more.isEmpty()) << qPrintable(more);
}

TypedMusic musicOf(const EngravingRule& rule) {
    TypedMusic music(rule.music);
    music.setup.title = " "; // none at all
    music.setup.pageWidth = rule.width;
    music.setup.pageHeight = kRulesHeight;
    if (rule.adjust != nullptr)
        rule.adjust(music.setup);
    return music;
}

struct Box {
    int left, top, right, bottom; ///< the latter two behind it
};

/// What isn't white, and a margin.
Box inkOf(const std::vector<std::uint32_t>& pixels, int width, int height) {
    Box ink{width, height, 0, 0};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (pixels[static_cast<std::size_t>(y * width + x)] != 0xFFFFFFFF)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
    return {std::max(ink.left - kMargin, 0), std::max(ink.top - kMargin, 0),
            std::min(ink.right + kMargin, width), std::min(ink.bottom + kMargin, height)};
}

/// What is drawn on the first page, without the blank paper round it.
std::string cutPicture(const EngravedScore& score) {
    const int width = static_cast<int>(score.width) * kRulesScale;
    const int height = static_cast<int>(score.height) * kRulesScale;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
    notation::paintPixels(score, score.pages[0], kRulesScale, 0, 0, width, height, pixels.data());
    const Box ink = inkOf(pixels, width, height);
    std::vector<std::uint8_t> grey, colours;
    bool isGrey = true;
    for (int y = ink.top; y < ink.bottom; ++y)
        for (int x = ink.left; x < ink.right; ++x) {
            const std::uint32_t pixel = pixels[static_cast<std::size_t>(y * width + x)];
            for (const int shift : {16, 8, 0})
                colours.push_back(static_cast<std::uint8_t>(pixel >> shift));
            grey.push_back(colours.back());
            isGrey = isGrey && (pixel >> 16 & 0xFF) == grey.back() && (pixel >> 8 & 0xFF) == grey.back();
        }
    return isGrey ? notation::pngOfGrey(ink.right - ink.left, ink.bottom - ink.top, grey)
                  : notation::pngOfColours(ink.right - ink.left, ink.bottom - ink.top, colours);
}
} // namespace

class PieceOnPages : public testing::TestWithParam<GoldenPiece> {};
INSTANTIATE_TEST_SUITE_P(Golden, PieceOnPages, testing::ValuesIn(goldenPieces()),
                         [](const auto& piece) { return std::string(piece.param.name); });
TEST_P(PieceOnPages, IsCleanAsKept) {
    expectAsKept(GetParam(), false);
}
TEST_P(PieceOnPages, IsClassicAsKept) {
    expectAsKept(GetParam(), true);
}

TEST(NotationGoldenTest, EveryRuleReadsAndLooksAsKept) {
    for (const EngravingRule& rule : engravingRules()) {
        const TypedMusic music = musicOf(rule);
        EXPECT_EQ(readingText(readScore(music.score, music.meter, music.setup)), rule.reads) << rule.name;
        const EngravedScore score = engraved(music);
        EXPECT_EQ(score.pages.size(), 1U) << rule.name;
        const QString wrong = checkEngraved(QStringLiteral("rules/%1").arg(textOf(rule.name)),
                                            engravedText(score), cutPicture(score), kRulesScale);
        EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    }
}

TEST(NotationGoldenTest, RulesHaveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const EngravingRule& rule : engravingRules())
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
}

TEST(NotationGoldenTest, ThePageOfRulesTellsOfEachWithItsPicture) {
    const std::string page = engravingPage();
    const QString wrong = checkKeptText("docs/engraving.md", page);
    EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    for (const EngravingRule& rule : engravingRules())
        for (const std::string_view part : {rule.rule, rule.reason, rule.reads, rule.source}) {
            EXPECT_FALSE(part.empty()) << rule.name;
            EXPECT_THAT(page, testing::HasSubstr(std::string(part)));
        }
}

TEST(NotationGoldenTest, AMarkThatMovesByAPixelIsNamed) {
    if (isRemakingGolden())
        GTEST_SKIP() << "it would be stored";
    const EngravingRule& rule = engravingRules().front();
    EngravedScore score = engraved(musicOf(rule));
    const std::string png = cutPicture(score);
    notation::moveMark(score.pages[0].marks.back(), 1, 0);
    const QString wrong = checkEngraved(QStringLiteral("rules/%1").arg(textOf(rule.name)),
                                        engravedText(score), png, kRulesScale);
    EXPECT_THAT(wrong.toStdString(), testing::HasSubstr("is now"));
}

TEST(NotationGoldenTest, PixelsDecideWhereBytesDiffer) {
    if (isRemakingGolden())
        GTEST_SKIP() << "it would be stored";
    const EngravingRule& rule = engravingRules().front();
    const EngravedScore score = engraved(musicOf(rule));
    QImage picture = QImage::fromData(QByteArray::fromStdString(cutPicture(score)));
    const auto check = [&] {
        QBuffer file;
        EXPECT_TRUE(picture.save(&file, "PNG", 100)); // compressed in another way
        return checkEngraved(QStringLiteral("rules/%1").arg(textOf(rule.name)), engravedText(score),
                             file.data().toStdString(), kRulesScale);
    };
    EXPECT_EQ(check(), QString());
    picture.invertPixels();
    EXPECT_THAT(check().toStdString(), testing::HasSubstr("pixels differ"));
}

TEST(MusicTextTest, WhatCanNotBeReadIsNamed) {
    for (const std::string_view notes : {"h4:4", "c4", "c4:0", "c4/blue:4", "c4:3 |", "_:4", "c4:5000"})
        EXPECT_THROW(TypedMusic(MusicText{.voices = {{{"0t", notes}}}}), std::invalid_argument) << notes;
    EXPECT_THROW(TypedMusic(MusicText{.voices = {{{"9", "snare:4"}}}}), std::invalid_argument);
    EXPECT_THROW(TypedMusic(MusicText{.key = "H"}), std::invalid_argument);
    EXPECT_NO_THROW(TypedMusic(MusicText{.voices = {{{"0t", "c4:4 bb3/min7 _ r | c8:16"}}}}));
}
