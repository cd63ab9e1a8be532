// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpWindow.h"

#include "shell/ExToolTip.h"
#include "shell/HelpView.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

#include <utility>

namespace velmora {

namespace {
constexpr QSize kLeast(560, 360);
constexpr QSize kWanted(880, 640);
constexpr int kMargin = 12;

/// Tips look alike in all windows: what the view would have the platform say, the program's own tips say.
void takeOverTips(const QWidget& view, ExToolTip& tips) {
    for (auto* control : view.findChildren<QWidget*>())
        if (const QString words = control->toolTip(); !words.isEmpty()) {
            control->setToolTip({});
            tips.SetToolTip(*control, {control->accessibleName(), words, ""});
        }
}
} // namespace

HelpWindow::HelpWindow(frmskins& skins, ExToolTip& tips, HelpLibrary library)
    : SkinnedWindow(skins, {.maximize = true, .minimize = true})
    , view_(new HelpView(std::move(library), Ibak5())) {
    setObjectName("helpWindow");
    setWindowTitle("Velmora  Help");
    setMinimumSize(kLeast);
    resize(kWanted.boundedTo(screen()->availableSize() - QSize(40, 40)).expandedTo(kLeast));
    attachTips(tips);
    takeOverTips(*view_, tips);
}

void HelpWindow::open(const QString& page) {
    view_->showPage(page);
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
}

void HelpWindow::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    view_->setGeometry(Ibak5()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin));
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        SkinnedWindow::keyPressEvent(event);
}

} // namespace velmora
