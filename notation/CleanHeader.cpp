// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanHeader.h"

#include "notation/Keys.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kBegin = 0.6; ///< from the staff lines' begin to the clef
constexpr double kClefWidth = 2.8;
constexpr double kPartGap = 0.8; ///< between clef, key and time
constexpr double kEnd = 0.5;     ///< behind the last of them
constexpr double kSharpStep = 1.0;
constexpr double kFlatStep = 0.9;
constexpr double kTimeWidth = 1.8;
constexpr double kStaffLine = 0.11;
constexpr double kDigitHalf = 0.97; ///< half the height of a time signature's figure

// Of the treble clef, in the order in which they come.
constexpr std::array kSharpPlaces{4, 1, 5, 2, -1, 3, 0};
constexpr std::array kFlatPlaces{0, 3, -1, 2, -2, 1, -3};
constexpr int kBassShift = -2;

int fifthsOf(const WrittenScore& score) {
    const auto key = static_cast<std::size_t>(std::clamp(score.key, 0, static_cast<int>(kKeys.size()) - 1));
    return kKeys.at(key).fifths;
}

double keyWidth(int fifths) {
    return fifths > 0 ? fifths * kSharpStep : -fifths * kFlatStep;
}

/// The room of a time signature: as its longer number needs.
double timeWidth(const WrittenScore& score) {
    const std::size_t figures =
        std::max(std::to_string(score.TxtMeter).size(), std::to_string(score.NoteX).size());
    return std::max(kTimeWidth, 1.45 * static_cast<double>(figures));
}

void drawKey(CleanInk& ink, double left, int fifths, bool bass) {
    const double space = ink.style().space;
    const int count = std::abs(fifths);
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const int place = (fifths > 0 ? kSharpPlaces.at(at) : kFlatPlaces.at(at)) + (bass ? kBassShift : 0);
        const double step = fifths > 0 ? kSharpStep : kFlatStep;
        ink.glyph(fifths > 0 ? MusicGlyph::Sharp : MusicGlyph::Flat,
                  {left + (i + 0.5) * step * space, heightOfPlace(place) * space}, Role::Signature, 0);
    }
}

void drawFigures(CleanInk& ink, double left, double width, const std::string& text, double middle) {
    const double wide = ink.style().extent(text, ink.style().digits).width;
    ink.text(text, ink.style().digits, {left + (width - wide) / 2, (middle + kDigitHalf) * ink.style().space},
             Role::Signature, 0);
}

void drawTime(CleanInk& ink, double left, const WrittenScore& score) {
    const double space = ink.style().space;
    if (score.NoteX == score.TxtMeter && (score.NoteX == 4 || score.NoteX == 2)) {
        ink.glyph(score.NoteX == 4 ? MusicGlyph::CommonTime : MusicGlyph::CutTime, {left, 2 * space},
                  Role::Signature, 0);
        return;
    }
    const double width = timeWidth(score) * space;
    drawFigures(ink, left, width, std::to_string(score.TxtMeter), 1);
    drawFigures(ink, left, width, std::to_string(score.NoteX), 3);
}

void drawClef(CleanInk& ink, double left, StaffClef clef) {
    const double space = ink.style().space;
    switch (clef) {
    case StaffClef::Treble:
        ink.glyph(MusicGlyph::TrebleClef, {left, 3 * space}, Role::Clef, 0);
        break;
    case StaffClef::Bass:
        ink.glyph(MusicGlyph::BassClef, {left, space}, Role::Clef, 0);
        break;
    case StaffClef::Percussion:
        ink.glyph(MusicGlyph::PercussionClef, {left + 0.8 * space, 2 * space}, Role::Clef, 0);
        break;
    }
}

/// What a player counts: its head and dot, and how many quarters it has.
struct Beat {
    MusicGlyph head;
    bool dotted;
    double quarters;
};
Beat beatOf(const WrittenScore& score) {
    const bool isCompound = score.TxtMeter > 3 && score.TxtMeter % 3 == 0;
    if (isCompound && score.NoteX == 8)
        return {MusicGlyph::HeadBlack, true, 1.5};
    if (isCompound && score.NoteX == 4)
        return {MusicGlyph::HeadHalf, true, 3};
    if (score.NoteX == 2 && !isCompound)
        return {MusicGlyph::HeadHalf, false, 2};
    return {MusicGlyph::HeadBlack, false, 1};
}

void drawTempo(CleanInk& ink, const CleanLine& line, const Beat& beat) {
    const CleanStyle& style = ink.style();
    const double space = style.space;
    if (style.setup.tempoWords.empty() && style.setup.tempo <= 0)
        return;
    const std::string number = std::to_string(std::lround(style.setup.tempo / beat.quarters));
    const std::string behind = " = " + number + (style.setup.tempoWords.empty() ? "" : ")");
    const double words =
        style.setup.tempoWords.empty() ? 0 : style.extent(style.setup.tempoWords, style.tempo).width;
    const double open = words > 0 ? style.extent(" (", style.metronome).width : 0;
    const double noteWidth = (beat.dotted ? 1.5 : 1.0) * space;
    const double whole = words + open + noteWidth + style.extent(behind, style.metronome).width;
    const double left = line.left + kBegin * space;
    const double y = std::min(-1.5 * space, ink.sky.highest(left, left + whole) - 1.2 * space);
    double x = left;
    if (words > 0)
        ink.text(style.setup.tempoWords, style.tempo, {x, y}, Role::Text, 0);
    if (style.setup.tempo <= 0)
        return;
    x += words;
    if (words > 0)
        ink.text(" (", style.metronome, {x, y}, Role::Text, 0);
    x += open;
    constexpr double kSmallNote = 0.8;
    const double stem = x + space;
    ink.add(
        {GlyphMark{beat.head, {x + space / 2, y - 0.35 * space}, space * kSmallNote}, Role::Text, 0, kBlack});
    ink.line({stem - 0.06 * space, y - 0.35 * space}, {stem - 0.06 * space, y - 2.6 * space}, 0.12 * space,
             Role::Text, 0);
    if (beat.dotted)
        ink.oval({x + 1.35 * space, y - 0.45 * space}, 0.15 * space, 0.15 * space, Role::Text, 0);
    ink.text(behind, style.metronome, {x + noteWidth, y}, Role::Text, 0);
}

