// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/CommandButton.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QKeyEvent>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kIcon = 16;
constexpr int kSmallText = 10;
constexpr int kLabelFoot = 8; ///< under the line that a label stands on

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

int wholeFours(int width) {
    return (width + 3) / 4 * 4;
}
} // namespace

CommandButton::CommandButton(const Appearance& look, ButtonForm form, QWidget* parent)
    : QAbstractButton(parent)
    , look_(look)
    , form_(form) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
}

void CommandButton::setFace(std::string_view icon, const QString& words) {
    icon_ = icon;
    setText(words);
    updateGeometry();
    update();
}

void CommandButton::setForm(ButtonForm form) {
    form_ = form;
    updateGeometry();
    update();
}

void CommandButton::setIconOnly(bool iconOnly) {
    iconOnly_ = iconOnly;
    update();
}

QSize CommandButton::sizeHint() const {
    const bool small = form_ == ButtonForm::IconOverText;
    const int words = QFontMetrics(textFont(small ? kSmallText : 12)).horizontalAdvance(text());
    switch (form_) {
    case ButtonForm::Icon:
        return {28, 28};
    case ButtonForm::IconAndText:
        return {wholeFours(words + 38), 28};
    case ButtonForm::IconOverText:
        return {std::max(48, wholeFours(words + 8)), 52};
    case ButtonForm::Tab:
        return {144, 20};
    case ButtonForm::Text:
        break;
    }
    return {std::max(64, wholeFours(words + 24)), 24};
}

bool CommandButton::event(QEvent* event) {
    const bool reached = hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange);
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverLeave:
        update();
        break;
    case QEvent::ShortcutOverride:
        // Space presses the button that the keyboard has reached, whatever else it is a shortcut of.
        if (reached && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space)
            event->accept();
        break;
    case QEvent::KeyPress: // Enter does the same on every desktop, and not in some themes alone
        if (const auto* key = static_cast<QKeyEvent*>(event); reached && isEnter(*key)) {
            if (!key->isAutoRepeat())
                click();
            return true;
        }
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

void CommandButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (form_ == ButtonForm::Tab)
        paintTab(painter);
    else
        paintWords(painter, rect());
}

/// The active tab has no right edge: it runs into its page, which lightens the panel as it does.
void CommandButton::paintTab(QPainter& painter) const {
    const Skin& skin = look_.skin();
    const bool active = isChecked();
    if (active) {
        const QRectF tab = QRectF(rect()).adjusted(0, 0, 8, 0);
        fillRounded(painter, tab, groupRadius(skin) - 1, lightening(skin));
        strokeRounded(painter, tab, groupRadius(skin) - 1, toQColor(skin.line));
        fillRounded(painter, QRectF(0, 3, 3, 14), 1, toQColor(skin.accent));
    }
    const ControlState state{.enabled = isEnabled(), .hot = underMouse()};
    paintIcon(painter, {8, 2}, icon_, iconColoursOn(look_, ButtonPlace::Bar, state));
    if (iconOnly_)
        return;
    painter.setPen(active || state.hot || !state.enabled ? inkOn(skin, state) : toQColor(skin.dim));
    painter.setFont(textFont(12, active));
    painter.drawText(rect().adjusted(30, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}

void CommandButton::paintWords(QPainter& painter, const QRectF& all) const {
    const ControlState state{
        .enabled = isEnabled(), .hot = underMouse(), .pressed = isDown(), .checked = isChecked()};
    const ButtonPlace place = form_ == ButtonForm::Text ? ButtonPlace::Panel : ButtonPlace::Bar;
    paintFace(painter, look_, all, place, state);
    if (state.pressed)
        painter.translate(1, 1);
    painter.setPen(inkOn(look_.skin(), state));
    painter.setFont(textFont(form_ == ButtonForm::IconOverText ? kSmallText : 12));
    const auto icon = [&](qreal x, qreal y) {
        paintIcon(painter, {x, y}, icon_, iconColoursOn(look_, place, state), kIcon);
    };
    const qreal left = all.width() / 2 - kIcon / 2.0;
    const qreal top = all.height() / 2 - kIcon / 2.0;
    switch (form_) {
    case ButtonForm::IconAndText:
        icon(6, top);
        painter.drawText(all.adjusted(28, 0, -4, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
        break;
    case ButtonForm::IconOverText:
        icon(left, 8);
        painter.drawText(all.adjusted(2, 28, -2, painter.fontMetrics().descent() - kLabelFoot),
                         Qt::AlignHCenter | Qt::AlignBottom, text());
        break;
    case ButtonForm::Text:
        if (text().isEmpty())
            icon(left, top);
        painter.drawText(all, Qt::AlignCenter, text());
        break;
    default:
        icon(left, top);
    }
}

} // namespace velmora
