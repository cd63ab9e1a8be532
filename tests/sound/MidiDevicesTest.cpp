// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiDevices.h"

#include "base/SteadyClock.h"
#include "sound/ShortMessage.h"
#include "tests/sound/FakeMidi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
struct MidiDevicesTest : testing::Test {
    FakeSynth synth;
    std::shared_ptr<FakeSystem> first = std::make_shared<FakeSystem>();
    std::shared_ptr<FakeSystem> second = std::make_shared<FakeSystem>();

    ~MidiDevicesTest() override {
        for (const auto& system : {first, second})
            system->set([&] { system->stuck = false; });
    }

    std::unique_ptr<MidiDevices> devices() {
        std::vector<std::unique_ptr<MidiBackend>> backends;
        backends.push_back(std::make_unique<FakeBackend>(first));
        backends.push_back(std::make_unique<FakeBackend>(second));
        return std::make_unique<MidiDevices>(synth, std::move(backends));
    }

    static std::vector<std::string> names(MidiDevices& port) {
        std::vector<std::string> all;
        for (int i = 0, count = port.deviceCount(); i < count; ++i)
            all.push_back(port.deviceName(i));
        return all;
    }

    /// Lists until the list is as wanted; false if it never is.
    static bool comesToList(MidiDevices& port, const std::vector<std::string>& wanted) {
        for (const double deadline = steadySeconds() + 10; steadySeconds() < deadline;) {
            if (names(port) == wanted)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
};
} // namespace

TEST_F(MidiDevicesTest, TheSynthesizerComesFirstAndThenEachBackEndInItsOrder) {
    first->ports = {"Midi Through:Midi Through Port-0 14:0", "b", "a"};
    second->ports = {"c", "a"};
    auto port = devices();
    EXPECT_THAT(names(*port), ElementsAre("Velmora Synthesizer", "b", "a", "c", "a 2"));
    EXPECT_EQ(port->deviceName(-1), "");
    EXPECT_EQ(port->deviceName(5), "");
}

TEST_F(MidiDevicesTest, WithoutASynthesizerTheOthersMoveUp) {
    first->ports = {"a"};
    synth.there = false;
    auto port = devices();
    EXPECT_THAT(names(*port), ElementsAre("a"));
    EXPECT_EQ(port->open(0), MidiPort::kOk);
    EXPECT_THAT(first->events, ElementsAre("open a"));
}

TEST_F(MidiDevicesTest, WithNothingAtAllNoDeviceIsListedAndNoneOpens) {
    synth.there = false;
    auto port = devices();
    EXPECT_EQ(port->deviceCount(), 0);
    EXPECT_EQ(port->open(MidiPort::kMapper), MidiDevices::kNoSuchDevice);
    EXPECT_EQ(port->open(0), MidiDevices::kNoSuchDevice);
}

TEST_F(MidiDevicesTest, TheMapperIsTheSynthesizerOrElseTheFirstOtherDevice) {
    first->ports = {"a"};
    auto port = devices();
    EXPECT_EQ(port->open(MidiPort::kMapper), MidiPort::kOk);
    port->send(noteOn(0, 60, 90));
    EXPECT_THAT(synth.words, ElementsAre(noteOn(0, 60, 90)));
    synth.there = false;
    EXPECT_EQ(port->deviceCount(), 1);
    EXPECT_EQ(port->open(MidiPort::kMapper), MidiPort::kOk);
    port->send(noteOn(0, 61, 90));
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(0, 61, 90)));
    EXPECT_EQ(synth.words.size(), 1U);
}

TEST_F(MidiDevicesTest, NoIndexBesideTheListAndTheMapperOpens) {
    auto port = devices();
    for (const int device : {-2, 1, 32767, -32768})
        EXPECT_EQ(port->open(device), MidiDevices::kNoSuchDevice);
}

