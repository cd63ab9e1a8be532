// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/StreamClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace velmora;

namespace {
constexpr double kRate = 44100;

struct Placed {
    double called;
    double moment;
    int frames;
    [[nodiscard]] double end() const { return moment + frames / kRate; }
};

/// A server that keeps `buffer` seconds filled and whose clock runs `drift` fast. It is turned by hand.
struct FakeServer {
    StreamClock clock{kRate};
    double buffer = 0.016;
    double drift = 0;
    double now = 1000; ///< steady seconds
    double played = 0; ///< frames
    std::int64_t written = 0;
    std::vector<Placed> blocks;

    void pass(double seconds) {
        now += seconds;
        played += seconds * kRate * (1 + drift);
    }
    /// The callback: fills the buffer, in two requests if asked to.
    void serve(bool inTwo = false) {
        const double called = now;
        const auto wanted = static_cast<std::int64_t>(played + buffer * kRate) - written;
        if (inTwo) {
            request(called, static_cast<int>(wanted / 2));
        }
        request(called, static_cast<int>(wanted - (inTwo ? wanted / 2 : 0)));
    }
    void request(double called, int frames) {
        if (frames > 0) {
            blocks.push_back({called, clock.place(called, written, frames), frames});
            written += frames;
        }
    }
    /// Callbacks at uneven times, some of them in two requests.
    void run(double seconds, unsigned seed = 1) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> step(0.002, 0.012);
        for (const double end = now + seconds; now < end;) {
            pass(step(random));
            serve(random() % 5 == 0);
        }
    }
    [[nodiscard]] double largestSeam(std::size_t from) const {
        double largest = 0;
        for (std::size_t i = from + 1; i < blocks.size(); ++i) {
            largest = std::max(largest, std::fabs(blocks[i].moment - blocks[i - 1].end()));
        }
        return largest;
    }
    /// The largest error of a distance of @p apart between two moments, as rendered in frames.
    [[nodiscard]] double largestStretch(double apart, std::size_t from) const {
        double largest = 0;
        std::size_t j = from;
        double frames = 0;
        for (std::size_t i = from; i < blocks.size(); ++i) {
            for (; j < blocks.size() && blocks[j].moment < blocks[i].moment + apart; ++j) {
                frames += blocks[j].frames;
            }
            if (j == blocks.size()) {
                break;
            }
            largest = std::max(largest, std::fabs(frames / kRate - (blocks[j].moment - blocks[i].moment)));
            frames -= blocks[i].frames;
        }
        return largest;
    }
    [[nodiscard]] bool anyLateFrom(std::size_t from) const {
        return std::any_of(blocks.begin() + static_cast<std::ptrdiff_t>(from), blocks.end(),
                           [](const Placed& block) { return block.end() > block.called; });
    }
};
} // namespace

TEST(StreamClockTest, MomentsAdvanceByExactlyTheFramesOfUnevenBlocks) {
    FakeServer server;
    server.run(1);
    const std::size_t settled = server.blocks.size();
    server.run(20, 2);
    EXPECT_LT(server.largestSeam(settled), 1e-9);
    EXPECT_LT(server.largestStretch(0.5, settled), 1e-9);
}

TEST(StreamClockTest, NothingThatWasSentBeforeACallbackIsLateForIt) {
    FakeServer server;
    server.run(30);
    EXPECT_FALSE(server.anyLateFrom(0));
}

TEST(StreamClockTest, TheDistanceIsTheBufferAndItsMargin) {
    for (const double buffer : {0.010, 0.040, 0.100}) {
        FakeServer server;
        server.buffer = buffer;
        server.run(2);
        server.pass(0.005);
        server.serve();
        // What sounds when the callback comes was rendered from what was sent a buffer earlier.
        const Placed& last = server.blocks.back();
        const double heard = last.called + (double(server.written) - last.frames - server.played) / kRate;
        EXPECT_NEAR(heard - last.moment, buffer + StreamClock::kMargin, 0.0003) << buffer;
        EXPECT_DOUBLE_EQ(server.clock.distance(), last.called - last.moment);
    }
}

TEST(StreamClockTest, AServerClockThatDriftsIsFollowedWithoutLatenessOrSteps) {
    for (const double drift : {200e-6, -200e-6}) {
        FakeServer server;
        server.drift = drift;
        server.run(2);
        const std::size_t settled = server.blocks.size();
        const int anchors = server.clock.anchors();
        server.run(600, 3);
        EXPECT_EQ(server.clock.anchors(), anchors) << drift;
        EXPECT_FALSE(server.anyLateFrom(settled)) << drift;
        EXPECT_LT(server.largestStretch(0.1, settled), 0.00003 + 1e-9) << drift;
        const Placed& last = server.blocks.back();
        // 600 s of drift are 120 ms; what is left is what the window of the edge trails behind.
        EXPECT_LT(last.called - last.end(), 0.004) << drift;
    }
}

TEST(StreamClockTest, ACallbackHeldUpWithinTheBufferMovesNothing) {
    FakeServer server;
    server.run(2);
    const std::size_t settled = server.blocks.size();
    for (int i = 0; i < 50; ++i) {
        server.pass(0.015);
        server.serve();
        server.run(0.1, 7);
    }
    EXPECT_LT(server.largestSeam(settled), 1e-9);
}

TEST(StreamClockTest, AServerThatAsksEarlierMakesOneStepAndNothingIsLate) {
    FakeServer server;
    server.run(2);
    const int anchors = server.clock.anchors();
    server.buffer += 0.004;
    server.run(10, 2);
    EXPECT_EQ(server.clock.anchors(), anchors + 1);
    EXPECT_FALSE(server.anyLateFrom(0));
}

TEST(StreamClockTest, AfterTheServerStoodStillTheDistanceIsSetAnewWithinHalfASecond) {
    FakeServer server;
    server.run(2);
    server.now += 0.050; // time passes, nothing is played
    server.run(0.6, 2);
    const std::size_t settled = server.blocks.size();
    server.run(10, 3);
    EXPECT_FALSE(server.anyLateFrom(0));
    EXPECT_LT(server.largestSeam(settled), 1e-9);
    EXPECT_LT(server.blocks.back().called - server.blocks.back().end(), 0.002);
}

TEST(StreamClockTest, ANewStreamStartsFromItsFirstBlock) {
    FakeServer server;
    server.run(2);
    const int anchors = server.clock.anchors();
    server.written = 0;
    server.played = 0;
    server.pass(0.5);
    server.played = 0;
    server.serve();
    EXPECT_EQ(server.clock.anchors(), anchors + 1);
    EXPECT_NEAR(server.blocks.back().end(), server.now - StreamClock::kMargin, 1e-9);
}
