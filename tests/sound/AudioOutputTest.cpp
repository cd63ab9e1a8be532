// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AudioOutput.h"

#include "base/SteadyClock.h"
#include "tests/support/SourcesForTests.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cmath>
#include <csignal>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

using namespace velmora;

namespace {
/// A constant in both sides, and a record of how it was called.
struct Tone : AudioSource {
    explicit Tone(float loudness) : value(loudness) {}
    void render(const AudioBlock& block) noexcept override {
        ran.fetch_add(1);
        largest = std::max(largest, block.frames);
        for (int i = 0; i < 2 * block.frames; ++i) {
            block.samples[i] += value;
        }
    }
    float value;
    int largest = 0;
    std::atomic<int> ran{0};
};

/// A tone that rests when it is told to.
struct RestingTone : Tone {
    using Tone::Tone;
    [[nodiscard]] bool rests() noexcept override { return resting.load(); }
    std::atomic<bool> resting{false};
};

/// A driver that the test turns by hand.
class HandDriver : public AudioDriver {
public:
    static inline std::atomic<StreamState> firstState{StreamState::Connecting};
    static inline std::atomic<HandDriver*> current{nullptr};
    static inline std::atomic<int> made{0};
    static inline std::mutex turning; ///< as a real driver's: `stop` waits for a callback under way

    static std::unique_ptr<AudioDriver> make(const StreamSettings&) { return std::make_unique<HandDriver>(); }
    ~HandDriver() override { stop(); }
    void start(StreamClient& client) override {
        const std::scoped_lock lock(turning);
        client_ = &client;
        state_ = firstState.load();
        current = this;
        made.fetch_add(1);
    }
    void stop() override {
        const std::scoped_lock lock(turning);
        if (current == this) {
            current = nullptr;
        }
    }
    [[nodiscard]] StreamState state() const override { return state_.load(); }

    /// False if there is no stream.
    static bool become(StreamState state) {
        const std::scoped_lock lock(turning);
        if (HandDriver* driver = current) {
            driver->state_ = state;
            driver->client_->stateChanged();
        }
        return current != nullptr;
    }
    /// The device asks for @p frames; what it gets is returned.
    static std::vector<float> ask(int frames, std::optional<double> called = {}) {
        const std::scoped_lock lock(turning);
        std::vector<float> samples(2 * static_cast<std::size_t>(frames), 9.0F);
        if (HandDriver* driver = current) {
            // By default a device whose time passes just as fast as it asks.
            const double now =
                called.value_or(driver->started_ + double(driver->written_ + frames) / kAudioRate);
            driver->client_->render({samples.data(), frames, driver->written_, now, 0});
            driver->written_ += frames;
        }
        return samples;
    }

private:
    StreamClient* client_ = nullptr;
    double started_ = steadySeconds();
    std::int64_t written_ = 0;
    std::atomic<StreamState> state_{StreamState::Connecting};
};

constexpr AudioDriverRow kHandRow{"hand", HandDriver::make};
constexpr AudioDriverRow kNullRow{"none", makeNullDriver};
constexpr SupervisorTimes kTimes{.retry = 0.2, .answer = 0.4, .grace = 0.05, .standstill = 0.2};
constexpr std::array kHandOnly{kHandRow};
constexpr std::array kNullOnly{kNullRow};
constexpr std::array kHandThenNull{kHandRow, kNullRow};

struct AudioOutputTest : testing::Test {
    AudioOutputTest() { HandDriver::firstState = StreamState::Connecting; }
    static AudioOutputSettings with(std::span<const AudioDriverRow> rows) {
        return {.stream = {}, .drivers = rows, .times = kTimes};
    }
    static bool runs(const AudioOutput& output, std::string_view name) {
        return within(1.9, [&] { return output.figures().driver == name; });
    }
};

void expectSeamless(const Listener& tap) {
    ASSERT_GT(tap.blocks.size(), 3U);
    EXPECT_LE(tap.largestGapAndOverlap().second, AudioMixer::kOverlap + 1e-6);
    for (std::size_t i = 1; i < tap.blocks.size(); ++i) {
        ASSERT_GT(tap.blocks[i].moment, tap.blocks[i - 1].moment) << i;
    }
}
} // namespace

