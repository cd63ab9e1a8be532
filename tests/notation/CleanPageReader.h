// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanSystems.h"
#include "notation/Engraver.h"
#include "notation/MarkBox.h"
#include "tests/notation/CleanMusicReader.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velmora::notation {

/// Every character as wide as every other, so that widths are plain to see.
class EvenMeasure : public TextMeasure {
public:
    [[nodiscard]] TextExtent extent(std::string_view text, const TextStyle& style) override {
        const double size = style.points * 4 / 3;
        return {0.5 * size * static_cast<double>(text.size()), 1.2 * size, size};
    }
};

/// Music drawn note by note, and its clean page as marks. Measures are staff spaces of 8 pixels.
struct CleanPageReader : CleanMusicReader {
    static constexpr double kSpace = 8;
    EvenMeasure measure;
    EngravedScore engraved;

    CleanPageReader& engrave() { return engrave(read()); }
    CleanPageReader& engrave(const WrittenScore& written) {
        engraved = engraveClean(written, setup, measure);
        return *this;
    }
    [[nodiscard]] const std::vector<Mark>& marks(std::size_t page = 0) const {
        return engraved.pages[page].marks;
    }
    [[nodiscard]] Box box(const Mark& mark) { return boxOf(mark, engraved.styles, measure); }

    /// The marks of a role in the order from left to right.
    [[nodiscard]] std::vector<Mark> of(Role role, std::size_t page = 0) {
        std::vector<Mark> found;
        for (const Mark& mark : marks(page))
            if (mark.role == role)
                found.push_back(mark);
        std::ranges::stable_sort(found, {}, [this](const Mark& mark) { return box(mark).left; });
        return found;
    }
    [[nodiscard]] std::vector<Box> boxes(Role role, std::size_t page = 0) {
        std::vector<Box> found;
        for (const Mark& mark : of(role, page))
            found.push_back(box(mark));
        return found;
    }
    [[nodiscard]] std::vector<LineMark> lines(Role role) {
        std::vector<LineMark> found;
        for (const Mark& mark : of(role))
            if (const auto* line = std::get_if<LineMark>(&mark.shape))
                found.push_back(*line);
        return found;
    }
    [[nodiscard]] std::vector<GlyphMark> glyphs(Role role) {
        std::vector<GlyphMark> found;
        for (const Mark& mark : of(role))
            if (const auto* glyph = std::get_if<GlyphMark>(&mark.shape))
                found.push_back(*glyph);
        return found;
    }
    [[nodiscard]] std::vector<CurveMark> curves(Role role) {
        std::vector<CurveMark> found;
        for (const Mark& mark : of(role))
            if (const auto* curve = std::get_if<CurveMark>(&mark.shape))
                found.push_back(*curve);
        return found;
    }
    [[nodiscard]] std::vector<std::string> texts(Role role, std::size_t page = 0) {
        std::vector<std::string> found;
        for (const Mark& mark : of(role, page))
            if (const auto* text = std::get_if<TextMark>(&mark.shape))
                found.push_back(text->text);
        return found;
    }
    /// The heights of the first staff's lines, from its top.
    [[nodiscard]] double staffLine(std::size_t i) {
        std::vector<double> heights;
        for (const LineMark& line : lines(Role::StaffLine))
            heights.push_back(line.from.y);
        std::ranges::sort(heights);
        return heights.at(i);
    }
    /// How many steps of the scale a height is above the middle line.
    [[nodiscard]] double place(double y) { return (staffLine(2) - y) / kSpace * 2; }
};

/// The middle of a box, across.
[[nodiscard]] inline double middleOf(const Box& box) {
    return (box.left + box.right) / 2;
}
[[nodiscard]] inline double rise(const LineMark& line) {
    return std::abs(line.to.y - line.from.y);
}

} // namespace velmora::notation
