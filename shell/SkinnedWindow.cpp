// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinnedWindow.h"

#include "shell/Compositor.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "shell/WindowGeometry.h"
#include "shell/WindowShape.h"

#include <QtWidgets>

namespace velmora {

namespace {
constexpr int kGrabWidth = 4;
constexpr int kCorner = 8;
constexpr int kTitleButtonWidth = 22;
constexpr int kTitleButtonHeight = 18;
constexpr int kSettleMilliseconds = 200; ///< a window that has not moved for so long stands still

/// The panel under the title.
class Panel : public QWidget {
public:
    explicit Panel(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const int edge = look_.skin().edgeWidth;
        QPainter painter(this);
        paintPanel(painter, look_.skin(), rect().adjusted(edge, 0, -edge, -edge));
    }

private:
    const Appearance& look_;
};

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == Qt::LeftEdge || edges == Qt::RightEdge)
        return Qt::SizeHorCursor;
    if (edges == Qt::TopEdge || edges == Qt::BottomEdge)
        return Qt::SizeVerCursor;
    const bool falling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
    return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paintProgramIcon(painter, QRectF(0, 0, size, size));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
} // namespace

/// A named piece of the frame. All of them show their part of one picture, or stand on it.
class SkinnedWindow::FramePart : public QWidget {
public:
    FramePart(SkinnedWindow& window, const QString& name) : QWidget(&window), window_(window) {
        setObjectName(name);
        window.moveBy(*this);
    }

    /// Paints what stands on the frame, in the part's own place. The frame is that of the parts below.
    std::function<void(QPainter&, const Skin&)> onTop;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        if (onTop) {
            onTop(painter, window_.look().skin());
            return;
        }
        if (!window_.testAttribute(Qt::WA_TranslucentBackground)) // where the outline only touches a pixel
            painter.fillRect(rect(), toQColor(window_.look().skin().edgeOuter));
        painter.translate(-pos());
        paintFrame(painter, window_.look().skin(), window_.size(), window_.isSquare());
    }

private:
    SkinnedWindow& window_;
};

/// The mouse has taken over: where the keyboard was is of no interest any more.
class SkinnedWindow::PressWatch : public QObject {
public:
    explicit PressWatch(SkinnedWindow& window) : window_(window) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* pressed =
            event->type() == QEvent::MouseButtonPress ? qobject_cast<QWidget*>(watched) : nullptr;
        if (pressed && pressed->window() == &window_)
            window_.hideFocusRing();
        return false;
    }

private:
    SkinnedWindow& window_;
};

/// One of the four buttons in the title bar.
class TitleButton : public QAbstractButton {
public:
    TitleButton(SkinnedWindow& window, TitleSign sign, const QString& name, const QString& tip)
        : QAbstractButton(&window)
        , window_(window) {
        setObjectName(name);
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::NoFocus); // the keyboard has the window manager's ways, and F1
        setSign(sign, tip);
    }
    void setSign(TitleSign sign, const QString& name) {
        sign_ = sign;
        setAccessibleName(name);
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        paintTitleButton(painter, window_.look().skin(), rect(), sign_, isEnabled() && underMouse(),
                         isDown());
    }

private:
    SkinnedWindow& window_;
    TitleSign sign_{};
};

SkinnedWindow::SkinnedWindow(frmskins& skins, TitleButtons buttons, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags | Qt::FramelessWindowHint)
    , skins_(skins) {
    setAttribute(Qt::WA_TranslucentBackground, windowsShineThrough());
    if (QApplication::windowIcon().isNull()) // all windows share it
        QApplication::setWindowIcon(programIcon());
    panel_ = new Panel(look(), this);
    panel_->setObjectName("Ibak5");
    buildTitle(buttons);
    buildEdges();
    followFocus();
    settled_.setSingleShot(true);
    settled_.setInterval(kSettleMilliseconds);
    QObject::connect(&settled_, &QTimer::timeout, this, [this] { settle(); });
    skins_.add(*this);
}

