// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyArea.h"

#include "base/QtText.h"
#include "keyboard/KeyScheme.h"
#include "shell/Appearance.h"
#include "shell/SkinPainter.h"
#include "synth/KeyPainter.h"
#include "synth/SynthColours.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

namespace velmora {

namespace {
/// A key for those who can't see it. What is seen of it the area paints.
class CmdKeyButton : public QAbstractButton {
public:
    explicit CmdKeyButton(QWidget* parent) : QAbstractButton(parent) {
        setFocusPolicy(Qt::NoFocus);
        setMouseTracking(true);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {}
    // The mouse plays on the area, from key to key.
    void mousePressEvent(QMouseEvent* event) override { event->ignore(); }
    void mouseMoveEvent(QMouseEvent* event) override { event->ignore(); }
    void mouseReleaseEvent(QMouseEvent* event) override { event->ignore(); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { event->ignore(); }
};

/// The field of a label: what is typed takes the place of all that stands there.
class LabelField : public QLineEdit {
public:
    /// @param key whose colours it has
    LabelField(int key, const Appearance& look, QWidget* parent)
        : QLineEdit(parent)
        , ground_(isBlackKey(key) ? Qt::black : Qt::white)
        , look_(look) {
        setFrame(false);
        setAlignment(Qt::AlignCenter);
        setTextMargins(-2, 0, -2, 0);
        setContextMenuPolicy(Qt::NoContextMenu);
        setFont(textFont(12, true));
        QPalette colours = palette();
        colours.setColor(QPalette::Text, isBlackKey(key) ? Qt::white : Qt::black);
        setPalette(colours);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        fillRounded(painter, rect(), 2, ground_, toQColor(look_.skin().fieldEdge));
        painter.end();
        QLineEdit::paintEvent(event);
    }
    void mousePressEvent(QMouseEvent* event) override {
        setFocus(Qt::MouseFocusReason);
        selectAll();
        event->accept();
    }
    void mouseMoveEvent(QMouseEvent* event) override { event->accept(); }
    void mouseReleaseEvent(QMouseEvent* event) override { event->accept(); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void focusInEvent(QFocusEvent* event) override {
        QLineEdit::focusInEvent(event);
        selectAll();
    }

private:
    QColor ground_;
    const Appearance& look_;
};

/// "Key F sharp 2, plays with G".
QString nameOfKey(int key, int octaveShift, const QString& label) {
    static constexpr std::array kNames{"C",       "C sharp", "D",       "D sharp", "E",       "F",
                                       "F sharp", "G",       "G sharp", "A",       "A sharp", "B"};
    const int note = kLowestNote + key + octaveShift;
    const int octave = note >= 0 ? note / 12 - 1 : (note - 11) / 12 - 1;
    const QString name = QLatin1String(kNames[static_cast<std::size_t>((note % 12 + 12) % 12)]);
    const QString tone = QStringLiteral("Key %1 %2").arg(name).arg(octave);
    return label.trimmed().isEmpty() ? tone : QStringLiteral("%1, plays with %2").arg(tone, label.trimmed());
}
} // namespace

KeyArea::KeyArea(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setObjectName("Picture1");
    setAccessibleName("Keys");
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    for (const bool black : {false, true}) // the black ones above
        for (int key = 0; key < kPianoKeys; ++key) {
            if (isBlackKey(key) != black)
                continue;
            auto* button = new CmdKeyButton(this);
            button->setObjectName(QStringLiteral("CmdKey(%1)").arg(key));
            connect(button, &QAbstractButton::clicked, this, [this, key] {
                strike(key, layout_.key(key).center());
                strike(std::nullopt, {});
            });
            CmdKey[static_cast<std::size_t>(key)] = button;
        }
}

QRect KeyArea::placeOf(int key) const {
    return layout_.key(key).toAlignedRect() & rect();
}

void KeyArea::showKey(int key, bool sounds) {
    if (!isPianoKey(key) || sounds_[static_cast<std::size_t>(key)] == sounds)
        return;
    sounds_[static_cast<std::size_t>(key)] = sounds;
    update(placeOf(key));
}

void KeyArea::showLabels(const KeyScheme& scheme, int octaveShift) {
    for (int key = 0; key < kPianoKeys; ++key) {
        const auto k = static_cast<std::size_t>(key);
        const QString label = toQString(scheme.labels[k]);
        const bool changed = label != labels_[k];
        if (changed) {
            labels_[k] = label;
            update(placeOf(key));
        }
        if (NoteX[k] && NoteX[k]->text() != label)
            NoteX[k]->setText(label);
        if (changed || octaveShift != octaveShift_ || CmdKey[k]->accessibleName().isEmpty())
            CmdKey[k]->setAccessibleName(nameOfKey(key, octaveShift, label));
    }
    octaveShift_ = octaveShift;
}

void KeyArea::addFields() {
    for (int key = 0; key < kPianoKeys; ++key) {
        const auto k = static_cast<std::size_t>(key);
        auto* field = new LabelField(key, look_, this);
        field->setObjectName(QStringLiteral("NoteX(%1)").arg(key));
        field->setAccessibleName(QStringLiteral("Label of key %1").arg(key));
        field->setText(labels_[k]);
        connect(field, &QLineEdit::textEdited, this, [this, key](const QString& text) {
            labels_[static_cast<std::size_t>(key)] = text;
            if (onLabel)
                onLabel(key, text);
        });
        NoteX[k] = field;
    }
    placeControls();
}

void KeyArea::setEditing(bool on) {
    if (on && !NoteX.front())
        addFields();
    if (!NoteX.front())
        return;
    editing_ = on;
    for (QLineEdit* field : NoteX)
        field->setVisible(on);
    update();
}

void KeyArea::placeControls() {
    for (int key = 0; key < kPianoKeys; ++key) {
        const auto k = static_cast<std::size_t>(key);
        CmdKey[k]->setGeometry(placeOf(key));
        if (NoteX[k])
            NoteX[k]->setGeometry(layout_.label(key).toRect());
    }
}

void KeyArea::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layout_ = KeyLayout(size());
    placeControls();
}

void KeyArea::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect dirty = event->rect();
    painter.setClipRect(dirty);
    const Skin& skin = look_.skin();
    painter.fillRect(dirty, toQColor(keyGround(skin)));
    strokeRounded(painter, rect(), 0, toQColor(skin.line));
    for (const bool black : {false, true})
        for (int key = 0; key < kPianoKeys; ++key)
            if (isBlackKey(key) == black && placeOf(key).intersects(dirty))
                paintKey(painter, layout_, key, sounds_[static_cast<std::size_t>(key)],
                         editing_ ? QString() : labels_[static_cast<std::size_t>(key)]);
}

/// The old key goes up before the new one goes down.
void KeyArea::strike(std::optional<int> key, QPointF at) {
    if (key == struck_)
        return;
    if (struck_ && onRelease)
        onRelease();
    struck_ = key;
    if (key && onPress)
        onPress(*key, layout_.heightOn(*key, at));
}

void KeyArea::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = true;
    strike(layout_.keyAt(event->position()), event->position());
}

void KeyArea::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void KeyArea::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    const bool inside = QRectF(rect()).contains(at);
    const auto key = inside ? layout_.keyAt(at) : std::nullopt;
    if (pressed_)
        strike(key, at);
    else if (inside && !key && !event->buttons() && onBare)
        onBare();
}

void KeyArea::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = false;
    strike(std::nullopt, {});
}

} // namespace velmora
