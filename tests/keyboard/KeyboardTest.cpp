// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Keyboard.h"

#include "tests/keyboard/KeyboardFixture.h"
#include "tests/sound/RealtimeWatch.h"

#include <gmock/gmock.h>

#include <random>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class KeyboardTest : public KeyboardFixture {};

// Loading and closing

TEST_F(KeyboardTest, LoadingSendsTheDrumBankTheVolumeAndTheProgram) {
    keyboard.load(127, 24);
    EXPECT_THAT(sent(), ElementsAre(0xC9U, 0x7F07B0U, 0x0018C0U));
    EXPECT_EQ(channels[0].name, "Drawbar Organ");
    EXPECT_EQ(channels[0].instrument, 0);
    EXPECT_EQ(channels[1].name, "Acoustic Grand Piano");
    EXPECT_EQ(channels[1].instrument, 16);
    EXPECT_EQ(channels[15].instrument, 102);
}

TEST_F(KeyboardTest, CarefullyTheFirstChannelIsCalledWhatItPlays) {
    beCareful();
    keyboard.load(127, 24);
    EXPECT_EQ(channels[0].name, "Nylon Guitar");
    EXPECT_EQ(channels[0].instrument, 24);
}

TEST_F(KeyboardTest, ClosingEndsEveryNoteAndResets) {
    keyboard.chkRunning_Click(true);
    down(letter("z"));
    keyboard.CmdKey_MouseDown(9);
    passTo(0.6);
    sent();
    keyboard.unload();
    EXPECT_THAT(sent(), ElementsAre(off(36), off(45), off(54, 14), kReset));
    EXPECT_FALSE(keyboard.nextDue());
}

TEST_F(KeyboardTest, ClosingEndsWhatSoundsAndNothingElse) {
    down(letter("z"));
    keyboard.Option5_Click(1);
    sent();
    keyboard.unload();
    EXPECT_THAT(sent(), ElementsAre(off(36), kReset));
}

// The computer's keys

TEST_F(KeyboardTest, ALetterPlaysByItsCodeWhateverItTypes) {
    ComputerKey key = letter("q");
    key.text = "Q";
    down(key);
    up(key);
    key.text = "";
    down(key);
    up(key);
    EXPECT_THAT(sent(), ElementsAre(on(57), off(57), on(57), off(57)));
}

TEST_F(KeyboardTest, ASignPlaysByWhatItTypes) {
    down(sign(":"));
    up(sign(":"));
    down(sign(";"));
    up(sign(";"));
    EXPECT_THAT(sent(), ElementsAre(on(55), off(55)));
}

TEST_F(KeyboardTest, TheOtherCaseIsComparedLast) {
    KeyScheme scheme = KeyScheme::builtIn();
    scheme.labels[3] = "Ö";
    keyboard.setScheme(scheme);
    down(sign("ö"));
    EXPECT_THAT(sent(), IsEmpty());
    up(sign("ö"));
    ComputerKey key = sign("ö");
    key.otherText = "Ö";
    down(key);
    EXPECT_THAT(sent(), ElementsAre(on(39)));
    up(key);
    scheme.labels[5] = "ö";
    keyboard.setScheme(scheme);
    sent();
    down(key);
    EXPECT_THAT(sent(), ElementsAre(on(41)));
}

TEST_F(KeyboardTest, AKeyWhoseCodeAndTextAreTwoLabelsStrikesBoth) {
    KeyScheme scheme = KeyScheme::builtIn();
    scheme.labels[2] = "q";
    keyboard.setScheme(scheme);
    down(letter("q"));
    EXPECT_THAT(sent(), ElementsAre(on(57), on(38)));
    up(letter("q"));
    EXPECT_THAT(sent(), ElementsAre(off(57), off(38)));
}

TEST_F(KeyboardTest, AKeyThatRepeatsStrikesNothing) {
    for (int i = 0; i < 5; ++i)
        down(letter("z"));
    down(letter("x"));
    down(letter("z"));
    EXPECT_THAT(sent(), ElementsAre(on(36), on(38)));
}

TEST_F(KeyboardTest, AReleaseGoesByThePositionNotByTheText) {
    down(sign("\"", 48));
    const ComputerKey unshifted = sign("'", 48);
    up(unshifted);
    EXPECT_THAT(sent(), ElementsAre(on(56), off(56)));
}

