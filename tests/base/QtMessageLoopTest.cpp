// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"

#include "tests/support/Environment.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

#include <ctime>
#include <optional>
#include <string>
#include <thread>

using namespace velmora;

namespace {
/// Far more than a wait is late on a busy machine, far less than the waits told apart here.
constexpr double kSlack = 0.5;

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// An application on each of the event dispatchers that Qt has.
class QtMessageLoopTest : public testing::TestWithParam<const char*> {
protected:
    QtMessageLoopTest() {
        environment_.set("QT_NO_GLIB", GetParam() == std::string("Unix") ? "1" : "");
        application_.emplace(argumentCount_, arguments_);
        // A wake-up that got lost shall fail a test and not hang it.
        QTimer::singleShot(2000, [] {});
    }

    QtMessageLoop loop;

private:
    Environment environment_;
    int argumentCount_ = 1;
    char name_[6] = "tests";
    char* arguments_[2] = {name_, nullptr};
    std::optional<QCoreApplication> application_;
};
INSTANTIATE_TEST_SUITE_P(Dispatchers, QtMessageLoopTest, testing::Values("Glib", "Unix"),
                         [](const auto& dispatcher) { return std::string(dispatcher.param); });
} // namespace

TEST_P(QtMessageLoopTest, AWaitEndsAtItsMomentAndNotBefore) {
    for (const double seconds : {0.00005, 0.002, 0.02}) {
        const double moment = loop.now() + seconds;
        loop.serveUntil(moment);
        EXPECT_GE(loop.now(), moment);
        EXPECT_LT(loop.now(), moment + kSlack);
    }
}

TEST_P(QtMessageLoopTest, TheNextMomentDueIsTheEarliestOfAllWaits) {
    const double outer = loop.now() + 0.05;
    std::optional<double> within;
    std::optional<double> inside;
    QTimer::singleShot(0, [&] {
        within = loop.nextDue();
        QTimer::singleShot(0, [&] { inside = loop.nextDue(); });
        loop.serveUntil(outer + 0.02);
    });
    EXPECT_EQ(loop.nextDue(), std::nullopt);
    loop.serveUntil(outer);
    EXPECT_EQ(loop.nextDue(), std::nullopt);
    ASSERT_TRUE(within && inside);
    EXPECT_NEAR(*within, outer, 0.001);
    EXPECT_NEAR(*inside, outer, 0.001);
}

TEST_P(QtMessageLoopTest, AMomentThatHasPassedIsNotWaitedFor) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    loop.serveUntil(loop.now() - 1);
    loop.serveUntil(0);
    EXPECT_FALSE(served);
}

TEST_P(QtMessageLoopTest, AWaitCostsHardlyAnyProcessorTime) {
    const double before = processorSeconds();
    loop.serveUntil(loop.now() + 0.2);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_P(QtMessageLoopTest, EventsAreServedDuringAWait) {
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(1);
    loop.serveUntil(loop.now() + 0.05);
    EXPECT_GT(ticks, 1);
}

TEST_P(QtMessageLoopTest, AnEventMayWaitItselfAndTheOuterWaitGoesOn) {
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

TEST_P(QtMessageLoopTest, AnInnerWaitThatOutlastsTheOuterCostsNoProcessorTime) {
    const double before = processorSeconds();
    double innerEnded = 0;
    QTimer::singleShot(0, [&] {
        loop.serveUntil(loop.now() + 0.2);
        innerEnded = loop.now();
    });
    loop.serveUntil(loop.now() + 0.02);
    EXPECT_GT(innerEnded, 0);
    EXPECT_LT(loop.now(), innerEnded + kSlack);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_P(QtMessageLoopTest, AnEventThatYieldsPastTheMomentTakesNoWakeUpAway) {
    const double moment = loop.now() + 0.01;
    double yielded = 0;
    QTimer::singleShot(0, [&] {
        while (loop.now() < moment + 0.02)
            loop.YieldIfInput();
        yielded = loop.now();
    });
    loop.serveUntil(moment);
    EXPECT_GT(yielded, 0);
    EXPECT_LT(loop.now(), yielded + kSlack);
}

TEST_P(QtMessageLoopTest, AfterAWaitNothingWakesTheEventLoopAnyMore) {
    loop.serveUntil(loop.now() + 0.002);
    const double before = processorSeconds();
    QEventLoop idle;
    QTimer::singleShot(200, &idle, &QEventLoop::quit);
    int awakenings = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &idle,
                     [&] { ++awakenings; });
    idle.exec();
    EXPECT_LT(awakenings, 10);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

TEST_P(QtMessageLoopTest, AfterTheLoopIsLeftNoWaitLasts) {
    const double begin = loop.now();
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, [&] { loop.leave(); });
        loop.serveUntil(begin + 3);
    });
    loop.serveUntil(begin + 4);
    loop.serveUntil(begin + 5);
    EXPECT_LT(loop.now(), begin + kSlack);
}

TEST_P(QtMessageLoopTest, YieldingServesWhatIsPendingAndReturns) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    const double before = loop.now();
    loop.YieldIfInput();
    EXPECT_TRUE(served);
    EXPECT_LT(loop.now(), before + kSlack);
}

TEST_P(QtMessageLoopTest, BlockingServesNothing) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    const double before = loop.now();
    loop.block(0.02);
    EXPECT_GE(loop.now(), before + 0.02);
    EXPECT_FALSE(served);
    loop.block(-1);
    EXPECT_LT(loop.now(), before + 0.02 + kSlack);
}

TEST_P(QtMessageLoopTest, AThreadWithoutAnEventLoopWaitsToo) {
    bool inTime = false;
    std::thread([&] {
        const double moment = loop.now() + 0.02;
        loop.serveUntil(moment);
        loop.YieldIfInput();
        inTime = loop.now() >= moment && loop.now() < moment + kSlack;
    }).join();
    EXPECT_TRUE(inTime);
}

TEST(QtMessageLoopWithoutApplicationTest, TheLoopServesOneApplicationAfterAnother) {
    QtMessageLoop loop;
    for (int i = 0; i < 2; ++i) {
        int argumentCount = 1;
        char name[] = "tests";
        char* arguments[] = {name, nullptr};
        const QCoreApplication application(argumentCount, arguments);
        bool served = false;
        QTimer::singleShot(0, [&] { served = true; });
        const double moment = loop.now() + 0.02;
        loop.serveUntil(moment);
        EXPECT_TRUE(served);
        EXPECT_GE(loop.now(), moment);
    }
}

TEST(QtMessageLoopWithoutApplicationTest, WaitsAndYieldsWithoutServing) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    QtMessageLoop loop;
    const double moment = loop.now() + 0.02;
    loop.YieldIfInput();
    loop.serveUntil(moment);
    EXPECT_GE(loop.now(), moment);
    EXPECT_LT(loop.now(), moment + kSlack);
}
