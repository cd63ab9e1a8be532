// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyboardBar.h"

#include "base/QtText.h"
#include "keyboard/Keyboard.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/Slider.h"
#include "sound/Chords.h"
#include "synth/SynthPanel.h"

#include <QLabel>
#include <QMouseEvent>

#include <array>
#include <cmath>

namespace velmora {

namespace {
constexpr int kPointer = 12;
constexpr int kGap = 4;

/// What the user sees of a slider. Its ticks are its values where these are whole; otherwise they divide its
/// travel.
struct BarRow {
    KeyboardSlider slider;
    const char* caption;
    const char* readOut;
    const char* tip;
    int least; ///< ticks
    int most;
    int rest; ///< where the pointer's bar begins
    int step;
    const char* unit = ""; ///< in the tip of the value
};
using enum KeyboardSlider;
constexpr std::array<BarRow, kKeyboardSliders> kBars{{
    {Channel, "Channel", "LblChannel", "Which of its nine channels the keyboard plays on", 0, 8, 0, 1},
    {Octave, "Octave", "LblOctave", "Moves all keys by semitones", 0, 10, 5, 1, " Oct  "},
    {Chord, "Chord", "LblChord", "Which chord a key plays", 0, 10, 0, 1},
    {Strum, "Strum", "Text1", "How slowly the notes of a chord follow each other", 1, 11, 1, 1},
    {Volume, "Note Volume", "Label11", "How loud the channel is", 0, 127, 0, 1},
    {Modulation, "Modulation", "LMod", "How much the notes waver", 0, 127, 0, 1},
    {Reverb, "Reverb", "LReverb", "How much the room answers", 0, 127, 0, 1},
    {Chorus, "Chorus", "LChorus", "As if several played", 0, 127, 0, 1},
    {Pan, "Pan", "LPan", "Where the channel stands, from left to right", -64, 64, 0, 1},
    {Speed, "Playing Speed", "Text2", "Milliseconds of a tick: further right is faster", 0, 1200, 0, 10},
    {Pauses, "Length of Pauses", "Text11", "How much of a held note is left with Insert pauses", 0, 1200, 0,
     10},
    {Compression, "Compression", "Text12", "How much of a held note is left in a saved score", 0, 600, 0, 10},
    {Tempo, "File Tempo", "Text8", "The tempo of the saved score, and of the one that is open", 0, 500, 0, 4},
}};

const BarRow& barOf(KeyboardSlider slider) {
    return kBars[static_cast<std::size_t>(slider)];
}

double valueOfTick(const BarRow& bar, int tick) {
    const KeyboardSliderRow& row = rowOf(bar.slider);
    if (row.whole && bar.slider != Tempo)
        return tick;
    return row.value(static_cast<double>(tick - bar.least) / (bar.most - bar.least));
}

int tickOfValue(const BarRow& bar, double value) {
    switch (bar.slider) {
    case Speed:
    case Pauses:
        return static_cast<int>(std::lround((13 - value) * 100));
    case Compression:
        return static_cast<int>(std::lround((value - 1) * 100));
    default:
        return static_cast<int>(std::lround(value));
    }
}

QString textOf(KeyboardSlider slider, double value) {
    switch (slider) {
    case Channel:
        return QStringLiteral(" Ch %1").arg(static_cast<int>(value), 2, 10, QLatin1Char('0'));
    case Chord:
        return toQString(keyboardChordName(static_cast<int>(value)));
    default:
        return QString::number(std::round(value * 100) / 100);
    }
}
} // namespace

class KeyboardBar::Bar : public Slider {
public:
    Bar(KeyboardBar& owner, const BarRow& row)
        : Slider(owner.parts_.look, Qt::Horizontal, &owner)
        , owner_(owner)
        , row_(row) {
        setObjectName(toQString(rowOf(row.slider).control));
        setRange(row.least, row.most);
        setRest(row.rest);
        setSingleStep(row.step);
        setPageStep(row.step * 10);
        setMouseTracking(true);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::RightButton)
            return owner_.rightClick();
        const int before = value();
        Slider::mousePressEvent(event);
        // The octave may stand elsewhere than its pointer, which a press brings it to all the same.
        if (row_.slider == Octave && isSliderDown() && value() == before)
            owner_.drag(before);
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        Slider::mouseMoveEvent(event);
        if (!event->buttons())
            sayValueAt(event->position().x());
    }

private:
    /// The tip shows once the mouse rests.
    void sayValueAt(double x) {
        ExToolTip& tips = owner_.parts_.desk.tips;
        tips.SetToolTip(*this, {row_.caption, valueWords(x) + QLatin1Char('\n') + row_.tip, ""});
        tips.hover(*window(), this);
    }
    QString valueWords(double x) const {
        if (row_.slider == Octave) { // its tip has a reckoning of its own; that is meant
            const int value = static_cast<int>(x / (width() - kPointer / 2.0) * row_.most);
            return QString::number(value < 5 ? value - 6 : value - 5) + row_.unit;
        }
        const double share = std::clamp((x - kPointer / 2.0) / std::max(1, width() - kPointer), 0.0, 1.0);
        const int tick = row_.least + static_cast<int>(share * (row_.most - row_.least));
        return textOf(row_.slider, valueOfTick(row_, tick)).trimmed();
    }

