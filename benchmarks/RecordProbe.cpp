// SPDX-License-Identifier: GPL-2.0-or-later
// velmora_record_probe WHAT: the Recording Studio's window, on the X server that is there; prints three
// numbers.
//
// clang-format off
//   open     milliseconds from the first command to the painted window, at the median of several; and of a
//            plain window with as many children; their ratio
//   levels   percent of a core that the bars of the levels take while they move 20 times a second, of which
//            each time differs; that the same timer takes without them; what is left
// clang-format on
#include "Probe.h"
#include "base/QtMessageLoop.h"
#include "recording/LevelBars.h"
#include "recording/Record.h"
#include "tests/support/TestDesk.h"

#include <QtWidgets>

#include <cmath>
#include <functional>
#include <string_view>

using namespace velmora;
using namespace velmora::probe;

namespace {

/// Percent of a core while @p tick is called 20 times a second.
double percentOf(const std::function<void(int)>& tick) {
    constexpr int kMilliseconds = 50;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { tick(++ticks); });
    timer.start(kMilliseconds);
    settle(0.3);
    return percentOfCore();
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
        reportOpening<Record>();
    else if (what == "levels")
        levels();
    return 2;
}