TEST_F(AudioOutputTest, SourcesAreAddedUpAndComeOutAfterTheLookAhead) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    Tone first(0.25F);
    Tone second(0.5F);
    ASSERT_TRUE(output.add(first));
    ASSERT_TRUE(output.add(second));
    ASSERT_TRUE(output.add(second)); // twice is once
    const auto samples = HandDriver::ask(200);
    EXPECT_EQ(samples[2 * 63], 0.0F);
    EXPECT_EQ(samples[2 * 64], 0.75F);
    EXPECT_EQ(samples[2 * 199 + 1], 0.75F);
    output.remove(first);
    EXPECT_EQ(HandDriver::ask(200).back(), 0.5F);
    output.remove(second);
    EXPECT_EQ(HandDriver::ask(200).back(), 0.0F);
}

TEST_F(AudioOutputTest, TheMixStaysWithinFullScale) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    Tone first(0.9F);
    Tone second(0.9F);
    output.add(first);
    output.add(second);
    EXPECT_NEAR(HandDriver::ask(5000).back(), Limiter::kCeiling, 1e-4);
    output.remove(first);
    output.remove(second);
}

TEST_F(AudioOutputTest, ATapHearsWhatTheDeviceGetsWithTheMomentOfItsRendering) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    Tone tone(0.5F);
    Listener tap;
    output.addTap(tap);
    const double called = steadySeconds();
    auto sent = HandDriver::ask(441, called);
    output.add(tone);
    const auto more = HandDriver::ask(441, called + 0.01);
    sent.insert(sent.end(), more.begin(), more.end());
    output.remove(tone);
    output.removeTap(tap);
    HandDriver::ask(441);
    EXPECT_EQ(tap.samples, sent);
    ASSERT_EQ(tap.blocks.size(), 2U);
    EXPECT_NEAR(tap.blocks[1].moment, called - StreamClock::kMargin - 64 / 44100.0, 1e-9);
}

TEST_F(AudioOutputTest, LongRequestsReachSourcesInBlocksOfALimitedLength) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    Tone tone(0.5F);
    Listener tap;
    output.add(tone);
    output.addTap(tap);
    HandDriver::ask(5000);
    output.remove(tone);
    output.removeTap(tap);
    EXPECT_EQ(tone.largest, AudioMixer::kMaxBlockFrames);
    EXPECT_EQ(tap.samples.size(), 10000U);
    for (std::size_t i = 1; i < tap.blocks.size(); ++i) {
        EXPECT_NEAR(tap.blocks[i].moment - tap.blocks[i - 1].moment, tap.blocks[i - 1].frames / 44100.0,
                    1e-9);
    }
}

TEST_F(AudioOutputTest, TooManySourcesAreRefused) {
    AudioOutput output(with(kNullOnly));
    std::vector<std::unique_ptr<Tone>> tones;
    for (int i = 0; i < 32; ++i) {
        tones.push_back(std::make_unique<Tone>(0.0F));
        EXPECT_TRUE(output.add(*tones.back()));
    }
    Tone oneMore(0.0F);
    EXPECT_FALSE(output.add(oneMore));
    output.remove(*tones.front());
    EXPECT_TRUE(output.add(oneMore));
    for (const auto& tone : tones) {
        output.remove(*tone);
    }
    output.remove(oneMore);
}

TEST_F(AudioOutputTest, TheNullStreamKeepsTheRateOfTheClockAndLosesNoTime) {
    AudioOutput output(with(kNullOnly));
    Listener tap;
    output.addTap(tap);
    ASSERT_TRUE(within(2, [&] { return tap.heard > 0; }));
    const double begin = steadySeconds();
    const std::int64_t before = tap.heard;
    ASSERT_TRUE(within(5, [&] { return tap.heard - before >= 15000; }));
    const double rate = double(tap.heard - before) / (steadySeconds() - begin);
    output.removeTap(tap);
    EXPECT_NEAR(rate, 44100, 44100 * 0.07); // a block of 10 ms at either end
    expectSeamless(tap);
    EXPECT_EQ(output.figures().driver, "none");
    EXPECT_NEAR(output.figures().distance, 0.0105, 0.02);
}

TEST_F(AudioOutputTest, ASourceThatRestsIsLeftOutUnlessSomebodyTaps) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    RestingTone tone(0.5F);
    ASSERT_TRUE(output.add(tone));
    HandDriver::ask(200);
    EXPECT_EQ(tone.ran, 1);
    tone.resting = true;
    HandDriver::ask(200);
    EXPECT_EQ(tone.ran, 1);
    Listener tap;
    ASSERT_TRUE(output.addTap(tap));
    HandDriver::ask(200);
    EXPECT_EQ(tone.ran, 2);
    output.removeTap(tap);
    output.remove(tone);
}

