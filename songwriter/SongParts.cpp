// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/SongParts.h"

#include "parts/Desk.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>

#include <utility>

namespace velmora {

namespace {
constexpr int kRowHeight = 24;
constexpr double kDeskShade = 0.24;

class UprightRule : public QWidget {
public:
    UprightRule(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        paintSeparator(painter, look_.skin(), 0, 0, height());
    }

private:
    const Appearance& look_;
};

template<class Button>
Button* addButton(QWidget& panel, const SongParts& parts, const SongControl& control) {
    auto* button = new Button(QLatin1String(control.words), &panel);
    button->setObjectName(QLatin1String(control.name));
    button->setGeometry(QRect(control.place, QSize(button->sizeHint().width(), kRowHeight)));
    parts.desk.tips.SetToolTip(*button,
                               {QString(QLatin1String(control.words)).simplified(), control.tip, ""});
    return button;
}
} // namespace

QColor deskColour(const Appearance& look) {
    return toQColor(mix(look.skin().panel.to, {0, 0, 0}, kDeskShade));
}

QCheckBox* addCheck(QWidget& panel, const SongParts& parts, const SongControl& control,
                    std::function<void(bool)> onTick) {
    auto* box = addButton<QCheckBox>(panel, parts, control);
    QObject::connect(box, &QCheckBox::clicked, &panel, std::move(onTick));
    return box;
}

QRadioButton* addChoice(QWidget& panel, const SongParts& parts, const SongControl& control,
                        std::function<void()> onChosen) {
    auto* button = addButton<QRadioButton>(panel, parts, control);
    QObject::connect(button, &QRadioButton::clicked, &panel, std::move(onChosen));
    return button;
}

QLineEdit* addField(QWidget& panel, const SongParts& parts, const SongControl& control, int wordsWidth,
                    int fieldWidth, std::function<void(const QString&)> onTyped) {
    auto* words = new QLabel(QLatin1String(control.words), &panel);
    words->setGeometry(QRect(control.place, QSize(wordsWidth, kRowHeight)));
    auto* field = new QLineEdit(&panel);
    field->setObjectName(QLatin1String(control.name));
    field->setAccessibleName(QLatin1String(control.words));
    field->setGeometry(QRect(control.place + QPoint(wordsWidth, 0), QSize(fieldWidth, kRowHeight)));
    words->setBuddy(field);
    parts.desk.tips.SetToolTip(*field, {QLatin1String(control.words), control.tip, ""});
    QObject::connect(field, &QLineEdit::textEdited, &panel, std::move(onTyped));
    return field;
}

QLabel* addCaption(QWidget& panel, const char* words, const QRect& place) {
    auto* label = new QLabel(QLatin1String(words), &panel);
    label->setFont(textFont(10));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setGeometry(place);
    return label;
}

void addRule(QWidget& panel, const SongParts& parts, const QRect& place) {
    auto* rule = new UprightRule(parts.look, &panel);
    rule->setAttribute(Qt::WA_TransparentForMouseEvents);
    rule->setGeometry(place);
}

} // namespace velmora
