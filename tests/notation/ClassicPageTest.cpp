// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicNotes.h"
#include "notation/ClassicStaff.h"
#include "notation/Keys.h"
#include "tests/notation/ClassicMusic.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <random>

using namespace velmora;
using namespace velmora::notation;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

struct ClassicPage : testing::Test {
    ClassicMusic music;

    /// Bars of rest.
    void rests(int bars) {
        music.setup.end = bars * 16;
        music.stroke(0, 60, 0, 0);
    }
    void percussion() {
        music.setup.staves = {};
        music.setup.staves.chkChannel[8] = true;
    }
};

struct LedgerRow {
    int first, last;
    std::vector<int> lines;
    int left;
};

template<class Draw>
std::vector<std::string> linesDrawn(Draw draw) {
    EngravedScore score;
    ClassicInk ink(score.pages.emplace_back());
    draw(ink);
    auto lines = ClassicMusic::linesOf(engravedText(score));
    lines.erase(lines.begin());
    return lines;
}

} // namespace

TEST_F(ClassicPage, BeginsWithTitleTimeSignatureAndTheRuledStaff) {
    rests(1);
    music.setup.title = "my tune";
    auto lines = music.drawn();
    lines.resize(11);
    EXPECT_THAT(lines, ElementsAre("page 1 794 1123", "text 32 20 My tune", "text 30 98 4", "text 30 110 4",
                                   "image Image14 0 95", "line 3 100 788 100 1", "line 3 108 788 108 1",
                                   "line 3 116 788 116 1", "line 3 124 788 124 1", "line 3 132 788 132 1",
                                   "line 3 100 3 132 1"));
    EXPECT_EQ(music.engrave().pages.front().caption, "My tune         Page 1");
}

TEST_F(ClassicPage, AQuarterMovesThePenByItsShareAndByTheStepsWritten) {
    music.tune({60, 60}, 4);
    EXPECT_THAT(music.music(),
                ElementsAre("image Img4UP 43 100", "image Img4UP 75 100", "line 137 114 147 114 4",
                            "line 210 100 210 132 1", "line 213 100 213 132 1", "line 214 100 214 132 1",
                            "line 215 100 215 132 1"));
}

TEST_F(ClassicPage, SymmetricalSpacingGivesAQuarterThirtySix) {
    music.setup.spacing = NoteSpacing::Symmetrical;
    music.tune({60, 60}, 4);
    EXPECT_THAT(music.drawn("image Img4UP"), ElementsAre("image Img4UP 43 100", "image Img4UP 96 100"));
}

TEST_F(ClassicPage, AWholeNoteIsFourEllipsesAndMovesItsSigns) {
    music.tune({66}, 16);
    EXPECT_THAT(music.music(), ElementsAre("ellipse 87 140 5 0.63 open", "ellipse 87 140 4 0.80 open",
                                           "ellipse 88 140 4 0.80 open", "ellipse 86 140 4 0.80 open",
                                           "image ImgSharp 64 124", "line 81 140 96 140 1",
                                           "line 212 100 212 132 1", "line 215 100 215 132 1"));
}

TEST_F(ClassicPage, SignAndLedgerLinesStandBesideTheImage) {
    music.setup.key = 6;
    music.tune({64, 68}, 4); // Eb and, below the staff, B
    EXPECT_THAT(music.music(), IsSupersetOf({"image ImgFlat 32 119", "line 83 140 98 140 1"}));
}

TEST_F(ClassicPage, DotsStandWhereTheirValueHasThem) {
    music.tune({60}, 12);
    EXPECT_THAT(music.drawn("ellipse"),
                ElementsAre("ellipse 68 122 1 1.00 filled", "ellipse 68 124 1 1.00 filled"));
    EXPECT_THAT(ClassicMusic().tune({60}, 6).drawn("ellipse"),
                ElementsAre("ellipse 68 122 1 1.00 filled", "ellipse 68 123 1 1.00 filled"));
    EXPECT_THAT(ClassicMusic().tune({60}, 3).drawn("ellipse"),
                ElementsAre("ellipse 68 122 1 1.00 filled", "ellipse 68 121 1 1.00 filled"));
}