SkinnedWindow::~SkinnedWindow() {
    // The base takes the focus away when no member of ours is left.
    disconnect(qApp, nullptr, this, nullptr);
    skins_.remove(*this);
}

void SkinnedWindow::buildTitle(TitleButtons buttons) {
    Ibak1_ = new FramePart(*this, "Ibak1");
    lblTitle_ = new FramePart(*this, "lblTitle");
    fpic_ = new FramePart(*this, "fpic");
    Ibak2_ = new FramePart(*this, "Ibak2");
    Ibak2_->stackUnder(lblTitle_);
    lblTitle_->onTop = [this](QPainter& painter, const Skin& skin) {
        const QFont font = titleFont();
        painter.setFont(font);
        painter.setPen(toQColor(skin.titleText));
        const QString text = QFontMetrics(font).elidedText(windowTitle(), Qt::ElideRight, lblTitle_->width());
        painter.drawText(lblTitle_->rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    };
    fpic_->onTop = [this](QPainter& painter, const Skin& /*skin*/) {
        paintProgramIcon(painter, fpic_->rect());
    };

    imgTitleClose_ = new TitleButton(*this, TitleSign::Close, "imgTitleClose", "Exit");
    connect(imgTitleClose_, &QAbstractButton::clicked, this, [this] { imgTitleClose_Click(); });
    if (buttons.maximize) {
        imgTitleMaxRestore_ = new TitleButton(*this, TitleSign::Maximize, "imgTitleMaxRestore", "Maximize");
        connect(imgTitleMaxRestore_, &QAbstractButton::clicked, this, [this] { imgTitleMaxRestore_Click(); });
    }
    if (buttons.minimize) {
        imgTitleMinimize_ = new TitleButton(*this, TitleSign::Minimize, "imgTitleMinimize", "Minimize");
        connect(imgTitleMinimize_, &QAbstractButton::clicked, this, [this] { imgTitleMinimize_Click(); });
    }
    if (buttons.help) {
        imgTitleHelp_ = new TitleButton(*this, TitleSign::Help, "imgTitleHelp", "Help");
        imgTitleHelp_->setEnabled(false);
        connect(imgTitleHelp_, &QAbstractButton::clicked, this, [this] { imgTitleHelp_Click(); });
    }
}

void SkinnedWindow::buildEdges() {
    for (std::size_t i = 0; i < kFrameEdges.size(); ++i) {
        Winedge_[i] = new FramePart(*this, QStringLiteral("Winedge(%1)").arg(i));
        Winedge_[i]->setAccessibleName("Move");
        Resizer_[i] = new QWidget(this);
        Resizer_[i]->setObjectName(QStringLiteral("Resizer(%1)").arg(i));
        Resizer_[i]->setAccessibleName("Resize");
        Resizer_[i]->setCursor(cursorFor(kFrameEdges[i]));
        Resizer_[i]->installEventFilter(this);
    }
}

/// The ring around the control that has the focus shows once a key has moved it there.
void SkinnedWindow::followFocus() {
    focusFrame_ = new QFocusFrame(this);
    presses_ = std::make_unique<PressWatch>(*this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*old*/, QWidget* now) { placeFocusRing(now); });
}

void SkinnedWindow::placeFocusRing(QWidget* focused) {
    const bool ours = focused && focused->window() == this && focused != this;
    focusFrame_->setWidget(ours && testAttribute(Qt::WA_KeyboardFocusChange) ? ringed(focused) : nullptr);
    if (focusFrame_->widget())
        qApp->installEventFilter(presses_.get());
}

void SkinnedWindow::hideFocusRing() {
    setAttribute(Qt::WA_KeyboardFocusChange, false);
    focusFrame_->setWidget(nullptr);
    qApp->removeEventFilter(presses_.get());
}

/// The row of menus shows by a label of its own where the keyboard is.
QWidget* SkinnedWindow::ringed(QWidget* focused) const {
    return qobject_cast<QMenuBar*>(focused) ? nullptr : focused;
}

