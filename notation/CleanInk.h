// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanMusic.h"
#include "notation/CleanSpacing.h"
#include "notation/MarkBox.h"
#include "notation/Marks.h"
#include "notation/TextMeasure.h"

#include <map>
#include <string>
#include <vector>

namespace velmora::notation {

/// How far a staff's marks reach up and down, along its line; in pixels from the staff's top.
class Skyline {
public:
    explicit Skyline(double width);
    void add(const Box& box);
    [[nodiscard]] double highest(double left, double right) const;
    [[nodiscard]] double lowest(double left, double right) const;
    /// How far the staff @p below must stand from this one at least, top from top, so that nothing touches.
    [[nodiscard]] double distanceTo(const Skyline& below) const;

private:
    [[nodiscard]] std::size_t bin(double x) const;
    std::vector<float> top_, bottom_;
};

/// What the clean page's passes share: the size of all things and the styles of its texts.
struct CleanStyle {
    CleanStyle(const ScoreSetup& setup, TextMeasure& measure, EngravedScore& into, double space);

    const ScoreSetup& setup;
    TextMeasure& measure;
    EngravedScore& into;
    double space; ///< of a staff, in pixels
    int title, composer, words, tempo, metronome, number, tuplet, octave, digits, letters, drum, page;

    /// In pixels.
    [[nodiscard]] TextExtent extent(const std::string& text, int style) const;

private:
    mutable std::map<std::pair<int, std::string>, TextExtent> known_;
};

/// One line of the music with the place of every column.
struct CleanLine {
    std::vector<CleanBar>* bars = nullptr; ///< all that are at hand
    std::size_t begin = 0, end = 0;        ///< those of the line
    std::vector<int> barLines;             ///< nodes
    std::vector<double> nodes;             ///< x in pixels
    double left = 0, right = 0;            ///< of the staff lines
    double notesFrom = 0;                  ///< behind clef and signatures
    bool first = false, last = false;

    [[nodiscard]] CleanBar& bar(std::size_t i) const { return (*bars)[begin + i]; }
    [[nodiscard]] std::size_t count() const { return end - begin; }
    [[nodiscard]] double xOf(std::size_t bar, int column) const {
        return nodes[static_cast<std::size_t>(barLines[bar] + 1 + column)];
    }
    [[nodiscard]] double barLine(std::size_t i) const { return nodes[static_cast<std::size_t>(barLines[i])]; }
};

/// What is drawn of one staff in one line, in pixels from the staff's top, which is 0.
class CleanInk {
public:
    CleanInk(const CleanStyle& style, double width) : style_(style), sky(width) {}

    void add(Mark mark);
    void line(Point from, Point to, double width, Role role, int note = -1);
    /// Filled, of that size as it is seen.
    void oval(Point middle, double halfWidth, double halfHeight, Role role, int note, Colour colour = kBlack);
    void glyph(MusicGlyph glyph, Point at, Role role, int note = -1, double scale = 1);
    /// @param at where its line of writing begins
    void text(const std::string& text, int style, Point at, Role role, int note = -1, Colour colour = kBlack);
    [[nodiscard]] const CleanStyle& style() const { return style_; }

private:
    const CleanStyle& style_;

public:
    std::vector<Mark> marks;
    Skyline sky;
};

} // namespace velmora::notation
