// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/notation/CleanPageReader.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmora::notation {
namespace {

constexpr double kSpace = CleanPageReader::kSpace;

CleanPageReader tuneOf(const std::vector<int>& notes, int steps) {
    CleanPageReader page;
    page.tune(notes, steps);
    return page;
}

double gap(const std::vector<Box>& heads, std::size_t i) {
    return heads[i + 1].left - heads[i].left;
}

// Spacing

TEST(CleanPage, SpaceGrowsWithTheValueByLessThanTheValueDoes) {
    CleanPageReader page;
    page.rhythm({8, 4, 2, 2}, 69);
    const auto heads = page.engrave().boxes(Role::Head);
    ASSERT_EQ(heads.size(), 4U);
    EXPECT_GT(gap(heads, 0), 1.1 * gap(heads, 1));
    EXPECT_GT(gap(heads, 1), 1.1 * gap(heads, 2));
    EXPECT_LT(gap(heads, 0), 2 * gap(heads, 2) + gap(heads, 1));
    EXPECT_LT(gap(heads, 0), 2 * gap(heads, 1));
}

TEST(CleanPage, NotesOfOneMomentStandBelowEachOther) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = true;
    page.tune({72, 74, 76, 77}).stroke(1, 67, 0, 8).stroke(1, 69, 8, 8);
    const auto heads = page.engrave().boxes(Role::Head);
    ASSERT_EQ(heads.size(), 6U);
    EXPECT_DOUBLE_EQ(middleOf(heads[0]), middleOf(heads[1]));
    EXPECT_DOUBLE_EQ(middleOf(heads[3]), middleOf(heads[4]));
}

TEST(CleanPage, AnAccidentalWidensTheSpaceBeforeItsNote) {
    const auto plain = tuneOf({60, 62, 64, 65, 67, 69, 71, 72}, 1).engrave().boxes(Role::Head);
    const auto sharp = tuneOf({60, 62, 64, 66, 67, 69, 71, 72}, 1).engrave().boxes(Role::Head);
    EXPECT_GT(gap(sharp, 2), gap(plain, 2) + 0.3 * kSpace);
}

TEST(CleanPage, EveryFullLineEndsAtTheSameMargin) {
    auto page = tuneOf(std::vector<int>(160, 71), 4);
    std::vector<double> ends;
    for (const LineMark& line : page.engrave().lines(Role::StaffLine))
        ends.push_back(std::max(line.from.x, line.to.x));
    std::ranges::sort(ends);
    EXPECT_NEAR(ends[5], ends.back(), 0.01);
    EXPECT_NEAR(ends.back(), page.engraved.width - ends.back() + 2 * ends.back() - page.engraved.width, 0.01);
}

TEST(CleanPage, AShortLastLineIsNotStretched) {
    auto page = tuneOf({60, 62, 64, 65}, 4);
    double end = 0;
    for (const LineMark& line : page.engrave().lines(Role::StaffLine))
        end = std::max(end, line.to.x);
    EXPECT_LT(end, page.engraved.width * 0.67);
}

TEST(CleanPage, AWholeBarRestStandsInTheMiddleOfItsBar) {
    CleanPageReader page;
    page.rhythm({4, 4, 4, 4, -16, 16}, 71);
    const auto rests = page.engrave().boxes(Role::Rest);
    ASSERT_EQ(rests.size(), 1U);
    const auto bars = page.boxes(Role::BarLine);
    ASSERT_GE(bars.size(), 2U);
    EXPECT_NEAR(middleOf(rests[0]), (middleOf(bars[0]) + middleOf(bars[1])) / 2, 0.5);
}

// Clefs and signatures

TEST(CleanPage, EachLineHasItsKeyAndTheFirstItsTime) {
    auto page = tuneOf(std::vector<int>(160, 71), 4);
    page.key("D");
    page.engrave();
    const std::size_t lines = page.of(Role::StaffLine).size() / 5;
    ASSERT_GT(lines, 2U);
    EXPECT_EQ(page.of(Role::Clef).size(), lines);
    EXPECT_EQ(page.of(Role::Signature).size(), 2 * lines + 1);
}

TEST(CleanPage, TheSharpsOfAKeyStandOnTheirPlaces) {
    auto page = tuneOf({64, 64, 64, 64}, 4);
    page.key("E");
    page.engrave();
    const auto signs = page.glyphs(Role::Signature);
    ASSERT_GE(signs.size(), 4U);
    EXPECT_EQ(page.place(signs[0].at.y), 4);
    EXPECT_EQ(page.place(signs[1].at.y), 1);
    EXPECT_EQ(page.place(signs[2].at.y), 5);
    EXPECT_EQ(page.place(signs[3].at.y), 2);
}

TEST(CleanPage, ABassStaffHasItsKeyTwoStepsLower) {
    auto page = tuneOf({43, 43, 43, 43}, 4);
    page.setup.staves.ChkNotetype[0] = true;
    page.key("F");
    page.engrave();
    EXPECT_EQ(page.place(page.glyphs(Role::Signature)[0].at.y), -2);
}

