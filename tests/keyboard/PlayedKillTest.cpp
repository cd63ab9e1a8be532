// SPDX-License-Identifier: GPL-2.0-or-later
// Somebody plays, and the process is killed at any moment: what was struck more than a second ago is there.
#include "base/Files.h"
#include "keyboard/PlayedLog.h"
#include "tests/support/KilledProcess.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>

using namespace velmora;

TEST(PlayedKillTest, AKillCostsASecondAtMost) {
    const QTemporaryDir home;
    const std::string file = home.filePath("played").toStdString();
    std::mt19937 random(std::random_device{}());
    std::size_t kept = 0;
    for (int round = 0; round < 3; ++round) {
        const std::string said =
            linesUntilKilled(VELMORA_PLAYED_WALKER, {file}, std::chrono::milliseconds(1200 + random() % 300));
        const double killed = wallSeconds();
        const auto events = parseJournal(readWholeFile(file).value_or(""));
        const auto strikes = static_cast<std::size_t>(
            std::ranges::count(events, PlayedEvent::Kind::Struck, &PlayedEvent::kind));
        const std::size_t due = kept + static_cast<std::size_t>(linesBefore(said, killed - 1));
        EXPECT_GE(strikes, due) << "round " << round;
        EXPECT_GT(strikes, kept) << "nothing was played";
        kept = strikes;
    }
}
