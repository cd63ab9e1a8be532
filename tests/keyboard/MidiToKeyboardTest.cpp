// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/MidiToKeyboard.h"

#include "base/VirtualLoop.h"
#include "score/Manners.h"
#include "sound/ShortMessage.h"
#include "tests/support/FakeInputs.h"
#include "tests/support/RecordingPort.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
struct MidiToKeyboardTest : testing::TestWithParam<bool> {
    VirtualLoop loop;
    RecordingPort port{loop};
    PerChannel<PlaybackChannelSetup> channels;
    Manners manners = Manners::of(!GetParam());
    Keyboard keyboard{port, loop, channels, manners};
    FakeInputs midi;

    std::vector<std::uint32_t> take() {
        std::vector<std::uint32_t> words = port.words();
        port.sent.clear();
        return words;
    }
};
} // namespace

INSTANTIATE_TEST_SUITE_P(Manners, MidiToKeyboardTest, testing::Bool(),
                         [](const auto& one) { return one.param ? "careful" : "classic"; });

TEST_P(MidiToKeyboardTest, AKeyboardThatIsPluggedInPlaysOnTheSoundChannelWithItsVelocity) {
    const MidiToKeyboard binding(midi.inputs, keyboard);
    const int keys = midi.plug("Keys:Out");
    keyboard.set(KeyboardSlider::Channel, 3);
    take();
    midi.play(keys, noteOn(5, 60, 33));
    midi.play(keys, pack(0xE0, 5, 1, 70));
    midi.play(keys, noteOn(5, 60, 0));
    EXPECT_THAT(take(), ElementsAre(noteOn(3, 60, 33), pack(0xE0, 3, 1, 70), noteOff(3, 60)));
}

TEST_P(MidiToKeyboardTest, OneThatIsPulledOutEndsItsNotesAndNoOthers) {
    const MidiToKeyboard binding(midi.inputs, keyboard);
    const int keys = midi.plug("Keys:Out");
    const int pads = midi.plug("Pads:Out");
    midi.play(keys, noteOn(0, 60, 33));
    midi.play(pads, noteOn(0, 62, 33));
    take();
    midi.unplug(keys);
    EXPECT_THAT(take(), ElementsAre(noteOff(0, 60)));
}

TEST_P(MidiToKeyboardTest, NothingIsPlayedOnceTheBindingIsGone) {
    {
        const MidiToKeyboard binding(midi.inputs, keyboard);
        EXPECT_TRUE(midi.inputs.isSounded);
    }
    EXPECT_FALSE(midi.inputs.isSounded);
    const int keys = midi.plug("Keys:Out");
    midi.play(keys, noteOn(0, 60, 33));
    EXPECT_THAT(take(), IsEmpty());
}
