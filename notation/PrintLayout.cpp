// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintLayout.h"

#include <algorithm>
#include <utility>

namespace velmora::notation {

namespace {
constexpr double kPointsAPixel = 0.75;
constexpr double kLeastPercent = 1;
constexpr double kMostPercent = 1000;
/// Less than that between the margins is no room: points.
constexpr double kLeastRoom = 1;

/// Within the paper, or over all of it.
double kept(double at, double length, double paper) {
    const double slack = paper - length;
    return std::clamp(at, std::min(slack, 0.0), std::max(slack, 0.0));
}
} // namespace

void PrintLayout::setPaper(PaperSize paper) {
    const double factor = rowOf(std::exchange(paper_, paper)).pointsAUnit / rowOf(paper).pointsAUnit;
    for (double& length : margins)
        length *= factor;
    moveX *= factor;
    moveY *= factor;
}

double PrintLayout::PaperWidth() const {
    return turn_ == PaperTurn::Portrait ? rowOf(paper_).width : rowOf(paper_).height;
}

double PrintLayout::PaperHeight() const {
    return turn_ == PaperTurn::Portrait ? rowOf(paper_).height : rowOf(paper_).width;
}

void PrintLayout::setMargin(Margin which, double length) {
    const bool isUpright = which == Margin::Top || which == Margin::Bottom;
    margins[static_cast<std::size_t>(which)] =
        std::clamp(length, 0.0, isUpright ? PaperHeight() : PaperWidth());
}

double PrintLayout::roomX() const {
    return PaperWidth() - margin(Margin::Left) - margin(Margin::Right);
}
double PrintLayout::roomY() const {
    return PaperHeight() - margin(Margin::Top) - margin(Margin::Bottom);
}

bool PrintLayout::hasRoom() const {
    return std::min(roomX(), roomY()) * rowOf(paper_).pointsAUnit >= kLeastRoom;
}

double PrintLayout::ownWidth() const {
    return pictureWidth * kPointsAPixel / rowOf(paper_).pointsAUnit;
}
double PrintLayout::ownHeight() const {
    return pictureHeight * kPointsAPixel / rowOf(paper_).pointsAUnit;
}

double PrintLayout::shownPercent() const {
    constexpr double kWhole = 100;
    if (!chkFit)
        return percent;
    return hasRoom() ? std::min(roomX() / ownWidth(), roomY() / ownHeight()) * kWhole : 0;
}

PrintLayout::Box PrintLayout::image() const {
    if (!hasRoom())
        return {};
    const double scale = shownPercent() / 100;
    Box box{.left = margin(Margin::Left),
            .top = margin(Margin::Top),
            .width = ownWidth() * scale,
            .height = ownHeight() * scale};
    if (chkCenter) {
        box.left += (roomX() - box.width) / 2;
        box.top += (roomY() - box.height) / 2;
    } else {
        box.left = kept(box.left + moveX, box.width, PaperWidth());
        box.top = kept(box.top + moveY, box.height, PaperHeight());
    }
    return box;
}

void PrintLayout::drag(double byX, double byY) {
    const Box from = image();
    chkCenter = false;
    moveX = kept(from.left + byX, from.width, PaperWidth()) - margin(Margin::Left);
    moveY = kept(from.top + byY, from.height, PaperHeight()) - margin(Margin::Top);
}

void PrintLayout::setImageWidth(double width) {
    setPercent(width / ownWidth() * 100);
}

void PrintLayout::setImageHeight(double height) {
    setPercent(height / ownHeight() * 100);
}

void PrintLayout::setPercent(double wanted) {
    chkFit = false;
    percent = std::clamp(wanted, kLeastPercent, kMostPercent);
}

PagePlace PrintLayout::place() const {
    const double points = rowOf(paper_).pointsAUnit;
    const Box box = image();
    return {.paperWidth = PaperWidth() * points,
            .paperHeight = PaperHeight() * points,
            .left = box.left * points,
            .top = box.top * points,
            .scale = kPointsAPixel * shownPercent() / 100};
}

double PrintLayout::lineShare(Margin which) const {
    const bool isUpright = which == Margin::Top || which == Margin::Bottom;
    const double share = std::clamp(margin(which) / (isUpright ? PaperHeight() : PaperWidth()), 0.0, 1.0);
    return which == Margin::Top || which == Margin::Left ? share : 1 - share;
}

std::vector<PrintedSheet> printOrder(int pages, int from, int to, int copies) {
    const int first = std::max(from, 1);
    const int last = to <= 0 ? pages : std::min(to, pages);
    std::vector<PrintedSheet> order;
    if (first > last)
        return order;
    for (int copy = 1; copy <= copies; ++copy)
        for (int page = first; page <= last; ++page) {
            order.push_back({page, copy});
            if (order.size() > kMostSheets)
                return order;
        }
    return order;
}

} // namespace velmora::notation