TEST(CleanPage, AWaltzHasItsTimeAsTwoNumbers) {
    CleanPageReader page;
    page.meterOf(3, 4, 12).tune({60, 62, 64});
    EXPECT_EQ(page.engrave().texts(Role::Signature), (std::vector<std::string>{"3", "4"}));
}

// Heads and places

TEST(CleanPage, MiddleCHasOneLedgerLineBelowTheTrebleStaff) {
    auto page = tuneOf({60, 60, 60, 60}, 4);
    page.engrave();
    EXPECT_EQ(page.of(Role::Ledger).size(), 4U);
    EXPECT_EQ(page.place(page.glyphs(Role::Head)[0].at.y), -6);
    EXPECT_EQ(page.lines(Role::Ledger)[0].from.y, page.glyphs(Role::Head)[0].at.y);
}

TEST(CleanPage, MiddleCHasOneLedgerLineAboveTheBassStaff) {
    auto page = tuneOf({60, 60, 60, 60}, 4);
    page.setup.staves.ChkNotetype[0] = true;
    page.engrave();
    EXPECT_EQ(page.place(page.glyphs(Role::Head)[0].at.y), 6);
    EXPECT_EQ(page.of(Role::Ledger).size(), 4U);
}

TEST(CleanPage, ADAboveTheStaffNeedsNoLedgerLineOfItsOwn) {
    EXPECT_TRUE(tuneOf({79, 79, 79, 79}, 4).engrave().of(Role::Ledger).empty());
}

TEST(CleanPage, WholesHalvesAndQuartersHaveTheirHeads) {
    CleanPageReader page;
    page.rhythm({16, 8, 4, 4}, 71);
    const auto heads = page.engrave().glyphs(Role::Head);
    ASSERT_EQ(heads.size(), 4U);
    EXPECT_EQ(heads[0].glyph, MusicGlyph::HeadWhole);
    EXPECT_EQ(heads[1].glyph, MusicGlyph::HeadHalf);
    EXPECT_EQ(heads[2].glyph, MusicGlyph::HeadBlack);
}

TEST(CleanPage, BeyondThreeLedgerLinesNotesAreWrittenAnOctaveNearer) {
    auto page = tuneOf({98, 100, 101, 101}, 4);
    const auto words = page.engrave().texts(Role::Text);
    EXPECT_TRUE(std::ranges::find(words, "8va") != words.end());
    for (const GlyphMark& head : page.glyphs(Role::Head))
        EXPECT_LE(page.place(head.at.y), 11);
}

TEST(CleanPage, NotesUnderOneBeamAreWrittenInOneOctave) {
    auto page = tuneOf({50, 57, 60, 65, 69, 65, 60, 57}, 2); // the first one alone is too low
    const auto words = page.engrave().texts(Role::Text);
    EXPECT_EQ(std::ranges::count(words, "8vb"), 1);
    const auto heads = page.glyphs(Role::Head);
    ASSERT_EQ(heads.size(), 8U);
    EXPECT_EQ(page.place(heads[0].at.y), -12 + 7);
    EXPECT_EQ(page.place(heads[3].at.y), -3 + 7) << "the last under its beam";
    EXPECT_EQ(page.place(heads[4].at.y), -1) << "the next group is as it is";
}

TEST(CleanPage, OctaveMarksOfOneKindAreJoined) {
    auto page = tuneOf({96, 98, 83, 98, 84, 86, 88, 84}, 4);
    page.engrave();
    const auto words = page.texts(Role::Text);
    EXPECT_EQ(std::ranges::count(words, "8va"), 1) << "a beat between them is no reason for two";
    auto higher = tuneOf({96, 98, 105, 98}, 4);
    const auto kinds = higher.engrave().texts(Role::Text);
    EXPECT_EQ(std::ranges::count(kinds, "8va"), 1);
    EXPECT_EQ(std::ranges::count(kinds, "15ma"), 0) << "one more ledger line is easier to read";
}

TEST(CleanPage, OctaveMarksFarApartAreTwo) {
    auto page = tuneOf({98, 71, 71, 71, 71, 71, 71, 98}, 4);
    const auto words = page.engrave().texts(Role::Text);
    EXPECT_EQ(std::ranges::count(words, "8va"), 2);
}

TEST(CleanPage, AGroupTooWideForOneOctaveKeepsItsOwn) {
    auto page = tuneOf({50, 88, 50, 88}, 2);
    page.engrave();
    for (const GlyphMark& head : page.glyphs(Role::Head))
        EXPECT_LE(std::abs(page.place(head.at.y)), 11);
}

TEST(CleanPage, ThreeLedgerLinesNeedNoOctaveMark) {
    const auto words = tuneOf({88, 88, 88, 88}, 4).engrave().texts(Role::Text);
    EXPECT_TRUE(std::ranges::find(words, "8va") == words.end());
}

