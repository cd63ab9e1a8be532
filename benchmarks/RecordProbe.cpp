// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_record_probe WHAT: the Recording Studio's window, on the X server that is there; prints three
// numbers.
//
// clang-format off
//   open     milliseconds from the first command to the painted window, at the median of several; and of a
//            plain window with as many children; their ratio
//   levels   percent of a core that the bars of the levels take while they move 25 times a second, of which
//            each time differs; that the same timer takes without them; what is left
// clang-format on
#include "Share.h"
#include "base/QtMessageLoop.h"
#include "base/SteadyClock.h"
#include "recording/LevelBars.h"
#include "recording/Record.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

using namespace velmora;

namespace {

void report(double first, double second, double third) {
    std::printf("%.4f %.4f %.4f\n", first, second, third);
    std::fflush(stdout);
    std::_Exit(0);
}

void settle(double seconds) {
    const double end = steadySeconds() + seconds;
    do {
        QApplication::processEvents();
    } while (steadySeconds() < end);
}

double milliseconds(const std::function<void()>& command) {
    const double before = steadySeconds();
    command();
    QApplication::processEvents();
    QGuiApplication::sync();
    return 1e3 * (steadySeconds() - before);
}

void open() {
    BasicTestDesk<QtMessageLoop> desk;
    {
        Record first(desk.desk(), nullptr); // fonts, icons and styles are there from now on
        first.open();
        settle(0.3);
    }
    std::vector<double> ours;
    std::vector<double> plain;
    for (int round = 0; round < 15; ++round) {
        std::unique_ptr<Record> window;
        ours.push_back(milliseconds([&] {
            window = std::make_unique<Record>(desk.desk(), nullptr);
            window->open();
        }));
        const auto children = window->findChildren<QWidget*>().size();
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

double processSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Percent of a core while @p tick is called 25 times a second.
double percentOf(const std::function<void(int)>& tick) {
    constexpr double kSeconds = 10;
    constexpr int kMilliseconds = 40;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { tick(++ticks); });
    timer.start(kMilliseconds);
    settle(0.3);
    const double before = processSeconds();
    for (const double end = steadySeconds() + kSeconds; steadySeconds() < end;)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return 100 * (processSeconds() - before) / kSeconds;
}

void levels() {
    BasicTestDesk<QtMessageLoop> desk;
    Record window(desk.desk(), nullptr);
    window.open();
    settle(0.5);
    auto& bars = *static_cast<LevelBars*>(window.findChild<QWidget*>("levels"));
    const double without = percentOf([](int) {});
    const double with = percentOf([&bars](int tick) {
        const auto left = static_cast<float>(0.5 + 0.4 * std::sin(tick));
        const auto right = static_cast<float>(0.5 + 0.4 * std::cos(tick));
        bars.showLevels({.peak = {left, right}, .held = {0.9F, 0.9F}});
    });
    report(with, without, with - without);
}

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "open")
        open();
    else if (what == "levels")
        levels();
    return 2;
}
