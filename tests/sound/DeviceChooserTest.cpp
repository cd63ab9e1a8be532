// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/DeviceChooser.h"

#include "base/VirtualLoop.h"
#include "tests/support/RecordingPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
/// Writes down every operation in one list; opens succeed or fail as the script says, and fail beyond its
/// end.
class ScriptedPort : private VirtualLoop, public RecordingPort {
public:
    ScriptedPort() : RecordingPort(static_cast<VirtualLoop&>(*this)) { names.clear(); }

    std::deque<bool> script;
    std::string calls;

    int open(int device) override {
        const bool works = !script.empty() && script.front();
        if (!script.empty())
            script.pop_front();
        note("open " + std::to_string(device) + (works ? "" : "!"));
        return works ? kOk : 4;
    }
    int close() override {
        note("close");
        return kOk;
    }
    void reset() override { note("reset"); }
    void send(std::uint32_t word) override { note("send " + std::to_string(word)); }

private:
    void note(const std::string& call) { calls += (calls.empty() ? "" : ", ") + call; }
};

struct DeviceChooserTest : testing::Test {
    ScriptedPort port;
    std::optional<int> key;
    std::vector<int> written;
    DeviceChooser chooser{port,
                          {[this] { return key; },
                           [this](int value) {
                               key = value;
                               written.push_back(value);
                           }}};
};

/// What is set, how the opens end, and what must be done.
struct Row {
    std::optional<int> key;
    std::deque<bool> opens;
    const char* calls;
    bool fellBack;
    int device;
    int result;
};

const std::vector<Row> kActivations{
    {std::nullopt, {true}, "open -1, send 201", false, -1, 0},
    {3, {true}, "open 3, send 201", false, 3, 0},
    {3, {false, true}, "open 3!, close, open 4", false, 3, 0},
    {3, {false, false, true}, "open 3!, close, open 4!, reset, close, open -1", false, 3, 0},
    {std::nullopt, {false, true}, "open -1!, close, open 0", false, -1, 0},
    {std::nullopt, {false, false}, "open -1!, close, open 0!", false, -1, 4},
    {12, {false, true}, "open 12!, close, open 13", false, 12, 0},
};

const std::vector<Row> kClicks{
    {std::nullopt, {true}, "reset, close, open 0, send 201", false, 0, 0},
    {-1, {true}, "reset, close, open -1, send 201", false, -1, 0},
    {3, {true}, "reset, close, open 3, send 201", false, 3, 0},
    {3,
     {false, true, true},
     "reset, close, open 3!, reset, close, open 4, reset, close, open 3, send 201",
     false,
     3,
     0},
    {3,
     {false, false, true},
     "reset, close, open 3!, reset, close, open 4!, reset, close, open 3, send 201",
     false,
     3,
     0},
    {3,
     {false, true, false, true},
     "reset, close, open 3!, reset, close, open 4, reset, close, open 3!, reset, close, open -1",
     true,
     3,
     0},
    {8,
     {false, false, false, false},
     "reset, close, open 8!, reset, close, open 9!, reset, close, open 8!, reset, close, open -1!",
     true,
     8,
     4},
    {9, {false, true}, "reset, close, open 9!", false, 9, 4},
    {9, {true}, "reset, close, open 9, send 201", false, 9, 0},
    {31, {false, true}, "reset, close, open 31!", false, 31, 4},
};
} // namespace

TEST_F(DeviceChooserTest, TheFirstActivationMakesItsAttemptsInTheirOrder) {
    for (const auto& row : kActivations) {
        port.calls.clear();
        port.script = row.opens;
        key = row.key;
        chooser.openAtActivation();
        EXPECT_EQ(port.calls, row.calls);
        EXPECT_EQ(chooser.midiDevice(), row.device) << row.calls;
        EXPECT_EQ(chooser.midiResult(), row.result) << row.calls;
    }
    EXPECT_THAT(written, IsEmpty());
}

