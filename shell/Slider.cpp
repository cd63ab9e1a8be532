// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Slider.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
constexpr int kAcross = 20;
constexpr int kPointer = 12; ///< along the bar
constexpr int kLength = 120;
constexpr int kTick = 14;
constexpr std::array kKeys{Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Up,   Qt::Key_Down,
                           Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
} // namespace

Slider::Slider(const Appearance& look, Qt::Orientation orientation, QWidget* parent)
    : QAbstractSlider(parent)
    , look_(look) {
    setOrientation(orientation);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractSlider::valueChanged, this, [this](int value) {
        if (!byCode_ && onDrag)
            onDrag(value);
    });
}

void Slider::setRest(int value) {
    rest_ = value;
    update();
}

void Slider::setValue(int value) {
    const bool before = std::exchange(byCode_, true);
    QAbstractSlider::setValue(value);
    byCode_ = before;
}

void Slider::setRange(int least, int most) {
    const bool before = std::exchange(byCode_, true);
    QAbstractSlider::setRange(least, most);
    byCode_ = before;
}

QSize Slider::sizeHint() const {
    return lies() ? QSize(kLength, kAcross) : QSize(kAcross, kLength);
}

int Slider::travel() const {
    return std::max(1, (lies() ? width() : height()) - kPointer);
}

/// The middle of the pointer, along the bar from its start: an upright bar starts at its foot.
double Slider::centreOf(int value) const {
    const double range = std::max(1.0, static_cast<double>(maximum()) - minimum());
    const double share = std::clamp((static_cast<double>(value) - minimum()) / range, 0.0, 1.0);
    return kPointer / 2.0 + std::round(share * travel());
}

int Slider::valueAt(double place) const {
    const double share = std::clamp((place - kPointer / 2.0) / travel(), 0.0, 1.0);
    const double range = static_cast<double>(maximum()) - minimum();
    return lies() ? minimum() + static_cast<int>(share * range)
                  : maximum() - static_cast<int>((1 - share) * range);
}

int Slider::halfAt(double place) const {
    return place < (lies() ? width() : height()) / 2.0 ? -1 : 1;
}

double Slider::placeOf(QPointF point) const {
    return lies() ? point.x() : height() - point.y();
}

QRectF Slider::pointer() const {
    const double start = centreOf(sliderPosition()) - kPointer / 2.0;
    return lies() ? QRectF(start, (height() - kAcross) / 2, kPointer, kAcross)
                  : QRectF((width() - kAcross) / 2, height() - start - kPointer, kAcross, kPointer);
}

bool Slider::event(QEvent* event) {
    // Its own keys move the slider that has the focus, whatever else they are shortcuts of.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (!(key->modifiers() & ~Qt::KeypadModifier) && std::ranges::find(kKeys, key->key()) != kKeys.end())
            event->accept();
    }
    return QAbstractSlider::event(event);
}

void Slider::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Skin& skin = look_.skin();
    const ControlState state{.enabled = isEnabled()};
    const auto along = [this](double place) { return lies() ? place : height() - place; };
    const bool atEnd = rest_ <= minimum();
    const double rest = atEnd ? 1 : centreOf(rest_);
    paintGroove(painter, skin, rect(), lies(), along(rest), along(centreOf(sliderPosition())), state);
    if (!atEnd && lies())
        verticalLine(painter, rest, (height() - kTick) / 2.0, kTick, inkOn(skin, state));
    else if (!atEnd)
        horizontalLine(painter, (width() - kTick) / 2.0, along(rest), kTick, inkOn(skin, state));
    paintPointer(painter, skin, pointer(), lies(), state);
}

void Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || isSliderDown()) {
        event->ignore();
        return;
    }
    last_ = placeOf(event->position());
    const bool onPointer = pointer().contains(event->position());
    grip_ = onPointer ? last_ - centreOf(sliderPosition()) : 0;
    drags_ = onPointer || !onHalf;
    moved_ = false;
    setSliderDown(true);
    if (!onPointer && drags_)
        setSliderPosition(valueAt(last_));
}

/// A mouse that stands still changes nothing, though a value stands for several places.
void Slider::mouseMoveEvent(QMouseEvent* event) {
    const double place = placeOf(event->position());
    if (isSliderDown() && place != last_) {
        moved_ = true;
        if (drags_)
            setSliderPosition(valueAt(place - grip_));
    }
    last_ = place;
}

void Slider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isSliderDown())
        return;
    setSliderDown(false);
    if (onHalf && !moved_)
        onHalf(halfAt(placeOf(event->position())));
    if (onRelease)
        onRelease();
}

/// In the hand of the user it stays where the mouse has it.
void Slider::stepByUser(const std::function<void()>& step) {
    if (isSliderDown())
        return;
    const int before = value();
    step();
    if (value() != before && onRelease)
        onRelease();
}

void Slider::wheelEvent(QWheelEvent* event) {
    stepByUser([&] { QAbstractSlider::wheelEvent(event); });
    event->accept(); // at an end, too: nothing else is to scroll
}

void Slider::keyPressEvent(QKeyEvent* event) {
    stepByUser([&] { QAbstractSlider::keyPressEvent(event); });
}

void Slider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        setSliderDown(false);
    QAbstractSlider::changeEvent(event);
}

} // namespace velmora
