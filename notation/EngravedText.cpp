// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/EngravedText.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <variant>

namespace velmora::notation {

namespace {

/// Writes the line of each shape.
class ElementWriter {
public:
    [[nodiscard]] std::string take() { return std::move(text_); }

    void page(std::size_t number, const EngravedScore& score) {
        begin("page");
        text_ += ' ' + std::to_string(number);
        numbers(score.width, score.height);
        end();
    }
    void operator()(const LineMark& line) {
        begin("line");
        numbers(line.from.x, line.from.y, line.to.x, line.to.y, line.width);
        end();
    }
    void operator()(const ImageMark& image) {
        begin("image");
        word(kGlyphImageNames.at(static_cast<std::size_t>(image.image)));
        numbers(image.at.x, image.at.y);
        end();
    }
    void operator()(const EllipseMark& ellipse) {
        begin("ellipse");
        numbers(ellipse.centre.x, ellipse.centre.y, ellipse.radius);
        std::array<char, 32> aspect{};
        std::snprintf(aspect.data(), aspect.size(), " %.2f", ellipse.aspect);
        text_ += aspect.data();
        word(ellipse.filled ? "filled" : "open");
        end();
    }
    void operator()(const TextMark& text) {
        begin("text");
        numbers(text.at.x, text.at.y);
        word(text.text);
        end();
    }
    void operator()(const CurveMark& curve) {
        begin("curve");
        for (const Point& point : curve.points)
            numbers(point.x, point.y);
        numbers(curve.width);
        end();
    }
    void operator()(const GlyphMark& glyph) {
        begin("glyph");
        word(kMusicGlyphNames.at(static_cast<std::size_t>(glyph.glyph)));
        numbers(glyph.at.x, glyph.at.y, glyph.size);
        end();
    }

private:
    void begin(std::string_view name) { text_ += name; }
    void word(std::string_view word) { text_.append(1, ' ').append(word); }
    void end() { text_ += '\n'; }
    template<class... Pixels>
    void numbers(Pixels... pixels) {
        ((text_ += ' ', text_ += std::to_string(std::llrint(pixels))), ...);
    }

    std::string text_;
};

} // namespace

std::string engravedText(const EngravedScore& score) {
    ElementWriter writer;
    for (std::size_t i = 0; i < score.pages.size(); ++i) {
        writer.page(i + 1, score);
        for (const Mark& mark : score.pages[i].marks)
            std::visit(writer, mark.shape);
    }
    return writer.take();
}

} // namespace velmora::notation
