// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/ScoreSheet.h"

#include "base/QtText.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/FramePainter.h"
#include "shell/SkinPainter.h"
#include "shell/WindowGeometry.h"
#include "songwriter/PageView.h"
#include "songwriter/SongParts.h"
#include "songwriter/TextHolder.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
constexpr int kBar = 16;    ///< across a scroll bar
constexpr int kCorner = 14; ///< of an edge, along it
constexpr QSize kLeast(220, 140);
constexpr int kKeyScroll = 40;
constexpr int kLinesHeight = 120;

int edgeOf(const SongParts& parts) {
    return parts.look.skin().edgeWidth;
}
} // namespace

class ScoreSheet::CloseButton : public QAbstractButton {
public:
    CloseButton(const Appearance& look, QWidget* parent) : QAbstractButton(parent), look_(look) {
        setObjectName("imgTitleClose");
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::NoFocus);
        resize(22, 18);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        paintTitleButton(painter, look_.skin(), rect(), TitleSign::Close, underMouse(), isDown());
    }

private:
    const Appearance& look_;
};

ScoreSheet::ScoreSheet(const SongParts& parts, int page, QWidget* parent)
    : QWidget(parent)
    , parts_(parts)
    , page_(page)
    , view_(new PageView(parts.song, parts.look, page, this))
    , imgTitleClose_(new CloseButton(parts.look, this))
    , HScroll1_(new QScrollBar(Qt::Horizontal, this))
    , VScroll1_(new QScrollBar(Qt::Vertical, this))
    , T3_(new TextHolder(parts, *view_)) {
    setObjectName(QStringLiteral("ScoreSheet(%1)").arg(page));
    setFocusProxy(view_);
    setAttribute(Qt::WA_OpaquePaintEvent); // or each step of scrolling would paint the pages beneath
    setMouseTracking(true);
    setContextMenuPolicy(Qt::PreventContextMenu); // the right button has another meaning here
    setMinimumSize(kLeast);
    HScroll1_->setObjectName("HScroll1");
    VScroll1_->setObjectName("VScroll1");
    HScroll1_->setAccessibleName("Scroll sideways");
    VScroll1_->setAccessibleName("Scroll up and down");
    for (QScrollBar* bar : {HScroll1_, VScroll1_}) {
        bar->setSingleStep(kKeyScroll);
        connect(bar, &QScrollBar::valueChanged, this, [this] { scrolled(); });
    }
    parts.desk.tips.SetToolTip(*imgTitleClose_, {"Exit", "Takes this page away. Its texts stay", ""});
    parts.desk.tips.SetToolTip(*view_, {"Page", "The right button puts a text where it is pressed", ""});
    parts.desk.tips.SetToolTip(*HScroll1_, {"Scroll", "Moves the page sideways", ""});
    parts.desk.tips.SetToolTip(*VScroll1_, {"Scroll", "Moves the page up and down", ""});
    connect(imgTitleClose_, &QAbstractButton::clicked, this, [this] {
        if (onClose)
            onClose();
    });
    view_->onLeft = [this](QMouseEvent* event) { drag(*event); };
    view_->onRight = [this](QPoint at) { addText(at); };
    view_->onDouble = [this](QPoint at) { reopenText(at); };
    view_->onWheel = [this](QPoint by) { scrollTo(view_->corner() + by); };
    view_->onZoom = [this](double steps) {
        if (onZoom)
            onZoom(steps);
    };
    view_->onKey = [this](const QKeyEvent& key) { return viewKey(key.key(), key.modifiers()); };
    T3_->onCommit = [this](const QString& text) { commit(text); };
    showPage();
}

void ScoreSheet::setPlaced(bool placed) {
    if (std::exchange(placed_, placed) != placed && placed && onPlaced)
        onPlaced();
}

bool ScoreSheet::isTyping() const {
    return T3_->isVisibleTo(view_) || (Text2_ && Text2_->isVisibleTo(this));
}

/// Made when it is first asked for.
void ScoreSheet::addLines() {
    if (Text2_)
        return;
    Text2_ = new QPlainTextEdit(this);
    Text2_->setObjectName("Text2");
    Text2_->setAccessibleName("Lines of the texts of this page");
    Text2_->setLineWrapMode(QPlainTextEdit::NoWrap);
    Text2_->installEventFilter(this);
    parts_.desk.tips.SetToolTip(
        *Text2_, {"Texts of this page",
                  "A line each. Enter stores them, Shift+Enter begins a line, Esc leaves", "edit"});
    layOut();
}

void ScoreSheet::showPage() {
    const QString caption = toQString(parts_.song.caption(page_));
    setWindowTitle(caption);
    setAccessibleName(caption.simplified());
    const std::string& title = parts_.song.setup.title;
    view_->setAccessibleName(
        toQString((title.empty() ? "Untitled Score" : title) + ", " + parts_.song.pageInWords(page_)));
    view_->showMarks();
    layOut();
    update();
}