TEST(CleanPage, AChordWiderThanTheStaffKeepsItsLedgerLines) {
    auto page = tuneOf({48, 48, 48, 48}, 4);
    auto score = page.read();
    for (Written& item : score.items)
        item.pitches.push_back({.name = "C", .row = 127 - 84});
    const auto words = page.engrave(score).texts(Role::Text);
    EXPECT_TRUE(std::ranges::find(words, "8vb") == words.end());
    EXPECT_EQ(page.place(page.glyphs(Role::Head)[1].at.y), 8);
}

// Stems

TEST(CleanPage, AStemIsAnOctaveLong) {
    auto page = tuneOf({67, 72, 72, 72}, 4);
    page.engrave();
    const auto stems = page.boxes(Role::Stem);
    const auto heads = page.glyphs(Role::Head);
    EXPECT_NEAR(heads[0].at.y - stems[0].top, 3.5 * kSpace, 0.01);
    EXPECT_NEAR(stems[1].bottom - heads[1].at.y, 3.5 * kSpace, 0.01);
}

TEST(CleanPage, StemsGoUpBelowTheMiddleLineAndDownFromItOn) {
    auto page = tuneOf({69, 71, 69, 72}, 4);
    const auto stems = page.engrave().lines(Role::Stem);
    EXPECT_LT(stems[0].to.y, stems[0].from.y);
    EXPECT_GT(stems[1].to.y, stems[1].from.y);
}

TEST(CleanPage, AStemFromFarAwayReachesTheMiddleLine) {
    auto page = tuneOf({57, 57, 57, 57}, 4);
    page.engrave();
    EXPECT_NEAR(page.boxes(Role::Stem)[0].top, page.staffLine(2), 0.01);
}

TEST(CleanPage, AnUpwardStemStandsRightOfItsHeadAndADownwardOneLeft) {
    auto page = tuneOf({64, 76, 64, 76}, 4);
    const auto stems = page.engrave().lines(Role::Stem);
    const auto heads = page.boxes(Role::Head);
    EXPECT_GT(stems[0].from.x, middleOf(heads[0]));
    EXPECT_LT(stems[1].from.x, middleOf(heads[1]));
}

TEST(CleanPage, ASingleEighthHasAFlagAndASixteenthTwo) {
    CleanPageReader page;
    page.rhythm({2, -2, 1, -3}, 64);
    EXPECT_EQ(page.engrave().of(Role::Flag).size(), 3U);
    EXPECT_TRUE(page.of(Role::Beam).empty());
}

// Beams

TEST(CleanPage, ABeamTakesTheFlagsOfItsNotes) {
    auto page = tuneOf({67, 69, 67, 69, 67, 69, 67, 69}, 2);
    page.engrave();
    EXPECT_TRUE(page.of(Role::Flag).empty());
    EXPECT_FALSE(page.of(Role::Beam).empty());
    EXPECT_DOUBLE_EQ(page.lines(Role::Beam)[0].width, kSpace / 2);
}

TEST(CleanPage, ABeamNeverRisesMoreThanASpace) {
    auto page = tuneOf({60, 76, 60, 76, 60, 76, 60, 76, 64, 65, 67, 69, 71, 72, 74, 76}, 1);
    const auto beams = page.engrave().lines(Role::Beam);
    ASSERT_FALSE(beams.empty());
    for (const LineMark& beam : beams)
        EXPECT_LE(rise(beam), kSpace + 0.01);
}

TEST(CleanPage, ABeamLeansWithItsNotes) {
    auto page = tuneOf({60, 62, 64, 65}, 2);
    const LineMark up = page.engrave().lines(Role::Beam).at(0);
    EXPECT_LT(up.to.y, up.from.y);
    auto other = tuneOf({65, 64, 62, 60}, 2);
    const LineMark down = other.engrave().lines(Role::Beam).at(0);
    EXPECT_GT(down.to.y, down.from.y);
}

TEST(CleanPage, ABeamOverAHigherInnerNoteIsLevel) {
    auto page = tuneOf({62, 67, 67, 64}, 2);
    EXPECT_EQ(rise(page.engrave().lines(Role::Beam).at(0)), 0);
}

TEST(CleanPage, StemsUnderABeamEndAtIt) {
    auto page = tuneOf({60, 62, 64, 65}, 2);
    const LineMark beam = page.engrave().lines(Role::Beam).at(0);
    for (const LineMark& stem : page.lines(Role::Stem)) {
        const double along = (stem.to.x - beam.from.x) / (beam.to.x - beam.from.x);
        const double y = beam.from.y + along * (beam.to.y - beam.from.y);
        EXPECT_NEAR(stem.to.y, y - kSpace / 4, 0.6);
        EXPECT_GE(stem.from.y - stem.to.y, 2.7 * kSpace);
    }
}

TEST(CleanPage, SixteenthsHaveTwoBeamsThreeQuartersOfASpaceApart) {
    auto page = tuneOf({64, 64, 64, 64}, 1);
    const auto beams = page.engrave().lines(Role::Beam);
    ASSERT_EQ(beams.size(), 2U);
    EXPECT_NEAR(std::abs(beams[0].from.y - beams[1].from.y), 0.75 * kSpace, 0.01);
}

