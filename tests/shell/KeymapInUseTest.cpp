// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/KeymapInUse.h"

#include "tests/support/Environment.h"

#include <QProcess>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

#include <string>

using namespace velmora;

namespace {
/// An X server without a screen, of the test's own.
struct KeymapOfServerTest : testing::Test {
    QProcess server;
    std::string display;
    xcb_connection_t* connection = nullptr;

    void SetUp() override {
        server.start("Xvfb", {"-displayfd", "1", "-nolisten", "tcp"});
        ASSERT_TRUE(server.waitForReadyRead(20'000)) << "Xvfb does not run";
        display = ":" + server.readAllStandardOutput().trimmed().toStdString();
        connection = xcb_connect(display.c_str(), nullptr);
        ASSERT_EQ(xcb_connection_has_error(connection), 0);
    }
    void TearDown() override {
        if (connection)
            xcb_disconnect(connection);
        server.terminate();
        server.waitForFinished(10'000);
    }
    void setLayout(const QString& layout, const QString& variant = {}) {
        QStringList words{"-display", QString::fromStdString(display), "-layout", layout};
        if (!variant.isEmpty())
            words << "-variant" << variant;
        ASSERT_EQ(QProcess::execute("setxkbmap", words), 0);
    }
    /// As a desktop's own switch does. xcb's header of this is no C++.
    void lockGroup(unsigned group) {
        void* const library = dlopen("libX11.so.6", RTLD_LAZY);
        ASSERT_NE(library, nullptr);
        const auto open = reinterpret_cast<void* (*)(const char*)>(dlsym(library, "XOpenDisplay"));
        const auto lock =
            reinterpret_cast<int (*)(void*, unsigned, unsigned)>(dlsym(library, "XkbLockGroup"));
        const auto close = reinterpret_cast<int (*)(void*)>(dlsym(library, "XCloseDisplay"));
        void* const hand = open(display.c_str());
        ASSERT_NE(hand, nullptr);
        constexpr unsigned kCoreKeyboard = 0x100;
        EXPECT_NE(lock(hand, kCoreKeyboard, group), 0);
        close(hand);
    }
    std::string typedBy(int position) {
        const auto keymap = keymapOfServer(connection);
        return keymap ? keymap->typedBy(position).plain : "no keymap";
    }
};
} // namespace

TEST_F(KeymapOfServerTest, ItIsTheOneThatTheServerHasNow) {
    setLayout("fr");
    EXPECT_EQ(typedBy(KEY_Q), "a");
    setLayout("us", "dvorak");
    EXPECT_EQ(typedBy(KEY_Q), "'");
    setLayout("de,us");
    EXPECT_EQ(typedBy(KEY_Y), "z");
}

TEST_F(KeymapOfServerTest, OfSeveralLayoutsTheOneInUseCounts) {
    setLayout("us,de");
    EXPECT_EQ(typedBy(KEY_Y), "y");
    lockGroup(1);
    EXPECT_EQ(typedBy(KEY_Y), "z");
}

TEST(KeymapInUseTest, WithoutAServerItIsTheOneOfTheSystem) {
    Environment environment;
    environment.set("XKB_DEFAULT_LAYOUT", "fr");
    const auto keymap = keymapInUse();
    ASSERT_TRUE(keymap);
    EXPECT_EQ(keymap->typedBy(KEY_Q).plain, "a");
}