TEST_F(ClassicPage, AHalfNoteMovesThePenByAnEighthOfTheBarWidthMore) {
    music.tune({60, 60}, 8);
    // 57 + 7.5, to the even one, + 30 + 7 * 4 = 122, and 5 before the next
    EXPECT_THAT(music.drawn("image Img2UP"), ElementsAre("image Img2UP 43 100", "image Img2UP 113 100"));
}

TEST_F(ClassicPage, ThePiecesOfANoteStandInARow) {
    music.tune({60}, 5);
    EXPECT_THAT(music.drawn("image Img"), IsSupersetOf({"image Img4UP 43 100", "image Img16UP 75 100"}));
}

TEST_F(ClassicPage, AGroupTakesTheFirstNotesDirectionAndTheOthersAreFlipped) {
    music.setup.joinNotes = 4;
    music.tune({60, 50, 60, 50}, 2);
    EXPECT_THAT(music.music(),
                ElementsAre("image Img4UP 43 100", "image Img4UP 58 76", "image Img4UP 70 100",
                            "image Img4UP 82 76", "line 62 76 99 76 3", "line 61 100 61 76 1",
                            "line 76 76 76 76 1", "line 88 100 88 76 1", "line 100 76 100 76 1",
                            "line 141 114 151 114 4", testing::_, testing::_, testing::_, testing::_));
}

TEST_F(ClassicPage, AGroupThatBeginsDownFlipsTheOthersDown) {
    music.setup.joinNotes = 4;
    music.tune({50, 60, 50, 60}, 2);
    EXPECT_THAT(music.drawn("image Img4DN"), ElementsAre("image Img4DN 43 93", "image Img4DN 58 118",
                                                         "image Img4DN 70 93", "image Img4DN 82 118"));
    EXPECT_THAT(music.music(), Contains("line 56 150 93 150 3"));
}

TEST_F(ClassicPage, SixteenthsHaveASecondBeamOfTwoLines) {
    music.setup.joinNotes = 2;
    music.tune({50, 50}, 1);
    auto lines = music.music();
    lines.resize(7);
    EXPECT_THAT(lines, ElementsAre("image Img4DN 43 93", "image Img4DN 52 93", "line 56 125 63 125 2",
                                   "line 56 121 63 121 2", "line 56 120 63 120 2", "line 55 123 55 125 1",
                                   "line 64 123 64 125 1"));
    ClassicMusic up;
    up.setup.joinNotes = 2;
    up.tune({60, 60}, 1);
    EXPECT_THAT(up.drawn(),
                IsSupersetOf({"line 62 100 69 100 2", "line 62 103 69 103 2", "line 62 104 69 104 2"}));
}

TEST_F(ClassicPage, ASingleNoteOfAGroupIsFlushedWithItsFlag) {
    music.tune({50}, 2);
    EXPECT_THAT(music.drawn("image Img8"), ElementsAre("image Img8DN 43 94"));
    const auto penOfRest = [&] { return music.drawn("line").at(6); };
    EXPECT_EQ(penOfRest(), "line 85 114 95 114 4"); // 57 + 7.5 + 4 = 68, and 27
    music.setup.joinNotes = 4;
    EXPECT_THAT(music.drawn("image Img8"), ElementsAre("image Img8DN 43 93"));
    // And the pen has moved on by a fifth of the bar width.
    EXPECT_EQ(penOfRest(), "line 97 114 107 114 4");
}

TEST_F(ClassicPage, AFlaggedSixteenthHangsAPixelHigherThanAnEighth) {
    music.tune({50, 50}, 1);
    EXPECT_THAT(music.drawn("image Img16").front(), "image Img16DN 43 93");
}

TEST_F(ClassicPage, SmallRestsStandFromLeftToRight) {
    music.stroke(0, 60, 7, 9);
    EXPECT_THAT(music.drawn("image ImgPause"),
                ElementsAre("image ImgPause4 52 99", "image ImgPause8 62 99", "image ImgPause16 72 98"));
}

TEST_F(ClassicPage, RestsWithAHalfHaveTheirOwnPlaces) {
    music.stroke(0, 60, 15, 1);
    auto lines = music.music();
    lines.resize(4);
    EXPECT_THAT(lines, ElementsAre("image ImgPause8 62 99", "image ImgPause16 72 98", "image ImgPause4 64 99",
                                   "line 69 114 79 114 4"));
    // 52 + 15 + 56.25 + 10 = 133, 5 before the note
    EXPECT_THAT(music.drawn("image Img16"), ElementsAre("image Img16UP 124 100"));
}

