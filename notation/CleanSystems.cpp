// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanSystems.h"

#include "notation/CleanHeader.h"
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kPressed = 0.8;      ///< how near a line's natural width may be pressed together
constexpr double kRaggedBelow = 0.67; ///< a last line that fills less is not stretched
constexpr double kThinBar = 0.16;
constexpr double kThickBar = 0.5;
constexpr double kThinThick = 0.85; ///< from the thin line of a final one to the page's edge of the thick one
constexpr double kBracket = 0.45;
constexpr double kStaffApart = 1;  ///< air between what two staves hold
constexpr double kTieOfLine = 2.2; ///< the length of a tie that begins a line, and its gaps
constexpr double kSystemApart = 1.8;
constexpr double kSpacerPart = 0.75; ///< of `SpacerHeight` between two staves
constexpr double kMostSpread = 7;    ///< spaces that a gap grows by at most where a page is filled

/// The cost of a line: how far it is stretched or pressed.
double costOf(double natural, double room) {
    const double ratio = natural > 0 ? room / natural : 1;
    return ratio >= 1 ? (ratio - 1) * (ratio - 1) : 4 * (1 / ratio - 1) * (1 / ratio - 1);
}

double leastGap(const CleanStyle& style) {
    return style.setup.SpacerHeight * kSpacerPart * style.space / 8;
}

void drawBarLine(CleanInk& ink, double x, const Staff& staff) {
    const double space = ink.style().space;
    const bool oneLine = staff.clef == StaffClef::Percussion;
    const double from = oneLine ? 1 : 0;
    const double to = oneLine ? 3 : 4;
    ink.line({x, from * space}, {x, to * space}, kThinBar * space, Role::BarLine);
}

void drawFinalBar(CleanInk& ink, double right, const Staff& staff) {
    const double space = ink.style().space;
    const bool oneLine = staff.clef == StaffClef::Percussion;
    const double from = (oneLine ? 1 : 0) * space;
    const double to = (oneLine ? 3 : 4) * space;
    const double thick = right - kThickBar * space / 2;
    drawBarLine(ink, right - kThinThick * space, staff);
    ink.line({thick, from}, {thick, to}, kThickBar * space, Role::BarLine);
    if (!ink.style().setup.repeatSigns)
        return;
    for (const double y : {1.5, 2.5})
        ink.oval({right - (kThinThick + 0.55) * space, y * space}, 0.2 * space, 0.2 * space, Role::BarLine,
                 -1);
}

void drawBarLines(CleanInk& ink, const CleanLine& line, const Staff& staff) {
    for (std::size_t i = 1; i <= line.count(); ++i) {
        const bool isEnd = i == line.count();
        if (isEnd && line.last)
            drawFinalBar(ink, line.right, staff);
        else
            drawBarLine(ink, isEnd ? line.right - kThinBar * ink.style().space / 2 : line.barLine(i), staff);
    }
}

/// Bar lines go through from one staff to the next where no words stand between.
bool areJoined(const WrittenScore& score, const CleanStyle& style, std::size_t upper) {
    return score.staves[upper].clef != StaffClef::Percussion &&
           score.staves[upper + 1].clef != StaffClef::Percussion && (upper > 0 || style.setup.verses.empty());
}

void addLine(EngravedPage& page, Point from, Point to, double width, Role role) {
    page.marks.push_back({LineMark{from, to, width}, role, 0, kBlack});
}