TEST(CleanPage, ASixteenthAfterADottedEighthHasAStubToTheLeft) {
    CleanPageReader page;
    page.rhythm({3, 1, -12}, 64);
    const auto beams = page.engrave().lines(Role::Beam);
    ASSERT_EQ(beams.size(), 2U);
    EXPECT_LT(beams[1].to.x - beams[1].from.x, 1.5 * kSpace);
    EXPECT_NEAR(beams[1].to.x, beams[0].to.x, 0.01);
}

TEST(CleanPage, ASixteenthBeforeADottedEighthHasAStubToTheRight) {
    CleanPageReader page;
    page.rhythm({1, 3, -12}, 64);
    auto beams = page.engrave().lines(Role::Beam);
    ASSERT_EQ(beams.size(), 2U);
    std::ranges::sort(beams, {}, [](const LineMark& beam) { return beam.to.x - beam.from.x; });
    EXPECT_NEAR(beams[0].from.x, beams[1].from.x, 0.01);
}

// Accidentals and dots

TEST(CleanPage, AnAccidentalStandsBeforeItsHeadAtItsHeight) {
    auto page = tuneOf({66, 67, 67, 67}, 4);
    const auto signs = page.engrave().glyphs(Role::Accidental);
    ASSERT_EQ(signs.size(), 1U);
    EXPECT_EQ(signs[0].glyph, MusicGlyph::Sharp);
    EXPECT_EQ(signs[0].at.y, page.glyphs(Role::Head)[0].at.y);
    EXPECT_LT(page.boxes(Role::Accidental)[0].right, page.boxes(Role::Head)[0].left);
}

TEST(CleanPage, ANaturalTakesASharpBack) {
    auto page = tuneOf({66, 65, 67, 67}, 4);
    const auto signs = page.engrave().glyphs(Role::Accidental);
    ASSERT_EQ(signs.size(), 2U);
    EXPECT_EQ(signs[1].glyph, MusicGlyph::Natural);
}

TEST(CleanPage, ACourtesySignIsSmallAndInParentheses) {
    auto page = tuneOf({66, 67, 67, 67, 65, 67, 67, 67}, 4);
    const auto signs = page.engrave().glyphs(Role::Accidental);
    ASSERT_EQ(signs.size(), 2U);
    EXPECT_LT(signs[1].size, signs[0].size);
    EXPECT_EQ(page.curves(Role::Accidental).size(), 2U);
}

TEST(CleanPage, ADotBesideALineMovesUpIntoTheSpace) {
    CleanPageReader page;
    page.rhythm({6, -10}, 71);
    const auto dots = page.engrave().boxes(Role::Dot);
    ASSERT_EQ(dots.size(), 1U);
    EXPECT_NEAR(page.place((dots[0].top + dots[0].bottom) / 2), 1, 0.01);
    EXPECT_GT(dots[0].left, page.boxes(Role::Head)[0].right);
}

TEST(CleanPage, ADotInASpaceStaysThere) {
    CleanPageReader page;
    page.rhythm({6, -10}, 69);
    const auto dots = page.engrave().boxes(Role::Dot);
    EXPECT_NEAR(page.place((dots[0].top + dots[0].bottom) / 2), -1, 0.01);
}

// Ties

TEST(CleanPage, ATieCurvesAwayFromTheStem) {
    CleanPageReader page;
    page.rhythm({-12, 8, -12}, 64);
    const auto ties = page.engrave().curves(Role::Tie);
    ASSERT_EQ(ties.size(), 1U);
    EXPECT_GT(ties[0].points[1].y, ties[0].points[0].y);
    EXPECT_GT(ties[0].points[0].x, page.boxes(Role::Head)[0].right);
    EXPECT_LT(ties[0].points[3].x, page.boxes(Role::Head)[1].left);
}

TEST(CleanPage, ATieGoesOnOverALinesEndInTwoHalves) {
    CleanPageReader page;
    page.rhythm(std::vector<int>(1, 16 * 40), 64);
    page.engrave();
    const std::size_t lines = page.of(Role::StaffLine).size() / 5;
    ASSERT_GT(lines, 1U);
    EXPECT_EQ(page.of(Role::Tie).size(), 39 + lines - 1);
}

TEST(CleanPage, ATieThatBeginsALineStandsClearOfTheKey) {
    CleanPageReader page;
    page.key("D").rhythm(std::vector<int>(1, 16 * 40), 64);
    page.engrave();
    const auto bars = page.boxes(Role::StaffLine);
    std::size_t begun = 0;
    for (const CurveMark& tie : page.curves(Role::Tie)) {
        if (tie.points[0].x > bars[0].left + 12 * kSpace)
            continue;
        ++begun;
        EXPECT_GE(tie.points[3].x - tie.points[0].x, 1.8 * kSpace);
    }
    EXPECT_GE(begun, 2U);
    for (const Mark& tie : page.of(Role::Tie))
        for (const Mark& sign : page.of(Role::Signature)) {
            const Box a = page.box(tie), b = page.box(sign);
            EXPECT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom);
        }
}

// Rests, triplets

