// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/SetupTab.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionTab>

namespace velmora {

namespace {
constexpr int kHeight = 24;
constexpr int kGap = 2; ///< to the next tab, a part of this one
} // namespace

SetupTab::SetupTab(const Appearance& look, const QString& words, QWidget* parent)
    : QAbstractButton(parent)
    , look_(look) {
    setText(words);
    setAccessibleName(words.trimmed());
    setCheckable(true);
    setAutoExclusive(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
}

QSize SetupTab::sizeHint() const {
    const int words = QFontMetrics(textFont()).horizontalAdvance(text().trimmed()) + 24;
    return {(words + 3) / 4 * 4 + kGap, kHeight + 1};
}

void SetupTab::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QStyleOptionTab option;
    option.initFrom(this);
    option.state.setFlag(QStyle::State_Selected, isChecked());
    option.state.setFlag(QStyle::State_MouseOver, underMouse());
    style()->drawControl(QStyle::CE_TabBarTabShape, &option, &painter, this);
    painter.setPen(inkOn(look_.skin(), {.enabled = isEnabled()}));
    painter.setFont(textFont(12, isChecked()));
    painter.drawText(rect().adjusted(0, 2, -kGap, -1), Qt::AlignCenter, text().trimmed());
}

SetupPage::SetupPage(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setObjectName("setupPage");
}

void SetupPage::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    fillRounded(painter, rect(), 0, toQColor(look_.skin().readOut), toQColor(look_.skin().line));
}

} // namespace velmora
