// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora {

/// Starts a program with these words, kills it after a while, and gives the whole lines that it has said by
/// then, which are short. Not by Qt's processes: the thread sanitizer loses sight of locks once one has been
/// started.
inline std::string linesUntilKilled(std::string program, std::vector<std::string> words,
                                    std::chrono::microseconds after) {
    std::array<int, 2> pipes{};
    EXPECT_EQ(pipe2(pipes.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipes[1], STDOUT_FILENO);
    std::vector<char*> arguments{program.data()};
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    EXPECT_EQ(posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(pipes[1]);
    std::this_thread::sleep_for(after);
    kill(process, SIGKILL);
    int status = 0;
    waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
    std::string said;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(pipes[0], part.data(), part.size())) > 0;)
        said.append(part.data(), static_cast<std::size_t>(count));
    close(pipes[0]);
    said.erase(said.rfind('\n') + 1);
    return said;
}

/// How many of these lines, each a moment, are earlier than that.
inline int linesBefore(const std::string& lines, double moment) {
    int count = 0;
    for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1)
        count += std::stod(lines.substr(at)) < moment ? 1 : 0;
    return count;
}

} // namespace velmora
