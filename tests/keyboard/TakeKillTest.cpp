// SPDX-License-Identifier: GPL-2.0-or-later
// Somebody records, and the process is killed at any moment: the ticks of more than a second ago are there.
#include "keyboard/PlayedLog.h"
#include "keyboard/TakeStack.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

using namespace velmora;

TEST(TakeKillTest, AKillCostsASecondOfATakeAtMost) {
    const QTemporaryDir home;
    const QString folder = home.filePath("takes");
    std::mt19937 random(std::random_device{}());
    for (std::size_t round = 1; round <= 3; ++round) {
        QProcess walker;
        walker.start(VELMORA_TAKE_WALKER, {folder});
        ASSERT_TRUE(walker.waitForStarted());
        std::this_thread::sleep_for(std::chrono::milliseconds(1200 + random() % 500));
        walker.kill();
        const double killed = wallSeconds();
        ASSERT_TRUE(walker.waitForFinished());
        ASSERT_EQ(walker.exitStatus(), QProcess::CrashExit) << "it ended by itself";
        int due = 0;
        for (const QByteArray& line : walker.readAllStandardOutput().split('\n'))
            due += !line.isEmpty() && line.toDouble() < killed - 1 ? 1 : 0;
        TakeStack stack(folder.toStdString(), wallSeconds);
        ASSERT_EQ(stack.takes().size(), round);
        EXPECT_TRUE(stack.unreadable().empty());
        EXPECT_GT(due, 0) << "nothing was recorded in time";
        EXPECT_GE(stack.takes().front().ticks, due);
        Take take;
        EXPECT_EQ(stack.choose(0, take), "");
        EXPECT_EQ(take.size(), stack.takes().front().ticks);
    }
}
