// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Alarm.h"

#include "base/SteadyClock.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

using namespace velmora;

namespace {
class AlarmTest : public testing::Test {
protected:
    /// Serves events for so long.
    static void serve(double seconds) {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(seconds * 1e3), &loop, [&loop] { loop.quit(); });
        loop.exec();
    }

    int argumentCount_ = 1;
    char name_[6] = "tests";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    int calls_ = 0;
    double at_ = 0;
    Alarm alarm_{[this] {
        ++calls_;
        at_ = steadySeconds();
    }};
};
} // namespace

TEST_F(AlarmTest, ItComesOnceAtItsMomentAndNotBefore) {
    const double moment = steadySeconds() + 0.02;
    EXPECT_TRUE(alarm_.setTo(moment));
    serve(0.08);
    EXPECT_EQ(calls_, 1);
    EXPECT_GE(at_, moment);
}

TEST_F(AlarmTest, AMomentThatHasPassedIsNow) {
    alarm_.setTo(-1);
    serve(0.02);
    EXPECT_EQ(calls_, 1);
}

TEST_F(AlarmTest, StoppedItDoesNotCome) {
    alarm_.setTo(steadySeconds() + 0.01);
    alarm_.stop();
    serve(0.05);
    EXPECT_EQ(calls_, 0);
}

TEST_F(AlarmTest, SetAnewItComesAtTheNewMomentAlone) {
    alarm_.setTo(steadySeconds());
    const double moment = steadySeconds() + 0.04;
    alarm_.setTo(moment);
    serve(0.1);
    EXPECT_EQ(calls_, 1);
    EXPECT_GE(at_, moment);
}

TEST_F(AlarmTest, OneThatRepeatsComesUntilItIsStopped) {
    int calls = 0;
    Alarm repeating([&calls] { ++calls; }, 0.005);
    repeating.setTo(steadySeconds());
    serve(0.1);
    EXPECT_GE(calls, 3);
    repeating.stop();
    const int before = calls;
    serve(0.03);
    EXPECT_EQ(calls, before);
}