TEST_F(KeyboardTest, TheReleaseOfAKeyThatStruckNothingSendsNothing) {
    down(letter("z"));
    sent();
    down(letter("a")); // no label
    up(letter("a"));
    down(space());
    up(space());
    up(letter("q"));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(KeyboardTest, ALabelThatChangesWhileItsKeyIsDownLeavesNoNoteOn) {
    down(letter("z"));
    KeyScheme other = KeyScheme::builtIn();
    other.labels[0] = "?";
    keyboard.setScheme(other);
    up(letter("z"));
    EXPECT_EQ(ringing(), 0);
}

TEST_F(KeyboardTest, WhileEditingTheComputersKeysAreSilentAndTheMouseSounds) {
    down(letter("z"));
    keyboard.setEditing(true);
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
    down(letter("x"));
    up(letter("x"));
    keyboard.CmdKey_MouseDown(2);
    keyboard.CmdKey_MouseUp();
    EXPECT_THAT(sent(), ElementsAre(on(38), off(38)));
}

TEST_F(KeyboardTest, AKeyThatIsStillDownAfterEditingRepeatsAndStrikesNothing) {
    down(letter("z"));
    keyboard.setEditing(true);
    down(letter("x"));
    keyboard.setEditing(false);
    sent();
    down(letter("z"));
    down(letter("x"));
    EXPECT_THAT(sent(), IsEmpty());
    up(letter("x"));
    down(letter("x"));
    EXPECT_THAT(sent(), ElementsAre(on(38)));
}

// MIDI inputs

TEST_F(KeyboardTest, AMidiKeyPlaysOnTheChannelWithItsOwnVelocity) {
    keyboard.set(KeyboardSlider::Channel, 2);
    sent();
    keyboard.midi(7, shortmessage::noteOn(5, 60, 33));
    keyboard.midi(7, shortmessage::noteOff(5, 60));
    EXPECT_THAT(sent(), ElementsAre(on(60, 2, 33), off(60, 2)));
    keyboard.midi(7, shortmessage::noteOn(5, 61, 33));
    keyboard.midi(7, shortmessage::noteOn(5, 61, 0));
    EXPECT_THAT(sent(), ElementsAre(on(61, 2, 33), off(61, 2)));
}

TEST_F(KeyboardTest, BendPedalAndModulationOfAMidiInputArePassedOnAndPutBackWhenItGoes) {
    keyboard.midi(1, shortmessage::pack(0xE3, 0, 10, 20));
    keyboard.midi(1, shortmessage::controller(3, 64, 127));
    keyboard.midi(1, shortmessage::controller(3, 1, 50));
    keyboard.midi(1, shortmessage::programChange(3, 9));
    EXPECT_THAT(sent(), ElementsAre(shortmessage::pack(0xE0, 0, 10, 20), shortmessage::controller(0, 64, 127),
                                    shortmessage::controller(0, 1, 50)));
    keyboard.midi(1, shortmessage::noteOn(3, 70, 80));
    sent();
    keyboard.endMidi(1);
    EXPECT_THAT(sent(), ElementsAre(off(70), shortmessage::controller(0, 64, 0),
                                    shortmessage::pack(0xE0, 0, 0, 64), shortmessage::controller(0, 1, 0)));
    keyboard.endMidi(1);
    EXPECT_THAT(sent(), IsEmpty());
}

// The controls

TEST_F(KeyboardTest, EachSliderMeansWhatItsPlaceSays) {
    struct Row {
        KeyboardSlider slider;
        double share;
        double value;
    };
    for (const Row& row : {
             Row{KeyboardSlider::Channel, 0.99, 7},
             Row{KeyboardSlider::Channel, 1, 8},
             Row{KeyboardSlider::Octave, 1, 10},
             Row{KeyboardSlider::Chord, 0.59, 5},
             Row{KeyboardSlider::Strum, 0, 1},
             Row{KeyboardSlider::Strum, 1, 11},
             Row{KeyboardSlider::Volume, 0.5, 63},
             Row{KeyboardSlider::Modulation, 1, 127},
             Row{KeyboardSlider::Reverb, 0.1, 12},
             Row{KeyboardSlider::Chorus, 0, 0},
             Row{KeyboardSlider::Pan, 0.5, 0},
             Row{KeyboardSlider::Pan, 0, -64},
             Row{KeyboardSlider::Speed, 0, 13},
             Row{KeyboardSlider::Speed, 1, 1},
             Row{KeyboardSlider::Pauses, 0.25, 10},
             Row{KeyboardSlider::Compression, 0.5, 4},
             Row{KeyboardSlider::Tempo, 0.4, 200},
             Row{KeyboardSlider::Tempo, 0.401, 200},
         }) {
        keyboard.drag(row.slider, row.share);
        EXPECT_DOUBLE_EQ(keyboard.value(row.slider), row.value) << rowOf(row.slider).name << ' ' << row.share;
    }
}

TEST_F(KeyboardTest, ARightClickSetsAndSendsTheRestingValue) {
    using enum KeyboardSlider;
    keyboard.set(Channel, 4);
    sent();
    for (const auto slider : {Volume, Modulation, Pan, Reverb, Chorus})
        keyboard.rightClick(slider);
    EXPECT_THAT(sent(), ElementsAre(shortmessage::controller(4, 7, 127), shortmessage::controller(4, 1, 0),
                                    shortmessage::controller(4, 10, 64), shortmessage::controller(4, 91, 0),
                                    shortmessage::controller(4, 93, 0)));
    for (const auto& row : keyboardSliders()) {
        keyboard.rightClick(row.slider);
        EXPECT_DOUBLE_EQ(keyboard.value(row.slider), row.rest) << row.name;
    }
    EXPECT_TRUE(keyboard.controls().strumAtLeftEnd);
}

TEST_F(KeyboardTest, PanIsStoredAndSentAsTheChannelsRecordTells) {
    keyboard.set(KeyboardSlider::Pan, -64);
    EXPECT_EQ(channels[0].pan, 0);
    keyboard.set(KeyboardSlider::Pan, 64);
    EXPECT_EQ(channels[0].pan, 127);
    EXPECT_THAT(sent(),
                ElementsAre(shortmessage::controller(0, 10, 0), shortmessage::controller(0, 10, 127)));
}

TEST_F(KeyboardTest, ChoosingAChannelSendsNothingOrCarefullyItsInstrument) {
    keyboard.load(127, 24);
    sent();
    keyboard.set(KeyboardSlider::Channel, 4);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(keyboard.program(), 24);
    beCareful();
    keyboard.set(KeyboardSlider::Channel, 5);
    EXPECT_THAT(sent(), ElementsAre(shortmessage::programChange(5, 50)));
    EXPECT_EQ(keyboard.program(), 50);
}

TEST_F(KeyboardTest, HoldIsThePedalAndMuteIsOnlyNoted) {
    keyboard.ChkSustain_Click(true);
    keyboard.ChkMute_Click(true);
    keyboard.ChkSustain_Click(false);
    EXPECT_THAT(sent(),
                ElementsAre(shortmessage::controller(0, 64, 127), shortmessage::controller(0, 64, 0)));
    EXPECT_EQ(channels[0].mute, 1);
    EXPECT_EQ(channels[0].hold, 0);
}

// What is seen

TEST_F(KeyboardTest, AKeyIsShownWhileItsNoteSoundsWhoeverPlaysIt) {
    down(letter("z"));
    EXPECT_THAT(shown, ElementsAre(Pair(0, true)));
    up(letter("z"));
    EXPECT_THAT(shown, ElementsAre(Pair(0, true), Pair(0, false)));
    shown.clear();
    keyboard.midi(1, shortmessage::noteOn(0, 48, 99));
    keyboard.CmdKey_MouseDown(43);
    EXPECT_THAT(shown, ElementsAre(Pair(12, true), Pair(43, true)));
    EXPECT_TRUE(keyboard.sounds(12));
    keyboard.midi(1, shortmessage::noteOn(0, 20, 99)); // below the keys
    EXPECT_EQ(shown.size(), 2U);
    keyboard.panic();
    EXPECT_EQ(shown.size(), 4U);
    EXPECT_FALSE(keyboard.sounds(12));
}

TEST_F(KeyboardTest, AChordShowsItsKeysAndWhatLiesBeyondTheLastOneIsSent) {
    keyboard.setPolynotes(Polynotes::Always);
    keyboard.set(KeyboardSlider::Chord, 1);
    down(sign("]"));
    EXPECT_THAT(shown, ElementsAre(Pair(43, true)));
    EXPECT_THAT(sent(), ElementsAre(on(79), on(83), on(86), on(91)));
}

TEST_F(KeyboardTest, AnotherOctaveShowsOtherKeys) {
    down(letter("z"));
    shown.clear();
    keyboard.Option5_Click(-1);
    EXPECT_THAT(shown, ElementsAre(Pair(0, false), Pair(12, true)));
    keyboard.set(KeyboardSlider::Channel, 1);
    EXPECT_FALSE(keyboard.sounds(12));
}

// The metronome

TEST_F(KeyboardTest, BeatsSoundOnTheirOwnChannelAndEachEndsTheOneBefore) {
    keyboard.chkRunning_Click(true);
    passTo(2.5);
    EXPECT_THAT(beats, ElementsAre(1, 2, 3, 4, 1));
    EXPECT_THAT(sent(), ElementsAre(on(54, 14), off(54, 14), on(64, 14), off(64, 14), on(70, 14), off(70, 14),
                                    on(72, 14), off(72, 14), on(54, 14)));
    keyboard.chkRunning_Click(false);
    EXPECT_THAT(sent(), ElementsAre(off(54, 14)));
    EXPECT_FALSE(keyboard.nextDue());
}

TEST_F(KeyboardTest, WithoutToneBeatsAreOnlySeen) {
    keyboard.setTone(false);
    keyboard.chkRunning_Click(true);
    passTo(1.1);
    EXPECT_THAT(beats, ElementsAre(1, 2));
    EXPECT_THAT(sent(), IsEmpty());
}

// Takes

TEST_F(KeyboardTest, TheFirstStrikeBeginsTheSamples) {
    keyboard.CmdRec_Click();
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::WaitsForKey);
    passTo(1);
    down(space());
    down(letter("a"));
    up(letter("a"));
    passTo(2);
    EXPECT_EQ(keyboard.take.size(), 0);
    down(letter("z"));
    passTo(2.035);
    up(letter("z"));
    passTo(2.055);
    down(letter("x"));
    passTo(2.075);
    down(letter("z"));
    passTo(2.095);
    keyboard.CmdRec_Click();
    passTo(3);
    EXPECT_THAT(keyboard.take.List3, ElementsAre(91, 91, 91, 91, 91, 91, 89, 89, 91, 91));
    EXPECT_THAT(keyboard.take.List1, ElementsAre(1, 2, 3, 4, 0, 0, 0, 0, 1, 2));
}

