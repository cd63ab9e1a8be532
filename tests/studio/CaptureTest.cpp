// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Capture.h"

#include "sound/AudioOutput.h"
#include "sound/Limiter.h"
#include "sound/VirtualMix.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/Waiting.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <array>
#include <fstream>

using namespace velmora;
using namespace velmora::testsounds;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
struct CaptureTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path place = folder / "take.wav";
    VirtualMix mix;
};

/// What plays is heard so many frames later.
constexpr std::size_t kDelayed = 2 * std::size_t{Limiter::kDelay};

void expectContains(const std::vector<std::int16_t>& take, const std::vector<std::int16_t>& played) {
    const auto there = std::search(take.begin(), take.end(), played.begin(), played.end());
    ASSERT_NE(there, take.end());
    EXPECT_TRUE(std::all_of(take.begin(), there, [](std::int16_t value) { return value == 0; }));
}

/// Gives what it was given to a place that outlives it.
struct SharedSink : SampleSink {
    explicit SharedSink(std::vector<float>& to, const std::atomic<bool>* opened = nullptr)
        : given(to)
        , gate(opened) {}
    std::string open() override { return problem; }
    std::string write(std::span<const float> interleaved) override {
        while (gate && !*gate)
            std::this_thread::yield();
        given.insert(given.end(), interleaved.begin(), interleaved.end());
        return given.size() > failsBeyond ? "no more" : "";
    }
    std::string finish() override { return {}; }
    std::vector<float>& given;
    const std::atomic<bool>* gate; ///< until it opens the sink takes nothing
    std::size_t failsBeyond = std::size_t(-1);
    std::string problem;
};
} // namespace

