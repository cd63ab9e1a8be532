// SPDX-License-Identifier: GPL-2.0-or-later
// Somebody records, and the process is killed at any moment: the ticks of more than a second ago are there.
#include "keyboard/PlayedLog.h"
#include "keyboard/TakeStack.h"
#include "tests/support/KilledProcess.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>

using namespace velmora;

TEST(TakeKillTest, AKillCostsASecondOfATakeAtMost) {
    const QTemporaryDir home;
    const std::string folder = home.filePath("takes").toStdString();
    std::mt19937 random(std::random_device{}());
    for (std::size_t round = 1; round <= 3; ++round) {
        const std::string said =
            linesUntilKilled(VELMORA_TAKE_WALKER, {folder}, std::chrono::milliseconds(1200 + random() % 500));
        const int due = linesBefore(said, wallSeconds() - 1);
        TakeStack stack(folder, wallSeconds);
        ASSERT_EQ(stack.takes().size(), round);
        EXPECT_TRUE(stack.unreadable().empty());
        EXPECT_GT(due, 0) << "nothing was recorded in time";
        EXPECT_GE(stack.takes().front().ticks, due);
        Take take;
        EXPECT_EQ(stack.choose(0, take), "");
        EXPECT_EQ(take.size(), stack.takes().front().ticks);
    }
}
