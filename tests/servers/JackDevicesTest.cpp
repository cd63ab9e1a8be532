// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SteadyClock.h"
#include "sound/MidiDevices.h"
#include "sound/ShortMessage.h"
#include "tests/servers/JackProcesses.h"
#include "tests/sound/FakeMidi.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <thread>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
using Words = std::vector<std::uint32_t>;

/// The device's index, as soon as it is listed.
std::optional<int> find(MidiDevices& devices, const std::string& name) {
    for (int i = 0, count = devices.deviceCount(); i < count; ++i)
        if (devices.deviceName(i) == name)
            return i;
    return std::nullopt;
}

bool comesToBeListed(MidiDevices& devices, const std::string& name) {
    return comesTrue([&] { return find(devices, name).has_value(); });
}

bool goesFromList(MidiDevices& devices, const std::string& name) {
    return comesTrue([&] { return !find(devices, name).has_value(); });
}

/// Notes that these messages leave on, by channel and note.
std::map<std::pair<int, int>, int> notesLeftOn(const Words& words) {
    std::map<std::pair<int, int>, int> notes;
    for (const auto word : words) {
        const auto key = std::pair(channel(word), data1(word));
        if (status(word) == 0x90 && data2(word) > 0)
            ++notes[key];
        else if ((status(word) == 0x90 || status(word) == 0x80) && --notes[key] <= 0)
            notes.erase(key);
    }
    return notes;
}

/// Messages of all kinds, each different from its neighbours.
Words mixture(int count) {
    Words words;
    for (int i = 0; i < count; ++i)
        switch (i % 5) {
        case 0:
            words.push_back(programChange(i % 16, i / 5 % 128));
            break;
        case 1:
            words.push_back(controller(i % 16, 1 + i % 90, i / 5 % 128));
            break;
        case 2:
            words.push_back(pack(0xD0, i % 16, i / 5 % 128));
            break;
        case 3:
            words.push_back(noteOn(i % 16, i / 5 % 128, 1 + i % 127));
            break;
        default:
            words.push_back(noteOff(i % 16, i / 5 % 128));
        }
    return words;
}

/// What the process writes on its terminal's error channel while this object lives.
class TerminalWatch {
public:
    TerminalWatch() : saved_(::dup(2)), file_(::memfd_create("errors", 0)) { ::dup2(file_, 2); }
    ~TerminalWatch() {
        ::dup2(saved_, 2);
        ::close(saved_);
        ::close(file_);
    }
    TerminalWatch(const TerminalWatch&) = delete;
    TerminalWatch& operator=(const TerminalWatch&) = delete;

    [[nodiscard]] std::string text() const {
        std::string all(static_cast<std::size_t>(::lseek(file_, 0, SEEK_END)), '\0');
        const auto size = ::pread(file_, all.data(), all.size(), 0);
        all.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return all;
    }

private:
    int saved_;
    int file_;
};

/// Ends the test's process, with a message, if a test takes longer than this: the interface thread hangs.
class Deadline {
public:
    explicit Deadline(unsigned seconds) { ::alarm(seconds); }
    ~Deadline() { ::alarm(0); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
};

constexpr const char* kDevice = "Receiver:Notes";

struct JackDevicesTest : testing::Test {
    Deadline deadline{45};
    FakeSynth synth;
    JackServer server;
    std::optional<JackReceiver> receiver;
    std::optional<MidiDevices> devices;

    void SetUp() override {
        ASSERT_TRUE(server.ready()) << "jackd does not run";
        receiver.emplace("Notes");
        ASSERT_TRUE(receiver->ready());
        devices.emplace(synth);
        ASSERT_TRUE(comesToBeListed(*devices, kDevice));
    }

    void openReceiver() { ASSERT_EQ(devices->open(find(*devices, kDevice).value()), MidiPort::kOk); }

    void send(const Words& words) {
        for (const auto word : words)
            devices->send(word);
    }
};
} // namespace

TEST_F(JackDevicesTest, TheInputsOfOtherProgramsAreListedAndNothingOfOurs) {
    openReceiver();
    std::vector<std::string> names;
    for (int i = 0, count = devices->deviceCount(); i < count; ++i)
        names.push_back(devices->deviceName(i));
    EXPECT_THAT(names, ElementsAre("Velmora Synthesizer", kDevice));
}

TEST_F(JackDevicesTest, EveryMessageOfABurstArrivesUnchangedAndInOrder) {
    openReceiver();
    const Words burst = mixture(3000);
    send(burst);
    EXPECT_EQ(receiver->waitForWords(burst.size()), burst);
}