TEST_F(ClassicPage, AWholeRestIsABarBelowTheSecondLine) {
    rests(1);
    EXPECT_THAT(music.music().front(), "line 78 111 88 111 4");
}

TEST_F(ClassicPage, ARestLeftOf50IsMovedThere) {
    music.setup.BarWidth = 10;
    music.stroke(0, 60, 2, 14);
    EXPECT_THAT(music.drawn("image ImgPause"), ElementsAre("image ImgPause8 50 99"));
    // The pen stays where it was: 42 + 1.25 + 10, and 5 before the note.
    EXPECT_THAT(music.drawn("image Img2"), ElementsAre("image Img2UP 44 100"));
}

TEST_F(ClassicPage, PercussionStandsOnItsLine) {
    percussion();
    music.stroke(8, 36, 0, 4);
    EXPECT_THAT(music.drawn(),
                IsSupersetOf({"line 3 100 788 100 1", "line 3 100 3 100 1", "image Img4UP 47 81",
                              "image ImgPause4 104 35", "line 109 50 119 50 4"}));
    EXPECT_THAT(music.drawn("image Image"), IsEmpty());
}

TEST_F(ClassicPage, ASystemOfOnePercussionStaffHasBarLinesWithoutLength) {
    percussion();
    music.stroke(8, 36, 0, 16);
    EXPECT_THAT(music.drawn("line").back(), "line 223 100 223 100 1");
    EXPECT_EQ(SystemShape(music.read().staves, 60).SystemHeight, 0);
}

TEST_F(ClassicPage, PercussionStemsLookAtTheLinesPlaceAlone) {
    percussion();
    music.setup.HeaderHeight = 10;
    music.stroke(8, 36, 0, 4);
    EXPECT_THAT(music.drawn("image Img4"), ElementsAre("image Img4DN 47 49"));
}

TEST_F(ClassicPage, HasASecondLineBeforeTheSystemAtOneHeaderOnly) {
    rests(1);
    EXPECT_THAT(music.drawn("line 6"), IsEmpty());
    music.setup.HeaderHeight = 20;
    EXPECT_THAT(music.drawn("line 6 "), ElementsAre("line 6 60 6 92 1"));
}

TEST_F(ClassicPage, StavesShareTheBarAndStartFromOnePen) {
    music.setup.staves.chkChannel[1] = true;
    music.stroke(0, 60, 0, 16).stroke(1, 60, 0, 4).stroke(1, 60, 4, 12);
    music.setup.end = 32;
    const auto lines = music.music();
    // Both begin at 43. The first staff's pen ends at 177; the second's, pushed 16 behind the quarter, since
    // what was written to the bar's end counts as 0, and 48 behind the dotted half, at 193.
    EXPECT_THAT(lines, Contains("image Img4UP 43 192"));
    EXPECT_THAT(music.drawn("line 203"), ElementsAre("line 203 100 203 224 1"));
}

TEST_F(ClassicPage, SevenEmptyBarsFillALine) {
    rests(8);
    EXPECT_THAT(music.drawn("image Image14"), ElementsAre("image Image14 0 95", "image Image14 0 187"));
    EXPECT_THAT(music.drawn("line 672"), ElementsAre("line 672 100 672 132 1"));
    EXPECT_THAT(music.drawn("line 132"), ElementsAre("line 132 100 132 132 1"));
}

TEST_F(ClassicPage, NoBarClosesBeyondTheStaffUnlessItStandsAlone) {
    std::mt19937 random(7);
    for (int i = 0; i < 20; ++i) {
        ClassicMusic dense;
        dense.setup.joinNotes = static_cast<int>(random() % 3) + 2;
        dense.setup.BarWidth = 10 + static_cast<int>(random() % 290);
        for (int position = 0; position < 900;) {
            const int length = 1 + static_cast<int>(random() % 6);
            dense.stroke(0, 40 + static_cast<int>(random() % 60), position, length);
            position += length + static_cast<int>(random() % 3);
        }
        const EngravedScore engraved = dense.engrave();
        double top = -1;
        int bars = 0;
        for (const EngravedPage& page : engraved.pages)
            for (const Mark& mark : page.marks) {
                const auto* line = std::get_if<LineMark>(&mark.shape);
                if (!line || mark.role != Role::BarLine)
                    continue;
                bars = line->from.y == top && line->from.x > 3 ? bars + 1 : 0;
                top = line->from.y;
                if (bars > 1) {
                    EXPECT_LE(line->from.x, 788) << dense.setup.BarWidth;
                }
            }
    }
}

