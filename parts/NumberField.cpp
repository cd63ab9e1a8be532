// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/NumberField.h"

#include "composition/SetupRules.h"

#include <QLineEdit>

namespace velmora {

NumberField::NumberField(const QString& arrows, const QString& text, QWidget* parent)
    : QAbstractSpinBox(parent) {
    setObjectName(arrows);
    setAlignment(Qt::AlignCenter);
    lineEdit()->setObjectName(text);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] {
        if (const auto typed = typedNumber(); typed && onNumber)
            onNumber(*typed);
    });
    connect(this, &QAbstractSpinBox::editingFinished, this, [this] { settle(); });
}

void NumberField::showNumber(int shown) {
    const QLineEdit& edit = *lineEdit();
    const bool isTyped = edit.hasFocus() && edit.isModified();
    const QString text = edit.text();
    if (isTyped ? typedNumber() != shown : text != textOf(shown))
        lineEdit()->setText(textOf(shown));
}

std::optional<int> NumberField::typedNumber() const {
    const auto typed = fieldCount(lineEdit()->text().toStdString());
    return typed && *typed <= most_ ? typed : std::nullopt;
}

void NumberField::setBlankText(const QString& greyed) {
    lineEdit()->setPlaceholderText(greyed);
}

QString NumberField::textOf(int shown) const {
    return shown == 0 && !lineEdit()->placeholderText().isEmpty() ? QString() : QString::number(shown);
}

void NumberField::stepBy(int steps) {
    if (onStep)
        onStep(steps);
    settle();
}

void NumberField::settle() {
    if (number)
        lineEdit()->setText(textOf(number()));
}

QAbstractSpinBox::StepEnabled NumberField::stepEnabled() const {
    return StepUpEnabled | StepDownEnabled;
}

} // namespace velmora