void drawNumber(CleanInk& ink, double left, int number) {
    const CleanStyle& style = ink.style();
    const std::string text = std::to_string(number);
    const double width = style.extent(text, style.number).width;
    const double right = std::min(left + width, ink.style().setup.pageWidth);
    const double y = std::min(-0.6 * style.space, ink.sky.highest(left, right) - 0.4 * style.space);
    ink.text(text, style.number, {right - width, y}, Role::Text, 0);
}

std::string titleOf(const ScoreSetup& setup) {
    std::string title = setup.title.empty() ? "Untitled Score" : setup.title;
    if (title[0] >= 'a' && title[0] <= 'z')
        title[0] = static_cast<char>(title[0] - 'a' + 'A');
    return title;
}

} // namespace

double headerWidth(const WrittenScore& score, bool withTime) {
    double width = kBegin + kClefWidth;
    if (const int fifths = fifthsOf(score); fifths != 0)
        width += kPartGap + keyWidth(fifths);
    if (withTime)
        width += kPartGap + timeWidth(score);
    return width + kEnd;
}

double staffTop(const Staff& staff) {
    return staff.clef == StaffClef::Percussion ? 2 : 0;
}
double staffBottom(const Staff& staff) {
    return staff.clef == StaffClef::Percussion ? 2 : 4;
}

void drawStaff(CleanInk& ink, const CleanLine& line, const WrittenScore& score, int index) {
    const double space = ink.style().space;
    const Staff& staff = score.staves[static_cast<std::size_t>(index)];
    const int lines = static_cast<int>(staffBottom(staff) - staffTop(staff)) + 1;
    for (int i = 0; i < lines; ++i) {
        const double y = staffTop(staff) + i;
        ink.line({line.left, y * space}, {line.right, y * space}, kStaffLine * space, Role::StaffLine, 0);
    }
    double x = line.left + kBegin * space;
    drawClef(ink, x, staff.clef);
    x += (kClefWidth + kPartGap) * space;
    if (const int fifths = fifthsOf(score); fifths != 0) {
        if (staff.clef != StaffClef::Percussion)
            drawKey(ink, x, fifths, staff.clef == StaffClef::Bass);
        x += (keyWidth(fifths) + kPartGap) * space;
    }
    if (line.first)
        drawTime(ink, x, score);
}

void drawAbove(CleanInk& ink, const CleanLine& line, const WrittenScore& score) {
    const double space = ink.style().space;
    if (line.first)
        drawTempo(ink, line, beatOf(score));
    if (line.count() == 0)
        return;
    const bool every = ink.style().setup.numbers;
    if (every || !line.first)
        drawNumber(ink, line.left, line.bar(0).number);
    for (std::size_t i = 1; every && i < line.count(); ++i)
        drawNumber(ink, line.barLine(i) + 0.2 * space, line.bar(i).number);
}

double drawTitle(EngravedPage& page, const CleanStyle& style, int number) {
    const ScoreSetup& setup = style.setup;
    const std::string title = titleOf(setup);
    page.caption = title + "         Page " + std::to_string(number);
    double y = topMargin(setup);
    if (number > 1 && !setup.titleEveryPage)
        return y;
    const TextExtent extent = style.extent(title, style.title);
    const double right = setup.pageWidth - sideMargin(setup);
    page.marks.push_back(
        {TextMark{{(setup.pageWidth - extent.width) / 2, y}, style.title, title}, Role::Text, 0, kBlack});
    if (number > 1) {
        const std::string text = "Page " + std::to_string(number);
        const TextExtent own = style.extent(text, style.page);
        page.marks.push_back(
            {TextMark{{right - own.width, y + extent.baseline - own.baseline}, style.page, text}, Role::Text,
             0, kBlack});
    }
    y += extent.height;
    if (!setup.composer.empty() && number == 1) {
        const TextExtent own = style.extent(setup.composer, style.composer);
        page.marks.push_back({TextMark{{right - own.width, y + style.space}, style.composer, setup.composer},
                              Role::Text, 0, kBlack});
        y += own.height + style.space;
    }
    return y + 1.5 * style.space;
}

double sideMargin(const ScoreSetup& setup) {
    return std::min(53.0, setup.pageWidth * 0.06);
}
double topMargin(const ScoreSetup& setup) {
    return std::min(setup.HeaderHeight * 0.7, setup.pageHeight * 0.06 * setup.HeaderHeight / 60);
}
double bottomMargin(const ScoreSetup& setup) {
    return std::min(46.0, setup.pageHeight * 0.045);
}

} // namespace velmora::notation