void SkinnedWindow::showFocusRing() {
    setAttribute(Qt::WA_KeyboardFocusChange);
    placeFocusRing(focusWidget());
}

void SkinnedWindow::moveBy(QWidget& part) {
    part.installEventFilter(this);
}

void SkinnedWindow::attachTips(ExToolTip& tips) {
    tips_ = &tips;
    tips.Attach(*this);
    for (QWidget* edge : Winedge_)
        tips.SetToolTip(*edge, {"Move", "", ""});
    for (QWidget* grip : Resizer_)
        tips.SetToolTip(*grip, {"Resize", "", ""});
    for (QAbstractButton* button : {imgTitleClose_, imgTitleMaxRestore_, imgTitleMinimize_, imgTitleHelp_})
        if (button)
            tips.SetToolTip(*button, {button->accessibleName(), "", ""});
}

bool SkinnedWindow::knowsItsPlace() {
    return tellsPlaces(QGuiApplication::platformName());
}

void SkinnedWindow::setHelp(std::function<void()> help) {
    help_ = std::move(help);
    if (imgTitleHelp_)
        imgTitleHelp_->setEnabled(help_ != nullptr);
}

void SkinnedWindow::imgTitleHelp_Click() {
    if (help_)
        help_();
}

void SkinnedWindow::imgTitleMaxRestore_Click() {
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

bool SkinnedWindow::isSquare() const {
    return windowState().testAnyFlags(Qt::WindowMaximized | Qt::WindowFullScreen);
}

void SkinnedWindow::ApplySkin() {
    LayoutFrame();
    SetRegion();
    const auto children = findChildren<QWidget*>();
    for (QWidget* child : children)
        child->update();
    update();
}

void SkinnedWindow::appearanceChanged() {
    ApplySkin();
    // What a resize lays out may depend on the skin.
    QResizeEvent resize(size(), size());
    QApplication::sendEvent(this, &resize);
}

void SkinnedWindow::LayoutFrame() {
    const int edge = look().skin().edgeWidth;
    const int right = width() - edge - 4;
    panel_->setGeometry(0, kTitleHeight, width(), height() - kTitleHeight);
    Ibak1_->setGeometry(0, 0, width() / 2, kTitleHeight);
    Ibak2_->setGeometry(width() / 2, 0, width() - width() / 2, kTitleHeight);
    fpic_->setGeometry(8, 6, 16, 16);
    int left = right;
    for (TitleButton* button : {imgTitleClose_, imgTitleMaxRestore_, imgTitleMinimize_, imgTitleHelp_}) {
        if (!button)
            continue;
        left -= kTitleButtonWidth;
        button->setGeometry(left, 5, kTitleButtonWidth, kTitleButtonHeight);
        button->raise();
        left -= 2;
    }
    lblTitle_->setGeometry(30, 2, std::max(0, left - 34), kTitleHeight - 3);
    const bool resizable = !isSquare() && minimumSize() != maximumSize();
    for (std::size_t i = 0; i < kFrameEdges.size(); ++i) {
        Winedge_[i]->setGeometry(framePiece(kFrameEdges[i], size(), edge, edge));
        Winedge_[i]->setVisible(!kFrameEdges[i].testFlag(Qt::TopEdge)); // there the title bar is the edge
        Resizer_[i]->setGeometry(framePiece(kFrameEdges[i], size(), kGrabWidth, kCorner));
        Resizer_[i]->setVisible(resizable);
        Winedge_[i]->raise();
    }
    for (QWidget* grip : Resizer_)
        grip->raise();
}

void SkinnedWindow::SetRegion() {
    if (testAttribute(Qt::WA_TranslucentBackground))
        return;
    const Skin& skin = look().skin();
    shapeWindow(*this, windowOutline(skin, size(), isSquare()), isSquare() ? 0 : (skin.ellipse + 1) / 2);
}

bool SkinnedWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowTitleChange)
        lblTitle_->update();
    return QWidget::event(event);
}

void SkinnedWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    nameMaxRestore();
    ApplySkin();
}