    KeyboardBar& owner_;
    const BarRow& row_;
};

KeyboardBar::KeyboardBar(const SynthParts& parts, KeyboardSlider slider, QWidget* parent)
    : QWidget(parent)
    , parts_(parts)
    , slider_(slider)
    , caption_(new QLabel(barOf(slider).caption, this))
    , bar_(new Bar(*this, barOf(slider)))
    , value_(new ReadOut(parts.look, barOf(slider).readOut, this)) {
    const BarRow& row = barOf(slider);
    bar_->setAccessibleName(row.caption);
    value_->setAccessibleDescription(row.caption);
    parts.desk.tips.SetToolTip(*bar_, {row.caption, row.tip, ""});
    bar_->onDrag = [this](int tick) { drag(tick); };
    bar_->onRelease = [this] {
        if (onRelease)
            onRelease();
        refresh();
    };
    if (slider == Octave) {
        bar_->setValue(row.rest);
        words_ = QStringLiteral("0");
    }
}

void KeyboardBar::setSides(int caption, int readOut) {
    captionWidth_ = caption;
    readOutWidth_ = readOut;
}

void KeyboardBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    caption_->setGeometry(0, 0, captionWidth_, height());
    bar_->setGeometry(captionWidth_ + kGap, 0, width() - captionWidth_ - readOutWidth_ - 2 * kGap, height());
    value_->setGeometry(width() - readOutWidth_, 0, readOutWidth_, height());
}

void KeyboardBar::drag(int tick) {
    const double value = valueOfTick(barOf(slider_), tick);
    // The octave's read-out tells the place of its pointer, five below what it stands for; that is meant.
    words_ = slider_ == Octave ? QString::number(tick - 5) : QString();
    parts_.keyboard.set(slider_, value);
    if (onValue)
        onValue(value);
    parts_.onUse();
}

void KeyboardBar::rightClick() {
    parts_.keyboard.rightClick(slider_);
    words_ = slider_ == Octave ? QStringLiteral("0") : QString();
    if (slider_ == Octave)
        bar_->setValue(barOf(slider_).rest);
    if (onValue)
        onValue(parts_.keyboard.value(slider_));
    if (onRelease)
        onRelease();
    parts_.onUse();
}

void KeyboardBar::showWords(const QString& words) {
    words_ = words;
    refresh();
}

QString KeyboardBar::readOut() const {
    return words_.isEmpty() ? textOf(slider_, parts_.keyboard.value(slider_)) : words_;
}

/// The pointer of the octave stands for what it was dragged to, whatever else has moved the keys since.
void KeyboardBar::refresh() {
    if (!bar_->isSliderDown() && slider_ != Octave)
        bar_->setValue(tickOfValue(barOf(slider_), parts_.keyboard.value(slider_)));
    if (const QString words = readOut(); value_->text() != words)
        value_->setText(words);
}

} // namespace velmora
