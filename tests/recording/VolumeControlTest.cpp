// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/VolumeControl.h"

#include "tests/support/Environment.h"

#include <QTemporaryDir>
#include <QtTest>

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
namespace fs = std::filesystem;

/// A folder of programs that write down how they were called.
class VolumeControlTest : public testing::Test {
protected:
    VolumeControlTest() {
        environment_.set("PATH", folder_.path().toStdString());
        environment_.set("XDG_CURRENT_DESKTOP", "");
    }
    void install(const std::string& program) {
        const fs::path path = fs::path(folder_.path().toStdString()) / program;
        std::ofstream(path) << "#!/bin/sh\necho " << program << " \"$@\" >'" << called().string()
                            << ".part'\n"
                            << "/bin/mv '" << called().string() << ".part' '" << called().string() << "'\n";
        fs::permissions(path, fs::perms::owner_all);
    }
    void setDesktop(const std::string& name) { environment_.set("XDG_CURRENT_DESKTOP", name); }
    /// What was started, with its words.
    std::string started() {
        EXPECT_TRUE(startVolumeControl());
        EXPECT_TRUE(QTest::qWaitFor([this] { return fs::exists(called()); }));
        std::ifstream file(called());
        std::string line;
        std::getline(file, line);
        fs::remove(called());
        return line;
    }

private:
    [[nodiscard]] fs::path called() const { return fs::path(folder_.path().toStdString()) / "called"; }

    QTemporaryDir folder_;
    Environment environment_;
};
} // namespace

TEST_F(VolumeControlTest, NothingIsStartedWhereThereIsNoMixer) {
    EXPECT_FALSE(startVolumeControl());
}

TEST_F(VolumeControlTest, TheOneThatIsThereIsStarted) {
    install("kmix");
    EXPECT_EQ(started(), "kmix");
}

TEST_F(VolumeControlTest, OneForEveryDesktopComesBeforeThoseOfOthers) {
    install("gnome-control-center");
    install("pavucontrol");
    EXPECT_EQ(started(), "pavucontrol");
}

TEST_F(VolumeControlTest, TheDesktopsOwnComesFirst) {
    install("gnome-control-center");
    install("pavucontrol");
    install("systemsettings");
    setDesktop("ubuntu:GNOME");
    EXPECT_EQ(started(), "gnome-control-center sound");
    setDesktop("KDE");
    EXPECT_EQ(started(), "systemsettings kcm_pulseaudio");
}

TEST_F(VolumeControlTest, WhatCantBeStartedIsPassedOver) {
    install("kmix");
    const fs::path broken = fs::path(qgetenv("PATH").constData()) / "pavucontrol";
    std::ofstream(broken) << "#!/nonexistent/interpreter\n";
    fs::permissions(broken, fs::perms::owner_all);
    EXPECT_EQ(started(), "kmix");
}

TEST_F(VolumeControlTest, EveryMixerIsTriedOnce) {
    for (const char* desktop : {"", "GNOME", "KDE", "XFCE", "unknown"}) {
        const auto mixers = mixersFor(desktop);
        for (std::size_t i = 0; i < mixers.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_NE(mixers[i].program, mixers[j].program) << desktop;
        EXPECT_EQ(mixers.size(), mixersFor("").size());
    }
}