TEST(CleanPage, TripletsUnderABeamCarryTheirThreeWithoutABracket) {
    CleanPageReader page;
    page.meterOf(4, 4, 12).rhythm({1, 1, 1, 3, 3, 3}, 64);
    EXPECT_EQ(page.engrave().texts(Role::Tuplet), std::vector<std::string>{"3"});
    EXPECT_TRUE(page.lines(Role::Tuplet).empty());
}

TEST(CleanPage, TripletsWithoutABeamHaveABracket) {
    CleanPageReader page;
    page.meterOf(4, 4, 12).rhythm({2, 2, 2, 6}, 64);
    EXPECT_EQ(page.engrave().texts(Role::Tuplet), std::vector<std::string>{"3"});
    EXPECT_EQ(page.lines(Role::Tuplet).size(), 4U);
}

// Bars and pages

TEST(CleanPage, TheMusicEndsWithAThinAndAThickLine) {
    auto page = tuneOf({60, 62, 64, 65}, 4);
    const auto bars = page.engrave().lines(Role::BarLine);
    ASSERT_EQ(bars.size(), 2U);
    EXPECT_GT(bars[1].width, 2 * bars[0].width);
}

TEST(CleanPage, EachLineButTheFirstHasItsBarNumber) {
    auto page = tuneOf(std::vector<int>(160, 71), 4);
    page.engrave();
    EXPECT_EQ(page.texts(Role::Text).size(), 1 + page.of(Role::StaffLine).size() / 5 - 1);
}

TEST(CleanPage, NumbersEverywhereNumberEachBar) {
    auto page = tuneOf(std::vector<int>(20, 71), 4);
    page.setup.numbers = true;
    EXPECT_EQ(page.engrave().texts(Role::Text).size(), 1U + 5U);
}

TEST(CleanPage, TwoStavesHaveALeftLineAndABrace) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = true;
    page.tune({72, 74, 76, 77}).stroke(1, 67, 0, 16);
    page.engrave();
    const auto others = page.glyphs(Role::Other);
    ASSERT_EQ(others.size(), 1U);
    EXPECT_EQ(others[0].glyph, MusicGlyph::Brace);
}

TEST(CleanPage, TheTempoStandsOverTheFirstLine) {
    auto page = tuneOf({60, 62, 64, 65}, 4);
    page.setup.tempoWords = "Gently";
    page.setup.tempo = 92;
    const auto words = page.engrave().texts(Role::Text);
    EXPECT_TRUE(std::ranges::find(words, "Gently") != words.end());
    EXPECT_TRUE(std::ranges::find(words, " = 92)") != words.end());
}

TEST(CleanPage, TheTempoCountsTheBeatOfItsMeter) {
    const auto markOf = [](int upper, int lower) {
        CleanPageReader page;
        page.meterOf(upper, lower, 12).rhythm({12}, 71);
        page.setup.tempo = 90;
        page.engrave();
        const auto dots = std::ranges::count_if(page.marks(), [](const Mark& mark) {
            return mark.role == Role::Text && std::holds_alternative<EllipseMark>(mark.shape);
        });
        const auto notes = page.glyphs(Role::Text);
        std::string mark = notes.at(0).glyph == MusicGlyph::HeadHalf ? "half" : "quarter";
        mark += dots > 0 ? "." : "";
        for (const std::string& text : page.texts(Role::Text))
            if (text.starts_with(" = "))
                mark += text;
        return mark;
    };
    EXPECT_EQ(markOf(4, 4), "quarter = 90");
    EXPECT_EQ(markOf(3, 8), "quarter = 90");
    EXPECT_EQ(markOf(6, 8), "quarter. = 60");
    EXPECT_EQ(markOf(12, 8), "quarter. = 60");
    EXPECT_EQ(markOf(2, 2), "half = 45");
    EXPECT_EQ(markOf(6, 4), "half. = 30");
}

TEST(CleanPage, TheLastBarLinesRunThroughAllThatIsJoined) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = true;
    page.tune({72, 74, 76, 77}).stroke(1, 67, 0, 16);
    double thin = 0, thick = 0;
    for (const LineMark& line : page.engrave().lines(Role::BarLine))
        (line.width > 0.3 * kSpace ? thick : thin) +=
            line.from.x > page.engraved.width / 4 ? std::abs(line.to.y - line.from.y) : 0;
    EXPECT_NEAR(thick, thin, 0.1);
    EXPECT_GT(thick, 9 * kSpace);
}

TEST(CleanPage, ALongScoreFillsItsPagesToTheFoot) {
    auto page = tuneOf(std::vector<int>(480, 71), 4);
    page.engrave();
    ASSERT_GE(page.engraved.pages.size(), 2U);
    double lowest = 0;
    for (const Box& box : page.boxes(Role::StaffLine))
        lowest = std::max(lowest, box.bottom);
    EXPECT_GT(lowest, 0.9 * page.engraved.height);
    EXPECT_EQ(page.engraved.pages[1].caption, "Untitled Score         Page 2");
}