TEST_F(KeyboardTest, TheMouseLeavesNoTraceInATake) {
    keyboard.CmdRec_Click();
    keyboard.CmdKey_MouseDown(4);
    passTo(1);
    EXPECT_EQ(keyboard.take.size(), 0);
    down(letter("z"));
    keyboard.CmdKey_MouseDown(4);
    passTo(1.05);
    keyboard.CmdRec_Click();
    EXPECT_EQ(keyboard.take.List3, std::vector<std::int32_t>(6, 91));
}

TEST_F(KeyboardTest, AMidiKeyIsRecordedAtThePitchThatItSounds) {
    keyboard.Option5_Click(1);
    keyboard.CmdRec_Click();
    keyboard.midi(1, shortmessage::noteOn(0, 60, 90));
    passTo(0.02);
    keyboard.CmdRec_Click();
    EXPECT_EQ(keyboard.take.List3, std::vector<std::int32_t>(3, rowOfKey(12)));
    keyboard.midi(1, shortmessage::noteOff(0, 60));
    sent();
    keyboard.Check7_Click();
    passTo(0.03);
    EXPECT_EQ(sent().front(), on(60));
}

TEST_F(KeyboardTest, AnotherTickCountsFromTheSampleItWasChosenAt) {
    keyboard.CmdRec_Click();
    down(letter("z"));
    passTo(0.02);
    keyboard.set(KeyboardSlider::Speed, 5);
    passTo(0.0349); // what is waited for comes first
    EXPECT_EQ(keyboard.take.size(), 4);
    passTo(0.0351);
    EXPECT_EQ(keyboard.take.size(), 5);
}