TEST_F(DeviceChooserTest, DeviceClickMakesItsAttemptsInTheirOrder) {
    for (const auto& row : kClicks) {
        port.calls.clear();
        port.script = row.opens;
        key = row.key;
        EXPECT_EQ(chooser.Device_Click(), row.fellBack) << row.calls;
        EXPECT_EQ(port.calls, row.calls);
        EXPECT_EQ(chooser.midiDevice(), row.device) << row.calls;
        EXPECT_EQ(chooser.midiResult(), row.result) << row.calls;
    }
    EXPECT_THAT(written, IsEmpty());
}

TEST_F(DeviceChooserTest, ChoosingAnItemWritesItsIndexLessOneAndOpensIt) {
    port.script = {true, true};
    EXPECT_FALSE(chooser.choose(0));
    EXPECT_FALSE(chooser.choose(3));
    EXPECT_THAT(written, ElementsAre(-1, 2));
    EXPECT_EQ(port.calls, "reset, close, open -1, send 201, reset, close, open 2, send 201");
}

TEST_F(DeviceChooserTest, ALaterActivationOpensOnlyWhatHasChanged) {
    port.script = {true};
    chooser.openAtActivation();
    port.calls.clear();
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    EXPECT_EQ(port.calls, "");
    key = 2;
    port.script = {true};
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::AsChosen);
    EXPECT_EQ(port.calls, "reset, close, open 2, send 201");
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    key = 1;
    port.script = {false, false, false, true};
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::ByMapper);
}

TEST_F(DeviceChooserTest, TheListIsTheMapperAndEveryDevice) {
    port.names = {"Velmora Synthesizer", "a", "b"};
    key = 1;
    const auto list = chooser.list();
    EXPECT_THAT(list.texts, ElementsAre("MIDI Mapper", "Velmora Synthesizer", "a", "b"));
    EXPECT_EQ(list.item, 2);
    key = -1;
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_THAT(written, IsEmpty());
}

TEST_F(DeviceChooserTest, TheFirstUseWritesTheNumberOfDevicesLessOne) {
    port.names = {"Velmora Synthesizer"};
    EXPECT_EQ(chooser.list().item, 1);
    EXPECT_THAT(written, ElementsAre(0));
    EXPECT_EQ(chooser.list().item, 1);
    EXPECT_THAT(written, ElementsAre(0));
}

TEST_F(DeviceChooserTest, TheFirstUseChoosesNoDeviceThatMayBeSilent) {
    port.names = {"Velmora Synthesizer", "a", "b"};
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_THAT(written, ElementsAre(-1));
}

TEST_F(DeviceChooserTest, TheFirstUseWithoutADeviceWritesTheMapper) {
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_THAT(written, ElementsAre(-1));
}

TEST_F(DeviceChooserTest, AChosenDeviceThatIsNotThereShowsTheMapperAndStaysChosen) {
    port.names = {"Velmora Synthesizer"};
    for (const int gone : {1, 9, 32767, -2, -32768}) {
        key = gone;
        EXPECT_EQ(chooser.list().item, 0) << gone;
        EXPECT_EQ(key, gone);
    }
    EXPECT_THAT(written, IsEmpty());
}

TEST_F(DeviceChooserTest, TheOpenDeviceStaysChosenWhenOneBeforeItComesOrGoes) {
    port.names = {"Velmora Synthesizer", "a", "b"};
    port.script = {true};
    EXPECT_FALSE(chooser.choose(3));
    port.calls.clear();
    port.names = {"Velmora Synthesizer", "b", "c"};
    EXPECT_EQ(chooser.list().item, 2);
    EXPECT_EQ(key, 1);
    port.names = {"Velmora Synthesizer", "0", "a", "b"};
    EXPECT_EQ(chooser.list().item, 4);
    EXPECT_EQ(key, 3);
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    EXPECT_EQ(port.calls, "");
}

TEST_F(DeviceChooserTest, AnotherDeviceInThePlaceOfTheOpenOneIsNotShownAsChosen) {
    port.names = {"Velmora Synthesizer", "a", "b"};
    port.script = {true};
    EXPECT_FALSE(chooser.choose(2));
    port.names = {"Velmora Synthesizer", "b"};
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_EQ(key, 1);
}

