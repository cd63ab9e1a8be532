// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/SetupParts.h"

#include "setup/SetupRules.h"
#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"
#include "tableau/ChannelColours.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kChip = 16;
constexpr int kSquare = 20;
constexpr int kBox = 14;

const ChannelColours& coloursOf(int channel) {
    const auto index = static_cast<std::size_t>(channel);
    return kChannelColours[index < kChannelColours.size() ? index : 0];
}
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

void paintChip(QPainter& painter, QPointF corner, int channel) {
    const Rgb face = coloursOf(channel).bright;
    fillRounded(painter, QRectF(corner, QSizeF(kChip, kChip)), 3, toQColor(face),
                toQColor(mix(face, kBlack, 0.45)));
}

ChannelSquare::ChannelSquare(int channel, QWidget* parent) : QWidget(parent), channel_(channel) {
    setFixedSize(kSquare, kSquare);
    setChannel(channel);
}

void ChannelSquare::setChannel(int channel) {
    channel_ = channel;
    setAccessibleName(QStringLiteral("Channel %1").arg(coloursOf(channel).caption));
    update();
}

void ChannelSquare::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const ChannelColours& colours = coloursOf(channel_);
    fillRounded(painter, rect(), 3, toQColor(colours.bright), toQColor(mix(colours.bright, kBlack, 0.45)));
    painter.setPen(toQColor(inkOnColour(colours.bright)));
    painter.setFont(textFont(12, true));
    painter.drawText(rect(), Qt::AlignCenter, QString::fromLatin1(colours.caption));
}

ReadOut::ReadOut(const Appearance& look, const QString& name, QWidget* parent) : QLabel(parent), look_(look) {
    setObjectName(name);
    setFont(textFont(12, true));
}

void ReadOut::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintReadOut(painter, look_.skin(), rect());
    painter.setPen(toQColor(look_.skin().text));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

NumberField::NumberField(const QString& arrows, const QString& text, QWidget* parent)
    : QAbstractSpinBox(parent) {
    setObjectName(arrows);
    setAlignment(Qt::AlignCenter);
    lineEdit()->setObjectName(text);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& edited) {
        if (const auto typed = fieldNumber(edited.toStdString()); typed && onNumber)
            onNumber(*typed);
    });
    connect(this, &QAbstractSpinBox::editingFinished, this, [this] { settle(); });
}

void NumberField::showNumber(int shown) {
    if (lineEdit()->text().isEmpty() || fieldNumber(lineEdit()->text().toStdString()) != shown)
        lineEdit()->setText(QString::number(shown));
}

void NumberField::stepBy(int steps) {
    if (onStep)
        onStep(steps);
    settle();
}

void NumberField::settle() {
    if (number)
        lineEdit()->setText(QString::number(number()));
}

QAbstractSpinBox::StepEnabled NumberField::stepEnabled() const {
    return StepUpEnabled | StepDownEnabled;
}

} // namespace velmora
