// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Phrase.h"

#include "base/VirtualLoop.h"
#include "keyboard/PlayedLog.h"
#include "sound/SetupState.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <filesystem>
#include <initializer_list>
#include <vector>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr PhraseMeter kFourFour{4, 4};

struct PhraseTest : testing::Test {
    /// Notes of a length each, with a tenth of it between two; the next begins where they end.
    void play(std::initializer_list<int> notes, double length = 0.5) {
        for (const int note : notes) {
            log.struck(0, note, 90, 0, loop.now());
            loop.block(length * 0.9);
            log.ended(0, note, loop.now());
            loop.block(length * 0.1);
        }
    }
    std::vector<int> phrase() {
        std::vector<int> notes;
        for (const PlayedNote& note : lastPhrase(log, kFourFour).notes)
            notes.push_back(note.note);
        return notes;
    }
    std::string text() { return phraseText(lastPhrase(log, kFourFour)); }

    QTemporaryDir home;
    std::filesystem::path file = std::filesystem::path(home.path().toStdString()) / "played";
    double wall = 1'700'000'000;
    VirtualLoop loop;
    PlayedLog log{file, loop, [this] { return wall + loop.now(); }};
};
} // namespace

TEST_F(PhraseTest, WithNothingPlayedThereIsNone) {
    EXPECT_THAT(phrase(), IsEmpty());
    EXPECT_EQ(text(), "Nothing has been played on the keyboard in the last ten minutes.");
}

TEST_F(PhraseTest, TwoMeasuresOfSilenceEndAPhrase) {
    play({60, 62, 64, 65, 67, 65, 64, 62});
    loop.block(3.5); // less than two measures at 120 beats a minute
    play({72, 74, 76, 77});
    EXPECT_THAT(phrase(), ElementsAre(60, 62, 64, 65, 67, 65, 64, 62, 72, 74, 76, 77));
    loop.block(4);
    play({48, 50, 52, 53});
    EXPECT_THAT(phrase(), ElementsAre(48, 50, 52, 53));
    loop.block(60); // it stays the last one
    EXPECT_THAT(phrase(), ElementsAre(48, 50, 52, 53));
}

TEST_F(PhraseTest, MeasuresAreOfTheTempoThatIsFound) {
    play({60, 62, 64, 65, 67, 65, 64, 62}, 1);
    loop.block(5.5);
    play({72, 74, 76, 77}, 1);
    EXPECT_EQ(phrase().size(), 12U) << "at 60 beats a minute, two measures are 8 seconds";
    loop.block(9);
    play({48, 50, 52, 53}, 1);
    EXPECT_EQ(phrase().size(), 4U);
}

TEST_F(PhraseTest, MeasuresAreTheMetronomesWhereItRan) {
    log.metronome(loop.now(), 2, 4);
    play({60, 62, 64}, 2);
    loop.block(12); // two of its measures are 16 seconds
    play({72, 74, 76}, 2);
    const Phrase phrase = lastPhrase(log, kFourFour);
    EXPECT_EQ(phrase.notes.size(), 6U);
    EXPECT_TRUE(phrase.metronome);
    EXPECT_EQ(phrase.pulse.period, 2);
    EXPECT_EQ(phraseText(phrase), "The last phrase: 6 notes, 24 seconds, 30 beats per minute");
}

TEST_F(PhraseTest, AMetronomeThatBeganLaterTellsNothing) {
    play({60, 62, 64, 65});
    log.metronome(loop.now(), 0.7, 4);
    play({67, 65, 64, 62});
    const Phrase phrase = lastPhrase(log, kFourFour);
    EXPECT_EQ(phrase.notes.size(), 8U);
    EXPECT_FALSE(phrase.metronome);
    EXPECT_NEAR(phrase.pulse.period, 0.5, 0.01);
}

TEST_F(PhraseTest, WhatWasKeptIsNoPartOfTheNextPhrase) {
    play({60, 62, 64, 65});
    log.markKept(lastPhrase(log, kFourFour).notes.back().onset);
    EXPECT_EQ(text().substr(0, 13), "Kept before: ");
    EXPECT_THAT(phrase(), ElementsAre(60, 62, 64, 65)) << "it can be kept once more";
    play({72, 74});
    EXPECT_THAT(phrase(), ElementsAre(72, 74));
    EXPECT_EQ(text().substr(0, 26), "The last phrase: 2 notes, ");
}

TEST_F(PhraseTest, WhatWasPlayedBeforeACrashIsOffered) {
    play({60, 62, 64, 65});
    log.finish();
    VirtualLoop next;
    wall += loop.now() + 60;
    PlayedLog later(file, next, [this, &next] { return wall + next.now(); });
    const Phrase phrase = lastPhrase(later, kFourFour);
    EXPECT_EQ(phrase.notes.size(), 4U);
    EXPECT_EQ(phraseText(phrase),
              "Played before the program was started: 4 notes, 2 seconds, about 120 beats per minute");
    later.struck(0, 70, 90, 0, next.now());
    EXPECT_EQ(phraseText(lastPhrase(later, kFourFour)), "The last phrase: 1 note, 1 second");
}

TEST_F(PhraseTest, ItsLengthAndTempoAreInWords) {
    play({60, 62, 64, 65, 67, 65, 64, 62, 60, 62}, 0.625);
    EXPECT_EQ(text(), "The last phrase: 10 notes, 6 seconds, about 96 beats per minute");
}

TEST(PhraseMeterTest, ItIsThatOfTheComposition) {
    SetupState setup;
    setup.TxtMeter = 6;
    setup.NoteX = 8;
    EXPECT_EQ(meterOf(setup), (PhraseMeter{6, 8}));
    setup.TxtMeter = 0;
    EXPECT_EQ(meterOf(setup).beats, 1);
}
