// SPDX-License-Identifier: GPL-2.0-or-later
// A working process is killed at any moment, VELMORA_KILLS times (5 unless set): each next start finds a
// whole score.
#include "RecoveryWalk.h"
#include "composition/RecoveryFile.h"
#include "score/SngFile.h"
#include "tests/support/KilledProcess.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <string>

using namespace velmora;

namespace {
int kills() {
    const char* set = std::getenv("VELMORA_KILLS");
    return set ? std::atoi(set) : 5;
}

/// Lets a walker work and kills it. @return the last `Tempo` that it had on the disk, 0 for none
int walkUntilKilled(const std::string& folder, int seed, std::chrono::microseconds after) {
    const std::string said = linesUntilKilled(VELMORA_RECOVERY_WALKER, {folder, std::to_string(seed)}, after);
    if (said.empty())
        return 0;
    const std::size_t before = said.size() < 2 ? said.npos : said.rfind('\n', said.size() - 2);
    return std::stoi(said.substr(before == said.npos ? 0 : before + 1));
}
} // namespace

TEST(RecoveryKillTest, EachStartAfterAKillFindsAWholeScore) {
    const QTemporaryDir home;
    const std::string folder = home.filePath("recovery").toStdString();
    std::mt19937 random(std::random_device{}());
    int found = 0;
    for (int round = 1; round <= kills(); ++round) {
        const std::chrono::microseconds after(random() % 200'000);
        const int written = walkUntilKilled(folder, round, after);
        const auto left = RecoveryFile(folder).left();
        ASSERT_LE(left.size(), 1U);
        ASSERT_GE(left.size(), written || found ? 1U : 0U) << "what was on the disk is gone";
        if (left.empty())
            continue;
        ++found;
        Score score;
        SetupState setup;
        parseSng(left[0].score, SngReader::OpenPoliFile, score, setup);
        if (written) {
            EXPECT_EQ(setup.TxBeats, round);
            EXPECT_GE(score.Tempo, written);
        }
        RecoveryWalk walk(setup.TxBeats);
        while (walk.score.Tempo < score.Tempo)
            walk.step();
        EXPECT_EQ(serializePoliFile(walk.score, walk.setup), left[0].score) << "round " << round;
    }
    EXPECT_GT(found, 0);
}