TEST_F(MidiDevicesTest, TheSynthesizerGetsTheMomentOfTheCall) {
    auto port = devices();
    ASSERT_EQ(port->open(0), MidiPort::kOk);
    const double before = steadySeconds();
    port->send(noteOn(0, 60, 90));
    EXPECT_GE(synth.lastMoment, before);
    EXPECT_LE(synth.lastMoment, steadySeconds());
    port->reset();
    EXPECT_EQ(synth.resets, 1);
    EXPECT_EQ(port->close(), MidiPort::kOk);
    EXPECT_EQ(synth.resets, 2);
    port->send(noteOn(0, 61, 90));
    port->reset();
    EXPECT_EQ(synth.words.size(), 1U);
    EXPECT_EQ(synth.resets, 2);
}

TEST_F(MidiDevicesTest, WordsThatAreNoMidiAreDroppedEverywhere) {
    first->ports = {"a"};
    auto port = devices();
    for (const int device : {0, 1}) {
        ASSERT_EQ(port->open(device), MidiPort::kOk);
        port->send(noteOn(0, 130, 90));
        port->send(noteOn(0, 60, 128));
        port->send(0x40);
        port->send(0xF8);
        port->send(kDrumBank);
    }
    EXPECT_THAT(synth.words, ElementsAre(kDrumBank));
    EXPECT_THAT(first->takenWords(), ElementsAre(kDrumBank));
}

TEST_F(MidiDevicesTest, ResetSendsAnExternalDeviceOnlyTheNoteOffsItNeeds) {
    first->ports = {"a"};
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->reset();
    EXPECT_THAT(first->takenWords(), IsEmpty());
    port->send(noteOn(0, 60, 90));
    port->send(noteOn(9, 35, 90));
    port->send(controller(9, 64, 127));
    port->send(noteOff(0, 60));
    first->takenWords();
    port->reset();
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOff(9, 35), controller(9, 64, 0)));
    port->reset();
    EXPECT_THAT(first->takenWords(), IsEmpty());
}

TEST_F(MidiDevicesTest, ClosingAndOpeningAnotherSilenceTheDeviceBefore) {
    first->ports = {"a", "b"};
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->send(noteOn(3, 60, 90));
    ASSERT_EQ(port->open(2), MidiPort::kOk);
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(3, 60, 90), noteOff(3, 60)));
    port->send(noteOn(4, 61, 90));
    EXPECT_EQ(port->close(), MidiPort::kOk);
    port->send(noteOn(4, 62, 90));
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(4, 61, 90), noteOff(4, 61)));
    port.reset();
    EXPECT_THAT(first->events, ElementsAre("open a", "close a", "open b", "close b"));
}

TEST_F(MidiDevicesTest, TheEndOfTheProgramSilencesAndClosesToo) {
    first->ports = {"a"};
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->send(noteOn(3, 60, 90));
    port.reset();
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(3, 60, 90), noteOff(3, 60)));
    EXPECT_THAT(first->events, ElementsAre("open a", "close a"));
}

TEST_F(MidiDevicesTest, ANameThatHasGoneIsRefused) {
    first->ports = {"a", "b"};
    auto port = devices();
    ASSERT_EQ(port->deviceCount(), 3);
    first->set([&] { first->ports = {"b"}; });
    EXPECT_EQ(port->open(1), MidiDevices::kRefused);
    EXPECT_EQ(port->open(2), MidiPort::kOk);
    EXPECT_THAT(first->events, ElementsAre("open b"));
}

TEST_F(MidiDevicesTest, DevicesComeAndGoInTheList) {
    auto port = devices();
    EXPECT_THAT(names(*port), ElementsAre("Velmora Synthesizer"));
    second->set([&] { second->ports = {"new"}; });
    EXPECT_TRUE(comesToList(*port, {"Velmora Synthesizer", "new"}));
    second->set([&] { second->ports.clear(); });
    EXPECT_TRUE(comesToList(*port, {"Velmora Synthesizer"}));
}

TEST_F(MidiDevicesTest, TheListIsMadeAnewAtMostTwiceASecond) {
    auto port = devices();
    const double begin = steadySeconds();
    while (steadySeconds() < begin + 0.3)
        static_cast<void>(port->deviceCount());
    EXPECT_LE(first->lists, 2);
}