TEST_F(ClassicPage, ElevenLinesFillAPage) {
    rests(7 * 11 + 1);
    const EngravedScore engraved = music.engrave();
    ASSERT_THAT(engraved.pages, SizeIs(2));
    EXPECT_EQ(engraved.pages[1].caption, "Untitled Score         Page 2");
    EXPECT_THAT(music.drawn("text"), ElementsAre("text 32 20 Untitled Score", "text 30 98 4", "text 30 110 4",
                                                 "text 30 98 4", "text 30 110 4"));
    music.setup.titleEveryPage = true;
    EXPECT_THAT(music.drawn("text"), AllOf(SizeIs(8), Contains("text 694 20 Page 2"),
                                           Contains("text 32 20 Untitled Score").Times(2)));
}

TEST_F(ClassicPage, AHundredSystemsAreTheMostOfAPage) {
    percussion();
    music.setup.SpacerHeight = 10;
    music.setup.pageHeight = 10'000;
    music.setup.end = 16 * 7 * 101;
    EXPECT_THAT(music.engrave().pages, SizeIs(2));
}

TEST_F(ClassicPage, TheLastBarHasTwoLinesWhereTheMusicReachesItAndFourElsewhere) {
    music.tune({60}, 16);
    EXPECT_THAT(music.music(), IsSupersetOf({"line 212 100 212 132 1", "line 215 100 215 132 1"}));
    music.setup.end = 32;
    EXPECT_THAT(music.drawn("line 187"), ElementsAre("line 187 100 187 132 1"));
    // 197 + 70 and the lines behind it
    EXPECT_THAT(music.drawn(), IsSupersetOf({"line 302 100 302 132 1", "line 305 100 305 132 1",
                                             "line 306 100 306 132 1", "line 307 100 307 132 1"}));
}

TEST_F(ClassicPage, RepeatSignsEndTheScoreWithANormalBar) {
    music.setup.repeatSigns = true;
    music.tune({60}, 16);
    EXPECT_THAT(music.music().back(), "line 187 100 187 132 1");
}

TEST_F(ClassicPage, BarsAreNumberedWhereTheirLinesEnd) {
    rests(2);
    music.setup.numbers = true;
    EXPECT_THAT(music.drawn("text"), IsSupersetOf({"text 132 132 1"}));
    EXPECT_THAT(music.drawn().back(), EndsWith(" 132 2"));
    music.setup.start = 16;
    EXPECT_THAT(music.drawn().back(), EndsWith(" 132 2"));
    EXPECT_THAT(music.drawn("text"), Not(Contains(EndsWith(" 132 1"))));
}

TEST_F(ClassicPage, AScoreWithoutABarIsAPageWithTitleAndTimeSignature) {
    EXPECT_THAT(music.drawn(),
                ElementsAre("page 1 794 1123", "text 32 20 Untitled Score", "text 30 98 4", "text 30 110 4"));
    music.stroke(0, 60, 0, 16).setup.staves = {};
    EXPECT_THAT(music.drawn(), SizeIs(4));
}

TEST_F(ClassicPage, EndsWhenItIsTold) {
    rests(7 * 11 * 4);
    int asked = 0;
    const auto engraved = engraveClassic(music.read(), music.setup, [&asked](int pages) {
        asked = pages;
        return pages < 2;
    });
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(engraved.pages, SizeIs(2));
}

TEST_F(ClassicPage, ABlankPageIsRuledToItsFoot) {
    rests(1);
    music.setup.titleEveryPage = true;
    EngravedScore score = music.engrave();
    const EngravedPage blank = blankClassic(score, music.read(), music.setup, 3);
    EXPECT_EQ(blank.caption, "Untitled Score         Page 3");
    EXPECT_EQ(std::ranges::count(blank.marks, Role::StaffLine, &Mark::role), 55);
    EXPECT_EQ(std::ranges::count(blank.marks, Role::Rest, &Mark::role), 0);
    EXPECT_EQ(std::ranges::count(blank.marks, Role::Signature, &Mark::role), 2);
}

