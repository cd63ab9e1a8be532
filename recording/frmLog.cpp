// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/frmLog.h"

#include "base/QtText.h"
#include "parts/BringUp.h"
#include "parts/Desk.h"
#include "recording/MessagePanel.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "studio/Studio.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>

namespace velmora {

namespace {
constexpr int kMargin = 12;
constexpr QSize kUsual(480, 320);
constexpr QSize kLeast(320, 200);
constexpr QSize kButton(96, 32);
constexpr int kFollowMilliseconds = 200;
} // namespace

frmLog::frmLog(Desk& desk, QWidget* composing)
    : SkinnedWindow(desk.skins, {.maximize = true, .minimize = true, .help = true})
    , desk_(desk)
    , log_(new QPlainTextEdit(Ibak5()))
    , copy_(new CommandButton(look(), ButtonForm::Text, Ibak5()))
    , close_(new CommandButton(look(), ButtonForm::Text, Ibak5())) {
    setObjectName("frmLog");
    setWindowTitle("Velmora  Recording Log");
    setMinimumSize(kLeast);
    setAttribute(Qt::WA_QuitOnClose, false);
    log_->setObjectName("log");
    log_->setAccessibleName("Recording Log");
    log_->setReadOnly(true);
    log_->setTabChangesFocus(true);
    log_->setUndoRedoEnabled(false);
    log_->setLineWrapMode(QPlainTextEdit::NoWrap);
    copy_->setObjectName("copy");
    copy_->setFace("", "Copy");
    close_->setObjectName("close");
    close_->setFace("", "Close");
    connect(copy_, &QAbstractButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(log_->toPlainText()); });
    connect(close_, &QAbstractButton::clicked, this, &QWidget::close);
    attachTips(desk_.tips);
    desk_.tips.SetToolTip(*log_, {"Recording Log", "Every message with the time of day", ""});
    desk_.tips.SetToolTip(*copy_, {"Copy", "Takes the whole log to the clipboard", "copy"});
    desk_.tips.SetToolTip(*close_, {"Close", "The log goes on all the same", ""});
    setHelp([this] { desk_.windows.help("recording-studio"); });
    resize(kUsual);
    const QRect around = composing ? composing->geometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
}

void frmLog::open(Windows::Focus focus) {
    bringUp(*this, focus);
}

void frmLog::refresh() {
    followText(*log_, shown_, desk_.studio.state.Text2);
}

void frmLog::timerEvent(QTimerEvent* event) {
    if (event->timerId() == following_.timerId())
        refresh();
    else
        SkinnedWindow::timerEvent(event);
}

void frmLog::showEvent(QShowEvent* event) {
    SkinnedWindow::showEvent(event);
    refresh();
    following_.start(kFollowMilliseconds, this);
}

void frmLog::hideEvent(QHideEvent* event) {
    following_.stop();
    SkinnedWindow::hideEvent(event);
}

void frmLog::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    const QRect inner = Ibak5()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const int foot = inner.bottom() + 1 - kButton.height();
    log_->setGeometry(inner.left(), inner.top(), inner.width(), foot - 8 - inner.top());
    close_->setGeometry({inner.right() + 1 - kButton.width(), foot, kButton.width(), kButton.height()});
    copy_->setGeometry({close_->x() - 8 - kButton.width(), foot, kButton.width(), kButton.height()});
}

void frmLog::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        close();
        break;
    case Qt::Key_F1:
        imgTitleHelp_Click();
        break;
    default:
        SkinnedWindow::keyPressEvent(event);
    }
}

} // namespace velmora
