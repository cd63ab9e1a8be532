// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/HandOver.h"

#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <future>
#include <thread>

using namespace velmora;
using namespace std::string_literals;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
struct HandOverTest : testing::Test {
    /// Hands over as another process would, while this one serves its message loop.
    bool handedOver(const HandedOver& handed, const fs::path& to, double seconds = 3) {
        auto done = std::async(std::launch::async, [&] { return handOver(to, handed, seconds); });
        while (done.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        return done.get();
    }
    bool handedOver(const HandedOver& handed) { return handedOver(handed, socket); }
    auto taker() {
        return [this](const HandedOver& handed) { taken.push_back(handed); };
    }
    /// A process that connects.
    int caller() {
        const int descriptor = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, socket.c_str());
        EXPECT_EQ(::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return descriptor;
    }

    int count = 1;
    char name[8] = "test";
    char* words[2] = {name, nullptr};
    QCoreApplication application{count, words};
    QTemporaryDir temporary;
    fs::path folder = temporary.path().toStdString();
    fs::path socket = folder / "velmora.socket";
    std::vector<HandedOver> taken;
    const HandedOver tune{"/home/me/a tune.sng", "token"};
};
} // namespace

TEST_F(HandOverTest, APacketComesBackAsItWas) {
    for (const HandedOver& handed : {tune, HandedOver{"/\xE9.sng", ""}, HandedOver{"/a\nb", "t"}})
        EXPECT_EQ(parsePacket(packetOf(handed)), handed);
    for (const std::string& packet : {""s, "velmora 1"s, "velmora 1\0/a.sng"s, "velmora 2\0/a.sng\0"s,
                                      "velmora 1\0a.sng\0"s, "velmora 1\0/a.sng\0t\0more"s, "velmora 1\0\0"s})
        EXPECT_EQ(parsePacket(packet), std::nullopt) << packet;
}

TEST_F(HandOverTest, TheSocketStandsBesideTheLock) {
    EXPECT_EQ(handOverSocket("/run/user/7/velmora.lock"), "/run/user/7/velmora.socket");
    EXPECT_EQ(handOverSocket(""), "");
    EXPECT_FALSE(HandOverServer("", taker()).listens());
}

TEST_F(HandOverTest, WhatIsHandedOverIsTaken) {
    const HandOverServer server(socket, taker());
    ASSERT_TRUE(server.listens());
    EXPECT_TRUE(handedOver(tune));
    EXPECT_TRUE(handedOver({"/b.sng", ""}));
    EXPECT_THAT(taken, ElementsAre(tune, HandedOver{"/b.sng", ""}));
}

TEST_F(HandOverTest, OnlyTheUserMayConnect) {
    const HandOverServer server(socket, taker());
    struct stat status {};
    ASSERT_EQ(::stat(socket.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(HandOverTest, NobodyTakesItWhereNobodyListens) {
    EXPECT_FALSE(handedOver(tune)) << "no socket";
    { const HandOverServer server(socket, taker()); }
    EXPECT_FALSE(fs::exists(socket)) << "it goes with the program";
    std::ofstream(socket) << "a file";
    EXPECT_FALSE(handedOver(tune));
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(HandOverTest, AStaleSocketIsReplacedAndAnythingElseStays) {
    {
        const int left = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, socket.c_str());
        ASSERT_EQ(::bind(left, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::close(left); // as a crash does it: the name stays
    }
    ASSERT_TRUE(fs::is_socket(socket));
    EXPECT_FALSE(handedOver(tune));
    {
        const HandOverServer server(socket, taker());
        EXPECT_TRUE(handedOver(tune));
    }
    std::ofstream(socket) << "mine";
    const HandOverServer server(socket, taker());
    EXPECT_FALSE(server.listens());
    EXPECT_TRUE(fs::is_regular_file(socket));
}

TEST_F(HandOverTest, ALongNameOfTheFolderIsNoHindrance) {
    const fs::path deep = folder / std::string(90, 'd') / std::string(90, 'e');
    fs::create_directories(deep);
    const HandOverServer server(deep / "velmora.socket", taker());
    ASSERT_TRUE(server.listens());
    EXPECT_TRUE(handedOver(tune, deep / "velmora.socket"));
    EXPECT_THAT(taken, ElementsAre(tune));
}

TEST_F(HandOverTest, AProgramThatHangsIsNotWaitedForLong) {
    const HandOverServer server(socket, taker());
    EXPECT_FALSE(handOver(socket, tune, 0.05)) << "nobody serves the message loop";
}

TEST_F(HandOverTest, AProgramThatHangsWithManyWaitingIsNotWaitedForEither) {
    const HandOverServer server(socket, taker());
    for (int other = 0; other < 20; ++other)
        EXPECT_FALSE(handOver(socket, tune, 0.01));
    EXPECT_FALSE(handOver(socket, tune, 0.05));
}

TEST_F(HandOverTest, NonsenseIsPassedOverAndCostsNobodyElse) {
    const HandOverServer server(socket, taker());
    std::vector<int> callers;
    for (int one = 0; one < 12; ++one) {
        callers.push_back(caller());
        QCoreApplication::processEvents();
    }
    const std::string much(100'000, 'x');
    ::send(callers[0], much.data(), much.size(), 0);
    ::send(callers[1], "velmora 1", 9, 0);
    ::close(callers[2]);
    for (int time = 0; time < 20; ++time)
        QCoreApplication::processEvents();
    char answer = 0;
    EXPECT_EQ(::recv(callers[0], &answer, 1, MSG_DONTWAIT), 0) << "hung up";
    EXPECT_EQ(::recv(callers[1], &answer, 1, MSG_DONTWAIT), 0);
    EXPECT_TRUE(handedOver(tune));
    EXPECT_THAT(taken, ElementsAre(tune));
    for (const int one : callers)
        ::close(one);
}

TEST_F(HandOverTest, WhoTakesMayWaitInALoopOfItsOwn) {
    const HandOverServer server(socket, [this](const HandedOver& handed) {
        taken.push_back(handed);
        if (taken.size() == 1) {
            EXPECT_TRUE(handedOver({"/second.sng", ""}));
        }
    });
    EXPECT_TRUE(handedOver(tune));
    EXPECT_THAT(taken, ElementsAre(tune, HandedOver{"/second.sng", ""}));
}
