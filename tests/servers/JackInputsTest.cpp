// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SteadyClock.h"
#include "sound/MidiDevices.h"
#include "sound/MidiInputs.h"
#include "sound/ShortMessage.h"
#include "tests/servers/JackProcesses.h"
#include "tests/sound/FakeMidi.h"
#include "tests/support/FakeInputs.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <thread>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr const char* kKeys = "Keys:Out";
/// A note of 2205 frames every 4410: on and off every 50 ms.
const std::vector<std::string> kSequence{"jack_midiseq", "Sequence", "4410", "0", "60", "2205"};
constexpr const char* kSequenceOut = "Sequence:out";

double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Ends the test's process if a test takes longer than this: the interface thread hangs.
class Deadline {
public:
    explicit Deadline(unsigned seconds) { ::alarm(seconds); }
    ~Deadline() { ::alarm(0); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
};

struct JackInputsTest : testing::Test {
    Deadline deadline{45};
    JackServer server;
    RecordingListener listener;
    std::unique_ptr<MidiInputs> inputs;
    Guests<MidiListener>::Stay stay;
    double longest = 0; ///< that a call of the inputs took

    void SetUp() override {
        ASSERT_TRUE(server.ready()) << "jackd does not run";
        listen();
    }
    void listen() {
        inputs = std::make_unique<MidiInputs>(createMidiInputBackends());
        stay = inputs->join(listener);
    }
    void TearDown() override {
        stay.leave();
        inputs.reset();
    }

    void serve() {
        const double begin = steadySeconds();
        inputs->serve();
        longest = std::max(longest, steadySeconds() - begin);
    }
    std::vector<std::string> names() {
        serve();
        std::vector<std::string> all;
        for (const auto& source : inputs->sources())
            all.push_back(source.name);
        return all;
    }
    bool comes(const std::string& name) {
        return comesTrue([&] { return std::ranges::count(names(), name) == 1; });
    }
    bool goes(const std::string& name) {
        return comesTrue([&] { return std::ranges::count(names(), name) == 0; });
    }
    /// Starts the server once more, after its end. A process of its own asks whether it answers: a client of
    /// this one would have the library delete those that are there.
    bool serverComesAgain() {
        server.start();
        return comesTrue([&] {
            if (!server.process().running())
                server.start();
            ChildProcess probe({"jack_wait", "-c"});
            return comesTrue([&] { return !probe.running(); }) &&
                   probe.output().find("not running") == std::string::npos &&
                   probe.output().find("running") != std::string::npos;
        });
    }
    bool hears(std::size_t count) {
        return comesTrue([&] {
            serve();
            return listener.words.size() >= count;
        });
    }
};
} // namespace

