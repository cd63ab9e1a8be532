// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ChannelStrip.h"

#include "parts/ChannelColours.h"
#include "score/Score.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QAbstractButton>
#include <QMouseEvent>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kSquare = 20;
constexpr int kRing = 2;
constexpr const char* kSquareTip =
    "Left Click to activate Channel \nRight click to Activate/Deactivate Channel ";

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// A muted channel is pale and struck out.
void paintSquare(QPainter& painter, const QRectF& rect, int channel, bool muted) {
    const ChannelColours& colours = kChannelColours[channel];
    const Rgb face = muted ? colours.pale : colours.bright;
    fillRounded(painter, rect, 3, toQColor(face), toQColor(mix(face, kBlack, 0.45)));
    painter.setPen(toQColor(inkOnColour(face)));
    painter.setFont(textFont(12, true));
    painter.drawText(rect, Qt::AlignCenter, QString::fromLatin1(colours.caption));
    if (!muted)
        return;
    const QRectF inner = rect.adjusted(2, 2, -3, -3);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false); // whole pixels, no grey beside them
    painter.setPen(QPen(toQColor(inkOnColour(face)), 2, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(inner.bottomLeft(), inner.topRight());
    painter.restore();
}
} // namespace

/// The button of a channel, 2 larger on each side than what is seen of it at rest.
class ChannelStrip::Square : public QAbstractButton {
public:
    Square(const Appearance& look, int channel, ChannelStrip* strip)
        : QAbstractButton(strip)
        , strip_(*strip)
        , look_(look)
        , channel_(channel) {
        setObjectName(QStringLiteral("Label8(%1)").arg(channel));
        setAccessibleName(QStringLiteral("Channel %1").arg(kChannelColours[channel].caption));
        setCheckable(true);
        setAutoExclusive(true);
        setFocusPolicy(Qt::TabFocus);
    }
    void show(bool active, bool used, bool muted) {
        setChecked(active);
        used_ = used;
        muted_ = muted;
        setAccessibleDescription(QLatin1String(muted ? "muted. " : "") + QLatin1String(kSquareTip));
        update();
    }

protected:
    bool event(QEvent* event) override {
        // As with the command buttons, Space and Enter press what the keyboard has reached.
        if (event->type() == QEvent::ShortcutOverride && hasFocus() &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space)
            event->accept();
        if (event->type() == QEvent::KeyPress && isEnter(static_cast<QKeyEvent*>(event)->key())) {
            click();
            return true;
        }
        return QAbstractButton::event(event);
    }
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const QRectF square(kRing, kRing, kSquare, kSquare);
        if (isChecked())
            strokeRounded(painter, square.adjusted(-kRing, -kRing, kRing, kRing), 5,
                          toQColor(look_.skin().text), 2);
        paintSquare(painter, square, channel_, muted_);
        if (used_) // `LblActiveChannel`
            painter.fillRect(QRectF(kRing + 4, kRing + kSquare + 3, 12, 2), toQColor(look_.skin().text));
    }

    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::RightButton)
            QAbstractButton::mousePressEvent(event);
        else if (strip_.onRightPress)
            strip_.onRightPress(channel_);
    }

private:
    ChannelStrip& strip_;
    const Appearance& look_;
    int channel_;
    bool used_ = false;
    bool muted_ = false;
};

ChannelStrip::ChannelStrip(const Appearance& look, ExToolTip& tips, QWidget* parent) : QWidget(parent) {
    setObjectName("channelStrip");
    for (int channel = 0; channel < static_cast<int>(squares_.size()); ++channel) {
        if (channel == 9) // MIDI's drum channel has no square
            continue;
        auto* square = new Square(look, channel, this);
        squares_[channel] = square;
        tips.SetToolTip(*square,
                        {"Channel " + QString::fromLatin1(kChannelColours[channel].caption), kSquareTip, ""});
        connect(square, &QAbstractButton::clicked, this, [this, channel] {
            if (Label8_Click)
                Label8_Click(channel);
        });
    }
}

void ChannelStrip::show(const Score& score) {
    for (int channel = 0; channel < kUsedChannels; ++channel)
        if (squares_[channel])
            squares_[channel]->show(channel == score.ActiveChannel, score.ChannelInUse[channel],
                                    score.ChannelMuted[channel]);
}

QWidget* ChannelStrip::square(int channel) const {
    return squares_[channel];
}

void ChannelStrip::layOut(FormWidth width) {
    const int pitch = width == FormWidth::Full ? 28 : 24;
    int x = 4;
    for (Square* square : squares_) {
        if (square == squares_[kFirstPercussion])
            x += 12;
        if (!square)
            continue;
        square->setGeometry(x - kRing, 4 - kRing, kSquare + 2 * kRing, kSquare + 2 * kRing + 3);
        x += pitch;
    }
}

} // namespace velmora