TEST_F(DeviceChooserTest, TheListOpensTheMapperOnceInThePlaceOfADeviceThatHasGone) {
    port.names = {"Velmora Synthesizer", "a"};
    port.script = {true, true};
    EXPECT_FALSE(chooser.choose(2));
    port.calls.clear();
    port.names = {"Velmora Synthesizer"};
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    EXPECT_EQ(port.calls, "reset, close, open -1");
    EXPECT_EQ(key, 1);
}

TEST_F(DeviceChooserTest, AnActivationOpensTheMapperInThePlaceOfADeviceThatHasGone) {
    port.names = {"Velmora Synthesizer", "a"};
    port.script = {true, true};
    EXPECT_FALSE(chooser.choose(2));
    port.calls.clear();
    port.names = {"Velmora Synthesizer"};
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::ByMapper);
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    EXPECT_EQ(port.calls, "reset, close, open -1");
    EXPECT_EQ(key, 1);
}

TEST_F(DeviceChooserTest, ADeviceThatIsBackIsOpenedAtTheNextActivationWhereverItStands) {
    port.names = {"Velmora Synthesizer", "a"};
    port.script = {true, true};
    EXPECT_FALSE(chooser.choose(2));
    port.names = {"Velmora Synthesizer"};
    EXPECT_EQ(chooser.list().item, 0);
    port.calls.clear();
    port.names = {"Velmora Synthesizer", "0", "a"};
    EXPECT_EQ(chooser.list().item, 0) << "the mapper still sounds";
    EXPECT_EQ(port.calls, "");
    port.script = {true};
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::AsChosen);
    EXPECT_EQ(port.calls, "reset, close, open 2, send 201");
    EXPECT_EQ(key, 2);
    EXPECT_EQ(chooser.list().item, 3);
}

TEST_F(DeviceChooserTest, AnotherChoiceForgetsTheDeviceThatHasGone) {
    port.names = {"Velmora Synthesizer", "a"};
    port.script = {true, true, true};
    EXPECT_FALSE(chooser.choose(2));
    port.names = {"Velmora Synthesizer"};
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_FALSE(chooser.choose(1));
    port.calls.clear();
    port.names = {"Velmora Synthesizer", "a"};
    EXPECT_EQ(chooser.reopenIfChanged(), DeviceChooser::Reopened::No);
    EXPECT_EQ(port.calls, "");
    EXPECT_EQ(key, 0);
}

TEST_F(DeviceChooserTest, ADeviceOpenedInThePlaceOfTheChosenOneDoesNotBecomeTheChoice) {
    port.names = {"Velmora Synthesizer", "a", "b"};
    key = 1;
    port.script = {false, true};
    chooser.openAtActivation();
    EXPECT_EQ(chooser.list().item, 2);
    EXPECT_EQ(key, 1);
}

TEST_F(DeviceChooserTest, TheMapperIsShownWhileItStandsInForTheChosenDevice) {
    port.names = {"Velmora Synthesizer", "busy"};
    key = 1;
    port.script = {false, false, true};
    chooser.openAtActivation();
    EXPECT_EQ(chooser.list().item, 0);
    EXPECT_EQ(key, 1);
    port.script = {true};
    EXPECT_FALSE(chooser.choose(2));
    EXPECT_EQ(chooser.list().item, 2);
}

TEST_F(DeviceChooserTest, TheStartUpCheckComplainsOnlyWithoutAnyDevice) {
    const auto message = chooser.startUpCheck();
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->title, "Velmora - Error");
    EXPECT_EQ(message->text, "Unable to detect any midi output devices.\n\nTerminating...");
    port.names = {"Velmora Synthesizer"};
    EXPECT_FALSE(chooser.startUpCheck().has_value());
}

TEST_F(DeviceChooserTest, CloseSilencesFirst) {
    chooser.close();
    EXPECT_EQ(port.calls, "reset, close");
}
