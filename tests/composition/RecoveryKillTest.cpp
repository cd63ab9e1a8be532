// SPDX-License-Identifier: GPL-2.0-or-later
// A working process is killed at any moment, VELMORA_KILLS times (5 unless set): each next start finds a
// whole score.
#include "RecoveryWalk.h"
#include "composition/RecoveryFile.h"
#include "score/SngFile.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace velmora;

namespace {
int kills() {
    const char* set = std::getenv("VELMORA_KILLS");
    return set ? std::atoi(set) : 5;
}

/// Lets a walker work and kills it. @return the last `Tempo` that it had on the disk, 0 for none
int walkUntilKilled(const std::string& folder, int seed, std::chrono::microseconds after) {
    std::array<int, 2> pipes{};
    EXPECT_EQ(pipe2(pipes.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipes[1], STDOUT_FILENO);
    std::string program = VELMORA_RECOVERY_WALKER;
    std::string place = folder;
    std::string number = std::to_string(seed);
    std::array<char*, 4> words{program.data(), place.data(), number.data(), nullptr};
    pid_t walker = 0;
    EXPECT_EQ(posix_spawn(&walker, program.c_str(), &actions, nullptr, words.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(pipes[1]);
    std::this_thread::sleep_for(after);
    kill(walker, SIGKILL);
    int status = 0;
    waitpid(walker, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
    std::string said;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(pipes[0], part.data(), part.size())) > 0;)
        said.append(part.data(), static_cast<std::size_t>(count));
    close(pipes[0]);
    if (!said.ends_with('\n'))
        said.erase(said.rfind('\n') + 1);
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
