// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Guests.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Listener {
    Listener(std::vector<std::string>& heard, std::string name) : heard_(heard), name_(std::move(name)) {}
    void hear(const std::string& word) {
        heard_.push_back(name_ + " " + word);
        onHear();
    }
    std::function<void()> onHear = [] {};

private:
    std::vector<std::string>& heard_;
    std::string name_;
};

struct GuestsTest : testing::Test {
    std::vector<std::string> heard;
    Listener ann{heard, "ann"};
    Listener bob{heard, "bob"};
    Listener cid{heard, "cid"};
    Guests<Listener> guests;

    std::vector<std::string> tell(const std::string& word) {
        heard.clear();
        guests.tell(&Listener::hear, word);
        return heard;
    }
};

} // namespace

TEST_F(GuestsTest, WithoutGuestsNobodyIsTold) {
    EXPECT_THAT(tell("hi"), IsEmpty());
}

TEST_F(GuestsTest, GuestsAreToldInTheOrderInWhichTheyCameForAsLongAsTheyStay) {
    const auto first = guests.join(bob);
    {
        const auto second = guests.join(ann);
        EXPECT_THAT(tell("hi"), ElementsAre("bob hi", "ann hi"));
    }
    EXPECT_THAT(tell("ho"), ElementsAre("bob ho"));
}

TEST_F(GuestsTest, AStayGoesOnWhereItIsMovedTo) {
    Guests<Listener>::Stay kept;
    {
        auto stay = guests.join(ann);
        kept = std::move(stay);
    }
    EXPECT_THAT(tell("hi"), ElementsAre("ann hi"));
    kept = guests.join(bob);
    EXPECT_THAT(tell("ho"), ElementsAre("bob ho"));
    kept.leave();
    kept.leave();
    EXPECT_THAT(tell("hm"), IsEmpty());
}

TEST_F(GuestsTest, WhoLeavesWhileAllAreToldIsNotCalledAgain) {
    auto annStays = guests.join(ann);
    auto bobStays = guests.join(bob);
    const auto cidStays = guests.join(cid);
    ann.onHear = [&] {
        annStays.leave();
        bobStays.leave();
    };
    EXPECT_THAT(tell("hi"), ElementsAre("ann hi", "cid hi"));
    EXPECT_THAT(tell("ho"), ElementsAre("cid ho"));
}

TEST_F(GuestsTest, WhoComesInWhileAllAreToldIsToldFromTheNextTimeOn) {
    std::vector<Guests<Listener>::Stay> late;
    const auto stay = guests.join(ann);
    ann.onHear = [&] {
        for (int i = 0; late.empty() || i < 50; ++i) // more than the list has room for
            late.push_back(guests.join(bob));
        ann.onHear = [] {};
    };
    EXPECT_THAT(tell("hi"), ElementsAre("ann hi"));
    EXPECT_EQ(tell("ho").size(), 51U);
}

TEST_F(GuestsTest, ATellingWithinATellingLeavesThePlacesAsTheyAre) {
    auto annStays = guests.join(ann);
    const auto bobStays = guests.join(bob);
    const auto cidStays = guests.join(cid);
    ann.onHear = [&] {
        annStays.leave();
        guests.tell(&Listener::hear, "within");
    };
    EXPECT_THAT(tell("hi"), ElementsAre("ann hi", "bob within", "cid within", "bob hi", "cid hi"));
}

TEST_F(GuestsTest, AGuestMayEndItself) {
    struct Mayfly {
        Mayfly(Guests<Mayfly>& guests) : stay(guests.join(*this)) {}
        Guests<Mayfly>::Stay stay;
    };
    Guests<Mayfly> flies;
    auto one = std::make_unique<Mayfly>(flies);
    auto other = std::make_unique<Mayfly>(flies);
    int told = 0;
    const auto day = [&](Mayfly& fly) {
        ++told;
        (&fly == one.get() ? one : other).reset();
    };
    flies.tell(day);
    flies.tell(day);
    EXPECT_EQ(told, 2);
}
