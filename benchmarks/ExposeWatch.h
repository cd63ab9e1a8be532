// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/SteadyClock.h"

#include <QtWidgets>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace velmora {

[[nodiscard]] inline long residentKiB() {
    std::ifstream file("/proc/self/statm");
    long size = 0;
    long resident = 0;
    file >> size >> resident;
    return resident * 4;
}

[[nodiscard]] inline QWidget* windowNamed(const QString& name) {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == name)
            return widget;
    return nullptr;
}

/// When the window of that name has been painted, prints the seconds since a moment, the memory in KiB and
/// how many children the window has, and ends the process.
class ExposeWatch : public QObject {
public:
    ExposeWatch(QString window, double since) : window_(std::move(window)), since_(since) {
        qApp->installEventFilter(this);
    }
    void setSince(double since) { since_ = since; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* window = qobject_cast<QWindow*>(watched);
        if (window && event->type() == QEvent::Expose && window->isExposed() && !seen_ &&
            window->objectName().startsWith(window_)) {
            seen_ = true;
            QTimer::singleShot(0, this, [this] { report(); });
        }
        return false;
    }

private:
    void report() const {
        QGuiApplication::sync();
        const double seconds = steadySeconds() - since_;
        const auto children = windowNamed(window_)->findChildren<QWidget*>().size();
        std::printf("%.6f %ld %d\n", seconds, residentKiB(), static_cast<int>(children));
        std::fflush(stdout);
        std::_Exit(0);
    }

    QString window_;
    std::atomic<double> since_;
    bool seen_ = false;
};

} // namespace velmora
