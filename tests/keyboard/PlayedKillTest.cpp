// SPDX-License-Identifier: GPL-2.0-or-later
// Somebody plays, and the process is killed at any moment: what was struck more than a second ago is there.
#include "base/Files.h"
#include "keyboard/PlayedLog.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

using namespace velmora;

TEST(PlayedKillTest, AKillCostsASecondAtMost) {
    const QTemporaryDir home;
    const QString file = home.filePath("played");
    std::mt19937 random(std::random_device{}());
    std::size_t kept = 0;
    for (int round = 0; round < 3; ++round) {
        QProcess walker;
        walker.start(VELMORA_PLAYED_WALKER, {file});
        ASSERT_TRUE(walker.waitForStarted());
        std::this_thread::sleep_for(std::chrono::milliseconds(1200 + random() % 300));
        walker.kill();
        const double killed = wallSeconds();
        ASSERT_TRUE(walker.waitForFinished());
        ASSERT_EQ(walker.exitStatus(), QProcess::CrashExit) << "it ended by itself";
        const auto events = parseJournal(readWholeFile(file.toStdString()).value_or(""));
        const auto strikes = static_cast<std::size_t>(
            std::ranges::count(events, PlayedEvent::Kind::Struck, &PlayedEvent::kind));
        std::size_t due = kept;
        for (const QByteArray& line : walker.readAllStandardOutput().split('\n'))
            due += !line.isEmpty() && line.toDouble() < killed - 1 ? 1 : 0;
        EXPECT_GE(strikes, due) << "round " << round;
        EXPECT_GT(strikes, kept) << "nothing was played";
        kept = strikes;
    }
}
