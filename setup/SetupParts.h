// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

class QCheckBox;
class QGroupBox;
class QLabel;
class QWidget;

namespace velmora {

/// Where a panel of the setup toolbar stands under the title, and how large it is.
inline constexpr QRect kSetupPage{12, 36, 496, 264};

/// A group box with its heading; places in it count from its corner.
[[nodiscard]] QGroupBox* addGroup(QWidget& page, const QString& heading, const QRect& place);
/// The words for a control beside or under them: 12 pixels high where they are read with it, 10 where small.
QLabel* addWords(QWidget& parent, const QString& words, const QRect& place);
QLabel* addSmallWords(QWidget& parent, const QString& words, const QRect& place);
/// A box without words of its own, in the middle of a column.
[[nodiscard]] QCheckBox* addBox(QWidget& parent, const QString& name, QPoint middle);

} // namespace velmora