TEST_F(KeyboardTest, OverwritingIsAskedForAndNoKeepsTheTake) {
    keyboard.CmdRec_Click();
    down(letter("z"));
    passTo(0.05);
    keyboard.CmdRec_Click();
    const Take old = keyboard.take;
    answer = false;
    keyboard.CmdRec_Click();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::Off);
    EXPECT_EQ(keyboard.take, old);
    answer = true;
    keyboard.CmdRec_Click();
    EXPECT_EQ(keyboard.take.size(), 0);
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::WaitsForKey);
}

TEST_F(KeyboardTest, StopAndPauseEndATakeAndPlayDoesNothing) {
    keyboard.CmdRec_Click();
    down(letter("z"));
    keyboard.Check7_Click();
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::On);
    keyboard.Check4_Click();
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::Off);
    keyboard.CmdRec_Click();
    keyboard.Check6_Click();
    EXPECT_EQ(keyboard.recording(), TakeRecorder::State::Off);
}

TEST_F(KeyboardTest, StoppingEndsTheNoteAndResets) {
    keyboard.take = {{1, 2, 3, 4}, {91, 91, 91, 91}};
    keyboard.setLoop(true);
    keyboard.Check7_Click();
    passTo(0.02);
    sent();
    keyboard.Check4_Click();
    EXPECT_THAT(sent(), ElementsAre(off(36), kReset));
    EXPECT_FALSE(keyboard.isPlaying());
    EXPECT_FALSE(keyboard.loops());
    passTo(1);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(KeyboardTest, PlayingShowsTheKeysItSounds) {
    keyboard.take = {{1, 0, 0}, {91, 86, 86}};
    keyboard.Check7_Click();
    passTo(0.005);
    EXPECT_THAT(shown, ElementsAre(Pair(5, true)));
}

// What it costs

/// Takes every word and keeps none.
class DeafPort : public MidiPort {
public:
    int deviceCount() override { return 0; }
    std::string deviceName(int /*device*/) override { return {}; }
    int open(int /*device*/) override { return kOk; }
    int close() override { return kOk; }
    void reset() override {}
    void send(std::uint32_t /*word*/) override { ++words; }

    int words = 0;
};

TEST_F(KeyboardTest, StrikesAndReleasesTakeNoMemory) {
    DeafPort deaf;
    for (const bool careful : {false, true}) {
        manners = Manners::of(!careful);
        Keyboard quiet(deaf, loop, channels, manners);
        quiet.setPolynotes(Polynotes::Always);
        quiet.set(KeyboardSlider::Chord, 8);
        const RealtimeWatch watch;
        for (const char* text : {"z", "x", "q", "w"})
            quiet.Form_KeyDown(letter(text));
        quiet.midi(1, shortmessage::noteOn(0, 60, 90));
        quiet.CmdKey_MouseDown(7);
        quiet.CmdKey_MouseUp();
        for (const char* text : {"z", "x", "q", "w"})
            quiet.Form_KeyUp(letter(text));
        EXPECT_EQ(watch.memoryCalls(), 0U);
    }
    EXPECT_GT(deaf.words, 40);
}

// Whatever happens

/// 10^6 events of all kinds, a third of the releases lost; whenever the focus goes, nothing sounds any more.
TEST_F(KeyboardTest, NoNoteStaysOnAfterAnything) {
    beCareful();
    std::mt19937 random(12); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    static constexpr const char* kKeys[] = {"z", "s", "x", "q", "w", "1", "2", "a"};
    std::array<std::array<bool, 128>, 16> sounds{};
    const auto follow = [&] {
        for (const auto& one : port.sent) {
            const auto channel = static_cast<std::size_t>(shortmessage::channel(one.word));
            const auto note = static_cast<std::size_t>(shortmessage::data1(one.word) & 127);
            if (one.word == kReset)
                sounds = {};
            else if (shortmessage::status(one.word) == 0x90)
                sounds[channel][note] = true;
            else if (shortmessage::status(one.word) == 0x80)
                sounds[channel][note] = false;
        }
        port.sent.clear();
        port.sent.reserve(64);
    };
    int checks = 0;
    for (int i = 0; i < 1'000'000; ++i) {
        ComputerKey key = letter(kKeys[any(8)]);
        switch (any(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
            down(key);
            break;
        case 4:
        case 5:
            if (any(3) > 0)
                up(key);
            break;
        case 6:
            any(2) == 0 ? down(space()) : up(space());
            break;
        case 7:
            any(2) == 0 ? keyboard.CmdKey_MouseDown(any(44), 1 + any(127)) : keyboard.CmdKey_MouseUp();
            break;
        case 8:
            keyboard.midi(any(3), shortmessage::noteOn(any(16), any(128), any(2) * 90));
            break;
        case 9:
            keyboard.setPolynotes(static_cast<Polynotes>(any(3)));
            keyboard.set(KeyboardSlider::Chord, any(11));
            break;
        case 10:
            keyboard.setStrum(any(2) == 0);
            keyboard.set(KeyboardSlider::Strum, 1 + any(11));
            break;
        case 11:
            any(2) == 0 ? keyboard.Option5_Click(any(6) - 2) : keyboard.set(KeyboardSlider::Channel, any(9));
            break;
        case 12:
            any(2) == 0 ? keyboard.endMidi(any(3)) : keyboard.setEditing(any(2) == 0);
            break;
        case 13:
            keyboard.setLabel(any(44), kKeys[any(8)]);
            break;
        case 14:
            passTo(loop.now() + 0.001 * any(40));
            break;
        default:
            if (any(4) > 0)
                break;
            any(2) == 0 ? keyboard.panic() : keyboard.releaseAll();
            if (any(2) == 0)
                keyboard.releaseAll();
            follow();
            if (port.sent.empty() && any(1) == 0) {
                keyboard.releaseAll();
                follow();
                ++checks;
                for (const auto& channel : sounds)
                    ASSERT_EQ(std::ranges::count(channel, true), 0) << "after " << i << " events";
            }
            break;
        }
    }
    EXPECT_GT(checks, 10'000);
}

} // namespace
} // namespace velmora
