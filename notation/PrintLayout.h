// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PageFiles.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace velmora::notation {

enum class PaperSize : std::uint8_t { Letter, A4 };
enum class PaperTurn : std::uint8_t { Portrait, Landscape };

/// Paper as it is sold, upright, in its own unit: inches for Letter, centimetres for A4.
struct PaperRow {
    double width, height;
    double pointsAUnit; ///< 72 an inch
    std::string_view unit;
    std::string_view media; ///< as printers call it
    int code;               ///< as printer drivers have long counted it
    std::string_view text;  ///< of the summary
};
// The figures of the A4 text stay as they are.
inline constexpr std::array<PaperRow, 2> kPaperRows{{
    {8.5, 11.0, 72, "in", "na_letter_8.5x11in", 1, "Letter (8.5 x 11 in.)"},
    {21.0, 29.7, 72 / 2.54, "cm", "iso_a4_210x297mm", 9, "A4 (197 x 210 mm.)"},
}};
[[nodiscard]] constexpr const PaperRow& rowOf(PaperSize paper) {
    return kPaperRows[static_cast<std::size_t>(paper)];
}

enum class Margin : std::uint8_t { Top, Left, Bottom, Right };

/// Where the picture of a page stands on paper. Lengths are in the paper's own unit.
struct PrintLayout {
    double pictureWidth = 794; ///< of the page, in pixels, 96 an inch
    double pictureHeight = 1123;
    std::array<double, 4> margins{1.5, 1.5, 1.5, 1.5}; ///< by `Margin`
    bool chkFit = true;                                ///< as large as the margins let it be
    bool chkCenter = true;                             ///< in the middle between the margins
    double percent = 100;                              ///< of the picture's own size, unless `chkFit`
    double moveX = 0; ///< from the upper left corner of the margins, unless `chkCenter`
    double moveY = 0;

    [[nodiscard]] PaperSize paper() const { return paper_; }
    [[nodiscard]] PaperTurn turn() const { return turn_; }
    /// Other paper with the same lengths in its own unit.
    void setPaper(PaperSize paper);
    void setTurn(PaperTurn turn) { turn_ = turn; }
    [[nodiscard]] double PaperWidth() const;
    [[nodiscard]] double PaperHeight() const;
    [[nodiscard]] double margin(Margin which) const { return margins[static_cast<std::size_t>(which)]; }
    /// Between 0 and the paper's own length.
    void setMargin(Margin which, double length);
    /// Whether anything is left between the margins.
    [[nodiscard]] bool hasRoom() const;

    struct Box {
        double left = 0, top = 0, width = 0, height = 0;
    };
    /// Of the picture on the paper. Nothing without room.
    [[nodiscard]] Box image() const;
    /// The share of its own size that the picture has, in per cent.
    [[nodiscard]] double shownPercent() const;
    /// A hand takes the picture along; it stays on the paper, or over all of it where it is larger.
    void drag(double byX, double byY);
    /// The picture is made so wide or high, in its proportion; that is no fit any more.
    void setImageWidth(double width);
    void setImageHeight(double height);
    void setPercent(double wanted);

    /// For the painter: points.
    [[nodiscard]] PagePlace place() const;
    /// Where a margin's line stands on the paper, as a share of its width or height, at most 1.
    [[nodiscard]] double lineShare(Margin which) const;

private:
    [[nodiscard]] double ownWidth() const;
    [[nodiscard]] double ownHeight() const;
    [[nodiscard]] double roomX() const;
    [[nodiscard]] double roomY() const;

    PaperSize paper_ = PaperSize::A4;
    PaperTurn turn_ = PaperTurn::Portrait;
};

inline constexpr int kMostSheets = 10'000; ///< of paper in one job

/// A sheet of paper: which page, and which copy of it; both from 1.
struct PrintedSheet {
    int page = 1;
    int copy = 1;
    bool operator==(const PrintedSheet&) const = default;
};
/// What is printed, in order: all pages of the range that are there, then all of them again for each copy.
/// @param from,to 0 for the first and the last
/// @return nothing for no copies or a range that is empty; no more than `kMostSheets` and one
[[nodiscard]] std::vector<PrintedSheet> printOrder(int pages, int from, int to, int copies);

} // namespace velmora::notation
