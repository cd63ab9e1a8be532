// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FirstPaint.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace velmora {

namespace {
class ExposeWatch : public QObject {
public:
    ExposeWatch(QWindow& window, std::function<void()> next)
        : QObject(&window)
        , window_(window)
        , next_(std::move(next)) {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Expose && window_.isExposed() && next_) {
            // The picture is painted by the handler of this event, and on its way after that.
            QTimer::singleShot(0, &window_, std::exchange(next_, nullptr));
            deleteLater();
        }
        return false;
    }

private:
    QWindow& window_;
    std::function<void()> next_;
};
} // namespace

void afterFirstPaint(QWidget& window, std::function<void()> next) {
    QWindow* handle = window.windowHandle();
    if (!handle || handle->isExposed())
        QTimer::singleShot(0, &window, std::move(next));
    else
        new ExposeWatch(*handle, std::move(next));
}

} // namespace velmora
