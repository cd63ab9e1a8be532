// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointF>

#include <string_view>
#include <vector>

class QPainter;

namespace velmora {

/// An icon is drawn in the colour of text, at most one part of it in the accent; record red is the only
/// other.
struct IconColours {
    QColor ink;
    QColor accent;
    QColor record;
};

/// The names of all icons, sorted.
[[nodiscard]] std::vector<std::string_view> iconNames();

/// The icon as a picture of @p size logical pixels a side at the device's @p scale; null for an unknown name.
[[nodiscard]] QPixmap iconPixmap(std::string_view name, const IconColours& colours, int size, qreal scale);

/// Paints it with its upper left corner at @p topLeft, moved to whole pixels of the device.
void paintIcon(QPainter& painter, QPointF topLeft, std::string_view name, const IconColours& colours,
               int size = 16);

} // namespace velmora