TEST_F(MidiDevicesTest, ABackEndThatThrowsIsJustNotThere) {
    first->throwing = true;
    second->ports = {"a"};
    auto port = devices();
    EXPECT_THAT(names(*port), ElementsAre("Velmora Synthesizer", "a"));
    second->set([&] { second->throwing = true; });
    EXPECT_EQ(port->open(1), MidiDevices::kRefused);
}

TEST_F(MidiDevicesTest, ABackEndThatHangsHoldsUpNeitherTheListNorTheOthers) {
    first->ports = {"lost"};
    first->stuck = true;
    second->ports = {"a"};
    auto port = devices();
    const double begin = steadySeconds();
    EXPECT_THAT(names(*port), ElementsAre("Velmora Synthesizer", "a"));
    EXPECT_LT(steadySeconds() - begin, MidiDevices::kFirstListSeconds + 2);
    EXPECT_EQ(port->open(1), MidiPort::kOk);
}

TEST_F(MidiDevicesTest, OpeningADeviceThatHangsEndsWithACodeAndIsUndoneLater) {
    first->ports = {"a"};
    auto port = devices();
    ASSERT_EQ(port->deviceCount(), 2);
    first->set([&] { first->stuck = true; });
    const double begin = steadySeconds();
    EXPECT_EQ(port->open(1), MidiDevices::kTimedOut);
    const double later = steadySeconds();
    EXPECT_LT(later - begin, BackendThread::kOpenSeconds + 3);
    // Known to hang, it isn't waited for again.
    EXPECT_EQ(port->open(1), MidiDevices::kTimedOut);
    EXPECT_LT(steadySeconds() - later, 1.5);
    EXPECT_EQ(port->open(0), MidiPort::kOk);
    first->set([&] { first->stuck = false; });
    EXPECT_TRUE(first->waitFor([&] {
        return first->events == std::vector<std::string>{"open a", "close a"};
    }));
}

TEST_F(MidiDevicesTest, ADeviceThatIsLostTakesNothingAndIsLetGo) {
    first->ports = {"a"};
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->send(noteOn(0, 60, 90));
    first->alive = false;
    port->send(noteOn(0, 61, 90));
    port->reset();
    static_cast<void>(port->deviceCount());
    EXPECT_TRUE(first->waitFor([&] { return first->events.size() == 2; }));
    port->send(noteOn(0, 62, 90));
    EXPECT_EQ(port->close(), MidiPort::kOk);
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(0, 60, 90)));
    EXPECT_THAT(first->events, ElementsAre("open a", "close a"));
}

TEST_F(MidiDevicesTest, AFullDeviceRefusesNewNotesBeforeItRefusesTheirEnds) {
    first->ports = {"a"};
    first->room = MidiOutlet::kQueueLength / 4 + 1;
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->send(noteOn(0, 60, 90));
    port->send(noteOn(0, 61, 90));
    port->send(noteOff(0, 60));
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(0, 60, 90), noteOff(0, 60)));
}

TEST_F(MidiDevicesTest, ANoteOffThatFoundNoRoomIsSentByTheNextReset) {
    first->ports = {"a"};
    auto port = devices();
    ASSERT_EQ(port->open(1), MidiPort::kOk);
    port->send(noteOn(0, 60, 90));
    first->set([&] { first->room = 0; });
    port->send(noteOff(0, 60));
    first->set([&] { first->room = 100; });
    port->reset();
    EXPECT_THAT(first->takenWords(), ElementsAre(noteOn(0, 60, 90), noteOff(0, 60)));
}

TEST(MidiBackendRowsTest, EveryRowHasANameOfItsOwnAndABackEnd) {
    std::vector<std::string_view> names;
    for (const auto& row : midiBackendRows()) {
        names.push_back(row.name);
        EXPECT_NE(row.create(), nullptr) << row.name;
    }
    EXPECT_THAT(names, ElementsAre("ALSA", "JACK"));
}
