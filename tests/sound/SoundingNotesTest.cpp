// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/SoundingNotes.h"

#include "sound/ShortMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
using Words = std::vector<std::uint32_t>;

SoundingNotes after(const Words& words) {
    SoundingNotes notes;
    for (const auto word : words)
        notes.sent(word);
    return notes;
}

/// A receiver that is written from its own end: keys held and, under a pedal, notes that ring on. `counting`
/// ones want a note-off for every note-on, the others end a note with the first.
class Receiver {
public:
    explicit Receiver(bool counting) : counting_(counting) {}

    void take(std::uint32_t word) {
        const int c = channel(word);
        const int note = data1(word);
        const int value = data2(word);
        if (status(word) == 0x90 && value > 0)
            ++held_[c][note];
        else if (status(word) == 0x90 || status(word) == 0x80)
            release(c, note);
        else if (status(word) == 0xB0 && (note == 64 || note == 66))
            pedal(c, note == 64 ? 1U : 2U, value >= 64);
        else if (status(word) == 0xB0 && note == 120)
            held_[c] = ringing_[c] = {};
        else if (status(word) == 0xB0 && note == 121)
            pedal(c, 3U, false);
        else if (status(word) == 0xB0 && note >= 123)
            for (int n = 0; n < 128; ++n)
                while (held_[c][n] > 0)
                    release(c, n);
    }

    [[nodiscard]] bool silent() const {
        return held_ == decltype(held_){} && ringing_ == decltype(ringing_){};
    }

private:
    using Notes = std::array<std::array<int, 128>, 16>;

    void release(int c, int note) {
        if (held_[c][note] == 0)
            return;
        if (pedals_[c] != 0)
            ringing_[c][note] = 1;
        held_[c][note] = counting_ ? held_[c][note] - 1 : 0;
    }

    void pedal(int c, unsigned which, bool down) {
        pedals_[c] = down ? (pedals_[c] | which) : (pedals_[c] & ~which);
        if (pedals_[c] == 0)
            ringing_[c] = {};
    }

    bool counting_;
    Notes held_{};
    Notes ringing_{};
    std::array<unsigned, 16> pedals_{};
};

std::uint32_t randomWord(std::mt19937& random) {
    const auto upTo = [&](int top) { return std::uniform_int_distribution<int>(0, top)(random); };
    static constexpr std::array kControllers{64, 66, 64, 66, 7, 120, 121, 123, 126};
    const int c = upTo(15);
    const int note = 58 + upTo(5);
    switch (upTo(9)) {
    case 0:
        return controller(c, kControllers[upTo(kControllers.size() - 1)], upTo(127));
    case 1:
        return programChange(c, upTo(127));
    case 2:
        return noteOn(c, note, 0);
    case 3:
        return noteOn(c, 128 + upTo(100), 90);
    case 4:
    case 5:
        return noteOff(c, note);
    default:
        return noteOn(c, note, 1 + upTo(126));
    }
}
} // namespace

TEST(SoundingNotesTest, ANewPortNeedsNothing) {
    EXPECT_TRUE(SoundingNotes().nothingSounds());
    EXPECT_THAT(SoundingNotes().silencingWords(), IsEmpty());
}

TEST(SoundingNotesTest, ANoteThatHasEndedNeedsNoNoteOff) {
    EXPECT_TRUE(after({noteOn(3, 60, 90), noteOff(3, 60)}).nothingSounds());
    EXPECT_TRUE(after({noteOn(3, 60, 90), noteOn(3, 60, 0)}).nothingSounds());
}

TEST(SoundingNotesTest, OneNoteStartedTwiceIsEndedTwice) {
    EXPECT_THAT(after({noteOn(3, 60, 90), noteOn(3, 60, 80)}).silencingWords(),
                ElementsAre(noteOff(3, 60), noteOff(3, 60)));
    EXPECT_THAT(after({noteOn(3, 60, 90), noteOn(3, 60, 80), noteOff(3, 60)}).silencingWords(),
                ElementsAre(noteOff(3, 60)));
}

TEST(SoundingNotesTest, ANoteOffTooManyDoesNotSwallowTheNextNote) {
    EXPECT_THAT(after({noteOff(0, 60), noteOff(0, 60), noteOn(0, 60, 1)}).silencingWords(),
                ElementsAre(noteOff(0, 60)));
}

TEST(SoundingNotesTest, APedalThatIsDownComesUpAfterTheNotesOfItsChannel) {
    EXPECT_THAT(after({controller(2, 64, 127), noteOn(2, 60, 90), controller(5, 66, 64)}).silencingWords(),
                ElementsAre(noteOff(2, 60), controller(2, 64, 0), controller(5, 66, 0)));
    EXPECT_TRUE(after({controller(2, 64, 127), controller(2, 64, 63)}).nothingSounds());
    EXPECT_TRUE(after({controller(2, 64, 127), controller(2, 121, 0)}).nothingSounds());
}

TEST(SoundingNotesTest, AllNotesOffEndsTheNotesOfItsChannelAndLeavesThePedal) {
    EXPECT_THAT(after({controller(1, 64, 127), noteOn(1, 60, 90), noteOn(2, 61, 90), controller(1, 123, 0)})
                    .silencingWords(),
                ElementsAre(controller(1, 64, 0), noteOff(2, 61)));
}

TEST(SoundingNotesTest, WordsThatAreNoMidiAndOtherMessagesCountForNothing) {
    EXPECT_TRUE(
        after({noteOn(0, 130, 90), 0x00643C90U | 0x80000000U, 0x00643C10U, 0xF8U, programChange(0, 60)})
            .nothingSounds());
    EXPECT_TRUE(after({controller(0, 7, 127), controller(0, 122, 127)}).nothingSounds());
}

TEST(SoundingNotesTest, AfterAnyWalkItsNoteOffsLeaveNothingSounding) {
    for (const bool counting : {false, true})
        for (unsigned seed = 0; seed < 200; ++seed) {
            std::mt19937 random(seed);
            SoundingNotes notes;
            Receiver receiver(counting);
            for (int step = 0; step < 400; ++step) {
                const auto word = randomWord(random);
                notes.sent(word);
                if (isValid(word))
                    receiver.take(word);
                EXPECT_TRUE(!notes.nothingSounds() || receiver.silent());
            }
            for (const auto word : notes.silencingWords()) {
                ASSERT_TRUE(isValid(word));
                notes.sent(word);
                receiver.take(word);
            }
            EXPECT_TRUE(receiver.silent()) << "walk " << seed << (counting ? ", counting" : "");
            EXPECT_TRUE(notes.nothingSounds());
            EXPECT_THAT(notes.silencingWords(), IsEmpty());
        }
}
