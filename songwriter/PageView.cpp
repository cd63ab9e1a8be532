// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/PageView.h"

#include "notation/PageFiles.h"
#include "notation/SongDocument.h"
#include "songwriter/SongParts.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace velmora {

namespace {
constexpr int kMostKept = 4'000'000; ///< pixels of a page that is kept whole: 16 MB
constexpr int kWheelStep = 48;       ///< logical pixels a notch
constexpr double kNotch = 120;
} // namespace

PageView::PageView(notation::SongDocument& song, const Appearance& look, int page, QWidget* parent)
    : QWidget(parent)
    , song_(song)
    , look_(look)
    , page_(page) {
    setObjectName("Pic1");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
}

void PageView::setZoom(double zoom) {
    if (zoom == zoom_)
        return;
    zoom_ = zoom;
    showMarks();
}

QSize PageView::pageSize() const {
    const notation::EngravedScore& score = song_.sheets().engraved();
    return {static_cast<int>(std::ceil(score.width * zoom_)),
            static_cast<int>(std::ceil(score.height * zoom_))};
}

void PageView::scrollTo(QPoint corner) {
    if (corner == corner_)
        return;
    corner_ = corner;
    update();
}

notation::Point PageView::pagePoint(QPoint view) const {
    const QPoint at = view + corner_;
    return {at.x() / zoom_, at.y() / zoom_};
}

QPoint PageView::viewPoint(notation::Point page) const {
    return QPoint(static_cast<int>(std::lround(page.x * zoom_)),
                  static_cast<int>(std::lround(page.y * zoom_))) -
           corner_;
}

void PageView::showMarks() {
    kept_ = {};
    keptPart_ = {};
    update();
}

void PageView::setFront(bool front) {
    front_ = front;
    setFocusPolicy(front ? Qt::StrongFocus : Qt::ClickFocus); // Tab passes what lies beneath
    if (!front) {
        kept_ = {};
        keptPart_ = {};
    }
}

void PageView::hideEvent(QHideEvent* event) {
    kept_ = {};
    keptPart_ = {};
    QWidget::hideEvent(event);
}

QRect PageView::pagePixels() const {
    const QSizeF size = QSizeF(pageSize()) * scale_;
    return {0, 0, static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

QImage PageView::rasterise(const QRect& part) {
    QImage picture(part.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    const notation::EngravedPage drawn = song_.sheets().drawn(page_);
    notation::paintPixels(song_.sheets().engraved(), drawn, zoom_ * scale_, part.x(), part.y(), part.width(),
                          part.height(), reinterpret_cast<std::uint32_t*>(picture.bits()));
    ++rasterised_;
    return picture;
}

/// The picture of the whole page, or of what is seen and as much above and below.
void PageView::keep(const QRect& seen) {
    if (keptPart_.contains(seen))
        return;
    const QRect whole = pagePixels();
    const auto pixels = static_cast<std::int64_t>(whole.width()) * whole.height();
    keptPart_ = pixels <= kMostKept ? whole : seen.adjusted(0, -seen.height(), 0, seen.height()) & whole;
    kept_ = rasterise(keptPart_);
}

void PageView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect region = event->rect();
    const QRect page = QRect(-corner_, pageSize()) & region;
    if (page != region)
        painter.fillRect(region, deskColour(look_));
    if (page.isEmpty() || !song_.isOpen(page_))
        return;
    const double scale = painter.deviceTransform().m11();
    if (std::exchange(scale_, scale) != scale)
        keptPart_ = {};
    const auto pixelsOf = [&](const QRect& rect) {
        const QRectF part(QPointF(rect.topLeft() + corner_) * scale, QSizeF(rect.size()) * scale);
        return part.toAlignedRect() & pagePixels();
    };
    const QRect part = pixelsOf(page);
    if (front_)
        keep(pixelsOf(QRect(-corner_, pageSize()) & rect()));
    const bool isKept = front_ && keptPart_.contains(part);
    const QImage shown = isKept ? kept_ : rasterise(part);
    const QPoint from = isKept ? part.topLeft() - keptPart_.topLeft() : QPoint();
    const QPointF to = QPointF(part.topLeft()) / scale - corner_;
    painter.drawImage(QRectF(to, QSizeF(part.size()) / scale), shown, QRectF(from, part.size()));
}

void PageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && onRight)
        onRight(event->position().toPoint());
    else if (event->button() == Qt::LeftButton && onLeft)
        onLeft(event);
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton && onLeft)
        onLeft(event);
}

void PageView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && onLeft)
        onLeft(event);
}

void PageView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && onDouble)
        onDouble(event->position().toPoint());
}

void PageView::wheelEvent(QWheelEvent* event) {
    event->accept();
    const double notches = event->angleDelta().y() / kNotch;
    if (event->modifiers() & Qt::ControlModifier) {
        if (onZoom)
            onZoom(notches);
        return;
    }
    const QPoint fine = event->pixelDelta();
    const QPoint notched(static_cast<int>(std::lround(event->angleDelta().x() / kNotch * kWheelStep)),
                         static_cast<int>(std::lround(notches * kWheelStep)));
    QPoint by = fine.isNull() ? -notched : -fine;
    if (event->modifiers() & Qt::ShiftModifier)
        by = by.transposed();
    if (onWheel)
        onWheel(by);
}

void PageView::keyPressEvent(QKeyEvent* event) {
    if (!onKey || !onKey(*event))
        QWidget::keyPressEvent(event);
}

} // namespace velmora