void ScoreSheet::setZoom(double zoom) {
    const notation::Point before = view_->pagePoint({});
    view_->setZoom(zoom);
    layOut();
    scrollTo(view_->corner() + view_->viewPoint(before));
    T3_->setStyle(T3_->style());
}

void ScoreSheet::setFront(bool front) {
    if (front_ == front)
        return;
    front_ = front;
    view_->setFront(front);
    update();
}

void ScoreSheet::layOut() {
    const int edge = edgeOf(parts_);
    const QRect inside(edge, kTitleHeight, width() - 2 * edge, height() - kTitleHeight - edge);
    const int viewWidth = std::max(inside.width() - kBar, 1);
    const int viewHeight = std::max(inside.height() - kBar, 1);
    view_->setGeometry(inside.x(), inside.y(), viewWidth, viewHeight);
    VScroll1_->setGeometry(inside.x() + viewWidth, inside.y(), kBar, viewHeight);
    HScroll1_->setGeometry(inside.x(), inside.y() + viewHeight, viewWidth, kBar);
    imgTitleClose_->move(width() - edge - imgTitleClose_->width() - 4, (kTitleHeight - 18) / 2);
    if (Text2_)
        Text2_->setGeometry(inside.x(), inside.y() + std::max(viewHeight - kLinesHeight, 0), viewWidth,
                            std::min(viewHeight, kLinesHeight));
    const QSize page = view_->pageSize();
    HScroll1_->setPageStep(viewWidth);
    HScroll1_->setRange(0, std::max(page.width() - viewWidth, 0));
    VScroll1_->setPageStep(viewHeight);
    VScroll1_->setRange(0, std::max(page.height() - viewHeight, 0));
    scrolled();
}

void ScoreSheet::scrolled() {
    view_->scrollTo({HScroll1_->value(), VScroll1_->value()});
    T3_->place();
}

void ScoreSheet::scrollTo(QPoint corner) {
    HScroll1_->setValue(corner.x());
    VScroll1_->setValue(corner.y());
}

// Texts.

void ScoreSheet::setTextStyle(const notation::TextStyle& style) {
    style_ = style;
    if (edited_ < 0)
        T3_->setStyle(style);
}

void ScoreSheet::addText(QPoint at) {
    if (onRaise)
        onRaise();
    if (!T3_->isVisibleTo(view_))
        edited_ = -1;
    T3_->openAt(view_->pagePoint(at), style_);
}

void ScoreSheet::addTextInTheMiddle() {
    addText({view_->width() / 3, view_->height() / 2});
}

/// A text that stands on the page already is typed anew where it stands.
void ScoreSheet::reopenText(QPoint at) {
    const int index = parts_.song.textAt(page_, view_->pagePoint(at));
    if (index < 0 || T3_->isVisibleTo(view_))
        return;
    const notation::LyricsItem item = parts_.song.sheets().itemsOf(page_).at(static_cast<std::size_t>(index));
    edited_ = index;
    T3_->openAt({item.left, item.top}, {.family = item.font, .points = item.size, .bold = style_.bold},
                toQString(item.text));
}

void ScoreSheet::commit(const QString& text) {
    const notation::Point at = T3_->at();
    notation::LyricsItem item;
    item.page = page_;
    item.left = std::round(at.x);
    item.top = item.y = std::round(at.y);
    item.size = T3_->style().points;
    item.font = T3_->style().family;
    item.text = text.toStdString();
    if (edited_ < 0) {
        if (!text.trimmed().isEmpty())
            parts_.song.place(std::move(item));
        return;
    }
    std::vector<notation::LyricsItem> items = parts_.song.sheets().itemsOf(page_);
    const auto old = items.begin() + std::exchange(edited_, -1);
    if (text.trimmed().isEmpty())
        items.erase(old);
    else
        *old = std::move(item);
    parts_.song.setTexts(page_, std::move(items));
}

void ScoreSheet::editTexts() {
    addLines();
    Text2_->setPlainText(toQString(parts_.song.linesOf(page_)));
    Text2_->show();
    Text2_->raise();
    Text2_->setFocus();
}

void ScoreSheet::storeLines() {
    parts_.song.setLinesOf(page_, Text2_->toPlainText().toStdString());
    Text2_->hide();
    view_->setFocus();
}

