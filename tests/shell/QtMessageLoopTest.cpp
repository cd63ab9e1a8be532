// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtMessageLoop.h"

#include <QCoreApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include <ctime>
#include <thread>

using namespace velmora;

namespace {
/// Far more than a wait is late on a busy machine, far less than the waits told apart here.
constexpr double kSlack = 0.5;

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct QtMessageLoopTest : testing::Test {
    int argumentCount = 1;
    char name[6] = "tests";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtMessageLoop loop;
};
} // namespace

TEST_F(QtMessageLoopTest, AWaitEndsAtItsMomentAndNotBefore) {
    for (const double seconds : {0.00005, 0.002, 0.02}) {
        const double moment = loop.now() + seconds;
        loop.serveUntil(moment);
        EXPECT_GE(loop.now(), moment);
        EXPECT_LT(loop.now(), moment + kSlack);
    }
}

TEST_F(QtMessageLoopTest, AMomentThatHasPassedIsNotWaitedFor) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    loop.serveUntil(loop.now() - 1);
    loop.serveUntil(0);
    EXPECT_FALSE(served);
}

TEST_F(QtMessageLoopTest, AWaitCostsHardlyAnyProcessorTime) {
    const double before = processorSeconds();
    loop.serveUntil(loop.now() + 0.2);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_F(QtMessageLoopTest, EventsAreServedDuringAWait) {
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(1);
    loop.serveUntil(loop.now() + 0.05);
    EXPECT_GT(ticks, 1);
}

TEST_F(QtMessageLoopTest, AnEventMayWaitItselfAndTheOuterWaitGoesOn) {
    const double outer = loop.now() + 0.06;
    double innerEnded = 0;
    bool servedAfterTheInner = false;
    QTimer::singleShot(5, [&] {
        loop.serveUntil(loop.now() + 0.01);
        innerEnded = loop.now();
        QTimer::singleShot(0, [&] { servedAfterTheInner = true; });
    });
    loop.serveUntil(outer);
    EXPECT_GT(innerEnded, 0);
    EXPECT_LT(innerEnded, outer);
    EXPECT_TRUE(servedAfterTheInner);
    EXPECT_GE(loop.now(), outer);
    EXPECT_LT(loop.now(), outer + kSlack);
}

TEST_F(QtMessageLoopTest, AnInnerWaitThatOutlastsTheOuterCostsNoProcessorTime) {
    const double before = processorSeconds();
    double innerEnded = 0;
    QTimer::singleShot(1, [&] {
        loop.serveUntil(loop.now() + 0.2);
        innerEnded = loop.now();
    });
    loop.serveUntil(loop.now() + 0.02);
    EXPECT_GT(innerEnded, 0);
    EXPECT_LT(loop.now(), innerEnded + kSlack);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_F(QtMessageLoopTest, YieldingServesWhatIsPendingAndReturns) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    const double before = loop.now();
    loop.yieldIfInput();
    EXPECT_TRUE(served);
    EXPECT_LT(loop.now(), before + kSlack);
}

TEST_F(QtMessageLoopTest, BlockingServesNothing) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    const double before = loop.now();
    loop.block(0.02);
    EXPECT_GE(loop.now(), before + 0.02);
    EXPECT_FALSE(served);
    loop.block(-1);
    EXPECT_LT(loop.now(), before + 0.02 + kSlack);
}

TEST_F(QtMessageLoopTest, AThreadWithoutAnEventLoopWaitsToo) {
    bool inTime = false;
    std::thread([&] {
        const double moment = loop.now() + 0.02;
        loop.serveUntil(moment);
        loop.yieldIfInput();
        inTime = loop.now() >= moment && loop.now() < moment + kSlack;
    }).join();
    EXPECT_TRUE(inTime);
}

TEST(QtMessageLoopWithoutApplicationTest, WaitsAndYieldsWithoutServing) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    QtMessageLoop loop;
    const double moment = loop.now() + 0.02;
    loop.yieldIfInput();
    loop.serveUntil(moment);
    EXPECT_GE(loop.now(), moment);
    EXPECT_LT(loop.now(), moment + kSlack);
}