TEST(CleanPage, ABlankPageIsTheSamePaperWithoutNotes) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = true;
    page.key("D").tune({72, 74, 76, 77}).stroke(1, 67, 0, 16);
    page.engrave();
    const EngravedPage blank = DrawBlankPage(page.engraved, page.read(), page.setup, page.measure, 2);
    EXPECT_EQ(blank.caption, "Untitled Score         Page 2");
    page.engraved.pages.push_back(blank);
    const auto lines = page.boxes(Role::StaffLine, 1);
    ASSERT_EQ(lines.size() % 10, 0U);
    ASSERT_GT(lines.size(), 40U);
    const std::size_t systems = lines.size() / 10;
    EXPECT_EQ(page.of(Role::Clef, 1).size(), 2 * systems);
    EXPECT_EQ(page.of(Role::Signature, 1).size(), 4 * systems + 2); // and the time once on each staff
    EXPECT_EQ(page.of(Role::Other, 1).size(), systems) << "a brace each";
    EXPECT_EQ(page.of(Role::Head, 1).size() + page.of(Role::Rest, 1).size(), 0U);
    EXPECT_EQ(lines[0].left, page.boxes(Role::StaffLine)[0].left);
    double lowest = 0;
    for (const Box& line : lines)
        lowest = std::max(lowest, line.bottom);
    EXPECT_GT(lowest, 0.85 * page.engraved.height);
    EXPECT_LT(lowest, page.engraved.height);
}

TEST(CleanPage, ABlankPageOfNothingHasATrebleStaff) {
    CleanPageReader page;
    page.engraved.width = page.setup.pageWidth;
    page.engraved.height = page.setup.pageHeight;
    const EngravedPage blank = DrawBlankPage(page.engraved, WrittenScore{}, page.setup, page.measure, 1);
    page.engraved.pages.push_back(blank);
    EXPECT_GT(page.of(Role::StaffLine).size(), 40U);
    ASSERT_FALSE(page.glyphs(Role::Clef).empty());
    EXPECT_EQ(page.glyphs(Role::Clef)[0].glyph, MusicGlyph::TrebleClef);
}

// Percussion

/// Strokes of a quarter each, by their keys.
CleanPageReader drumsOf(const std::vector<int>& keys, int steps = 4) {
    CleanPageReader page;
    page.setup.staves.chkChannel = {};
    page.setup.staves.chkChannel[8] = true;
    int at = 0;
    for (const int key : keys) {
        page.stroke(8, 60, at, steps);
        page.score.NoteInstrument.set(8, at, static_cast<std::int16_t>(key + 93));
        at += steps;
    }
    page.score.FindEndOfSong();
    return page;
}

std::vector<MusicGlyph> headsOf(CleanPageReader& page) {
    std::vector<MusicGlyph> heads;
    for (const GlyphMark& head : page.glyphs(Role::Head))
        heads.push_back(head.glyph);
    return heads;
}

TEST(CleanPage, DrumsHaveTheHeadsThatDrummersKnow) {
    auto page = drumsOf({38, 42, 46, 53, 81, 0});
    page.engrave();
    EXPECT_EQ(headsOf(page),
              (std::vector{MusicGlyph::HeadBlack, MusicGlyph::HeadCross, MusicGlyph::HeadCircledCross,
                           MusicGlyph::HeadDiamond, MusicGlyph::HeadTriangle, MusicGlyph::HeadBlack}));
    for (const GlyphMark& head : page.glyphs(Role::Head))
        EXPECT_EQ(head.at.y, page.lines(Role::StaffLine)[0].from.y) << "on the line";
}

TEST(CleanPage, LongStrokesOfCymbalsAreHollow) {
    auto page = drumsOf({49, 38, 81}, 8);
    page.engrave();
    EXPECT_EQ(headsOf(page),
              (std::vector{MusicGlyph::HeadDiamondOpen, MusicGlyph::HeadHalf, MusicGlyph::HeadTriangleOpen}));
}

TEST(CleanPage, ABarOfRestHangsFromTheLineOfDrums) {
    auto page = drumsOf({38, 38, 38, 38});
    page.setup.end = 32;
    page.engrave();
    const auto rests = page.boxes(Role::Rest);
    ASSERT_EQ(rests.size(), 1U);
    EXPECT_NEAR(rests[0].top, page.lines(Role::StaffLine)[0].from.y, 0.1 * kSpace);
}

TEST(CleanPage, ADrumHasItsNameWhereItComesUp) {
    auto page = drumsOf({38, 38, 38, 38, 38, 38, 38, 38});
    EXPECT_EQ(page.engrave().texts(Role::Drum), std::vector<std::string>{"Acoustic Snare"});
    EXPECT_NEAR(page.boxes(Role::Drum)[0].left, page.boxes(Role::Head)[0].left, 0.5);
    EXPECT_LT(page.boxes(Role::Drum)[0].bottom, page.boxes(Role::Stem)[0].top);
}

