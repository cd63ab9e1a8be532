// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/Waveform.h"

#include "shell/Appearance.h"
#include "shell/ControlPainter.h"
#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
constexpr int kInset = 6;        ///< room for the marks at the ends
constexpr int kReach = 5;        ///< of a mark for the mouse
constexpr double kLeast = 0.001; ///< between the marks
constexpr double kStep = 0.01;
constexpr double kSmallStep = 0.001;
} // namespace

Waveform::Waveform(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setObjectName("waveform");
    setAccessibleName("Picture of the take");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void Waveform::setColumns(std::vector<WaveColumn> columns) {
    columns_ = std::move(columns);
    update();
}

void Waveform::setMarks(double begin, double end) {
    begin_ = std::clamp(begin, 0.0, 1 - kLeast);
    end_ = std::clamp(end, begin_ + kLeast, 1.0);
    update();
}

void Waveform::setPosition(double share) {
    if (share == position_)
        return;
    updateLine(std::exchange(position_, share));
    updateLine(position_);
}

void Waveform::updateLine(double share) {
    if (share >= 0)
        update(static_cast<int>(xAt(share)) - 2, 0, 5, height());
}

double Waveform::xAt(double share) const {
    return kInset + share * (width() - 2 * kInset);
}

double Waveform::shareAt(double x) const {
    return std::clamp((x - kInset) / (width() - 2 * kInset), 0.0, 1.0);
}

void Waveform::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Skin& skin = look_.skin();
    painter.fillRect(event->rect(), toQColor(skin.panel.from));
    paintField(painter, skin, rect(), isEnabled());
    const qreal scale = devicePixelRatioF();
    const int pixels = static_cast<int>((width() - 2 * kInset) * scale);
    const qreal middle = height() / 2.0;
    const qreal high = middle - 4;
    const QColor kept = toQColor(skin.accent);
    const QColor cut = toQColor(mix(skin.fieldText, skin.field, 0.7));
    if (!columns_.empty() && pixels > 0) {
        const std::vector<WaveColumn> folded = fold(columns_, static_cast<std::size_t>(pixels));
        const auto first = static_cast<int>((event->rect().left() - kInset) * scale) - 1;
        const auto last = static_cast<int>((event->rect().right() + 1 - kInset) * scale) + 1;
        for (int i = std::max(first, 0); i < std::min(last, pixels); ++i) {
            const WaveColumn& column = folded[static_cast<std::size_t>(i)];
            const double top = std::clamp<double>(std::max(column.highest[0], column.highest[1]), 0, 1);
            const double foot = std::clamp<double>(std::min(column.lowest[0], column.lowest[1]), -1, 0);
            const double share = (i + 0.5) / pixels;
            const qreal from = middle - top * high;
            painter.fillRect(
                QRectF(kInset + i / scale, from, 1 / scale, std::max(1 / scale, middle - foot * high - from)),
                share >= begin_ && share < end_ ? kept : cut);
        }
    }
    for (const double mark : {begin_, end_}) {
        const QRectF grip(xAt(mark) - 3, 2, 6, 10);
        painter.fillRect(QRectF(xAt(mark) - 0.5, 2, 1, height() - 4), toQColor(skin.fieldText));
        fillRounded(painter, grip, 2, downwards(skin.pointer, grip), toQColor(skin.fieldText));
    }
    if (position_ >= 0)
        painter.fillRect(QRectF(xAt(position_) - 0.5, 2, 1, height() - 4), toQColor(recordRed(skin)));
}

Waveform::Mark Waveform::markAt(double x) const {
    const double toBegin = std::abs(x - xAt(begin_));
    const double toEnd = std::abs(x - xAt(end_));
    if (std::min(toBegin, toEnd) > kReach)
        return Mark::None;
    if (toBegin == toEnd) // one upon the other: away from the nearer end of the picture
        return begin_ > 0.5 ? Mark::Begin : Mark::End;
    return toBegin < toEnd ? Mark::Begin : Mark::End;
}

void Waveform::drag(Mark mark, double share) {
    if (mark == Mark::Begin)
        setMarks(std::min(share, end_ - kLeast), end_);
    else if (mark == Mark::End)
        setMarks(begin_, std::max(share, begin_ + kLeast));
    if (onMarks)
        onMarks();
}

void Waveform::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    dragged_ = markAt(event->position().x());
    if (dragged_ == Mark::None && onPlay)
        onPlay(shareAt(event->position().x()));
}

void Waveform::mouseMoveEvent(QMouseEvent* event) {
    const double x = event->position().x();
    if (dragged_ != Mark::None)
        drag(dragged_, shareAt(x));
    else
        setCursor(markAt(x) == Mark::None ? Qt::ArrowCursor : Qt::SizeHorCursor);
}

void Waveform::mouseReleaseEvent(QMouseEvent* /*event*/) {
    dragged_ = Mark::None;
}

bool Waveform::event(QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        dragged_ = Mark::None;
    return QWidget::event(event);
}

void Waveform::keyPressEvent(QKeyEvent* event) {
    const bool right = event->modifiers().testFlag(Qt::ShiftModifier);
    const double step = event->modifiers().testFlag(Qt::ControlModifier) ? kSmallStep : kStep;
    const Mark mark = right ? Mark::End : Mark::Begin;
    const double at = right ? end_ : begin_;
    switch (event->key()) {
    case Qt::Key_Left:
        return drag(mark, std::max(at - step, 0.0));
    case Qt::Key_Right:
        return drag(mark, std::min(at + step, 1.0));
    case Qt::Key_Home:
        return drag(mark, right ? begin_ + kLeast : 0.0);
    case Qt::Key_End:
        return drag(mark, right ? 1.0 : end_ - kLeast);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (onPlay)
            onPlay(begin_);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace velmora
