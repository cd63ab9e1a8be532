// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/PrintPreview.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr int kPaperWidth = 286;
constexpr int kMostHeight = 428; ///< ten pixels of ground stay over and under it
constexpr std::array<const char*, 4> kLineNames{"L1", "L2", "L3", "L4"};
constexpr int kDash = 4;
constexpr int kDashGap = 3;

constexpr bool lies(std::size_t margin) {
    return margin == static_cast<std::size_t>(notation::Margin::Top) ||
           margin == static_cast<std::size_t>(notation::Margin::Bottom);
}
} // namespace

class PrintPreview::MarginLine : public QWidget {
public:
    MarginLine(const Appearance& look, const char* name, QWidget* parent) : QWidget(parent), look_(look) {
        setObjectName(name);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const QColor colour = toQColor(look_.skin().accent);
        for (int at = 0; at < std::max(width(), height()); at += kDash + kDashGap)
            painter.fillRect(
                width() > height() ? QRect(at, 0, kDash, height()) : QRect(0, at, width(), kDash), colour);
    }

private:
    const Appearance& look_;
};

/// The paper, white in every skin.
class PrintPreview::Paper : public QWidget {
public:
    explicit Paper(PrintPreview& preview) : QWidget(&preview), preview_(preview) {
        setObjectName("Pic1");
        setAccessibleName("Preview");
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::SizeAllCursor);
    }

    const notation::EngravedScore* score = nullptr;
    const notation::EngravedPage* page = nullptr;
    void drop() {
        picture_ = {};
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        const QRectF box = preview_.imageBox();
        if (page && !box.isEmpty()) {
            const QSize size = (box.size() * devicePixelRatioF()).toSize();
            if (picture_.size() != size)
                makePicture(size);
            painter.drawImage(box.topLeft(), picture_);
        }
        painter.setPen(toQColor(preview_.look_.skin().line));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    void mousePressEvent(QMouseEvent* event) override { last_ = event->position(); }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        const QPointF by = event->position() - last_;
        last_ = event->position();
        const double unit = preview_.layout_.PaperWidth() / width();
        if (preview_.onDrag)
            preview_.onDrag(by.x() * unit, by.y() * unit);
    }

private:
    /// Lines are never thinner than a pixel, so a smaller page is made of one in its own size.
    void makePicture(QSize size) {
        picture_ = {};
        if (size.isEmpty())
            return;
        const double scale = std::max(size.width() / score->width, 1.0);
        QImage whole(QSizeF(score->width * scale, score->height * scale).toSize(), QImage::Format_RGB32);
        whole.fill(Qt::white);
        notation::paintPixels(*score, *page, scale, 0, 0, whole.width(), whole.height(),
                              reinterpret_cast<std::uint32_t*>(whole.bits()));
        picture_ = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        picture_.setDevicePixelRatio(devicePixelRatioF());
    }

    PrintPreview& preview_;
    QImage picture_; ///< of the page, as large as it is shown
    QPointF last_;
};

PrintPreview::PrintPreview(const Appearance& look, QWidget* parent)
    : QWidget(parent)
    , look_(look)
    , Pic1_(new Paper(*this)) {
    setFocusProxy(Pic1_);
    for (std::size_t i = 0; i < L_.size(); ++i)
        L_[i] = new MarginLine(look, kLineNames[i], Pic1_);
}

void PrintPreview::CmdSize(const notation::PrintLayout& layout) {
    layout_ = layout;
    const double ratio = layout.PaperHeight() / layout.PaperWidth();
    QSize size(kPaperWidth, static_cast<int>(std::lround(kPaperWidth * ratio)));
    if (size.height() > kMostHeight)
        size = {static_cast<int>(std::lround(kMostHeight / ratio)), kMostHeight};
    Pic1_->setGeometry({QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size});
    placeLines();
    Pic1_->update();
}

void PrintPreview::placeLines() {
    for (std::size_t i = 0; i < L_.size(); ++i) {
        const bool isLevel = lies(i);
        const int length = isLevel ? Pic1_->height() : Pic1_->width();
        const int at =
            static_cast<int>(std::lround(layout_.lineShare(static_cast<notation::Margin>(i)) * (length - 1)));
        L_[i]->setGeometry(isLevel ? QRect(0, at, Pic1_->width(), 1) : QRect(at, 0, 1, Pic1_->height()));
    }
}

QRectF PrintPreview::imageBox() const {
    const auto box = layout_.image();
    const double pixels = Pic1_->width() / layout_.PaperWidth();
    return {box.left * pixels, box.top * pixels, box.width * pixels, box.height * pixels};
}

void PrintPreview::showPage(const notation::EngravedScore& score, const notation::EngravedPage* page) {
    Pic1_->score = &score;
    Pic1_->page = page;
    Pic1_->drop();
}

void PrintPreview::paintEvent(QPaintEvent* /*event*/) {
    constexpr double kShade = 0.22;
    QPainter(this).fillRect(rect(), toQColor(mix(look_.skin().panel.to, {0, 0, 0}, kShade)));
}

void PrintPreview::wheelEvent(QWheelEvent* event) {
    constexpr int kNotch = 120;
    turned_ += event->angleDelta().y();
    const int pages = turned_ / kNotch;
    turned_ -= pages * kNotch;
    if (pages != 0 && onTurn)
        onTurn(-pages);
}

void PrintPreview::keyPressEvent(QKeyEvent* event) {
    const bool isTurn = event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown;
    if (!isTurn || !onTurn)
        return QWidget::keyPressEvent(event);
    onTurn(event->key() == Qt::Key_PageUp ? -1 : 1);
}

} // namespace velmora
