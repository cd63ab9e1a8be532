// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SingleInstance.h"

#include "base/Files.h"
#include "tests/support/Environment.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace velmora;
namespace fs = std::filesystem;

namespace {
using Folders = std::vector<LockFolder>;

/// Another running program: a process of its own, which says what it was told and stays until it is killed.
class OtherProgram {
public:
    enum class Children { none, one };

    explicit OtherProgram(const Folders& folders, Children children = Children::none) {
        int ends[2];
        if (::pipe(ends) != 0)
            return;
        process_ = ::fork();
        if (process_ == 0)
            run(folders, children, ends[1]);
        ::close(ends[1]);
        char answer = 0;
        if (::read(ends[0], &answer, 1) == 1)
            alreadyRunning_ = answer == 'r';
        if (children == Children::one && ::read(ends[0], &child_, sizeof child_) != sizeof child_)
            child_ = 0;
        ::close(ends[0]);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    ~OtherProgram() {
        kill();
        if (child_ > 0)
            ::kill(child_, SIGKILL);
    }

    /// Nothing if it never said.
    [[nodiscard]] std::optional<bool> alreadyRunning() const { return alreadyRunning_; }
    [[nodiscard]] bool childRuns() const { return child_ > 0 && ::kill(child_, 0) == 0; }
    void kill() {
        if (process_ <= 0)
            return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }

private:
    [[noreturn]] static void run(const Folders& folders, Children children, int answers) {
        const SingleInstance instance(folders);
        const char answer = instance.alreadyRunning() ? 'r' : 'f';
        bool told = ::write(answers, &answer, 1) == 1;
        if (children == Children::one) {
            const pid_t child = startSleeper();
            told = told && child > 0 && ::write(answers, &child, sizeof child) == sizeof child;
        }
        while (told)
            ::pause();
        ::_exit(1);
    }
    /// Returns once the child is another program, with what that closes closed.
    static pid_t startSleeper() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return -1;
        const pid_t child = ::fork();
        if (child == 0) {
            ::execlp("sleep", "sleep", "60", nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        char byte = 0;
        while (::read(ends[0], &byte, 1) > 0) {
        }
        return child;
    }

    pid_t process_ = -1;
    pid_t child_ = 0;
    std::optional<bool> alreadyRunning_;
};

struct SingleInstanceTest : testing::Test {
    QTemporaryDir temporary;
    fs::path folder = temporary.path().toStdString();
    Environment environment;

    [[nodiscard]] Folders only(const fs::path& name) const { return {{.path = folder / name}}; }
};
} // namespace

TEST_F(SingleInstanceTest, TheSecondProcessIsRefusedWhileTheFirstRuns) {
    OtherProgram first(only("run"));
    ASSERT_EQ(first.alreadyRunning(), false);
    EXPECT_EQ(OtherProgram(only("run")).alreadyRunning(), true);
    const SingleInstance here(only("run"));
    EXPECT_TRUE(here.alreadyRunning());
    EXPECT_EQ(here.lockFile(), folder / "run/velmora.lock");
}

TEST_F(SingleInstanceTest, AKilledProgramLeavesNothingThatBlocks) {
    OtherProgram first(only("run"));
    ASSERT_TRUE(SingleInstance(only("run")).alreadyRunning());
    first.kill();
    EXPECT_FALSE(SingleInstance(only("run")).alreadyRunning());
    EXPECT_TRUE(fs::exists(folder / "run/velmora.lock"));
}

TEST_F(SingleInstanceTest, TheRefusedOneDoesNotTakeTheLockFromTheFirst) {
    OtherProgram first(only("run"));
    EXPECT_TRUE(SingleInstance(only("run")).alreadyRunning());
    EXPECT_TRUE(SingleInstance(only("run")).alreadyRunning());
}

TEST_F(SingleInstanceTest, TheLockEndsWithTheObject) {
    {
        const SingleInstance here(only("run"));
        EXPECT_EQ(OtherProgram(only("run")).alreadyRunning(), true);
    }
    EXPECT_EQ(OtherProgram(only("run")).alreadyRunning(), false);
}

TEST_F(SingleInstanceTest, AProgramThatTheHolderStartedDoesNotKeepTheLock) {
    OtherProgram first(only("run"), OtherProgram::Children::one);
    ASSERT_TRUE(SingleInstance(only("run")).alreadyRunning());
    first.kill();
    ASSERT_TRUE(first.childRuns());
    EXPECT_FALSE(SingleInstance(only("run")).alreadyRunning());
}

TEST_F(SingleInstanceTest, AnotherFolderIsIndependent) {
    const OtherProgram first(only("one"));
    EXPECT_EQ(first.alreadyRunning(), false);
    EXPECT_FALSE(SingleInstance(only("two")).alreadyRunning());
}

TEST_F(SingleInstanceTest, AFileLeftBehindDoesNotCount) {
    fs::create_directory(folder / "run");
    ASSERT_EQ(replaceFile(folder / "run/velmora.lock", "12345\n"), "");
    const SingleInstance here(only("run"));
    EXPECT_FALSE(here.alreadyRunning());
    EXPECT_EQ(here.lockFile(), folder / "run/velmora.lock");
    EXPECT_EQ(OtherProgram(only("run")).alreadyRunning(), true);
}

TEST_F(SingleInstanceTest, AMadeFolderIsOpenToTheUserAlone) {
    const SingleInstance here(only("run"));
    EXPECT_EQ(fs::status(folder / "run").permissions(), fs::perms::owner_all);
}

TEST_F(SingleInstanceTest, WithNoPlaceForALockTheProgramStarts) {
    ASSERT_EQ(replaceFile(folder / "file", "x"), "");
    const Folders none{
        {.path = folder / "file"}, {.path = folder / "absent", .made = false}, {.path = "/proc/x"}};
    const SingleInstance first(none);
    const SingleInstance second(none);
    EXPECT_FALSE(first.alreadyRunning());
    EXPECT_FALSE(second.alreadyRunning());
    EXPECT_EQ(second.lockFile(), "");
    EXPECT_EQ(readWholeFile(folder / "file"), "x");
    EXPECT_FALSE(fs::exists(folder / "absent"));
}

TEST_F(SingleInstanceTest, AFolderThatOthersMayWriteIntoIsPassedOver) {
    fs::create_directory(folder / "open");
    fs::permissions(folder / "open", fs::perms::all);
    const SingleInstance here(Folders{{.path = folder / "open"}, {.path = folder / "next"}});
    EXPECT_EQ(here.lockFile(), folder / "next/velmora.lock");
    EXPECT_TRUE(fs::is_empty(folder / "open"));
}

TEST_F(SingleInstanceTest, APlantedLinkIsPassedOver) {
    fs::create_directory(folder / "victim");
    fs::permissions(folder / "victim", fs::perms::owner_all);
    fs::create_symlink(folder / "victim", folder / "planted");
    const LockFolder planted{.path = folder / "planted", .followed = false};
    EXPECT_EQ(SingleInstance(Folders{planted}).lockFile(), "");
    EXPECT_TRUE(fs::is_empty(folder / "victim"));
    EXPECT_EQ(SingleInstance(only("planted")).lockFile(), folder / "planted/velmora.lock");
}

TEST_F(SingleInstanceTest, ALockFileThatIsALinkIsNotFollowed) {
    fs::create_directory(folder / "run");
    ASSERT_EQ(replaceFile(folder / "mine", "work"), "");
    fs::create_symlink(folder / "mine", folder / "run/velmora.lock");
    EXPECT_EQ(SingleInstance(only("run")).lockFile(), "");
    EXPECT_EQ(readWholeFile(folder / "mine"), "work");
}

TEST_F(SingleInstanceTest, APipeInPlaceOfTheLockFileNeitherBlocksNorCounts) {
    fs::create_directory(folder / "run");
    ASSERT_EQ(::mkfifo((folder / "run/velmora.lock").c_str(), 0600), 0);
    EXPECT_EQ(SingleInstance(only("run")).lockFile(), "");
}

TEST_F(SingleInstanceTest, AFolderThatAnotherUserOwnsIsPassedOver) {
    // Only root can give a folder away; any other user meets the root folder, which is not theirs either.
    fs::create_directory(folder / "theirs");
    const bool given = ::chown((folder / "theirs").c_str(), 65534, 65534) == 0;
    const fs::path theirs = given ? folder / "theirs" : fs::path("/");
    EXPECT_EQ(SingleInstance(Folders{{.path = theirs, .made = false}}).lockFile(), "");
    EXPECT_FALSE(fs::exists(theirs / "velmora.lock"));
}

TEST_F(SingleInstanceTest, TheRuntimeFolderComesFirstThenOneWithTheUsersNumberThenTheSettings) {
    environment.set("XDG_RUNTIME_DIR", folder.string());
    environment.set("XDG_CONFIG_HOME", "/configuration");
    const Folders folders = lockFolders();
    ASSERT_EQ(folders.size(), 3u);
    EXPECT_EQ(folders[0].path, folder);
    EXPECT_FALSE(folders[0].made);
    EXPECT_EQ(folders[1].path, "/tmp/velmora-" + std::to_string(::geteuid()));
    EXPECT_FALSE(folders[1].followed);
    EXPECT_EQ(folders[2].path, "/configuration/velmora");
    EXPECT_EQ(SingleInstance().lockFile(), folder / "velmora.lock");
}

TEST_F(SingleInstanceTest, ARelativeOrMissingRuntimeFolderCountsAsNotSet) {
    environment.set("XDG_RUNTIME_DIR", "relative");
    EXPECT_EQ(lockFolders().size(), 2u);
    environment.unset("XDG_RUNTIME_DIR");
    EXPECT_EQ(lockFolders().size(), 2u);
}
