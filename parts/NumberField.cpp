// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/NumberField.h"

#include "score/Numbers.h"

#include <QLineEdit>

namespace velmora {

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
    const QLineEdit& edit = *lineEdit();
    const bool isTyped = edit.hasFocus() && edit.isModified();
    if ((edit.text().isEmpty() && !isTyped) || fieldNumber(edit.text().toStdString()) != shown)
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