TEST_F(CaptureTest, SixteenBitSoundIsInTheFileBitForBitBehindAHeaderOf44Bytes) {
    const auto noise = sixteenBitNoise(200'000);
    SamplePlayer player(floatsOf(noise));
    Capture capture(mix, place);
    ASSERT_EQ(capture.record(), "");
    mix.add(player);
    mix.advance(100'000 + Limiter::kDelay);
    EXPECT_EQ(capture.frames(), 100'000 + Limiter::kDelay);
    EXPECT_TRUE(capture.stop());
    EXPECT_EQ(capture.save(place), "");
    mix.remove(player);
    const std::string bytes = bytesOf(place);
    const std::size_t data = 4 * (100'000 + std::size_t{Limiter::kDelay});
    ASSERT_EQ(bytes.size(), 44 + data);
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 8) + bytes.substr(36, 4), "RIFFWAVEfmt data");
    const std::vector<std::uint64_t> numbers{
        numberAt(bytes, 4),     numberAt(bytes, 16),    numberAt(bytes, 20, 2),
        numberAt(bytes, 22, 2), numberAt(bytes, 24),    numberAt(bytes, 28),
        numberAt(bytes, 32, 2), numberAt(bytes, 34, 2), numberAt(bytes, 40)};
    EXPECT_THAT(numbers, ElementsAre(data + 36, 16, 1, 2, 44100, 176400, 4, 16, data));
    auto take = sixteenBitsOf(bytes);
    EXPECT_EQ(std::vector(take.begin() + kDelayed, take.end()), noise);
}

TEST_F(CaptureTest, TheFileIsWholeAfterEachBlockAndNotOnlyAtTheEnd) {
    SamplePlayer player(floatsOf(sixteenBitNoise(20'000)));
    mix.add(player);
    Capture capture(mix, place);
    ASSERT_EQ(capture.record(), "");
    EXPECT_EQ(bytesOf(place).size(), 44U);
    for (int i = 1; i <= 5; ++i) {
        mix.advance(700);
        const std::string bytes = bytesOf(place);
        ASSERT_EQ(bytes.size(), 44 + 4 * 700 * static_cast<std::size_t>(i));
        EXPECT_EQ(numberAt(bytes, 40), bytes.size() - 44);
        EXPECT_EQ(numberAt(bytes, 4), bytes.size() - 8);
    }
    mix.remove(player);
}

TEST_F(CaptureTest, NothingIsCapturedBeforeRecordNorAfterStopAndASecondStretchFollowsTheFirst) {
    const auto noise = sixteenBitNoise(8'000);
    SamplePlayer player(floatsOf(noise));
    mix.add(player);
    Capture capture(mix, place);
    EXPECT_FALSE(capture.stop());
    mix.advance(1000 + Limiter::kDelay);
    ASSERT_EQ(capture.record(), "");
    EXPECT_TRUE(capture.isRecording());
    EXPECT_NE(capture.record(), "");
    EXPECT_NE(capture.save(folder / "too early.wav"), "");
    mix.advance(500);
    EXPECT_TRUE(capture.stop());
    EXPECT_FALSE(capture.stop());
    mix.advance(500);
    ASSERT_EQ(capture.record(), "");
    mix.advance(500);
    EXPECT_TRUE(capture.stop());
    mix.remove(player);
    EXPECT_EQ(capture.frames(), 1000);
    auto expected = std::vector(noise.begin() + 2000, noise.begin() + 3000);
    expected.insert(expected.end(), noise.begin() + 4000, noise.begin() + 5000);
    EXPECT_EQ(sixteenBitsOf(bytesOf(place)), expected);
    EXPECT_FALSE(std::filesystem::exists(folder / "too early.wav"));
}

TEST_F(CaptureTest, AFormatIsTakenUntilSomethingIsCaptured) {
    SamplePlayer player({0.5F, -0.25F, -0.5F, 0.25F, 1.0F / 32768, 2.0F / 32768, -0.99F, -0.99F});
    Capture capture(mix, place);
    EXPECT_EQ(capture.format(), (WaveFormat{44100, 16, 2}));
    EXPECT_TRUE(capture.setFormat({44100, 16, 1}));
    mix.add(player);
    mix.advance(Limiter::kDelay);
    ASSERT_EQ(capture.record(), "");
    EXPECT_FALSE(capture.setFormat({44100, 16, 2}));
    mix.advance(4);
    capture.stop();
    EXPECT_FALSE(capture.setFormat({44100, 16, 2}));
    EXPECT_EQ(capture.format(), (WaveFormat{44100, 16, 1}));
    mix.remove(player);
    EXPECT_THAT(sixteenBitsOf(bytesOf(place)), ElementsAre(4096, -4096, 2, -32440)); // 1.5 steps to even
    capture.forget();
    EXPECT_TRUE(capture.setFormat({44100, 8, 2}));
}

TEST_F(CaptureTest, EightBitsAreUnsignedAndNearestAndAnOddNumberOfBytesIsPadded) {
    SamplePlayer player(
        {0.0F, 0.0F, 0.5F, 0.5F, -0.99F, -0.99F, 0.7F / 128, 0.7F / 128, -0.3F / 128, -0.3F / 128});
    Capture capture(mix, place);
    ASSERT_TRUE(capture.setFormat({44100, 8, 1}));
    mix.add(player);
    mix.advance(Limiter::kDelay);
    ASSERT_EQ(capture.record(), "");
    mix.advance(5);
    capture.stop();
    mix.remove(player);
    const std::string bytes = bytesOf(place);
    ASSERT_EQ(bytes.size(), 50U);
    EXPECT_EQ(numberAt(bytes, 4), 42U);
    EXPECT_EQ(numberAt(bytes, 40), 5U);
    EXPECT_EQ(bytes.substr(44), std::string("\x80\xC0\x01\x81\x80\0", 6));
    EXPECT_EQ(testsinks::ask("soxi -s '" + place.string() + "'").output, "5\n");
}

TEST_F(CaptureTest, EachNamedFormatHasItsNumbersInTheHeaderAndItsLength) {
    for (const NamedWaveFormat& named : kWaveFormats) {
        SamplePlayer player(testsinks::sine(440, 44'100));
        mix.add(player);
        Capture capture(mix, place);
        ASSERT_TRUE(capture.setFormat(named.format));
        ASSERT_EQ(capture.record(), "") << named.text;
        mix.advance(44'100);
        EXPECT_EQ(capture.frames(), named.format.rate);
        capture.stop();
        mix.remove(player);
        EXPECT_EQ(capture.frames(), named.format.rate) << named.text;
        const std::string bytes = bytesOf(place);
        EXPECT_EQ(numberAt(bytes, 22, 2), static_cast<unsigned>(named.format.channels));
        EXPECT_EQ(numberAt(bytes, 24), static_cast<unsigned>(named.format.rate));
        EXPECT_EQ(numberAt(bytes, 28), static_cast<unsigned>(named.format.bytesPerSecond()));
        EXPECT_EQ(numberAt(bytes, 32, 2), static_cast<unsigned>(named.format.alignment()));
        EXPECT_EQ(numberAt(bytes, 34, 2), static_cast<unsigned>(named.format.bits));
        EXPECT_EQ(numberAt(bytes, 40), static_cast<unsigned>(named.format.bytesPerSecond()));
        const auto heard = testsinks::ask("sox '" + place.string() + "' -n remix 1 stat").output;
        EXPECT_THAT(heard, testing::ContainsRegex("Rough +frequency: +4(3[89]|4[0-4])\n")) << named.text;
        EXPECT_THAT(heard, testing::ContainsRegex("Maximum amplitude: +0\\.(49|50)")) << named.text;
    }
}

TEST_F(CaptureTest, AHiddenTakeLeavesNothingInFoldersUntilItIsSaved) {
    SamplePlayer player(floatsOf(sixteenBitNoise(4000)));
    mix.add(player);
    std::ofstream(place) << "the old take";
    {
        Capture capture(mix);
        EXPECT_EQ(capture.save(folder / "empty.wav"), "");
        EXPECT_EQ(bytesOf(folder / "empty.wav").size(), 44U);
        ASSERT_EQ(capture.record(), "");
        mix.advance(2000);
        capture.stop();
        EXPECT_EQ(bytesOf(place), "the old take");
        EXPECT_EQ(capture.save(place), "");
        EXPECT_EQ(bytesOf(place).size(), 44U + 8000);
        EXPECT_THAT(capture.save(folder / "no" / "such.wav"), HasSubstr("no/such.wav"));
        EXPECT_EQ(testsinks::filesIn(folder), 2U);
        capture.forget();
        EXPECT_EQ(capture.frames(), 0);
        EXPECT_EQ(capture.save(folder / "empty.wav"), "");
    }
    mix.remove(player);
    EXPECT_EQ(bytesOf(folder / "empty.wav").size(), 44U);
    EXPECT_EQ(bytesOf(place).size(), 44U + 8000);
}

TEST_F(CaptureTest, ATakeInThePlaceOfTheUsersStaysWhenItIsForgottenAndTheNextOneGrowsElsewhere) {
    Capture capture(mix, place);
    ASSERT_EQ(capture.record(), "");
    mix.advance(100);
    capture.stop();
    capture.forget();
    ASSERT_EQ(capture.record(), "");
    mix.advance(50);
    capture.stop();
    EXPECT_EQ(capture.frames(), 50);
    EXPECT_EQ(bytesOf(place).size(), 444U);
}

TEST_F(CaptureTest, WhoReadsTheOldFileGoesOnWithItWhileATakeTakesItsPlace) {
    std::ofstream(place) << "the old take";
    std::ifstream reader(place);
    Capture capture(mix, place);
    ASSERT_EQ(capture.record(), "");
    mix.advance(100);
    std::string old;
    std::getline(reader, old);
    EXPECT_EQ(old, "the old take");
    EXPECT_EQ(bytesOf(place).size(), 444U);
}

TEST_F(CaptureTest, AFolderThatIsNotThereAndAFullDeviceAreToldWithTheName) {
    Capture nowhere(mix, folder / "missing" / "take.wav");
    EXPECT_THAT(nowhere.record(), HasSubstr("missing/take.wav"));
    EXPECT_FALSE(nowhere.isRecording());
    Capture full(mix, "/dev/full");
    EXPECT_THAT(full.record(), AllOf(HasSubstr("/dev/full"), HasSubstr("No space left")));
    EXPECT_THAT(Capture(mix, folder).record(), HasSubstr(folder.string()));
}

TEST_F(CaptureTest, WhatIsCapturedGoesToTheSinkAsItStandsInTheFile) {
    std::vector<float> given;
    SamplePlayer player(std::vector<float>(40'000, 0.25F + 0.3F / 32768));
    mix.add(player);
    Capture capture(mix);
    capture.copyTo(std::make_unique<SharedSink>(given));
    ASSERT_EQ(capture.record(), "");
    mix.advance(10'000);
    capture.stop();
    mix.advance(777);
    ASSERT_EQ(capture.record(), "");
    mix.advance(5'000);
    EXPECT_EQ(capture.takeSink(), nullptr); // not yet
    capture.stop();
    mix.remove(player);
    EXPECT_NE(capture.takeSink(), nullptr);
    EXPECT_EQ(capture.takeSink(), nullptr); // only once
    ASSERT_EQ(given.size(), 30'000U);
    EXPECT_EQ(std::count(given.begin(), given.end(), 0.25F), 30'000 - 128);
}

TEST_F(CaptureTest, ASinkThatFailsIsLetGoAndTheTakeGoesOn) {
    for (const bool fromTheStart : {false, true}) {
        std::vector<float> given;
        auto sink = std::make_unique<SharedSink>(given);
        sink->failsBeyond = 10'000;
        sink->problem = fromTheStart ? "it won't" : "";
        Capture capture(mix, place);
        capture.copyTo(std::move(sink));
        ASSERT_EQ(capture.record(), "");
        for (int i = 0; i < 30; ++i)
            mix.advance(1000);
        EXPECT_TRUE(capture.stop());
        EXPECT_EQ(capture.problem(), "");
        EXPECT_EQ(capture.takeSink(), nullptr);
        EXPECT_EQ(bytesOf(place).size(), 44U + 120'000);
    }
}

TEST_F(CaptureTest, ASinkThatTakesItsTimeHoldsUpNobodyAndStillGetsAll) {
    std::vector<float> given;
    std::atomic<bool> gate{false};
    Capture capture(mix, place);
    capture.copyTo(std::make_unique<SharedSink>(given, &gate));
    ASSERT_EQ(capture.record(), "");
    mix.advance(441'000);
    EXPECT_TRUE(capture.stop());
    EXPECT_EQ(bytesOf(place).size(), 44U + 4 * 441'000);
    gate = true;
    EXPECT_NE(capture.takeSink(), nullptr);
    EXPECT_EQ(given.size(), 882'000U);
}

TEST_F(CaptureTest, LevelsAreThereBeforeTheTakeAndSilenceIsCountedWithinIt) {
    SamplePlayer player(std::vector<float>(2 * 44'100, 0.5F));
    Capture capture(mix);
    EXPECT_EQ(capture.levels().peak[0], 0);
    mix.add(player);
    mix.advance(1000);
    EXPECT_EQ(capture.levels().peak[0], 0.5F);
    EXPECT_EQ(capture.silentSeconds(), 0);
    EXPECT_TRUE(capture.isSilent());
    ASSERT_EQ(capture.record(), "");
    mix.advance(44'100);
    EXPECT_FALSE(capture.isSilent());
    mix.advance(3 * 44'100);
    EXPECT_NEAR(capture.silentSeconds(), 3, 0.05);
    capture.stop();
    mix.advance(44'100);
    EXPECT_NEAR(capture.silentSeconds(), 3, 0.05);
    capture.forget();
    ASSERT_EQ(capture.record(), "");
    mix.advance(2 * 44'100);
    EXPECT_NEAR(capture.silentSeconds(), 2, 1e-9);
    EXPECT_TRUE(capture.isSilent());
    mix.remove(player);
}

TEST_F(CaptureTest, WhatAllProgramsPlayHasNoFormWithoutAClock) {
    Capture capture(mix, place);
    capture.setSource(CaptureSource::Everything);
    EXPECT_NE(capture.record(), "");
    EXPECT_FALSE(std::filesystem::exists(place));
}

namespace {
/// A device that takes sound as fast as the clock says and dies when it is told to.
class MortalDriver : public AudioDriver {
public:
    static inline std::atomic<bool> lives{true};
    static std::unique_ptr<AudioDriver> make(const StreamSettings& settings) {
        return std::make_unique<MortalDriver>(settings);
    }
    explicit MortalDriver(const StreamSettings& settings) : clock_(makeNullDriver(settings)) {}
    void start(StreamClient& client) override {
        client_ = &client;
        if (lives)
            clock_->start(client);
        watch_ = std::jthread([this](const std::stop_token& ends) {
            while (!ends.stop_requested() && lives)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            if (!ends.stop_requested()) {
                failed_ = true;
                client_->stateChanged();
            }
        });
    }
    void stop() override {
        if (watch_.joinable()) {
            watch_.request_stop();
            watch_.join();
        }
        clock_->stop();
    }
    ~MortalDriver() override { stop(); }
    [[nodiscard]] StreamState state() const override {
        return failed_ ? StreamState::Failed : StreamState::Running;
    }

private:
    std::unique_ptr<AudioDriver> clock_;
    StreamClient* client_ = nullptr;
    std::atomic<bool> failed_{false};
    std::jthread watch_;
};

constexpr std::array kClockOnly{AudioDriverRow{"none", makeNullDriver}};
constexpr std::array kMortalThenClock{AudioDriverRow{"mortal", MortalDriver::make},
                                      AudioDriverRow{"none", makeNullDriver}};
constexpr SupervisorTimes kQuick{.retry = 0.1, .answer = 0.4, .grace = 0.05, .standstill = 0.2};

struct LiveCaptureTest : CaptureTest {
    static AudioOutputSettings with(std::span<const AudioDriverRow> rows) {
        return {.stream = {}, .drivers = rows, .times = kQuick};
    }
};
} // namespace

TEST_F(LiveCaptureTest, WithoutAnySoundServerTheTakeIsThereBitForBitAndBeginsAtOnce) {
    const auto noise = sixteenBitNoise(2 * 22'050);
    AudioOutput output(with(kClockOnly));
    SamplePlayer player(floatsOf(noise));
    Capture capture(output, place);
    ASSERT_EQ(capture.record(), "");
    output.add(player);
    ASSERT_TRUE(within(3, [&] { return player.isThrough.load(); }));
    const std::int64_t rendered = capture.frames();
    ASSERT_TRUE(within(3, [&] { return capture.frames() > rendered; })); // what the limiter held back
    EXPECT_TRUE(capture.stop());
    output.remove(player);
    const auto take = sixteenBitsOf(bytesOf(place));
    expectContains(take, noise);
    EXPECT_EQ(numberAt(bytesOf(place), 40), 2 * take.size());
    EXPECT_EQ(static_cast<std::size_t>(capture.frames()), take.size() / 2);
    const auto first = std::find_if(take.begin(), take.end(), [](std::int16_t value) { return value != 0; });
    EXPECT_LT(first - take.begin(), 2 * 4410);
    EXPECT_EQ(capture.warning(), "");
}

TEST_F(LiveCaptureTest, ADriverThatDiesAndComesBackLeavesNoTraceInTheTake) {
    MortalDriver::lives = true;
    const auto noise = sixteenBitNoise(2 * 3 * 44'100);
    AudioOutput output(with(kMortalThenClock));
    ASSERT_TRUE(within(2, [&] { return output.figures().driver == "mortal"; }));
    SamplePlayer player(floatsOf(noise));
    Capture capture(output, place);
    std::vector<float> given;
    capture.copyTo(std::make_unique<SharedSink>(given));
    ASSERT_EQ(capture.record(), "");
    output.add(player);
    ASSERT_TRUE(within(2, [&] { return capture.frames() > 20'000; }));
    MortalDriver::lives = false;
    ASSERT_TRUE(within(2, [&] { return output.figures().driver == "none"; }));
    MortalDriver::lives = true;
    ASSERT_TRUE(within(2, [&] { return output.figures().driver == "mortal"; }));
    ASSERT_TRUE(within(6, [&] { return player.isThrough.load(); }));
    const std::int64_t rendered = capture.frames();
    ASSERT_TRUE(within(3, [&] { return capture.frames() > rendered; }));
    EXPECT_TRUE(capture.stop());
    output.remove(player);
    const auto take = sixteenBitsOf(bytesOf(place));
    expectContains(take, noise);
    EXPECT_NE(capture.takeSink(), nullptr);
    EXPECT_EQ(given, floatsOf(take));
}

TEST_F(LiveCaptureTest, TheHeaderTellsTheTrueLengthSeveralTimesASecond) {
    AudioOutput output(with(kClockOnly));
    Capture capture(output, place);
    ASSERT_EQ(capture.record(), "");
    for (int i = 1; i <= 3; ++i) {
        const std::int64_t goal = std::int64_t{i} * 22'050;
        ASSERT_TRUE(within(3, [&] { return capture.frames() >= goal; }));
        EXPECT_TRUE(within(0.1, [&] { // patience makes 0.4 s of it
            const std::string bytes = bytesOf(place);
            return static_cast<std::int64_t>(numberAt(bytes, 40)) >= 4 * goal &&
                   bytes.size() >= 44 + numberAt(bytes, 40);
        }));
    }
}

TEST_F(LiveCaptureTest, LevelsAndReadOutsAreAskedForWhileItRecords) {
    AudioOutput output(with(kClockOnly));
    SamplePlayer player(std::vector<float>(2 * 44'100, -0.5F));
    output.add(player);
    Capture capture(output);
    ASSERT_EQ(capture.record(), "");
    EXPECT_TRUE(within(3, [&] { return capture.levels().peak[1] == 0.5F; }));
    EXPECT_TRUE(within(3, [&] { return !capture.isSilent() && capture.silentSeconds() > 0.2; }));
    EXPECT_EQ(capture.problem(), "");
    capture.stop();
    output.remove(player);
}