bool ScoreSheet::eventFilter(QObject* watched, QEvent* event) {
    if (!Text2_ || watched != Text2_)
        return QWidget::eventFilter(watched, event);
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool leaves = key->key() == Qt::Key_Escape;
    const bool stores = (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
                        !(key->modifiers() & Qt::ShiftModifier);
    if (!leaves && !stores)
        return false;
    event->accept();
    if (event->type() == QEvent::KeyPress && stores)
        storeLines();
    if (event->type() == QEvent::KeyPress && leaves) {
        Text2_->hide();
        view_->setFocus();
    }
    return true;
}

// Keys and mouse.

bool ScoreSheet::viewKey(int key, Qt::KeyboardModifiers modifiers) {
    const QPoint corner = view_->corner();
    if (modifiers & Qt::ControlModifier)
        return false;
    switch (key) {
    case Qt::Key_Left:
        scrollTo(corner - QPoint(kKeyScroll, 0));
        return true;
    case Qt::Key_Right:
        scrollTo(corner + QPoint(kKeyScroll, 0));
        return true;
    case Qt::Key_Up:
        scrollTo(corner - QPoint(0, kKeyScroll));
        return true;
    case Qt::Key_Down:
        scrollTo(corner + QPoint(0, kKeyScroll));
        return true;
    case Qt::Key_PageUp:
        scrollTo(corner - QPoint(0, view_->height() - kKeyScroll));
        return true;
    case Qt::Key_PageDown:
        scrollTo(corner + QPoint(0, view_->height() - kKeyScroll));
        return true;
    case Qt::Key_Home:
        scrollTo({});
        return true;
    case Qt::Key_End:
        scrollTo({corner.x(), VScroll1_->maximum()});
        return true;
    case Qt::Key_Menu:
        addTextInTheMiddle();
        return true;
    default:
        return false;
    }
}

Qt::Edges ScoreSheet::edgesAt(QPoint at) const {
    const int edge = edgeOf(parts_);
    for (std::size_t i = kFrameEdges.size(); i-- > 0;) // corners lie over sides
        if (framePiece(kFrameEdges[i], size(), edge, kCorner).contains(at) &&
            (kFrameEdges[i] != Qt::TopEdge || at.y() < edge))
            return kFrameEdges[i];
    return {};
}

void ScoreSheet::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        drag(*event);
}

void ScoreSheet::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) {
        drag(*event);
        return;
    }
    const Qt::Edges edges = edgesAt(event->position().toPoint());
    const bool down = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
    const bool isCorner =
        (edges & (Qt::LeftEdge | Qt::RightEdge)) && (edges & (Qt::TopEdge | Qt::BottomEdge));
    setCursor(!edges                                   ? Qt::ArrowCursor
              : isCorner                               ? (down ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor)
              : edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor
                                                       : Qt::SizeVerCursor);
}

void ScoreSheet::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && event->position().y() < kTitleHeight && onWhole)
        onWhole();
}

/// A press, or a move while the button is down, on the title, an edge or the page.
void ScoreSheet::drag(const QMouseEvent& event) {
    const QPoint now = event.globalPosition().toPoint();
    if (event.type() == QEvent::MouseButtonPress) {
        if (onRaise)
            onRaise();
        grip_ = now;
        gripped_ = geometry();
        edges_ = edgesAt(mapFromGlobal(now));
        if (view_->rect().contains(view_->mapFromGlobal(now))) {
            edges_ = {};
            view_->setFocus();
        }
        return;
    }
    if (event.type() != QEvent::MouseMove || now == grip_)
        return;
    QRect frame =
        edges_ ? resizedFrame(gripped_, edges_, now - grip_, kLeast) : gripped_.translated(now - grip_);
    // Its title stays where it can be taken again.
    const QRect room = parentWidget()->rect();
    if (!edges_)
        frame.moveTo(std::clamp(frame.x(), 2 * kTitleHeight - frame.width(), room.width() - 2 * kTitleHeight),
                     std::clamp(frame.y(), 0, std::max(room.height() - kTitleHeight, 0)));
    setPlaced(true);
    setGeometry(frame);
}

void ScoreSheet::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void ScoreSheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Skin& skin = parts_.look.skin();
    const int edge = edgeOf(parts_);
    painter.fillRect(rect(), toQColor(skin.panel.to));
    paintFrame(painter, skin, size(), true);
    painter.fillRect(QRect(edge, kTitleHeight, width() - 2 * edge, height() - kTitleHeight - edge),
                     toQColor(skin.panel.from));
    painter.setOpacity(front_ ? 1 : 0.75);
    paintProgramIcon(painter, {edge + 4.0, 6, 16, 16});
    painter.setPen(toQColor(skin.titleText));
    painter.setFont(titleFont());
    const QRect title(edge + 26, 0, imgTitleClose_->x() - edge - 30, kTitleHeight);
    painter.drawText(
        title, Qt::AlignVCenter,
        painter.fontMetrics().elidedText(windowTitle().trimmed(), Qt::ElideMiddle, title.width()));
}

} // namespace velmora