TEST_F(AudioOutputTest, TheNullStreamStandsStillWhileAllSourcesRestAndGoesOnWhenItIsWoken) {
    AudioOutput output(with(kNullOnly));
    RestingTone tone(0.5F);
    ASSERT_TRUE(output.add(tone));
    ASSERT_TRUE(within(2, [&] { return tone.ran > 3; }));
    tone.resting = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // the block under way
    const std::int64_t frames = output.figures().frames;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(output.figures().frames, frames);

    tone.resting = false;
    const int before = tone.ran;
    const double woken = steadySeconds();
    output.wake();
    ASSERT_TRUE(within(2, [&] { return tone.ran > before; }));
    EXPECT_LT(steadySeconds() - woken, 0.1);
    output.remove(tone);
}

TEST_F(AudioOutputTest, ATapWakesTheNullStreamAndKeepsItAwake) {
    AudioOutput output(with(kNullOnly));
    ASSERT_TRUE(runs(output, "none"));
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // nothing is there to sound
    Listener tap;
    ASSERT_TRUE(output.addTap(tap));
    const double added = steadySeconds();
    ASSERT_TRUE(within(2, [&] { return tap.heard > 4410; }));
    output.removeTap(tap);
    EXPECT_NEAR(tap.blocks.front().moment, added, 0.03);
    expectSeamless(tap);
}

TEST_F(AudioOutputTest, ANullStreamThatRestsEndsAtOnce) {
    const double begun = steadySeconds();
    for (int i = 0; i < 20; ++i) {
        AudioOutput output(with(kNullOnly));
        std::this_thread::sleep_for(std::chrono::milliseconds(5 * i % 25));
    }
    EXPECT_LT(steadySeconds() - begun, 3);
}

