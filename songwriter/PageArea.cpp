// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/PageArea.h"

#include "notation/SongDocument.h"
#include "shell/FramePainter.h"
#include "shell/SkinPainter.h"
#include "songwriter/ScoreSheet.h"
#include "songwriter/SongParts.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace velmora {

namespace {
constexpr int kLeft = 48;
constexpr int kTop = 12;
constexpr int kAcross = 28;      ///< from one sheet to the one behind it
constexpr int kBehind = 3;       ///< sheets that look out
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

ScoreSheet* PageArea::makeSheet(int page) {
    auto* sheet = new ScoreSheet(parts_, page, this);
    sheet->setZoom(zoom_);
    sheet->setTextStyle(style_);
    sheet->onRaise = [this, page] { raisePage(page); };
    sheet->onClose = [this, page] { parts_.song.closePage(page); };
    sheet->onWhole = [this, sheet] { showWhole(*sheet); };
    sheet->onZoom = [this](double steps) { zoomBy(steps > 0 ? 1 : -1); };
    return sheet;
}

void PageArea::showPages() {
    bool changed = false; // a page that was closed by hand leaves the others where they are
    for (auto each = sheets_.begin(); each != sheets_.end();) {
        if (parts_.song.isOpen(each->first)) {
            each->second->showPage();
            ++each;
        } else {
            changed = changed || each->first > parts_.song.count();
            each->second->hide();
            each->second->deleteLater(); // its own button may have been pressed
            each = sheets_.erase(each);
        }
    }
    for (const int page : parts_.song.openPages())
        if (!sheets_.contains(page)) {
            sheets_.emplace(page, makeSheet(page));
            changed = true;
        }
    if (changed)
        layOut();
    if (!sheets_.contains(front_)) {
        const auto next = sheets_.lower_bound(front_);
        front_ = 0;
        if (!sheets_.empty())
            raisePage(next == sheets_.end() ? sheets_.rbegin()->first : next->first);
        else if (onFront)
            onFront();
    }
    update();
}

void PageArea::raisePage(int page) {
    ScoreSheet* const raised = sheet(page);
    if (!raised || page == front_)
        return;
    if (ScoreSheet* const before = frontSheet())
        before->setFront(false);
    front_ = page;
    raised->setFront(true);
    raised->raise();
    if (onFront)
        onFront();
}

void PageArea::step(int by) {
    if (sheets_.empty())
        return;
    auto at = sheets_.find(front_);
    if (at == sheets_.end())
        return;
    if (by > 0)
        at = std::next(at) == sheets_.end() ? sheets_.begin() : std::next(at);
    else
        at = at == sheets_.begin() ? std::prev(sheets_.end()) : std::prev(at);
    raisePage(at->first);
}

/// @param order from the front, 0 first
QRect PageArea::placeOf(int order) const {
    const int behind = std::min(static_cast<int>(sheets_.size()) - 1, kBehind);
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
    for (const auto& [page, sheet] : sheets_) {
        if (!sheet->isPlaced())
            sheet->setGeometry(placeOf(order));
        if (inFront)
            sheet->stackUnder(inFront);
        sheet->show();
        inFront = sheet;
        ++order;
    }
    if (ScoreSheet* const front = frontSheet())
        front->raise();
}

void PageArea::tidy() {
    for (const auto& [page, sheet] : sheets_)
        sheet->setPlaced(false);
    layOut();
    if (!sheets_.empty())
        raisePage(sheets_.begin()->first);
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
    if (!sheets_.empty())
        return;
    painter.setPen(ground.lightness() < 140 ? QColor(Qt::white) : QColor(Qt::black));
    painter.setFont(textFont(12));
    painter.drawText(
        rect(), Qt::AlignCenter,
        "Press \"Write Score\" to see your notes as pages of music,\nor \"Blank\" for an empty page.");
}

} // namespace velmora
