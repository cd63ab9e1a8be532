// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/PlayerStrip.h"

#include "parts/Desk.h"
#include "recording/Commands.h"
#include "recording/ShareBar.h"
#include "shell/Appearance.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QLabel>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kButton = 48;
constexpr int kStep = 52;
constexpr int kSeparatorLeft = 5 * kStep + 2;
constexpr int kReadOutLeft = 5 * kStep + 16;
constexpr int kPadding = 12;
constexpr int kTimeWidth = 78;
constexpr int kFileLeft = 92;
constexpr int kStateWidth = 72;
constexpr int kStatusWidth = 52;
constexpr int kBarTop = 22;
constexpr int kBar = 8;
constexpr int kFootTop = 33;
constexpr int kFootHeight = 13;
} // namespace

PlayerStrip::PlayerStrip(const StudioParts& parts, const CommandBank& buttons, SessionState& state,
                         QWidget* parent)
    : QWidget(parent)
    , look_(parts.look)
    , state_(state)
    , lblTime(addLabel("lblTime", "Time", 22, true))
    , file_(addLabel("fileName", "What plays or is recorded", 10, false))
    , Label8(addLabel("Label8", "State", 10, true))
    , L2(new ShareBar(parts.look, ShareBar::Ground::ReadOut, this))
    , Status(addLabel("Status", "Progress", 12, true))
    , lblKhz(addLabel("lblKhz", "Kilohertz", 10, false))
    , lblmode(addLabel("lblmode", "Mode", 10, false))
    , lblbitrate(addLabel("lblbitrate", "Kilobits a second", 10, false))
    , warning_(addLabel("warning", "Warning", 10, true))
    , loudness_(addLabel("loudness", "Loudness of the take", 10, false)) {
    setObjectName("playerStrip");
    for (int i = 0; i < buttons.size(); ++i) {
        buttons[i].setParent(this);
        buttons[i].setGeometry(i * kStep, 0, kButton, kButton);
        buttons[i].show();
    }
    L2->setObjectName("L2");
    Label8->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ExToolTip& tips = parts.desk.tips;
    tips.SetToolTip(*lblTime, {"Time", "Minutes and seconds", ""});
    tips.SetToolTip(*Status, {"Progress Indicator", "How much of it is done", ""});
    tips.SetToolTip(*L2, {"Progress Indicator", "How much of it is done", ""});
    const Tip header{"MP3 file", "Its sample rate in kilohertz, stereo or mono, and kilobits a second", ""};
    for (QLabel* label : {lblKhz, lblmode, lblbitrate})
        tips.SetToolTip(*label, header);
    tips.SetToolTip(*loudness_, loudnessTip());
}

QLabel* PlayerStrip::addLabel(const char* name, const char* words, int pixels, bool bold) {
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setFont(textFont(pixels, bold));
    label->setAccessibleDescription(words);
    return label;
}

QRect PlayerStrip::readOut() const {
    return {kReadOutLeft, 0, width() - kReadOutLeft, kHeight};
}

void PlayerStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QRect all = readOut();
    const int left = all.left() + kFileLeft;
    const int right = all.right() + 1 - kPadding;
    lblTime->setGeometry(all.left() + kPadding, 8, kTimeWidth, 32);
    file_->setGeometry(left, 5, right - left - kStateWidth, 15);
    Label8->setGeometry(right - kStateWidth, 5, kStateWidth, 15);
    const int bar = right - kStatusWidth - left;
    L2->setGeometry(left, kBarTop, bar, kBar);
    Status->setGeometry(right - kStatusWidth, kBarTop - 6, kStatusWidth, 20);
    for (QLabel* label : {warning_, loudness_})
        label->setGeometry(left, kFootTop, right - left, kFootHeight);
    int x = left;
    for (QLabel* label : {lblKhz, lblmode, lblbitrate}) {
        label->setGeometry(x, kFootTop, 60, kFootHeight);
        x += 64;
    }
}

void PlayerStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintSeparator(painter, look_.skin(), kSeparatorLeft, 4, kHeight - 8);
    paintReadOut(painter, look_.skin(), readOut());
}

void PlayerStrip::refresh(const QString& file) {
    colour();
    showText(*lblTime, state_.lblTime.empty() ? "00:00" : state_.lblTime);
    const QString elided = file_->fontMetrics().elidedText(file, Qt::ElideMiddle, file_->width());
    if (file_->text() != elided)
        file_->setText(elided);
    showText(*Label8, state_.Label8);
    showText(*Status, state_.Status);
    L2->setShare(state_.share);
    const auto with = [](const std::string& value, const char* unit) {
        return value.empty() ? value : value + unit;
    };
    showText(*lblKhz, with(state_.lblKhz, " kHz"));
    showText(*lblmode, state_.lblmode);
    showText(*lblbitrate, with(state_.lblbitrate, " kbps"));
    showFoot();
}

void PlayerStrip::warn(const QString& words) {
    if (warning_->text() != words)
        warning_->setText(words);
    showFoot();
}

void PlayerStrip::showLoudness(const std::string& words) {
    showText(*loudness_, words);
    showFoot();
}

void PlayerStrip::showFoot() {
    const bool warns = !warning_->text().isEmpty();
    for (QLabel* label : {lblKhz, lblmode, lblbitrate})
        label->setVisible(!warns);
    loudness_->setVisible(!warns && lblKhz->text().isEmpty());
}

/// Only what records is red.
void PlayerStrip::colour() {
    const Skin& skin = look_.skin();
    const auto ink = [](QLabel& label, Rgb colour) {
        QPalette palette = label.palette();
        if (palette.color(QPalette::WindowText) == toQColor(colour))
            return;
        palette.setColor(QPalette::WindowText, toQColor(colour));
        label.setPalette(palette);
    };
    for (QLabel* label : {lblTime, Status})
        ink(*label, skin.fieldText);
    for (QLabel* label : {file_, lblKhz, lblmode, lblbitrate, loudness_})
        ink(*label, skin.dim);
    ink(*Label8, state_.isRecording ? recordRed(skin) : skin.dim);
    ink(*warning_, recordRed(skin));
}

} // namespace velmora
