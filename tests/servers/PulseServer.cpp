// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/servers/PulseServer.h"

#include "tests/support/Waiting.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {

namespace {
constexpr std::array kOwnVariables{"PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "PULSE_CONFIG_PATH"};

[[nodiscard]] pid_t spawn(std::vector<std::string> words, const std::string& log) {
    std::vector<char*> arguments;
    for (auto& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t pid = 0;
    const int error = posix_spawnp(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("can't start " + words[0] + ": " + std::strerror(error));
    }
    return pid;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}
} // namespace

PulseServer::PulseServer() {
    std::string name = (std::filesystem::temp_directory_path() / "velmora-server-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("can't make a folder for the server");
    }
    folder_ = name;
    socket_ = (folder_ / "native").string();
    for (const char* variable : kOwnVariables) {
        setenv(variable, name.c_str(), 1);
    }
    setenv("PULSE_SERVER", ("unix:" + socket_).c_str(), 1);
    // The server and its clients would look there for other servers.
    unsetenv("DISPLAY");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

PulseServer::~PulseServer() {
    kill();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void PulseServer::start() {
    // The sink comes first: whoever can reach the server finds it. Left alone by a crashed test, the server
    // ends.
    pid_ = spawn({"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=30",
                  "--realtime=no", "--high-priority=no", "--log-target=stderr", "-L",
                  "module-null-sink sink_name=out rate=44100 channels=2 format=float32le norewinds=1", "-L",

                  "module-native-protocol-unix auth-anonymous=1 socket=" + socket_},
                 (folder_ / "log").string());
    if (!within(10, [this] { return answers() || waitpid(pid_, nullptr, WNOHANG) == pid_; }) || !answers()) {
        throw std::runtime_error("the sound server does not answer; is pulseaudio installed?");
    }
}

void PulseServer::kill() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        waitFor(pid_);
        pid_ = 0;
    }
    std::error_code ignored;
    std::filesystem::remove(socket_, ignored);
}

void PulseServer::freeze() {
    ::kill(pid_, SIGSTOP);
}

void PulseServer::thaw() {
    ::kill(pid_, SIGCONT);
}

bool PulseServer::suspendSink(bool isSuspended) {
    return tell({"suspend-sink", "out", isSuspended ? "1" : "0"});
}

bool PulseServer::tell(const std::vector<std::string>& words) {
    std::vector<std::string> all{"pactl"};
    all.insert(all.end(), words.begin(), words.end());
    return waitFor(spawn(all, (folder_ / "log").string())) == 0;
}

bool PulseServer::answers() const {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket_.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const bool isThere = ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    ::close(socket);
    return isThere;
}

} // namespace velmora
