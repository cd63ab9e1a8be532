// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpWindow.h"

#include "base/Settings.h"
#include "shell/ExToolTip.h"
#include "shell/HelpView.h"
#include "shell/WindowGeometry.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

#include <utility>

namespace velmora {

namespace {
constexpr QSize kLeast(560, 360);
constexpr QSize kWanted(880, 640);
constexpr int kMargin = 12;
constexpr int kMenus = 52; ///< the title and the menus of the composing window

/// Tips look alike in all windows: what the view would have the platform say, the program's own tips say.
void takeOverTips(const QWidget& view, ExToolTip& tips) {
    for (auto* control : view.findChildren<QWidget*>())
        if (const QString words = control->toolTip(); !words.isEmpty()) {
            control->setToolTip({});
            tips.SetToolTip(*control, {control->accessibleName(), words, ""});
        }
}
} // namespace

HelpWindow::HelpWindow(frmskins& skins, ExToolTip& tips, SettingsStore& settings, HelpLibrary library)
    : SkinnedWindow(skins, {.maximize = true, .minimize = true})
    , settings_(settings)
    , view_(new HelpView(std::move(library), Ibak5())) {
    setObjectName("helpWindow");
    setWindowTitle("Velmora  Help");
    setMinimumSize(kLeast);
    attachTips(tips);
    takeOverTips(*view_, tips);
}

HelpWindow::~HelpWindow() {
    if (isVisible())
        savePlace();
}

/// Where it stood last, or else where the menus stay seen.
void HelpWindow::placeAtFirst(const QWidget* around) {
    const auto stored = [this](const settings::Float& key) {
        return pixelsOfTwips(settings::read(settings_, key));
    };
    const QScreen* on = around ? around->screen() : screen();
    if (const QSize size(stored(settings::help_Width), stored(settings::help_Height)); size.isEmpty()) {
        const QRect room = on->availableGeometry();
        const QSize wanted = kWanted.boundedTo(room.size() - QSize(40, 40));
        setGeometry(readingFrame(around ? around->geometry() : room, room, wanted, kLeast, kMenus));
    } else {
        const QPoint corner(stored(settings::help_left), stored(settings::help_top));
        const QScreen* there = QGuiApplication::screenAt(QRect(corner, size).center());
        const QRect room = (there ? there : on)->availableGeometry();
        const QSize fits = size.expandedTo(kLeast).boundedTo(room.size());
        setGeometry(QRect(onScreen(corner, fits, room), fits));
    }
}

void HelpWindow::savePlace() const {
    const QRect frame = isMaximized() ? normalGeometry() : geometry();
    SettingsBatch place(settings_);
    const auto save = [&place](const settings::Float& key, int pixels) {
        settings::save(place, key, static_cast<float>(pixels * kTwips));
    };
    if (knowsItsPlace()) {
        save(settings::help_left, frame.x());
        save(settings::help_top, frame.y());
    }
    save(settings::help_Width, frame.width());
    save(settings::help_Height, frame.height());
}

void HelpWindow::moveEnded() {
    savePlace();
}

void HelpWindow::hideEvent(QHideEvent* event) {
    savePlace();
    SkinnedWindow::hideEvent(event);
}

void HelpWindow::open(const QString& page, const QWidget* around) {
    view_->showPage(page);
    if (!std::exchange(placed_, true))
        placeAtFirst(around);
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
