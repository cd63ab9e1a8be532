// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ToolPage.h"

#include "composition/MelodyMaker.h"
#include "parts/CommandBank.h"
#include "parts/NumberField.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>
#include <limits>

namespace velmora {

namespace {
constexpr int kFieldHeight = 24;
constexpr int kCaptionHeight = 12;
constexpr int kAboveField = 2; ///< from a caption to its field
constexpr int kBoxHeight = 16;
constexpr int kGap = 4;
constexpr int kMostValue = std::numeric_limits<std::int16_t>::max();
constexpr int kSeparator = 14; ///< with the room on both sides
} // namespace

ToolPage::ToolPage(const char* name, const ToolPageParts& parts, QWidget* parent)
    : QWidget(parent)
    , parts_(parts) {
    setObjectName(name);
}

int ToolPage::Value::counted() const {
    const int value = get();
    return value != 0 ? value : blank().value_or(0);
}

void ToolPage::Value::move(int by) const {
    set(static_cast<std::int16_t>(std::clamp(counted() + by, lowest(), kMostValue)));
}

void ToolPage::Value::stepHalf(int direction) const {
    constexpr int kMiddle = 0;
    set(static_cast<std::int16_t>(steppedByPicture(counted(), direction, kMiddle, {lowest(), kMostValue})));
}

ToolPage::Field ToolPage::addField(const FieldRow& row, const Value& value) {
    const Field field{.caption = addCaption(row.caption),
                      .number = new NumberField(row.arrows, row.text, this)};
    field.number->number = value.get;
    field.number->onNumber = value.set;
    field.number->onStep = [value](int steps) { value.move(steps * value.step()); };
    // Who listens knows it by the word that the others see.
    field.caption->setBuddy(field.number);
    field.number->setAccessibleName(row.caption);
    parts_.tips.SetToolTip(*field.number, {row.title, row.tip, ""});
    auto* edit = field.number->findChild<QLineEdit*>();
    edit->setAccessibleName(row.caption);
    edit->setAccessibleDescription(row.tip);
    return field;
}

void ToolPage::showValue(NumberField& number, const Value& value) {
    const std::optional<int> blank = value.blank();
    number.setBlankText(blank ? QString::number(*blank) : QString());
    number.showNumber(value.get());
}

QLabel* ToolPage::addCaption(const char* words) {
    auto* caption = new QLabel(words, this);
    caption->setFont(textFont(10));
    caption->setForegroundRole(QPalette::PlaceholderText);
    return caption;
}

/// A click doesn't take the focus, so that Space still plays.
QCheckBox* ToolPage::addBox(const QString& name, const char* words, const char* title, const char* tip) {
    auto* box = new QCheckBox(words, this);
    box->setObjectName(name);
    box->setFocusPolicy(Qt::TabFocus);
    parts_.tips.SetToolTip(*box, {title, tip, ""});
    keepKeys(*box);
    return box;
}

void ToolPage::keepKeys(QWidget& control) {
    control.installEventFilter(this);
}

bool ToolPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool plain = !(key->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier));
    const bool moves = key->key() == Qt::Key_Home && !qobject_cast<QCheckBox*>(watched);
    if (!plain || (key->key() != Qt::Key_Space && !moves))
        return false;
    event->accept();
    return true;
}

CommandButton& ToolPage::button(int index) const {
    return parts_.Lb1[index];
}

int ToolPage::placeField(const Field& field, int x, int y, int width, int room) const {
    field.caption->setGeometry(x, y - kAboveField - kCaptionHeight, room - kGap, kCaptionHeight);
    field.number->setGeometry(x, y, width, kFieldHeight);
    return x + room;
}

int ToolPage::placeButtons(int x, std::initializer_list<int> indices, bool iconsAlone) const {
    for (const int index : indices) {
        CommandButton& one = button(index);
        one.setForm(iconsAlone ? ButtonForm::Icon : ButtonForm::IconOverText);
        const QSize size = one.sizeHint();
        one.setGeometry(x, (kHeight - size.height()) / 2, size.width(), size.height());
        x += size.width() + kGap;
    }
    return x;
}

/// In a column, each as wide as its words.
int ToolPage::placeBoxes(int x, const std::vector<QCheckBox*>& boxes, int y, int pitch) const {
    int right = x;
    for (QCheckBox* box : boxes) {
        const int width = box->sizeHint().width();
        box->setGeometry(x, y, width, kBoxHeight);
        right = std::max(right, x + width);
        y += pitch;
    }
    return right;
}

int ToolPage::placeSeparator(int x) {
    separators_.push_back(x + kSeparator / 2 - 3);
    return x + kSeparator;
}

void ToolPage::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    for (const int x : separators_)
        paintSeparator(painter, parts_.look.skin(), x, 4, kHeight - 8);
}

} // namespace velmora