/// The left line, and a brace or bracket before it.
void joinStaves(EngravedPage& page, const CleanSystem& system, const WrittenScore& score,
                const CleanStyle& style, const std::vector<double>& tops) {
    const double space = style.space;
    if (score.staves.size() < 2)
        return;
    const double top = tops.front() + staffTop(score.staves.front()) * space;
    const double bottom = tops.back() + staffBottom(score.staves.back()) * space;
    addLine(page, {system.left, top}, {system.left, bottom}, kThinBar * space, Role::BarLine);
    const bool twoOfOne = score.staves.size() == 2 && score.staves[1].clef != StaffClef::Percussion;
    if (twoOfOne) {
        page.marks.push_back(
            {GlyphMark{MusicGlyph::Brace, {system.left - 0.35 * space, (top + bottom) / 2}, bottom - top},
             Role::Other, 0, kBlack});
    } else {
        const double x = system.left - 0.7 * space;
        addLine(page, {x, top - 0.3 * space}, {x, bottom + 0.3 * space}, kBracket * space, Role::Other);
    }
    for (std::size_t i = 0; i + 1 < tops.size(); ++i)
        if (areJoined(score, style, i)) {
            const double from = tops[i] + 4 * space;
            for (const double x : system.barLines)
                addLine(page, {x, from}, {x, tops[i + 1]}, kThinBar * space, Role::BarLine);
            const double thick = system.right - kThickBar * space / 2;
            if (system.last)
                addLine(page, {thick, from}, {thick, tops[i + 1]}, kThickBar * space, Role::BarLine);
        }
}

/// The distance from a system's last staff to the next one's first, at least.
double systemStep(const CleanSystem& above, const CleanSystem& below, const CleanStyle& style) {
    return std::max(4 * style.space + leastGap(style),
                    above.lower().distanceTo(below.upper()) + kSystemApart * style.space);
}

/// A tie that comes from the line before is seen between the signatures and its head.
void addTieRods(Chain& chain, const CleanBar& first) {
    for (const CleanSign& sign : first.signs)
        if (sign.at == 0 && std::ranges::any_of(sign.heads, &CleanHead::tieIn))
            chain.rods.push_back({0, 1 + sign.column, sign.left + kTieOfLine});
}

} // namespace

std::vector<CleanBreak> breakLines(std::span<const CleanBar> bars, double first, double other, bool toEnd) {
    constexpr double kNever = 1e18;
    const std::size_t count = bars.size();
    std::vector<double> best(count + 1, kNever);
    std::vector<std::size_t> from(count + 1, 0);
    best[0] = 0;
    for (std::size_t begin = 0; begin < count; ++begin) {
        if (best[begin] >= kNever)
            continue;
        const double room = begin == 0 ? first : other;
        double natural = 0;
        double least = 0;
        for (std::size_t end = begin + 1; end <= count; ++end) {
            natural += bars[end - 1].natural;
            least += bars[end - 1].least;
            // One bar always has its line, however full it is.
            if (end > begin + 1 && (least > room || natural * kPressed > room))
                break;
            const bool isLast = toEnd && end == count;
            double cost = isLast && natural < room ? 0.3 * costOf(std::max(natural, room * 0.5), room)
                                                   : costOf(natural, room);
            cost += best[begin];
            if (cost < best[end]) {
                best[end] = cost;
                from[end] = begin;
            }
        }
    }
    std::vector<CleanBreak> breaks;
    for (std::size_t end = count; end > 0; end = from[end]) {
        double natural = 0;
        for (std::size_t i = from[end]; i < end; ++i)
            natural += bars[i].natural;
        const double room = from[end] == 0 ? first : other;
        breaks.push_back({end, toEnd && end == count && natural < room * kRaggedBelow});
    }
    std::ranges::reverse(breaks);
    return breaks;
}