TEST_F(JackDevicesTest, AProgramThatWeDidNotWriteSeesTheSameMessages) {
    ChildProcess witness({"jack_midi_dump", "-a"});
    ASSERT_TRUE(comesToBeListed(*devices, "midi-monitor:input"));
    ASSERT_EQ(devices->open(find(*devices, "midi-monitor:input").value()), MidiPort::kOk);
    send({noteOn(0, 60, 100), kDrumBank, controller(1, 10, 64), noteOff(0, 60)});
    const auto seen = [&] {
        std::vector<std::string> lines;
        std::istringstream text(witness.output());
        for (std::string line; std::getline(text, line);)
            lines.push_back(line.substr(line.find(':') + 2, line[line.find(':') + 8] == ' ' ? 8 : 5));
        return lines;
    };
    static_cast<void>(comesTrue([&] { return std::ranges::count(witness.output(), '\n') >= 4; }));
    EXPECT_THAT(witness.output(), testing::HasSubstr(": 90 3c 64 note on"));
    EXPECT_THAT(seen(), testing::SizeIs(4));
    EXPECT_THAT(witness.output(),
                testing::ContainsRegex("90 3c 64 .*\n.*c9 00.*\n.*b1 0a 40 .*\n.*80 3c 00"));
}

TEST_F(JackDevicesTest, ResetLeavesNoNoteOnAtTheReceiver) {
    openReceiver();
    std::mt19937 random(7);
    Words words;
    for (int i = 0; i < 600; ++i)
        words.push_back(noteOn(static_cast<int>(random() % 16), static_cast<int>(random() % 128), 100));
    words.push_back(controller(4, 64, 127));
    send(words);
    ASSERT_FALSE(notesLeftOn(receiver->waitForWords(words.size())).empty());
    devices->reset();
    const auto received = receiver->waitForWords(2 * words.size());
    EXPECT_EQ(received.size(), 2 * words.size());
    EXPECT_THAT(notesLeftOn(received), IsEmpty());
    EXPECT_THAT(received, testing::Contains(controller(4, 64, 0)));
}

TEST_F(JackDevicesTest, ClosingAtOnceAfterABurstLeavesNoNoteOnAtTheReceiver) {
    openReceiver();
    Words words;
    for (int note = 0; note < 128; ++note)
        words.push_back(noteOn(3, note, 100));
    send(words);
    EXPECT_EQ(devices->close(), MidiPort::kOk);
    const auto received = receiver->waitForWords(2 * words.size());
    EXPECT_EQ(received.size(), 2 * words.size());
    EXPECT_THAT(notesLeftOn(received), IsEmpty());
    send({noteOn(3, 60, 100)});
    openReceiver();
    send({noteOn(3, 61, 100)});
    EXPECT_EQ(receiver->waitForWords(2 * words.size() + 1).back(), noteOn(3, 61, 100));
}

TEST_F(JackDevicesTest, TheEndOfTheProgramLeavesNoNoteOnAtTheReceiver) {
    openReceiver();
    send({noteOn(3, 60, 100), noteOn(9, 35, 100)});
    devices.reset();
    const auto received = receiver->waitForWords(4);
    EXPECT_EQ(received.size(), 4U);
    EXPECT_THAT(notesLeftOn(received), IsEmpty());
}

TEST_F(JackDevicesTest, AReceiverThatDiesWhileNotesSoundGoesFromTheListAndHoldsUpNothing) {
    openReceiver();
    send({noteOn(3, 60, 100)});
    ASSERT_EQ(receiver->waitForWords(1).size(), 1U);
    receiver->process().kill();
    double longest = 0;
    EXPECT_TRUE(comesTrue([&] {
        const double begin = steadySeconds();
        send({noteOn(3, 61, 100), noteOff(3, 61)});
        const bool gone = !find(*devices, kDevice).has_value();
        longest = std::max(longest, steadySeconds() - begin);
        return gone;
    }));
    EXPECT_LT(longest, 0.1 * kPatience);
    devices->reset();
    EXPECT_EQ(devices->close(), MidiPort::kOk);
    receiver.emplace("Notes");
    ASSERT_TRUE(receiver->ready());
    ASSERT_TRUE(comesToBeListed(*devices, kDevice));
    openReceiver();
    send({noteOn(3, 62, 100)});
    EXPECT_THAT(receiver->waitForWords(1), ElementsAre(noteOn(3, 62, 100)));
}

TEST_F(JackDevicesTest, OpeningADeviceThatHasGoneIsRefused) {
    const int device = find(*devices, kDevice).value();
    receiver->process().kill();
    // The list is not looked at again, so the index still means the device; soon the server has noticed.
    EXPECT_TRUE(comesTrue([&] { return devices->open(device) == MidiDevices::kRefused; }));
}

TEST_F(JackDevicesTest, AServerThatDiesWhilePlayingTakesItsDevicesAlongAndHoldsUpNothing) {
    openReceiver();
    send({noteOn(3, 60, 100)});
    ASSERT_EQ(receiver->waitForWords(1).size(), 1U);
    const TerminalWatch terminal;
    server.process().kill();
    double longest = 0;
    const auto timed = [&](const auto& call) {
        const double begin = steadySeconds();
        call();
        longest = std::max(longest, steadySeconds() - begin);
    };
    // More than any queue holds, while the library finds out.
    for (int i = 0; i < 20000; ++i)
        timed([&] { send({noteOn(3, 61, 100), noteOff(3, 61)}); });
    EXPECT_TRUE(comesTrue([&] {
        bool gone = false;
        timed([&] {
            send({noteOn(3, 62, 100)});
            gone = !find(*devices, kDevice).has_value();
        });
        return gone;
    }));
    timed([&] { devices->reset(); });
    timed([&] { EXPECT_EQ(devices->close(), MidiPort::kOk); });
    timed([&] { EXPECT_EQ(devices->open(0), MidiPort::kOk); });
    EXPECT_LT(longest, 0.1 * kPatience);
    const double begin = steadySeconds();
    devices.reset();
    EXPECT_LT(steadySeconds() - begin, 2.0 * kPatience);
    EXPECT_EQ(terminal.text(), "");
}

