// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "Share.h"
#include "base/QtMessageLoop.h"
#include "base/SteadyClock.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

/// What the programs do that look at a window on the X server that is there.
namespace velmora::probe {

/// Prints the three numbers, and that was it: nothing is taken down.
[[noreturn]] inline void report(double first, double second, double third) {
    std::printf("%.4f %.4f %.4f\n", first, second, third);
    std::fflush(stdout);
    std::_Exit(0);
}

/// The median, the 99th of a hundred, and the worst.
[[noreturn]] inline void report(const std::vector<double>& values) {
    report(shareOf(values, 0.5), shareOf(values, 0.99), shareOf(values, 1));
}

/// Serves the window for so long.
inline void settle(double seconds) {
    const double end = steadySeconds() + seconds;
    do {
        QApplication::processEvents();
    } while (steadySeconds() < end);
}

/// Until the server has what the command paints.
inline double milliseconds(const std::function<void()>& command) {
    const double before = steadySeconds();
    command();
    QApplication::processEvents();
    QGuiApplication::sync();
    return 1e3 * (steadySeconds() - before);
}

/// Percent of a core that the process takes in ten seconds in which nothing but events moves it.
inline double percentOfCore() {
    const auto processSeconds = [] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    constexpr double kSeconds = 10;
    const double before = processSeconds();
    for (const double end = steadySeconds() + kSeconds; steadySeconds() < end;)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return 100 * (processSeconds() - before) / kSeconds;
}

/// Made over no other window, if it is one that can lie over another.
template<class Window>
[[nodiscard]] std::unique_ptr<Window> makeWindow(Desk& desk) {
    if constexpr (std::is_constructible_v<Window, Desk&, QWidget*>)
        return std::make_unique<Window>(desk, nullptr);
    else
        return std::make_unique<Window>(desk);
}

/// Reports the milliseconds from the first command to the painted window, at the median of several; those of
/// a plain window with as many children; and their ratio.
template<class Window>
[[noreturn]] void reportOpening() {
    BasicTestDesk<QtMessageLoop> desk;
    {
        const auto first = makeWindow<Window>(desk.desk()); // fonts, icons and styles are there from now on
        first->open();
        settle(0.3);
    }
    std::vector<double> ours;
    std::vector<double> plain;
    for (int round = 0; round < 15; ++round) {
        std::unique_ptr<Window> window;
        ours.push_back(milliseconds([&] {
            window = makeWindow<Window>(desk.desk());
            window->open();
        }));
        const auto children = window->template findChildren<QWidget*>().size();
        const QSize size = window->size();
        settle(0.1);
        window.reset();
        settle(0.1);
        std::unique_ptr<QWidget> bare;
        plain.push_back(milliseconds([&] {
            bare = std::make_unique<QWidget>();
            bare->resize(size);
            for (qsizetype i = 0; i < children; ++i)
                (new QPushButton("Words", bare.get()))
                    ->setGeometry(static_cast<int>(i * 37 % size.width()),
                                  static_cast<int>(i * 53 % size.height()), 60, 24);
            bare->show();
        }));
        settle(0.1);
    }
    report(shareOf(ours, 0.5), shareOf(plain, 0.5), shareOf(ours, 0.5) / shareOf(plain, 0.5));
}

} // namespace velmora::probe