TEST_F(JackInputsTest, AKeyboardThatIsPluggedInIsListedAndHeard) {
    EXPECT_THAT(names(), IsEmpty());
    JackPlayer keys("Keys");
    ASSERT_TRUE(comes(kKeys));
    std::vector<std::uint32_t> played;
    for (int i = 0; i < 60; ++i) {
        played.push_back(noteOn(0, 36 + i % 44, 1 + 2 * i));
        played.push_back(controller(0, 1, i));
        played.push_back(noteOff(0, 36 + i % 44));
        played.push_back(pack(0xE0, 0, i, 127 - i));
        played.push_back(pack(0xD0, 0, i));
    }
    const double begin = steadySeconds();
    for (std::size_t i = 0; i < played.size(); ++i) {
        keys.play(played[i]);
        if (i % 10 == 9)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ASSERT_TRUE(hears(played.size()));
    EXPECT_EQ(listener.words, played);
    EXPECT_TRUE(std::ranges::is_sorted(listener.moments));
    EXPECT_GT(listener.moments.front(), begin - 0.1);
    EXPECT_LT(listener.moments.back(), steadySeconds());
}

TEST_F(JackInputsTest, OneThatWasThereBeforeIsHeardToo) {
    JackPlayer keys("Keys");
    stay.leave();
    listen();
    ASSERT_TRUE(comes(kKeys));
    keys.play(noteOn(0, 60, 77));
    ASSERT_TRUE(hears(1));
    EXPECT_THAT(listener.words, ElementsAre(noteOn(0, 60, 77)));
}

TEST_F(JackInputsTest, AKeyboardThatIsPulledOutEndsItsNotesAndMayComeAgain) {
    std::optional<JackPlayer> keys(std::in_place, "Keys");
    ASSERT_TRUE(comes(kKeys));
    const int first = inputs->sources()[0].id;
    keys->play(noteOn(0, 60, 77));
    ASSERT_TRUE(hears(1));
    keys.reset();
    ASSERT_TRUE(goes(kKeys));
    EXPECT_THAT(listener.told, Contains(std::to_string(first) + " ended").Times(1));
    keys.emplace("Keys");
    ASSERT_TRUE(comes(kKeys));
    EXPECT_NE(inputs->sources()[0].id, first);
    keys->play(noteOn(0, 62, 78));
    ASSERT_TRUE(hears(2));
    EXPECT_THAT(listener.words, ElementsAre(noteOn(0, 60, 77), noteOn(0, 62, 78)));
}

TEST_F(JackInputsTest, TwoKeyboardsAreToldApart) {
    JackPlayer pads("Pads");
    JackPlayer keys("Keys");
    ASSERT_TRUE(comes(kKeys) && comes("Pads:Out"));
    keys.play(noteOn(0, 60, 1));
    ASSERT_TRUE(hears(1));
    pads.play(noteOn(0, 61, 2));
    ASSERT_TRUE(hears(2));
    const auto idOf = [&](const std::string& name) {
        return std::ranges::find(inputs->sources(), name, &MidiInputs::Source::name)->id;
    };
    EXPECT_THAT(listener.told, Contains(std::to_string(idOf(kKeys)) + " 013c90"));
    EXPECT_THAT(listener.told, Contains(std::to_string(idOf("Pads:Out")) + " 023d90"));
}

TEST_F(JackInputsTest, AProgramThatWeDidNotWriteIsHeardWithTheMomentsAtWhichItPlays) {
    const ChildProcess sequence(kSequence);
    ASSERT_TRUE(comes(kSequenceOut));
    ASSERT_TRUE(hears(20));
    // A hold-up of the machine within the server shifts what comes after it.
    std::vector<double> distances;
    for (std::size_t i = 1; i < listener.moments.size(); ++i)
        distances.push_back(listener.moments[i] - listener.moments[i - 1]);
    std::ranges::sort(distances);
    EXPECT_NEAR(distances[distances.size() / 2], 0.050, 0.002);
    EXPECT_THAT(listener.words, Contains(pack(0x80, 0, 60, 64)));
    EXPECT_EQ(data1(listener.words[0]), 60);
}

TEST_F(JackInputsTest, NothingOfOursIsAmongTheSourcesNorAmongTheDevices) {
    FakeSynth synth;
    MidiDevices devices(synth);
    JackReceiver receiver("Notes");
    ASSERT_TRUE(receiver.ready());
    JackPlayer keys("Keys");
    ASSERT_TRUE(comes(kKeys));
    ASSERT_TRUE(comesTrue([&] { return devices.deviceCount() == 2; }));
    EXPECT_EQ(devices.deviceName(1), "Receiver:Notes");
    EXPECT_EQ(devices.open(1), MidiPort::kOk);
    keys.play(noteOn(0, 60, 1));
    ASSERT_TRUE(hears(1));
    EXPECT_THAT(names(), ElementsAre(kKeys));
    EXPECT_EQ(devices.deviceCount(), 2);
}

TEST_F(JackInputsTest, AServerThatDiesEndsItsSourcesAndOneThatComesIsFound) {
    std::optional<ChildProcess> sequence(std::in_place, kSequence);
    ASSERT_TRUE(comes(kSequenceOut));
    ASSERT_TRUE(hears(2));
    const int first = inputs->sources()[0].id;
    server.process().kill();
    EXPECT_TRUE(goes(kSequenceOut));
    EXPECT_THAT(listener.told, Contains(std::to_string(first) + " ended").Times(1));
    sequence->kill();
    ASSERT_TRUE(serverComesAgain());
    sequence.emplace(kSequence);
    ASSERT_TRUE(comes(kSequenceOut));
    EXPECT_TRUE(hears(listener.words.size() + 2));
    EXPECT_LT(longest, 0.05 * kPatience);
}

TEST_F(JackInputsTest, InputsAndOutputsOutliveTheirServerSideBySide) {
    FakeSynth synth;
    MidiDevices devices(synth);
    std::optional<JackReceiver> receiver(std::in_place, "Notes");
    ASSERT_TRUE(receiver->ready());
    const auto opens = [&] { return devices.deviceCount() == 2 && devices.open(1) == MidiPort::kOk; };
    ASSERT_TRUE(comesTrue(opens));
    std::optional<ChildProcess> sequence(std::in_place, kSequence);
    ASSERT_TRUE(comes(kSequenceOut));
    for (int round = 0; round < 2; ++round) {
        server.process().kill();
        // The device stays open: nobody has looked at the list since.
        ASSERT_TRUE(goes(kSequenceOut));
        sequence->kill();
        receiver->process().kill();
        ASSERT_TRUE(serverComesAgain());
        sequence.emplace(kSequence);
        ASSERT_TRUE(comes(kSequenceOut));
        devices.send(noteOn(0, 60, 1));
        ASSERT_TRUE(comesTrue([&] { return devices.deviceCount() == 1; }));
        receiver.emplace("Notes");
        ASSERT_TRUE(receiver->ready());
        ASSERT_TRUE(comesTrue(opens));
        devices.send(noteOn(0, 61, 1));
        EXPECT_THAT(receiver->waitForWords(1), ElementsAre(noteOn(0, 61, 1)));
        EXPECT_TRUE(hears(listener.words.size() + 2));
    }
}

TEST_F(JackInputsTest, AServerThatFreezesHoldsUpNothing) {
    const ChildProcess sequence(kSequence);
    ASSERT_TRUE(comes(kSequenceOut));
    server.process().signal(SIGSTOP);
    for (int i = 0; i < 100; ++i)
        serve();
    stay.leave();
    const double begin = steadySeconds();
    inputs.reset();
    EXPECT_LT(steadySeconds() - begin, (MidiInputs::kEndSeconds + 0.5) * kPatience);
    EXPECT_LT(longest, 0.05 * kPatience);
    server.process().signal(SIGCONT);
}

TEST(JackInputsWithoutServer, NothingIsListedAndNextToNoProcessorTimeIsTaken) {
    const Deadline deadline(45);
    ::setenv("JACK_DEFAULT_SERVER", ("velmora-none-" + std::to_string(::getpid())).c_str(), 1);
    RecordingListener listener;
    MidiInputs inputs(createMidiInputBackends());
    const auto stay = inputs.join(listener);
    std::this_thread::sleep_for(std::chrono::milliseconds(500)); // the libraries are loaded
    const double before = processorSeconds();
    std::this_thread::sleep_for(std::chrono::duration<double>(2 * MidiInputBackend::kLookSeconds + 0.5));
    const double used = processorSeconds() - before;
    inputs.serve();
    EXPECT_THAT(inputs.sources(), IsEmpty());
    EXPECT_THAT(listener.told, IsEmpty());
    RecordProperty("processor_us", static_cast<int>(used * 1e6));
    EXPECT_LT(used, 0.005 * (2 * MidiInputBackend::kLookSeconds + 0.5));
}
