// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Pointers.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace velmora {

namespace {
constexpr int kSide = 24;

/// A shape in black with a white rim, which is seen on any ground.
QCursor drawn(const QPainterPath& shape, QPoint hot) {
    const qreal scale = qGuiApp->devicePixelRatio();
    QPixmap picture(QSizeF(kSide * scale, kSide * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(shape, QPen(Qt::white, 3.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(shape, QPen(Qt::black, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.end();
    return QCursor(picture, hot.x(), hot.y());
}

QCursor pencil() {
    QPainterPath shape(QPointF(3, 21));
    for (const QPointF at : {QPointF(4.5, 15.5), QPointF(16, 4), QPointF(20, 8), QPointF(8.5, 19.5)})
        shape.lineTo(at);
    shape.closeSubpath();
    shape.moveTo(13.5, 6.5);
    shape.lineTo(17.5, 10.5);
    return drawn(shape, {3, 21});
}

QCursor select() {
    QPainterPath shape;
    for (const int side : {5, 19}) {
        const int inwards = side < 12 ? 4 : -4;
        shape.moveTo(side + inwards, 4);
        shape.lineTo(side, 4);
        shape.lineTo(side, 20);
        shape.lineTo(side + inwards, 20);
    }
    shape.moveTo(12, 8);
    shape.lineTo(12, 16);
    return drawn(shape, {12, 12});
}
} // namespace

QCursor cursorOf(Pointer pointer) {
    switch (pointer) {
    case Pointer::Pencil:
        return pencil();
    case Pointer::Cursor:
        return Qt::SizeAllCursor;
    case Pointer::Select:
        return select();
    case Pointer::Arrow:
        break;
    }
    return Qt::ArrowCursor;
}

} // namespace velmora
