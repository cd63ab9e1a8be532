// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicStaff.h"

#include "notation/Keys.h"

#include <QString>

#include <array>
#include <cstdlib>

namespace velmora::notation {

namespace {

constexpr double kLeftEdge = 3;
constexpr double kRightMargin = 6;
constexpr double kStaffSpace = 8;
constexpr int kStaffLines = 5;

constexpr std::array<Point, 5> kSharps{{{16, -16}, {26, -4}, {34, -20}, {42, -8}, {50, 4}}};
constexpr std::array<Point, 6> kFlats{{{16, -2}, {22, -14}, {26, 2}, {32, -10}, {36, 6}, {42, -6}}};

void ruleStaff(ClassicInk& ink, const Staff& staff, int fifths, double top, double right) {
    if (staff.clef == StaffClef::Percussion) {
        ink.line({kLeftEdge, top}, {right, top}, 1, Role::StaffLine);
        return;
    }
    if (staff.clef == StaffClef::Treble)
        ink.image(GlyphImage::Image14, {0, top - 5}, Role::Clef);
    else
        ink.image(GlyphImage::Image4, {0, top}, Role::Clef);
    for (int line = 0; line < kStaffLines; ++line)
        ink.line({kLeftEdge, top + line * kStaffSpace}, {right, top + line * kStaffSpace}, 1,
                 Role::StaffLine);
    DrawKeySignature(ink, fifths, top);
}

std::string titleOf(const ScoreSetup& setup) {
    QString title = QString::fromStdString(setup.title.empty() ? "Untitled Score" : setup.title);
    title[0] = title[0].toUpper();
    return title.toStdString();
}

} // namespace

SystemShape::SystemShape(std::span<const Staff> staves, double SpacerHeight) {
    double StaffTop = 0;
    for (const Staff& staff : staves) {
        tops.push_back(StaffTop);
        SystemHeight = StaffTop + (staff.clef == StaffClef::Percussion ? 0 : kStaffHeight);
        StaffTop = SystemHeight + SpacerHeight;
    }
}

void DrawKeySignature(ClassicInk& ink, int fifths, double top) {
    for (int i = 0; i < std::abs(fifths); ++i) {
        const Point at =
            fifths > 0 ? kSharps.at(static_cast<std::size_t>(i)) : kFlats.at(static_cast<std::size_t>(i));
        ink.image(fifths > 0 ? GlyphImage::ImgSharp : GlyphImage::ImgFlat, {at.x, top + at.y},
                  Role::Signature);
    }
}

void ruleSystem(ClassicInk& ink, const WrittenScore& score, const ScoreSetup& setup, const SystemShape& shape,
                double BarTop) {
    const int fifths = kKeys.at(static_cast<std::size_t>(score.key)).fifths;
    for (std::size_t i = 0; i < score.staves.size(); ++i)
        ruleStaff(ink, score.staves[i], fifths, BarTop + shape.tops[i], setup.pageWidth - kRightMargin);
    const double BarBottom = BarTop + shape.SystemHeight;
    ink.line({kLeftEdge, BarTop}, {kLeftEdge, BarBottom}, 1, Role::BarLine);
    // Only there, which no default header reaches: meant.
    if (BarTop == 60)
        ink.line({6, BarTop}, {6, BarBottom}, 1, Role::BarLine);
}

void ruleHead(EngravedScore& into, EngravedPage& page, const WrittenScore& score, const ScoreSetup& setup,
              int number) {
    ClassicInk ink(page);
    const int style = into.styleOf(setup.titleStyle);
    const std::string title = titleOf(setup);
    page.caption = title + "         Page " + std::to_string(number);
    if (number == 1 || setup.titleEveryPage)
        ink.text({32, 20}, style, title, Role::Text);
    if (setup.titleEveryPage)
        ink.text({setup.pageWidth - 100, 20}, style, "Page " + std::to_string(number), Role::Text);
    const double x = kKeys.at(static_cast<std::size_t>(score.key)).timeSignatureX;
    ink.text({x, setup.HeaderHeight + 38.0}, style, std::to_string(score.TxtMeter), Role::Signature);
    ink.text({x, setup.HeaderHeight + 50.0}, style, std::to_string(score.NoteX), Role::Signature);
}

} // namespace velmora::notation