TEST(CleanPage, AFurtherChangeOfDrumsIsNamedInShort) {
    auto page = drumsOf({38, 36, 38, 36});
    EXPECT_EQ(page.engrave().texts(Role::Drum),
              (std::vector<std::string>{"Acoustic Snare", "Bass Drum 1", "S. D.", "B. D."}));
}

TEST(CleanPage, AHeadThatNamesItsDrumIsNotNamedAgain) {
    auto page = drumsOf({38, 42, 38, 42, 42, 38, 42, 42});
    EXPECT_EQ(page.engrave().texts(Role::Drum),
              (std::vector<std::string>{"Acoustic Snare", "Closed High-Hat"}));
}

TEST(CleanPage, EachLineNamesItsDrumsAnew) {
    auto page = drumsOf(std::vector<int>(96, 36));
    page.engrave();
    const std::size_t lines = page.of(Role::StaffLine).size();
    ASSERT_GT(lines, 1U);
    const auto names = page.texts(Role::Drum);
    ASSERT_EQ(names.size(), lines);
    EXPECT_EQ(std::ranges::count(names, "B. D."), static_cast<std::ptrdiff_t>(lines) - 1);
}

TEST(CleanPage, NamesOfDrumsNeverLieOverEachOther) {
    std::vector<int> keys;
    for (int key = 35; key <= 81; ++key)
        keys.push_back(key);
    auto page = drumsOf(keys, 1);
    const auto names = page.engrave().boxes(Role::Drum);
    EXPECT_EQ(names.size(), 47U);
    for (std::size_t i = 0; i < names.size(); ++i)
        for (std::size_t j = i + 1; j < names.size(); ++j)
            EXPECT_TRUE(names[i].right <= names[j].left || names[j].right <= names[i].left ||
                        names[i].bottom <= names[j].top || names[j].bottom <= names[i].top)
                << i << " and " << j;
    for (const Box& name : names)
        EXPECT_LE(name.right, page.engraved.width);
}

// Two voices

/// Two channels on one staff, the first one above.
CleanPageReader voicesOf(const std::vector<int>& upper, const std::vector<int>& lower, int steps = 4) {
    auto page = tuneOf(upper, steps);
    page.setup.staves.chkChannel[1] = page.setup.twoVoices = true;
    int at = 0;
    for (const int note : lower) {
        if (note > 0)
            page.stroke(1, note, at, steps);
        at += steps;
    }
    return page;
}

TEST(CleanPage, VoicesInASecondStandBesideEachOther) {
    auto page = voicesOf({72, 72, 72, 72}, {71, 69, 69, 69});
    const auto heads = page.engrave().boxes(Role::Head);
    ASSERT_EQ(heads.size(), 8U);
    EXPECT_NEAR(heads[1].left, heads[0].right, 0.2 * kSpace) << "they touch, the lower one to the right";
    EXPECT_GT(heads[1].top, heads[0].top);
    EXPECT_NEAR(middleOf(heads[2]), middleOf(heads[3]), 0.01) << "a third stands in one column";
}

TEST(CleanPage, AUnisonOfEqualValuesIsOneHeadWithTwoStems) {
    auto page = voicesOf({71, 72, 72, 72}, {71, 64, 64, 64});
    EXPECT_EQ(page.engrave().of(Role::Head).size(), 7U);
    EXPECT_EQ(page.of(Role::Stem).size(), 8U);
}

TEST(CleanPage, AUnisonOfHalfAndQuarterIsTwoHeads) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = page.setup.twoVoices = true;
    page.stroke(0, 71, 0, 4).stroke(0, 76, 4, 4).stroke(0, 76, 8, 8).stroke(1, 71, 0, 8).stroke(1, 60, 8, 8);
    const auto heads = page.engrave().boxes(Role::Head);
    ASSERT_EQ(heads.size(), 5U);
    EXPECT_GE(heads[1].left, heads[0].right - 0.01);
}

TEST(CleanPage, RestsOfTwoVoicesMoveApart) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = page.setup.twoVoices = true;
    page.stroke(0, 76, 0, 4).stroke(0, 76, 8, 8).stroke(1, 60, 4, 4).stroke(1, 60, 12, 4);
    const auto rests = page.engrave().glyphs(Role::Rest);
    ASSERT_EQ(rests.size(), 3U);
    EXPECT_EQ(page.place(rests[0].at.y), -4);
    EXPECT_EQ(page.place(rests[1].at.y), 4);
}

TEST(CleanPage, WhatBothVoicesRestIsOneRest) {
    auto page = voicesOf({76, 76}, {60, 60});
    page.stroke(0, 76, 12, 4).stroke(1, 60, 12, 4);
    const auto rests = page.engrave().glyphs(Role::Rest);
    ASSERT_EQ(rests.size(), 1U);
    EXPECT_EQ(page.place(rests[0].at.y), 0);
}

