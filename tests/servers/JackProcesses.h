// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// Asks every few milliseconds until the answer is yes; false if it isn't within so many seconds.
[[nodiscard]] bool comesTrue(const std::function<bool()>& condition, double seconds = 10);

/// A process of the test's own. It ends with this object (interrupted, or else killed), and with the test's
/// process at the latest.
class ChildProcess {
public:
    /// Starts a program (found in PATH) with its standard output going into a pipe and its errors nowhere.
    explicit ChildProcess(const std::vector<std::string>& command);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void signal(int number) const;
    /// Kills it and waits for its end.
    void kill();
    [[nodiscard]] bool running();
    /// All that it has written so far.
    const std::string& output();

private:
    pid_t pid_ = -1;
    int pipe_ = -1;
    std::string output_;
};

/// A JACK server without a sound card that no other program finds by chance. While it lives, and after it,
/// this process's JACK clients look for this server and no other.
class JackServer {
public:
    /// @param period frames of a period, at 44100 a second
    explicit JackServer(int period = 256);
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    /// False if it did not start: its program is missing, most likely.
    [[nodiscard]] bool ready();
    ChildProcess& process() { return *process_; }
    /// Starts it; once more, after its process was killed.
    void start();

private:
    [[nodiscard]] static std::vector<std::string> command(int period);

    int period_;
    std::optional<ChildProcess> process_;
};

/// Another program with one MIDI input: it notes every message that comes.
class JackReceiver {
public:
    explicit JackReceiver(const std::string& portName);

    /// True once its port is there, within a deadline.
    [[nodiscard]] bool ready();
    /// The messages so far, packed as in ShortMessage.h.
    [[nodiscard]] std::vector<std::uint32_t> words();
    /// Waits for so many messages, or for the deadline; gives what came.
    [[nodiscard]] std::vector<std::uint32_t> waitForWords(std::size_t count);
    ChildProcess& process() { return process_; }

    /// The other program itself: the test's executable, started with these arguments, runs it.
    static constexpr const char* kArgument = "--receive-midi-as";
    [[noreturn]] static void run(const char* portName);

private:
    ChildProcess process_;
};

/// Another program with one MIDI output, "Out": a keyboard that is plugged in while this object lives.
class JackPlayer {
public:
    explicit JackPlayer(const std::string& clientName);
    ~JackPlayer();
    JackPlayer(const JackPlayer&) = delete;
    JackPlayer& operator=(const JackPlayer&) = delete;

    /// @param word packed as in ShortMessage.h
    void play(std::uint32_t word);

    /// The other program itself, started with these arguments: the client's name, and where to read from.
    static constexpr const char* kArgument = "--play-midi-as";
    [[noreturn]] static void run(const char* clientName, const char* descriptor);

private:
    int pipe_ = -1;
    std::optional<ChildProcess> process_;
};

} // namespace velmora