TEST(ClassicKeySignature, EachKeyHasItsSignsAndItsFirstNote) {
    constexpr std::array<Point, 5> kSharps{{{16, -16}, {26, -4}, {34, -20}, {42, -8}, {50, 4}}};
    constexpr std::array<Point, 6> kFlats{{{16, -2}, {22, -14}, {26, 2}, {32, -10}, {36, 6}, {42, -6}}};
    for (std::size_t key = 0; key < kKeys.size(); ++key) {
        const int fifths = kKeys.at(key).fifths;
        std::vector<std::string> signs;
        for (std::size_t i = 0; i < static_cast<std::size_t>(std::abs(fifths)); ++i) {
            const Point at = fifths > 0 ? kSharps.at(i) : kFlats.at(i);
            signs.push_back((fifths > 0 ? "image ImgSharp " : "image ImgFlat ") +
                            std::to_string(static_cast<int>(at.x)) + ' ' +
                            std::to_string(static_cast<int>(at.y) + 100));
        }
        EXPECT_THAT(linesDrawn([&](ClassicInk& ink) { DrawKeySignature(ink, fifths, 100); }),
                    ElementsAreArray(signs));
        ClassicMusic music;
        music.setup.key = static_cast<int>(key);
        music.tune({60}, 16); // a G, which a sign may alter and none marks
        EXPECT_THAT(
            music.drawn("ellipse").front(),
            StartsWith("ellipse " + std::to_string(kKeys.at(key).FirstNoteX + 12 + 5 + 30) + " 124 "));
    }
}

TEST(ClassicLedgerLines, EachPlaceHasItsLines) {
    const std::vector<LedgerRow> kRows{{11, 22, {32, 24}, 5},
                                       {23, 30, {32}, 5},
                                       {31, 72, {}, 5},
                                       {73, 80, {80}, 6},
                                       {81, 83, {80, 88}, 6},
                                       {84, 87, {80, 88, 96}, 6},
                                       {88, 98, {88, 96, 104}, 5},
                                       {99, 102, {96, 104, 112}, 5},
                                       {103, 141, {}, 5},
                                       {142, 145, {148}, 5},
                                       {146, 149, {148, 156}, 5},
                                       {150, 154, {148, 156, 164}, 5},
                                       {155, 158, {158}, 5},
                                       {159, 166, {158, 166}, 5},
                                       {167, 200, {158, 166, 174}, 5}};
    for (const LedgerRow& row : kRows)
        for (int d = row.first; d <= row.last; ++d) {
            std::vector<std::string> lines;
            for (const int y : row.lines) {
                const std::string at = std::to_string(y + 30 + 92);
                lines.push_back("line " + std::to_string(200 - row.left) + ' ' + at + ' ' +
                                std::to_string(215 - row.left) + ' ' + at + " 1");
            }
            EXPECT_THAT(linesDrawn([&](ClassicInk& ink) { DrawLedgerLines(ink, 200, d + 30, 92, 30); }),
                        ElementsAreArray(lines))
                << d;
        }
}

TEST(ClassicPages, AThousandMeasuresOfFiveStavesComeWhole) {
    ClassicMusic music;
    music.score.resizeNotes(16'000);
    music.setup.joinNotes = 4;
    for (int channel = 0; channel < 5; ++channel) {
        music.setup.staves.chkChannel[static_cast<std::size_t>(channel)] = true;
        for (int position = 0; position < 16'000; ++position)
            music.score.NoteCell.set(
                channel, position, static_cast<std::int16_t>(position % 2 == 0 ? 50 + position % 20 : 1050));
    }
    music.score.FindEndOfSong();
    const EngravedScore engraved = music.engrave();
    EXPECT_GT(engraved.pages.size(), 80U);
    std::ptrdiff_t heads = 0;
    for (const EngravedPage& page : engraved.pages)
        heads += std::ranges::count(page.marks, Role::Head, &Mark::role);
    EXPECT_EQ(heads, 5 * 8000);
}