TEST(CleanPage, ABarsRestHangsFromTheOuterLineAndGoesOutOfTheWay) {
    auto page = voicesOf({76, 76, 76, 76, 76, 76, 76, 76}, {60, 60, 60, 60});
    auto rests = page.engrave().glyphs(Role::Rest);
    ASSERT_EQ(rests.size(), 1U);
    EXPECT_EQ(page.place(rests[0].at.y) + 2, -4);
    auto low = voicesOf({60, 60, 60, 60, 60, 60, 60, 60}, {55, 55, 55, 55});
    rests = low.engrave().glyphs(Role::Rest);
    ASSERT_EQ(rests.size(), 1U);
    EXPECT_LE(low.place(rests[0].at.y) + 2, -8);
    EXPECT_EQ(low.lines(Role::Rest).size(), 1U) << "with a line of its own";
}

TEST(CleanPage, TiesOfTwoVoicesGoApart) {
    CleanPageReader page;
    page.setup.staves.chkChannel[1] = page.setup.twoVoices = true;
    page.stroke(0, 72, 8, 16).stroke(1, 67, 8, 16);
    const auto ties = page.engrave().curves(Role::Tie);
    ASSERT_EQ(ties.size(), 2U);
    const bool firstIsUpper = ties[0].points[0].y < ties[1].points[0].y;
    const CurveMark& upper = ties[firstIsUpper ? 0 : 1];
    const CurveMark& lower = ties[firstIsUpper ? 1 : 0];
    EXPECT_LT(upper.points[1].y, upper.points[0].y);
    EXPECT_GT(lower.points[1].y, lower.points[0].y);
}

// Slurs

TEST(CleanPage, ASyllableOnSeveralNotesHasASlur) {
    auto page = tuneOf({67, 69, 71, 72, 74, 76, 77, 79}, 2);
    page.setup.verses = {"one two _ _ three four five six"};
    const auto slurs = page.engrave().curves(Role::Slur);
    ASSERT_EQ(slurs.size(), 1U);
    const auto heads = page.boxes(Role::Head);
    EXPECT_GT(slurs[0].points[0].x, heads[1].left);
    EXPECT_LT(slurs[0].points[0].x, heads[1].right + 1);
    EXPECT_GT(slurs[0].points[3].x, heads[3].left);
    EXPECT_LT(slurs[0].points[3].x, heads[3].right + 1);
}

TEST(CleanPage, ASlurLiesOnTheHeadsSideOfStemsThatPointOneWay) {
    auto low = tuneOf({60, 62, 64, 65}, 2);
    low.setup.verses = {"la _ _ _"};
    const CurveMark below = low.engrave().curves(Role::Slur).at(0);
    EXPECT_GT(below.points[1].y, below.points[0].y);
    auto high = tuneOf({76, 77, 79, 77}, 2);
    high.setup.verses = {"la _ _ _"};
    const CurveMark above = high.engrave().curves(Role::Slur).at(0);
    EXPECT_LT(above.points[1].y, above.points[0].y);
}

TEST(CleanPage, AHeldNoteNeedsNoSlur) {
    auto page = tuneOf({64, 64}, 12);
    page.setup.verses = {"la la _ _ _"};
    EXPECT_TRUE(page.engrave().curves(Role::Slur).empty());
}

TEST(CleanPage, ASlurOverALinesEndGoesOnInTheNext) {
    auto page = tuneOf(std::vector<int>(160, 71), 4);
    std::string words = "la";
    for (int i = 0; i < 60; ++i)
        words += " _";
    page.setup.verses = {words};
    page.engrave();
    EXPECT_GT(page.of(Role::Slur).size(), 1U);
    EXPECT_LT(page.of(Role::Slur).size(), 9U);
}

// Learning to read

TEST(CleanPage, LetteredHeadsHaveTheChannelsColourAndALetterThatReadsOnIt) {
    auto page = tuneOf({60, 62, 64, 65}, 4);
    page.setup.learnToRead = true;
    page.setup.channelColours[0] = 0x0000FF;
    EXPECT_EQ(page.engrave().texts(Role::Head), (std::vector<std::string>{"C", "D", "E", "F"}));
    for (const Mark& mark : page.of(Role::Head))
        if (std::holds_alternative<TextMark>(mark.shape)) {
            EXPECT_EQ(mark.colour, 0xFFFFFFU);
        }
    const Box head = page.boxes(Role::Head)[0];
    EXPECT_NEAR(head.right - head.left, 1.72 * kSpace, 0.1);
    EXPECT_NEAR(head.bottom - head.top, 1.28 * kSpace, 0.1);
}

TEST(CleanPage, HollowLetteredHeadsAreWhiteInside) {
    CleanPageReader page;
    page.rhythm({8, 8}, 71);
    page.setup.learnToRead = true;
    page.engrave();
    EXPECT_EQ(std::ranges::count(page.marks(), 0xFFFFFFU, &Mark::colour), 2);
}

TEST(CleanPage, BelowASpaceOfSevenPixelsTheLettersGo) {
    auto page = tuneOf({60, 62, 64, 65}, 4);
    page.setup.learnToRead = true;
    page.setup.pageWidth = 200;
    page.setup.pageHeight = 200;
    EXPECT_TRUE(page.engrave().texts(Role::Head).empty());
    EXPECT_FALSE(page.of(Role::Head).empty());
}

} // namespace
} // namespace velmora::notation