TEST_F(JackDevicesTest, AServerThatIsStartedAgainIsFoundAgain) {
    openReceiver();
    send({noteOn(3, 60, 100)});
    server.process().kill();
    ASSERT_TRUE(goesFromList(*devices, kDevice));
    server.start();
    ASSERT_TRUE(comesTrue([&] {
        receiver.emplace("Notes");
        return receiver->ready() && comesTrue([&] { return find(*devices, kDevice).has_value(); }, 1);
    }));
    openReceiver();
    send({noteOn(3, 61, 100)});
    EXPECT_THAT(receiver->waitForWords(1), ElementsAre(noteOn(3, 61, 100)));
}

TEST_F(JackDevicesTest, AServerThatFreezesHoldsUpNothing) {
    openReceiver();
    server.process().signal(SIGSTOP);
    double begin = steadySeconds();
    for (int i = 0; i < 20000; ++i)
        send({noteOn(3, 60, 100), noteOff(3, 60)});
    devices->reset();
    static_cast<void>(devices->deviceCount());
    EXPECT_LT(steadySeconds() - begin, 0.5 * kPatience);
    const int device = find(*devices, kDevice).value_or(1);
    begin = steadySeconds();
    static_cast<void>(devices->open(device));
    EXPECT_LT(steadySeconds() - begin, (BackendThread::kOpenSeconds + 0.5) * kPatience);
    begin = steadySeconds();
    devices.reset();
    EXPECT_LT(steadySeconds() - begin, (BackendThread::kEndSeconds + 0.5) * kPatience);
}

TEST(JackServerTest, WithoutAServerNothingIsListedPrintedOrStarted) {
    const Deadline deadline(30);
    ::setenv("JACK_DEFAULT_SERVER", ("velmora-none-" + std::to_string(::getpid())).c_str(), 1);
    const TerminalWatch terminal;
    FakeSynth synth;
    {
        MidiDevices devices(synth);
        EXPECT_EQ(devices.deviceCount(), 1);
        const double begin = steadySeconds();
        EXPECT_TRUE(comesTrue([&] { return devices.deviceCount() == 1 && steadySeconds() > begin + 1.2; }));
    }
    EXPECT_EQ(terminal.text(), "");
    std::ifstream children("/proc/self/task/" + std::to_string(::getpid()) + "/children");
    ASSERT_TRUE(children.is_open());
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(children), {}), "");
    EXPECT_STREQ(::getenv("JACK_NO_START_SERVER"), "1");
}

TEST(JackServerTest, MessagesKeepTheirSpacingWithinLongPeriods) {
    const Deadline deadline(30);
    // 46 ms a period: without the moments of the calls, all of it would be heard at two or three instants.
    JackServer server(2048);
    ASSERT_TRUE(server.ready()) << "jackd does not run";
    ChildProcess witness({"jack_midi_dump", "-a"});
    FakeSynth synth;
    MidiDevices devices(synth);
    ASSERT_TRUE(comesToBeListed(devices, "midi-monitor:input"));
    // A port is listed a moment before it can be connected.
    ASSERT_TRUE(comesTrue(
        [&] { return devices.open(find(devices, "midi-monitor:input").value()) == MidiPort::kOk; }));
    // A hold-up of the machine between the clock and the call, or within the server, spoils a run.
    double spread = 1;
    for (int run = 0; run < 10 && spread >= 0.010; ++run) {
        const std::size_t before = witness.output().size();
        std::vector<double> sent;
        for (int i = 0; i < 20; ++i) {
            sent.push_back(steadySeconds());
            devices.send(noteOn(0, 40 + i, 100));
            std::this_thread::sleep_for(std::chrono::milliseconds(7));
        }
        const auto fresh = [&] { return witness.output().substr(before); };
        ASSERT_TRUE(comesTrue([&] { return std::ranges::count(fresh(), '\n') >= 20; }));
        std::istringstream lines(fresh());
        std::vector<double> distances;
        for (std::string line; std::getline(lines, line) && distances.size() < sent.size();)
            distances.push_back(std::stod(line) / 44100 - sent[distances.size()]);
        ASSERT_EQ(distances.size(), sent.size());
        const auto [least, most] = std::ranges::minmax(distances);
        spread = most - least;
    }
    RecordProperty("spread_us", static_cast<int>(spread * 1e6));
    EXPECT_LT(spread, 0.010);
}