TEST_F(AudioOutputTest, SourcesComeAndGoWhileTheStreamRuns) {
    AudioOutput output(with(kNullOnly));
    std::atomic<bool> ends{false};
    const auto churn = [&] {
        while (!ends) {
            auto tone = std::make_unique<Tone>(0.01F);
            auto tap = std::make_unique<Listener>(5000);
            EXPECT_TRUE(output.add(*tone));
            EXPECT_TRUE(output.addTap(*tap));
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
            output.remove(*tone);
            output.removeTap(*tap);
            const int ran = tone->ran;
            tone->value = 7; // ours again: the audio thread must be out of it
            tap->samples.clear();
            std::this_thread::yield();
            EXPECT_EQ(tone->ran, ran);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back(churn);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    ends = true;
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_GT(output.figures().frames, 5000);
}

TEST_F(AudioOutputTest, RemovingWaitsUntilTheAudioThreadIsOutOfTheSource) {
    struct Slow : AudioSource {
        void render(const AudioBlock&) noexcept override {
            isInside = true;
            while (!mayLeave) {
                std::this_thread::yield();
            }
        }
        std::atomic<bool> isInside{false};
        std::atomic<bool> mayLeave{false};
    } slow;
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    output.add(slow);
    std::thread device([] { HandDriver::ask(64); });
    ASSERT_TRUE(within(2, [&] { return slow.isInside.load(); }));
    std::atomic<bool> isRemoved{false};
    std::thread remover([&] {
        output.remove(slow);
        isRemoved = true;
    });
    EXPECT_FALSE(within(0.05, [&] { return isRemoved.load(); }));
    slow.mayLeave = true;
    EXPECT_TRUE(within(2, [&] { return isRemoved.load(); }));
    device.join();
    remover.join();
}

TEST_F(AudioOutputTest, SourcesComeAndGoUnderADriverThatAsksWithoutPause) {
    AudioOutput output(with(kHandOnly));
    ASSERT_TRUE(runs(output, "hand"));
    std::atomic<bool> ends{false};
    std::thread device([&] {
        while (!ends) {
            HandDriver::ask(64);
        }
    });
    for (int i = 0; i < 500; ++i) {
        auto tone = std::make_unique<Tone>(0.1F);
        ASSERT_TRUE(output.add(*tone));
        while (tone->ran == 0) {
            std::this_thread::yield();
        }
        output.remove(*tone);
    }
    ends = true;
    device.join();
}

TEST_F(AudioOutputTest, AStreamThatIsReadyTakesOverFromTheNullStreamAndBackWithoutASeam) {
    AudioOutput output(with(kHandThenNull));
    Listener tap;
    output.addTap(tap);
    ASSERT_TRUE(runs(output, "none")); // the hand only connects so far
    ASSERT_TRUE(within(2, [&] { return tap.heard > 2000; }));
    Tone tone(0.5F);
    output.add(tone);
    // Nothing but silence before it is in place.
    EXPECT_EQ(HandDriver::ask(441, steadySeconds() + 0.05).back(), 0.0F);
    output.remove(tone);
    HandDriver::become(StreamState::Running);
    ASSERT_TRUE(runs(output, "hand"));
    for (int i = 0; i < 10; ++i) {
        const std::int64_t before = tap.heard;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        HandDriver::ask(220, steadySeconds());
        EXPECT_LE(tap.heard - before, 220);
    }
    const std::int64_t before = tap.heard;
    HandDriver::become(StreamState::Failed);
    ASSERT_TRUE(runs(output, "none"));
    ASSERT_TRUE(within(2, [&] { return tap.heard - before > 2000; }));
    output.removeTap(tap);
    expectSeamless(tap);
    EXPECT_EQ(output.figures().openings, 3);
}

TEST_F(AudioOutputTest, AStreamWithALargerDistanceIsSilentUntilItsMomentsAreNew) {
    AudioOutput output(with(kHandThenNull));
    Listener tap;
    output.addTap(tap);
    ASSERT_TRUE(runs(output, "none"));
    ASSERT_TRUE(within(2, [&] { return tap.heard > 2000; }));
    HandDriver::become(StreamState::Running);
    ASSERT_TRUE(runs(output, "hand"));
    HandDriver::ask(
        4410,
        steadySeconds()); // 100 ms at once: all but the last few ms have been rendered by the null stream
    output.removeTap(tap);
    expectSeamless(tap);
    EXPECT_LT(tap.blocks.back().frames, 1764);
}

TEST_F(AudioOutputTest, AStreamThatStandsStillIsGivenUp) {
    HandDriver::firstState = StreamState::Running;
    AudioOutput output(with(kHandThenNull));
    ASSERT_TRUE(within(2, [&] { return output.figures().driver == "hand"; }));
    HandDriver::firstState = StreamState::Failed;
    EXPECT_TRUE(within(4, [&] { return output.figures().driver == "none"; }));
}

TEST_F(AudioOutputTest, ARowThatFailsIsTriedAgainFromTimeToTimeAndNoOftener) {
    HandDriver::firstState = StreamState::Failed;
    const int before = HandDriver::made;
    AudioOutput output(with(kHandThenNull));
    ASSERT_TRUE(runs(output, "none"));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(HandDriver::made - before, 2);
    HandDriver::firstState = StreamState::Running;
    EXPECT_TRUE(runs(output, "hand"));
    EXPECT_EQ(output.figures().openings, 2);
}

TEST_F(AudioOutputTest, ADriverThatNeverAnswersHoldsUpNeitherTheStartNorTheEnd) {
    for (const int wait : {0, 50, 300}) {
        const double begin = steadySeconds();
        auto output = std::make_unique<AudioOutput>(with(kHandThenNull));
        EXPECT_LT(steadySeconds() - begin, 0.1 * kPatience);
        std::this_thread::sleep_for(std::chrono::milliseconds(wait));
        const double end = steadySeconds();
        output.reset();
        EXPECT_LT(steadySeconds() - end, 0.2 * kPatience);
    }
}

TEST_F(AudioOutputTest, SdlsStreamRunsEndsAndLeavesSignalsAlone) {
    static constexpr std::array kRows{
        AudioDriverRow{"sdl",
                       [](const StreamSettings& settings) { return makeSdlDriver("dummy", settings); }},
        kNullRow};
    for (const int signal : {SIGINT, SIGTERM}) // a shell has jobs in the background ignore the first
        std::signal(signal, SIG_DFL);
    {
        AudioOutput output(with(kRows));
        ASSERT_TRUE(runs(output, "sdl"));
        Listener tap;
        output.addTap(tap);
        EXPECT_TRUE(within(2, [&] { return tap.heard > 4410; }));
        output.removeTap(tap);
        expectSeamless(tap);
        EXPECT_GT(output.figures().latency, 0.005);
    }
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        EXPECT_EQ(action.sa_handler, SIG_DFL);
    }
}

TEST_F(AudioOutputTest, AnSdlSystemThatIsNotThereFails) {
    static constexpr std::array kRows{
        AudioDriverRow{"sdl",
                       [](const StreamSettings& settings) { return makeSdlDriver("nosuch", settings); }},
        kNullRow};
    AudioOutput output(with(kRows));
    EXPECT_TRUE(runs(output, "none"));
}

TEST_F(AudioOutputTest, TheTableEndsWithTheDriverThatNeverFails) {
    const auto rows = audioDriverTable();
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].name, "pulse");
    EXPECT_EQ(rows[1].name, "alsa");
    EXPECT_EQ(rows[2].name, "none");
    EXPECT_EQ(rows.back().make({})->state(), StreamState::Running);
}
