// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/SynthPanel.h"

#include "parts/Desk.h"
#include "shell/Appearance.h"
#include "shell/CommandButton.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"

#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>

#include <utility>

namespace velmora {

namespace {
constexpr int kRow = 20;
} // namespace

SynthPanel::SynthPanel(const SynthParts& parts, const char* name, QWidget* parent)
    : QWidget(parent)
    , parts_(parts) {
    setObjectName(name);
}

QCheckBox* SynthPanel::addCheck(const char* name, const char* caption, const char* tip,
                                std::function<void(bool on)> onClick) {
    auto* box = new QCheckBox(caption, this);
    box->setObjectName(name);
    box->setFocusPolicy(Qt::TabFocus);
    parts_.desk.tips.SetToolTip(*box, {caption, tip, ""});
    connect(box, &QAbstractButton::clicked, this, [this, click = std::move(onClick)](bool on) {
        click(on);
        parts_.onUse();
    });
    return box;
}

QRadioButton* SynthPanel::addRadio(const QString& name, const char* caption, std::function<void()> onClick) {
    auto* radio = new QRadioButton(caption, this);
    radio->setObjectName(name);
    radio->setFocusPolicy(Qt::TabFocus);
    connect(radio, &QAbstractButton::clicked, this, [this, click = std::move(onClick)] {
        click();
        parts_.onUse();
    });
    return radio;
}

CommandButton* SynthPanel::addButton(const char* name, const char* caption, const char* tip,
                                     std::function<void()> onClick) {
    auto* button = new CommandButton(parts_.look, ButtonForm::Text, this);
    button->setObjectName(name);
    button->setFace("", caption);
    parts_.desk.tips.SetToolTip(*button, {caption, tip, ""});
    connect(button, &QAbstractButton::clicked, this, [this, click = std::move(onClick)] {
        click();
        parts_.onUse();
    });
    return button;
}

QLabel* SynthPanel::addWords(const char* words) {
    return new QLabel(words, this);
}

void SynthPanel::setRules(std::vector<int> rules) {
    rules_ = std::move(rules);
    update();
}

void SynthPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut(width());
}

void SynthPanel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    for (const int x : rules_)
        paintSeparator(painter, parts_.look.skin(), x, kMargin, kHeight - 2 * kMargin);
}

int putAt(QWidget& control, int x, int y) {
    const int width = control.sizeHint().width();
    control.setGeometry(x, y, width, kRow);
    return x + width;
}

} // namespace velmora
