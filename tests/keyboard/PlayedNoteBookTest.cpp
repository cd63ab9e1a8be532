// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/PlayedNoteBook.h"

#include <gmock/gmock.h>

#include <random>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = PlayedEvent::Kind;

namespace {
PlayedEvent struck(double moment, int note, int channel = 0) {
    return {Kind::Struck, static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note), 90, 7, moment};
}
PlayedEvent ended(double moment, int note, int channel = 0) {
    return {Kind::Ended, static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note), 0, 0, moment};
}
PlayedEvent of(Kind kind, double moment, int channel = 0) {
    return {kind, static_cast<std::uint8_t>(channel), 0, 0, 0, moment};
}
PlayedNote note(double onset, double end, int pitch, int channel = 0) {
    return {onset, end, static_cast<std::uint8_t>(pitch), 90, static_cast<std::uint8_t>(channel), 7};
}
PlayedNoteBook bookOf(std::initializer_list<PlayedEvent> events) {
    PlayedNoteBook book;
    for (const PlayedEvent& event : events)
        book.take(event);
    return book;
}
} // namespace

TEST(PlayedNoteBookTest, ANoteLastsFromItsStrikeToItsRelease) {
    const auto book = bookOf({struck(1, 60), struck(2, 64), ended(3, 60), ended(4, 64)});
    EXPECT_THAT(book.notes(9), ElementsAre(note(1, 3, 60), note(2, 4, 64)));
}

TEST(PlayedNoteBookTest, WhatSoundsEndsNow) {
    EXPECT_THAT(bookOf({struck(1, 60)}).notes(2.5), ElementsAre(note(1, 2.5, 60)));
    EXPECT_THAT(bookOf({struck(1, 60)}).notes(0.5), ElementsAre(note(1, 1, 60))) << "no sooner than it began";
}

TEST(PlayedNoteBookTest, ThePedalHoldsWhatItsKeyHasLetGo) {
    const auto book = bookOf({of(Kind::PedalDown, 0), struck(1, 60), ended(2, 60), struck(3, 62),
                              of(Kind::PedalUp, 4), ended(5, 62)});
    EXPECT_THAT(book.notes(9), ElementsAre(note(1, 4, 60), note(3, 5, 62)));
}

TEST(PlayedNoteBookTest, ThePedalIsOfItsChannel) {
    const auto book = bookOf({of(Kind::PedalDown, 0, 1), struck(1, 60), struck(1, 60, 1), ended(2, 60),
                              ended(2, 60, 1), of(Kind::PedalUp, 3, 1)});
    EXPECT_THAT(book.notes(9), ElementsAre(note(1, 2, 60), note(1, 3, 60, 1)));
}

TEST(PlayedNoteBookTest, ANoteThatIsStruckAgainEndsWithThat) {
    const auto book = bookOf({struck(1, 60), struck(2, 60), ended(3, 60)});
    EXPECT_THAT(book.notes(9), ElementsAre(note(1, 2, 60), note(2, 3, 60)));
}

TEST(PlayedNoteBookTest, SilenceEndsEverything) {
    const auto book = bookOf({of(Kind::PedalDown, 0), struck(1, 60), struck(1, 70, 5), ended(2, 60),
                              of(Kind::Silenced, 3), ended(4, 70, 5)});
    EXPECT_THAT(book.notes(9), ElementsAre(note(1, 3, 60), note(1, 3, 70, 5)));
}

TEST(PlayedNoteBookTest, WhatEndedLongAgoIsForgottenAndWhatSoundsIsNot) {
    auto book = bookOf({struck(1, 60), ended(2, 60), struck(3, 62), struck(4, 64), ended(5, 64)});
    book.forgetBefore(4.5);
    book.take(ended(6, 62));
    EXPECT_THAT(book.notes(9), ElementsAre(note(3, 6, 62), note(4, 5, 64)));
    book.forgetBefore(100);
    EXPECT_THAT(book.notes(100), IsEmpty());
    book.take(struck(101, 62));
    EXPECT_THAT(book.notes(102), ElementsAre(note(101, 102, 62)));
}

TEST(PlayedNoteBookTest, WhatMakesNoSenseIsPassedOver) {
    EXPECT_THAT(bookOf({ended(1, 60), of(Kind::PedalUp, 2), struck(1, 60, 16), struck(1, 128)}).notes(3),
                IsEmpty());
}

TEST(PlayedNoteBookTest, NoOrderOfEventsMakesANoteThatEndsBeforeItBegins) {
    std::mt19937 random(11);
    PlayedNoteBook book;
    double moment = 0;
    for (int i = 0; i < 20000; ++i) {
        book.take({static_cast<Kind>(random() % 5), static_cast<std::uint8_t>(random() % 17),
                   static_cast<std::uint8_t>(random() % 130), 1, 1,
                   moment += 0.01 * static_cast<double>(random() % 4)});
        if (random() % 1000 == 0)
            book.forgetBefore(moment - 5);
    }
    double before = 0;
    for (const PlayedNote& note : book.notes(moment)) {
        EXPECT_LE(note.onset, note.end);
        EXPECT_LE(before, note.onset);
        EXPECT_LE(note.end, moment);
        before = note.onset;
    }
}
