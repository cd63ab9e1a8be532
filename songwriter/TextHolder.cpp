// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/TextHolder.h"

#include "base/QtText.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "songwriter/PageView.h"
#include "songwriter/SongParts.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr int kEdge = 6;      ///< about the edit box: it is dragged by that
constexpr int kTextInset = 4; ///< from the edit box's corner to its text
constexpr int kWidth = 280;
constexpr int kKeyStep = 4;
constexpr double kPixelsAPoint = 96.0 / 72;
constexpr int kLeastFont = 6; ///< pixels, however far away the page is

QPoint cornerOfText() {
    return {kEdge + kTextInset, kEdge + 2};
}
} // namespace

TextHolder::TextHolder(const SongParts& parts, PageView& page)
    : QWidget(&page)
    , parts_(parts)
    , page_(page)
    , Text1_(new QLineEdit(this)) {
    setObjectName("T3");
    setCursor(Qt::SizeAllCursor);
    Text1_->setObjectName("Text1");
    Text1_->setAccessibleName("Text on the page");
    Text1_->setCursor(Qt::IBeamCursor);
    Text1_->installEventFilter(this);
    setFocusProxy(Text1_);
    parts.desk.tips.SetToolTip(
        *Text1_, {"Text on the page", "Enter puts it onto the page, Esc leaves. Alt with the arrows moves it",
                  "write"});
    parts.desk.tips.SetToolTip(*this, {"Move", "Drag it to where the text is to stand", ""});
    hide();
}

void TextHolder::openAt(notation::Point at, const notation::TextStyle& style, const QString& text) {
    if (isVisibleTo(parentWidget())) {
        Text1_->setFocus();
        return;
    }
    at_ = at;
    setStyle(style);
    Text1_->setText(text);
    show();
    raise();
    Text1_->setFocus();
    Text1_->selectAll();
}

void TextHolder::leave() {
    const bool hadFocus = Text1_->hasFocus();
    hide();
    Text1_->clear();
    if (hadFocus)
        page_.setFocus();
}

void TextHolder::setStyle(const notation::TextStyle& style) {
    style_ = style;
    QFont font(toQString(style.family));
    font.setPixelSize(
        std::max(kLeastFont, static_cast<int>(std::lround(style.points * kPixelsAPoint * page_.zoom()))));
    font.setBold(style.bold);
    Text1_->setFont(font);
    place();
}

void TextHolder::place() {
    const int height = std::max(24, QFontMetrics(Text1_->font()).height() + 4);
    resize(kWidth + 2 * kEdge, height + 2 * kEdge);
    Text1_->setGeometry(kEdge, kEdge, kWidth, height);
    move(page_.viewPoint(at_) - cornerOfText());
}

void TextHolder::moveBy(QPoint pixels) {
    const notation::Point moved = page_.pagePoint(page_.viewPoint(at_) + pixels);
    const QSize page = page_.pageSize();
    at_ = {std::clamp(moved.x, 0.0, page.width() / page_.zoom()),
           std::clamp(moved.y, 0.0, page.height() / page_.zoom())};
    place();
}

bool TextHolder::keyPressed(int key, Qt::KeyboardModifiers modifiers) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        const QString text = Text1_->text();
        if (onCommit)
            onCommit(text);
        leave();
        return true;
    }
    if (key == Qt::Key_Escape) {
        leave();
        return true;
    }
    if (!(modifiers & Qt::AltModifier))
        return false;
    const QPoint by = key == Qt::Key_Left    ? QPoint(-kKeyStep, 0)
                      : key == Qt::Key_Right ? QPoint(kKeyStep, 0)
                      : key == Qt::Key_Up    ? QPoint(0, -kKeyStep)
                      : key == Qt::Key_Down  ? QPoint(0, kKeyStep)
                                             : QPoint();
    if (by.isNull())
        return false;
    moveBy(by);
    return true;
}

bool TextHolder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (keyPressed(key->key(), key->modifiers()))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void TextHolder::mousePressEvent(QMouseEvent* event) {
    grip_ = event->globalPosition().toPoint();
}

void TextHolder::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint now = event->globalPosition().toPoint();
    moveBy(now - grip_);
    grip_ = now;
}

void TextHolder::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Skin& skin = parts_.look.skin();
    fillRounded(painter, rect(), fieldRadius(skin), toQColor(skin.face.from), toQColor(skin.accent));
}

} // namespace velmora
