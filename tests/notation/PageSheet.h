// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"
#include "notation/PageFiles.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmora::notation {

/// A page that a test puts marks on, and its pixels.
class PageSheet {
public:
    explicit PageSheet(int pixelsWide = 64, int pixelsHigh = 48) {
        score.width = pixelsWide;
        score.height = pixelsHigh;
        score.pages.resize(1);
    }
    PageSheet& draw(decltype(Mark::shape) shape, Colour colour = kBlack) {
        score.pages[0].marks.push_back({std::move(shape), Role::Other, -1, colour});
        return *this;
    }
    PageSheet& write(Point at, std::string text, const TextStyle& style = {}) {
        return draw(TextMark{at, score.styleOf(style), std::move(text)});
    }
    [[nodiscard]] const EngravedPage& page() const { return score.pages[0]; }

    void paint(double scale = 1) {
        width = static_cast<int>(score.width * scale);
        height = static_cast<int>(score.height * scale);
        pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
        paintPixels(score, page(), scale, 0, 0, width, height, pixels.data());
    }
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x));
    }
    [[nodiscard]] bool isInk(int x, int y) const { return (at(x, y) & 0xFF) < 0x80; }
    /// The least box around all that isn't white: left, top, and behind right and bottom.
    [[nodiscard]] std::array<int, 4> ink() const {
        std::array<int, 4> box{width, height, 0, 0};
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (isInk(x, y))
                    box = {std::min(box[0], x), std::min(box[1], y), std::max(box[2], x + 1),
                           std::max(box[3], y + 1)};
        return box;
    }

    EngravedScore score;
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;
};

} // namespace velmora::notation
