// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/frminfo.h"

#include "base/QtText.h"
#include "shell/ExToolTip.h"
#include "shell/IconSet.h"
#include "shell/dotips.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace velmora {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kMargin = 12;
constexpr int kButton = 24;
constexpr int kTextWidth = 320;
constexpr int kGap = 4;
constexpr auto kStyle = TipStyle::Rectangular;

TipColours colours() {
    return {.ink = tipColour(kButtonText, kStyle),
            .from = tipColour(kTipBackground, kStyle),
            .to = tipColour(kDesktop, kStyle),
            .edge = tipEdge(kStyle)};
}

/// The cross.
class ClosePicture : public QAbstractButton {
public:
    explicit ClosePicture(QWidget* parent) : QAbstractButton(parent) {
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setFixedSize(kButton, kButton);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const TipColours tip = colours();
        if (underMouse() || isDown()) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(tip.edge, 1));
            painter.setBrush(isDown() ? tip.to.darker(112) : tip.from);
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        }
        const int down = isDown() ? 1 : 0;
        paintIcon(painter, QPointF(4 + down, 4 + down), "close", {tip.ink, tip.ink, tip.ink});
    }
};

/// A text with the lines of a tip, which stand further apart than a label's own.
class TipText : public QLabel {
public:
    explicit TipText(QWidget* parent) : QLabel(parent) {}

    [[nodiscard]] int heightForWidth(int width) const override {
        const auto lines = static_cast<int>(tipLines(text(), font(), width).size());
        return std::max(0, (lines - 1) * kTipLine + fontMetrics().height());
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        QPoint at(0, fontMetrics().ascent());
        for (const QString& line : tipLines(text(), font(), width())) {
            painter.drawText(at, line);
            at.ry() += kTipLine;
        }
    }
};

} // namespace

QPoint tableauTipPlace(int windowLeft, int musicBoxTop, QSize size, const QRect& screen) {
    const QPoint twips(windowLeft * kTwipsPerPixel + 1500, musicBoxTop * kTwipsPerPixel + 3500);
    return pushedOnto(screen, {twips.x() / kTwipsPerPixel, twips.y() / kTwipsPerPixel}, size);
}

QPoint tipPlaceBeside(const QRect& control, QSize size, const QRect& screen) {
    QPoint place(control.left(), control.bottom() + 1 + kGap);
    if (place.y() + size.height() > screen.bottom() + 1)
        place.setY(control.top() - kGap - size.height());
    return pushedOnto(screen, place, size);
}

std::chrono::milliseconds readingTime(const QString& text) {
    using namespace std::chrono_literals;
    return 3s + 75ms * text.size();
}

frminfo::frminfo(ExToolTip& tips, QWidget* owner)
    : QWidget(owner, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus)
    , Label1(new TipText(this))
    , close_(new ClosePicture(this))
    , Timer1(new QTimer(this)) {
    build();
    connect(close_, &QAbstractButton::clicked, this, &frminfo::dontShow);
    connect(Timer1, &QTimer::timeout, this, &frminfo::Timer1_Timer);
    tips.Attach(*this);
    tips.SetToolTip(*close_, {.title = {}, .text = tr("Don't show Tips"), .icon = {}});
}

void frminfo::build() {
    setObjectName(QStringLiteral("frminfo"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setFont(tipFont(QStringLiteral("Arial")));
    QPalette palette = Label1->palette();
    palette.setColor(QPalette::WindowText, colours().ink);
    Label1->setPalette(palette);
    close_->setObjectName(QStringLiteral("closePicture"));
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setSingleShot(true);
}

bool frminfo::setTip(int index) {
    const LongTip& tip = dotips(index);
    if (tip.text.empty())
        return false;
    setWindowTitle(toQString(tip.title));
    setAccessibleName(windowTitle());
    Label1->setText(toQString(tip.text));
    const int height = std::max(Label1->heightForWidth(kTextWidth), kButton);
    Label1->setGeometry(kMargin, kMargin, kTextWidth, height);
    setFixedSize(kTextWidth + 2 * kMargin + kButton, height + 2 * kMargin);
    close_->move(width() - kButton - kGap, kGap);
    return true;
}

void frminfo::showForTableau(const QWidget& composing, int musicBoxTop) {
    setTip(1);
    showAt(tableauTipPlace(composing.window()->frameGeometry().left(), musicBoxTop, size(),
                           composing.screen()->availableGeometry()));
}

void frminfo::showBeside(const QWidget& control, int index) {
    if (setTip(index))
        showAt(tipPlaceBeside({control.mapToGlobal(QPoint(0, 0)), control.size()}, size(),
                              control.screen()->availableGeometry()));
}

void frminfo::showAt(QPoint place) {
    move(place);
    show();
    raise();
    Timer1->start(readingTime(Label1->text()));
}

void frminfo::Timer1_Timer() {
    hide();
}

void frminfo::dontShow() {
    hide();
    if (onDontShow)
        onDontShow();
}

void frminfo::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintTipBox(painter, size(), colours());
}

void frminfo::enterEvent(QEnterEvent* /*event*/) {
    Timer1->stop();
}

void frminfo::leaveEvent(QEvent* /*event*/) {
    if (isVisible())
        Timer1->start(readingTime(Label1->text()));
}

void frminfo::hideEvent(QHideEvent* /*event*/) {
    Timer1->stop();
}

} // namespace velmora
