// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/SetupParts.h"

#include "shell/SkinPainter.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>

namespace velmora {

namespace {
constexpr int kBox = 14;
} // namespace

QGroupBox* addGroup(QWidget& page, const QString& heading, const QRect& place) {
    auto* group = new QGroupBox(heading, &page);
    group->setGeometry(place);
    return group;
}

QLabel* addWords(QWidget& parent, const QString& words, const QRect& place) {
    auto* label = new QLabel(words, &parent);
    label->setGeometry(place);
    return label;
}

QLabel* addSmallWords(QWidget& parent, const QString& words, const QRect& place) {
    QLabel* label = addWords(parent, words, place);
    label->setFont(textFont(10));
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QCheckBox* addBox(QWidget& parent, const QString& name, QPoint middle) {
    auto* box = new QCheckBox(&parent);
    box->setObjectName(name);
    box->setGeometry(middle.x() - kBox / 2, middle.y() - kBox / 2, kBox, kBox);
    return box;
}

} // namespace velmora
