// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FirstPaint.h"

#include <QApplication>
#include <QPaintEvent>
#include <QWidget>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
class Painted : public QWidget {
public:
    std::vector<std::string>* told = nullptr;

protected:
    void paintEvent(QPaintEvent* /*event*/) override { told->emplace_back("painted"); }
};

void serve() {
    for (int time = 0; time < 10; ++time)
        QApplication::processEvents();
}
} // namespace

TEST(FirstPaintTest, WhatWaitsForItComesAfterItAndOnce) {
    std::vector<std::string> told;
    Painted window;
    window.told = &told;
    window.show();
    afterFirstPaint(window, [&] { told.emplace_back("next"); });
    serve();
    EXPECT_THAT(told, ElementsAre("painted", "next"));
    window.hide();
    window.show();
    serve();
    EXPECT_THAT(told, ElementsAre("painted", "next", "painted"));
}

TEST(FirstPaintTest, AWindowThatIsPaintedAlreadyLetsNothingWait) {
    std::vector<std::string> told;
    Painted window;
    window.told = &told;
    window.show();
    serve();
    afterFirstPaint(window, [&] { told.emplace_back("next"); });
    serve();
    EXPECT_THAT(told, ElementsAre("painted", "next"));
}