void SkinnedWindow::nameMaxRestore() {
    if (!imgTitleMaxRestore_)
        return;
    const QString name = isMaximized() ? "Restore" : "Maximize";
    imgTitleMaxRestore_->setSign(isMaximized() ? TitleSign::Restore : TitleSign::Maximize, name);
    if (tips_)
        tips_->SetToolTip(*imgTitleMaxRestore_, {name, "", ""});
}

void SkinnedWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    LayoutFrame();
    SetRegion();
}

void SkinnedWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible() && !isSquare() && !isMinimized())
        settled_.start();
}

/// A window whose title has gone above the screen could not be moved back. One that has come to a screen with
/// larger pixels has fewer of them than it needs.
void SkinnedWindow::settle() {
    if (pressed_)
        return;
    if (const QSize least = size().expandedTo(minimumSize()); size() != least)
        resize(least);
    const int top = screen()->geometry().top();
    if (y() < top)
        move(x(), top);
    moveEnded();
}

bool SkinnedWindow::eventFilter(QObject* watched, QEvent* event) {
    const auto grip = std::ranges::find(Resizer_, watched);
    if (grip != Resizer_.end())
        return resizeDragEvent(event, kFrameEdges[static_cast<std::size_t>(grip - Resizer_.begin())]);
    if (dragEvent(event))
        return true;
    return QWidget::eventFilter(watched, event);
}

/// The platform moves the window, so that it snaps and crosses screens as others do. Where it can't, we do.
bool SkinnedWindow::dragEvent(QEvent* event) {
    const auto* mouse = dynamic_cast<QMouseEvent*>(event);
    if (!mouse)
        return false;
    const QPoint at = mouse->globalPosition().toPoint();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        pressed_ = mouse->button() == Qt::LeftButton;
        pressedAt_ = at;
        pressedFrame_ = geometry();
        return pressed_;
    case QEvent::MouseMove:
        if (!pressed_ || (at - pressedAt_).manhattanLength() < QApplication::startDragDistance() / 2)
            return pressed_;
        if (windowHandle()->startSystemMove())
            platformDrags(*mouse);
        else if (!isSquare())
            move(pressedFrame_.topLeft() + at - pressedAt_);
        return true;
    case QEvent::MouseButtonRelease:
        if (std::exchange(pressed_, false) && pressedFrame_.topLeft() != pos())
            settle();
        return true;
    case QEvent::MouseButtonDblClick:
        pressed_ = false;
        if (imgTitleMaxRestore_ && mouse->button() == Qt::LeftButton && mapFromGlobal(at).y() < kTitleHeight)
            imgTitleMaxRestore_Click();
        return true;
    default:
        return false;
    }
}

/// The platform goes on with the drag. On Wayland nobody tells Qt of the release then: it would go on giving
/// the mouse, its pointer and the next press to the part that was pressed.
void SkinnedWindow::platformDrags(const QMouseEvent& mouse) {
    pressed_ = false;
    if (knowsItsPlace())
        return;
    const QPointF at = mapFromGlobal(mouse.globalPosition());
    QTimer::singleShot(0, this, [this, at, global = mouse.globalPosition()] {
        QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        if (windowHandle())
            QApplication::sendEvent(windowHandle(), &release);
    });
}

bool SkinnedWindow::resizeDragEvent(QEvent* event, Qt::Edges edges) {
    const auto* mouse = dynamic_cast<QMouseEvent*>(event);
    if (!mouse)
        return false;
    const QPoint at = mouse->globalPosition().toPoint();
    if (event->type() == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton) {
        pressed_ = true;
        pressedAt_ = at;
        pressedFrame_ = geometry();
        if (windowHandle()->startSystemResize(edges))
            platformDrags(*mouse);
    } else if (event->type() == QEvent::MouseMove && pressed_) {
        setGeometry(resizedFrame(pressedFrame_, edges, at - pressedAt_, minimumSize().expandedTo({1, 1})));
    } else if (event->type() == QEvent::MouseButtonRelease) {
        pressed_ = false;
    }
    return true;
}

} // namespace velmora