CleanSystem setSystem(CleanLine& line, bool ragged, const CleanMusic& music, const CleanStyle& style,
                      const CleanWords& words, double stretch) {
    const double space = style.space;
    const WrittenScore& score = music.score();
    Chain chain;
    for (std::size_t i = 0; i < line.count(); ++i)
        chain.add(line.bar(i), stretch);
    const double header = headerWidth(score, line.first) * space;
    line.notesFrom = std::min(line.left + header, (line.left + line.right) / 2);
    words.addRods(chain, {&line.bar(0), line.count()}, (line.notesFrom - line.left) / space);
    addTieRods(chain, line.bar(0));
    chain.close();
    double room = (line.right - line.notesFrom) / space;
    const double finalRoom = line.last ? kThinThick : 0;
    if (ragged) {
        const double natural = chain.width(1) + finalRoom;
        if (natural < room) {
            room = natural;
            line.right = line.notesFrom + room * space;
        }
    }
    line.barLines = chain.barLines;
    line.nodes = chain.fitted(std::max(1.0, room - finalRoom));
    for (double& x : line.nodes)
        x = line.notesFrom + x * space;

    CleanSystem system;
    system.left = line.left;
    system.right = line.right;
    system.last = line.last;
    for (std::size_t i = 1; i < line.count(); ++i)
        system.barLines.push_back(line.barLine(i));
    system.barLines.push_back(line.last ? line.right - kThinThick * space
                                        : line.right - kThinBar * space / 2);
    for (std::size_t staff = 0; staff < score.staves.size(); ++staff) {
        CleanInk& ink = system.staves.emplace_back(style, style.setup.pageWidth);
        const int index = static_cast<int>(staff);
        drawStaff(ink, line, score, index);
        drawBarLines(ink, line, score.staves[staff]);
        drawBeams(ink, line, index, music);
        drawNotes(ink, line, index, music);
        drawTies(ink, line, index, music);
        if (staff == 0)
            drawSlurs(ink, line, words.slurs(), music);
        drawTriplets(ink, line, index, music);
        drawOctaves(ink, line, index, music);
        drawDrumNames(ink, line, index, music);
        if (staff == 0) {
            words.draw(ink, line, music);
            drawAbove(ink, line, score);
        }
    }
    double top = 0;
    for (std::size_t staff = 0; staff < system.staves.size(); ++staff) {
        if (staff > 0)
            top += std::max(4 * space + leastGap(style),
                            system.staves[staff - 1].sky.distanceTo(system.staves[staff].sky) +
                                kStaffApart * space);
        system.tops.push_back(top);
    }
    return system;
}

double heightOf(const std::vector<CleanSystem>& systems, const CleanStyle& style) {
    if (systems.empty())
        return 0;
    const double wide = style.setup.pageWidth;
    double y = -std::min(0.0, systems.front().upper().highest(0, wide));
    for (std::size_t i = 0; i < systems.size(); ++i) {
        if (i > 0)
            y += systemStep(systems[i - 1], systems[i], style);
        y += systems[i].tops.back();
    }
    return y + std::max(4 * style.space, systems.back().lower().lowest(0, wide));
}

void placeSystems(EngravedPage& page, std::vector<CleanSystem>& systems, const WrittenScore& score,
                  const CleanStyle& style, double top, double bottom, bool fill) {
    if (systems.empty())
        return;
    const double space = style.space;
    const double height = heightOf(systems, style);
    const double gaps = static_cast<double>(systems.size()) - 1;
    const double inner = gaps + 1 > 0 ? static_cast<double>(systems[0].tops.size()) - 1 : 0;
    // Gaps within a system take a third of what those between systems take.
    const double shares = gaps + (gaps + 1) * inner / 3;
    double extra = 0;
    if (fill && shares > 0)
        extra = std::clamp((bottom - top - height) / shares, 0.0, kMostSpread * space);
    // A system that is too tall for its page is pressed together.
    const double squeeze = height > bottom - top && height > 0 ? (bottom - top) / height : 1;
    double y = top - std::min(0.0, systems[0].upper().highest(0, style.setup.pageWidth)) * squeeze;
    for (std::size_t i = 0; i < systems.size(); ++i) {
        CleanSystem& system = systems[i];
        if (i > 0)
            y += systemStep(systems[i - 1], system, style) * squeeze + extra;
        std::vector<double> tops;
        for (std::size_t staff = 0; staff < system.tops.size(); ++staff)
            tops.push_back(y + system.tops[staff] * squeeze + static_cast<double>(staff) * extra / 3);
        joinStaves(page, system, score, style, tops);
        for (std::size_t staff = 0; staff < tops.size(); ++staff)
            for (Mark& mark : system.staves[staff].marks) {
                moveMark(mark, 0, tops[staff]);
                page.marks.push_back(std::move(mark));
            }
        y = tops.back();
    }
}

} // namespace velmora::notation
