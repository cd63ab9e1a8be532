// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRectF>
#include <QString>

class QPainter;

namespace velmora {

class KeyLayout;

/// The label as it is to be read in a box of that width: in smaller letters if it has to, and cut at its end
/// where they don't suffice.
struct FittedLabel {
    QString text;
    int pixels; ///< of its font
};
[[nodiscard]] FittedLabel fittedLabel(const QString& label, double width);

/// A key with its label: white or black, red while it sounds.
void paintKey(QPainter& painter, const KeyLayout& layout, int key, bool sounds, const QString& label);

} // namespace velmora
