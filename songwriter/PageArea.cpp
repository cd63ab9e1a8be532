// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/PageArea.h"

#include "notation/SongDocument.h"
#include "shell/FramePainter.h"
#include "shell/SkinPainter.h"
#include "songwriter/PageView.h"
#include "songwriter/ScoreSheet.h"
#include "songwriter/SongParts.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <utility>

namespace velmora {

namespace {
constexpr int kLeft = 48;
constexpr int kTop = 12;
constexpr int kAcross = 28;      ///< from one sheet to the one behind it
constexpr int kBehind = 3;       ///< sheets that look out behind the first
constexpr int kRoomForAll = 480; ///< in less height one looks out, so that the music keeps its room
constexpr int kPageAndBar = 810; ///< across a page at its own size and the scroll bar beside it
constexpr std::array kZooms{0.25, 0.5, 0.67, 0.75, 0.9, 1.0, 1.25, 1.5, 2.0, 3.0, 4.0};
} // namespace

PageArea::PageArea(const SongParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setObjectName("pageArea");
    setAccessibleName("Pages");
    setAttribute(Qt::WA_OpaquePaintEvent);
}

ScoreSheet* PageArea::sheet(int page) const {
    const auto found = sheets_.find(page);
    return found == sheets_.end() ? nullptr : found->second;
}

/// Pages that stand where they were put at first: of those that lie beneath, the rest is covered whole.
std::vector<int> PageArea::seenPages() const {
    std::vector<int> seen;
    for (const int page : pages_) {
        const ScoreSheet* const made = sheet(page);
        if (made && made->isPlaced())
            continue;
        seen.push_back(page);
        if (seen.size() > kBehind)
            break;
    }
    return seen;
}

ScoreSheet& PageArea::makeSheet(int page) {
    auto* const made = new ScoreSheet(parts_, page, this);
    sheets_.emplace(page, made);
    made->setZoom(zoom_);
    made->setTextStyle(style_);
    made->onRaise = [this, page] { raisePage(page); };
    made->onClose = [this, page] { parts_.song.closePage(page); };
    made->onPlaced = [this] { makeSeen(); };
    made->onWhole = [this, made] { showWhole(*made); };
    made->onZoom = [this](double steps) { zoomBy(steps > 0 ? 1 : -1); };
    const auto order = std::ranges::lower_bound(pages_, page) - pages_.begin();
    made->setGeometry(placeOf(static_cast<int>(order)));
    if (const auto corner = corners_.find(page); corner != corners_.end())
        made->scrollTo(corner->second);
    made->show();
    return *made;
}

void PageArea::makeSeen() {
    bool grown = false;
    for (const int page : seenPages())
        if (!sheet(page)) {
            makeSheet(page);
            grown = true;
        }
    if (grown)
        layOut();
}

/// A page that no longer shows anywhere needs no sheet, unless the user has left something on it.
void PageArea::dropIfCovered(ScoreSheet& behind) {
    const ScoreSheet* const front = frontSheet();
    if (behind.isPlaced() || behind.isTyping() || !front || !front->geometry().contains(behind.geometry()) ||
        std::ranges::count(seenPages(), behind.page()) > 0)
        return;
    corners_[behind.page()] = behind.Pic1().corner();
    drop(behind);
}

void PageArea::drop(ScoreSheet& sheet) {
    sheets_.erase(sheet.page());
    sheet.hide();
    sheet.deleteLater(); // its own button may have been pressed
}

void PageArea::showPages() {
    const std::vector<int> before = std::exchange(pages_, parts_.song.openPages());
    // A page that was closed by hand leaves the others where they are.
    const bool fewer = !before.empty() && before.back() > parts_.song.count();
    for (const auto& [page, sheet] : std::map(sheets_))
        if (parts_.song.isOpen(page))
            sheet->showPage();
        else
            drop(*sheet);
    std::erase_if(corners_, [this](const auto& kept) { return !parts_.song.isOpen(kept.first); });
    makeSeen();
    if (fewer)
        layOut();
    if (!sheet(front_)) {
        const auto next = std::ranges::lower_bound(pages_, front_);
        front_ = 0;
        if (!pages_.empty())
            raisePage(next == pages_.end() ? pages_.back() : *next);
        else if (onFront)
            onFront();
    }
    update();
}

void PageArea::raisePage(int page) {
    if (page == front_ || !std::ranges::binary_search(pages_, page))
        return;
    ScoreSheet* const before = frontSheet();
    ScoreSheet* const made = sheet(page);
    ScoreSheet& raised = made ? *made : makeSheet(page);
    const bool hadFocus = before && before->isAncestorOf(window()->focusWidget());
    front_ = page;
    raised.setFront(true);
    raised.raise();
    if (hadFocus)
        raised.setFocus(); // keys scroll what is seen
    if (before) {
        before->setFront(false);
        dropIfCovered(*before);
    }
    if (onFront)
        onFront();
}

void PageArea::step(int by) {
    const auto at = std::ranges::find(pages_, front_);
    if (at == pages_.end())
        return;
    if (by > 0)
        raisePage(std::next(at) == pages_.end() ? pages_.front() : *std::next(at));
    else
        raisePage(at == pages_.begin() ? pages_.back() : *std::prev(at));
}

/// @param order from the front, 0 first
QRect PageArea::placeOf(int order) const {
    const int most = height() < kRoomForAll ? 1 : kBehind;
    const int behind = std::clamp(static_cast<int>(pages_.size()) - 1, 0, most);
    const int depth = std::min(order, behind);
    const int edges = 2 * kLeft;
    const int whole = kPageAndBar + 2 * parts_.look.skin().edgeWidth;
    const int width = std::min(whole, this->width() - edges - behind * kAcross);
    const int height = this->height() - 2 * kTop - behind * kTitleHeight;
    return {kLeft + depth * kAcross, kTop + (behind - depth) * kTitleHeight, std::max(width, 220),
            std::max(height, 140)};
}

void PageArea::layOut() {
    int order = 0;
    ScoreSheet* inFront = nullptr;
    for (const int page : pages_) {
        ScoreSheet* const made = sheet(page);
        if (made && !made->isPlaced())
            made->setGeometry(placeOf(order));
        if (made && inFront)
            made->stackUnder(inFront);
        if (made)
            inFront = made;
        ++order;
    }
    if (ScoreSheet* const front = frontSheet())
        front->raise();
}

void PageArea::showWhole(ScoreSheet& sheet) {
    const bool isWhole = sheet.geometry() == rect();
    sheet.setPlaced(!isWhole);
    if (isWhole)
        layOut();
    else
        sheet.setGeometry(rect());
}

void PageArea::setZoom(double zoom) {
    zoom_ = std::clamp(zoom, kZooms.front(), kZooms.back());
    for (const auto& [page, sheet] : sheets_)
        sheet->setZoom(zoom_);
    if (onFront)
        onFront();
}

void PageArea::zoomBy(int steps) {
    const auto* const at = steps > 0 ? std::ranges::upper_bound(kZooms, zoom_ + 0.001)
                                     : std::ranges::lower_bound(kZooms, zoom_ - 0.001);
    if (steps > 0 && at != kZooms.end())
        setZoom(*at);
    else if (steps < 0 && at != kZooms.begin())
        setZoom(*std::prev(at));
}

void PageArea::setTextStyle(const notation::TextStyle& style) {
    style_ = style;
    for (const auto& [page, sheet] : sheets_)
        sheet->setTextStyle(style);
}

void PageArea::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
    for (const auto& [page, sheet] : sheets_)
        if (sheet->y() > height() - kTitleHeight || sheet->x() > width() - kTitleHeight)
            sheet->move(std::min(sheet->x(), width() - 2 * kTitleHeight),
                        std::min(sheet->y(), std::max(height() - kTitleHeight, 0)));
}

void PageArea::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QColor ground = deskColour(parts_.look);
    painter.fillRect(event->rect(), ground);
    if (!pages_.empty())
        return;
    painter.setPen(ground.lightness() < 140 ? QColor(Qt::white) : QColor(Qt::black));
    painter.setFont(textFont(12));
    painter.drawText(
        rect(), Qt::AlignCenter,
        "Press \"Write Score\" to see your notes as pages of music,\nor \"Blank\" for an empty page.");
}

} // namespace velmora
