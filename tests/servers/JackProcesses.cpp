// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/servers/JackProcesses.h"

#include "base/SteadyClock.h"

#include <RtMidi.h>
#include <jack/jack.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace velmora {

namespace {
/// One name for all: JACK knows eight servers at the most, counts those that were killed, and takes a place
/// back only for a server of the same name.
std::string serverName() {
    return "velmora-test";
}

void sleep(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}
} // namespace

bool comesTrue(const std::function<bool()>& condition, double seconds) {
    for (const double deadline = steadySeconds() + seconds; steadySeconds() < deadline; sleep(0.005))
        if (condition())
            return true;
    return condition();
}

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return;
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ == 0) {
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
            ::_exit(1);
        ::dup2(ends[1], 1);
        ::dup2(::open("/dev/null", O_RDWR), 2);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    pipe_ = ends[0];
    ::fcntl(pipe_, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
    // Asked first: a JACK server stalls for seconds over a client that was killed.
    signal(SIGINT);
    if (!comesTrue([this] { return !running(); }, 3))
        kill();
    ::close(pipe_);
}

void ChildProcess::signal(int number) const {
    if (pid_ > 0)
        ::kill(pid_, number);
}

void ChildProcess::kill() {
    signal(SIGKILL);
    if (pid_ > 0)
        ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

bool ChildProcess::running() {
    if (pid_ > 0 && ::waitpid(pid_, nullptr, WNOHANG) != 0)
        pid_ = -1;
    return pid_ > 0;
}

const std::string& ChildProcess::output() {
    char buffer[4096];
    for (ssize_t size = 0; (size = ::read(pipe_, buffer, sizeof buffer)) > 0;)
        output_.append(buffer, static_cast<std::size_t>(size));
    return output_;
}

std::vector<std::string> JackServer::command(int period) {
    ::setenv("JACK_DEFAULT_SERVER", serverName().c_str(), 1);
    ::setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    return {"jackd",      "--name",
            serverName(), "--no-realtime",
            "--no-mlock", "--sync",
            "--timeout",  "500",
            "-d",         "dummy",
            "-r",         "44100",
            "-p",         std::to_string(period)};
}

JackServer::JackServer(int period) : period_(period) {
    start();
}

JackServer::~JackServer() {
    process_->signal(SIGCONT);
    if (!process_->running()) {
        // Killed, it still counts as a server; the end of another of its name takes it off the list.
        start();
        static_cast<void>(ready());
    }
    process_.reset();
    // A server that was killed leaves these behind.
    std::error_code ignored;
    for (const auto& file : std::filesystem::directory_iterator("/dev/shm", ignored))
        if (file.path().filename().string().find(serverName() + '_') != std::string::npos)
            std::filesystem::remove(file.path(), ignored);
}

void JackServer::start() {
    process_.emplace(command(period_));
}

bool JackServer::ready() {
    jack_set_error_function([](const char*) {});
    int startsLeft = 3; // one that meets another's start in the shared memory ends at once
    const bool answers = comesTrue([&] {
        jack_client_t* client = jack_client_open("Probe", JackNoStartServer, nullptr);
        if (client == nullptr) {
            if (process_->running())
                return false;
            if (startsLeft-- == 0)
                return true;
            start();
            return false;
        }
        jack_client_close(client);
        return true;
    });
    // What the tests provoke later is printed, unless the code under test prevents it.
    jack_set_error_function(nullptr);
    return answers && process_->running();
}

JackReceiver::JackReceiver(const std::string& portName) : process_({"/proc/self/exe", kArgument, portName}) {}

bool JackReceiver::ready() {
    return comesTrue([this] { return !process_.output().empty() || !process_.running(); }) &&
           process_.running();
}

std::vector<std::uint32_t> JackReceiver::words() {
    // The first record says that the port is there. A record is a message's length and three bytes.
    const std::string& bytes = process_.output();
    std::vector<std::uint32_t> all;
    for (std::size_t i = 4; i + 4 <= bytes.size(); i += 4) {
        const auto byte = [&](std::size_t k) {
            return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + k]));
        };
        const bool isTwoLong = (byte(1) & 0xE0U) == 0xC0U;
        // A message of the wrong length shows as a word that no one sends.
        all.push_back(byte(0) == (isTwoLong ? 2U : 3U) ? byte(1) | byte(2) << 8U | byte(3) << 16U
                                                       : 0xFFFFFFFFU);
    }
    return all;
}

std::vector<std::uint32_t> JackReceiver::waitForWords(std::size_t count) {
    static_cast<void>(comesTrue([&] { return words().size() >= count; }));
    return words();
}

void JackReceiver::run(const char* portName) {
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    {
        RtMidiIn input(RtMidi::UNIX_JACK, "Receiver");
        input.setCallback(
            [](double, std::vector<unsigned char>* message, void*) {
                unsigned char record[4] = {static_cast<unsigned char>(message->size()), 0, 0, 0};
                std::copy_n(message->begin(), std::min<std::size_t>(message->size(), 3), record + 1);
                if (::write(1, record, sizeof record) != sizeof record)
                    ::_exit(1);
            },
            nullptr);
        input.openVirtualPort(portName);
        if (::write(1, "\0\0\0", 4) != 4)
            ::_exit(1);
        int number = 0;
        ::sigwait(&interrupt, &number);
    }
    ::_exit(0);
}

JackPlayer::JackPlayer(const std::string& clientName) {
    int ends[2];
    if (::pipe(ends) != 0)
        return;
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    pipe_ = ends[1];
    process_.emplace(
        std::vector<std::string>{"/proc/self/exe", kArgument, clientName, std::to_string(ends[0])});
    ::close(ends[0]);
}

JackPlayer::~JackPlayer() {
    ::close(pipe_); // at which it ends
}

void JackPlayer::play(std::uint32_t word) {
    if (::write(pipe_, &word, sizeof word) != sizeof word)
        ::_exit(1);
}

void JackPlayer::run(const char* clientName, const char* descriptor) {
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    {
        RtMidiOut output(RtMidi::UNIX_JACK, clientName);
        output.openVirtualPort("Out");
        std::uint32_t word = 0;
        while (::read(std::atoi(descriptor), &word, sizeof word) == sizeof word) {
            const unsigned char bytes[]{static_cast<unsigned char>(word & 0xFFU),
                                        static_cast<unsigned char>(word >> 8U & 0xFFU),
                                        static_cast<unsigned char>(word >> 16U & 0xFFU)};
            output.sendMessage(bytes, (word & 0xE0U) == 0xC0U ? 2 : 3);
        }
    }
    ::_exit(0);
}

} // namespace velmora
