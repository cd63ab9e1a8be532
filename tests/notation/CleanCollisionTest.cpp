// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/notation/CleanPageReader.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <set>

namespace velmora::notation {
namespace {

constexpr double kTouch = 0.3; ///< pixels that boxes may overlap by

bool overlap(const Box& a, const Box& b) {
    return a.left + kTouch < b.right && b.left + kTouch < a.right && a.top + kTouch < b.bottom &&
           b.top + kTouch < a.bottom;
}

bool either(const Mark& a, const Mark& b, Role one, Role other) {
    return (a.role == one && b.role == other) || (a.role == other && b.role == one);
}

/// Whether two marks may lie over each other.
bool mayTouch(const Mark& a, const Mark& b) {
    static const std::set<Role> kOnNothing{Role::StaffLine, Role::Tie, Role::Slur, Role::Beam, Role::Other};
    if (kOnNothing.contains(a.role) || kOnNothing.contains(b.role))
        return true;
    if (a.note == b.note && a.note > 0)
        return true;
    if (a.role == Role::BarLine && b.role == Role::BarLine)
        return true;
    // An octave's dashes cross bar lines, and a tempo's note its own stem.
    if (a.role == Role::Text && b.role == Role::Text)
        return true;
    if (either(a, b, Role::Text, Role::BarLine) || either(a, b, Role::Lyric, Role::BarLine))
        return true;
    if (either(a, b, Role::Tuplet, Role::BarLine) || (a.role == Role::Signature && b.role == Role::Signature))
        return true;
    // The lower voice's stem may pass beside the upper voice's second.
    return either(a, b, Role::Stem, Role::Stem);
}

struct Random {
    std::mt19937 engine;
    int operator()(int low, int high) { return std::uniform_int_distribution<>(low, high)(engine); }
};

struct Walk {
    int staves;
    int lowest, highest;
    bool words, letters, chords;
    bool voices = false; ///< two of each staff
};

void fill(CleanPageReader& page, Random& random, const Walk& walk) {
    const int bars = random(3, 24);
    const int measure = page.score.NotesPerMeasure;
    for (int channel = 0; channel < walk.staves; ++channel) {
        page.setup.staves.chkChannel.at(static_cast<std::size_t>(channel)) = true;
        const bool isLower = channel % 2 == 1;
        page.setup.staves.ChkNotetype.at(static_cast<std::size_t>(channel)) = isLower && !walk.voices;
        const int down = isLower ? walk.voices ? 5 : 20 : 0;
        for (int at = 0; at < bars * measure;) {
            const bool isLong = walk.voices && random(0, 9) == 0;
            const int length = std::min(isLong ? 2 * measure : random(1, 8), bars * measure - at);
            if (random(0, 4) > 0) {
                page.stroke(channel, random(walk.lowest, walk.highest) - down, at, length);
                if (walk.chords && random(0, 2) == 0)
                    page.score.Polyphonics.set(channel + 1, at, static_cast<std::int16_t>(random(1, 12)));
            }
            at += length;
        }
    }
    page.setup.end = bars * measure;
    page.setup.learnToRead = walk.letters;
    page.setup.twoVoices = walk.voices;
    page.setup.numbers = random(0, 1) == 0;
    page.setup.tempo = 90;
    if (walk.words)
        page.setup.verses = {
            "Eve-ning comes home _ o-ver the still grey bay lamp by lamp _ _ lit and I watch "
            "through-out un-der-stand-ing strength-ened breath-less-ly all night long _",
            "some words more"};
}

std::string describe(const Mark& mark, const Box& box) {
    return "role " + std::to_string(static_cast<int>(mark.role)) + " note " + std::to_string(mark.note) +
           " at " + std::to_string(box.left) + "," + std::to_string(box.top) + " to " +
           std::to_string(box.right) + "," + std::to_string(box.bottom);
}

/// Heads of two voices a third apart meet at their edges, lettered ones lie over each other; ledger lines
/// are for both.
bool meetAsVoices(const std::pair<Box, const Mark*>& a, const std::pair<Box, const Mark*>& b) {
    const auto isPartOfNote = [](Role role) {
        return role == Role::Head || role == Role::Stem || role == Role::Flag || role == Role::Ledger;
    };
    if (a.second->role == Role::Head && b.second->role == Role::Head)
        return std::min(a.first.bottom, b.first.bottom) - std::max(a.first.top, b.first.top) < 2.4;
    return (a.second->role == Role::Ledger && isPartOfNote(b.second->role)) ||
           (b.second->role == Role::Ledger && isPartOfNote(a.second->role));
}

/// The collisions of all pages, described.
std::vector<std::string> collisions(CleanPageReader& page) {
    std::vector<std::string> found;
    for (std::size_t number = 0; number < page.engraved.pages.size(); ++number) {
        std::vector<std::pair<Box, const Mark*>> all;
        for (const Mark& mark : page.marks(number))
            all.emplace_back(page.box(mark), &mark);
        std::ranges::sort(all, {}, [](const auto& entry) { return entry.first.left; });
        for (std::size_t i = 0; i < all.size(); ++i)
            for (std::size_t j = i + 1; j < all.size() && all[j].first.left < all[i].first.right; ++j)
                if (overlap(all[i].first, all[j].first) && !mayTouch(*all[i].second, *all[j].second) &&
                    !(page.setup.twoVoices && meetAsVoices(all[i], all[j])))
                    found.push_back(describe(*all[i].second, all[i].first) + " and " +
                                    describe(*all[j].second, all[j].first));
    }
    return found;
}

/// Arcs that go through heads or dots, those of their own notes too, or, where one voice is alone, through
/// accidentals.
std::vector<std::string> crossings(CleanPageReader& page) {
    std::vector<std::string> found;
    for (std::size_t number = 0; number < page.engraved.pages.size(); ++number) {
        std::vector<std::pair<Box, const Mark*>> solid;
        for (const Mark& mark : page.marks(number))
            if (mark.role == Role::Head || mark.role == Role::Dot ||
                (mark.role == Role::Accidental && !page.setup.twoVoices))
                solid.emplace_back(page.box(mark), &mark);
        for (const Mark& mark : page.marks(number)) {
            if (mark.role != Role::Tie && mark.role != Role::Slur)
                continue;
            const auto& curve = std::get<CurveMark>(mark.shape);
            const auto hits = [&](const Box& box) {
                for (int i = 0; i <= 24; ++i) {
                    const Point at = pointOf(curve, i / 24.0);
                    if (at.x > box.left + kTouch && at.x < box.right - kTouch && at.y > box.top + kTouch &&
                        at.y < box.bottom - kTouch)
                        return true;
                }
                return false;
            };
            for (const auto& [box, other] : solid)
                if (hits(box))
                    found.push_back(describe(mark, page.box(mark)) + " through " + describe(*other, box));
        }
    }
    return found;
}

void expectApart(const Walk& walk, unsigned seeds) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        Random random{std::mt19937(seed)};
        CleanPageReader page;
        fill(page, random, walk);
        page.key(kKeys.at(seed % kKeys.size()).word);
        page.engrave();
        auto found = collisions(page);
        if (!walk.voices || !walk.chords) // whose inner ties have nowhere else to go
            std::ranges::move(crossings(page), std::back_inserter(found));
        EXPECT_TRUE(found.empty()) << "seed " << seed << ": " << found.size() << ", first " << found.front();
    }
}

TEST(CleanCollision, SignsOfATuneStandApart) {
    expectApart({1, 60, 81, false, false, false}, 30);
}
TEST(CleanCollision, SignsOfTwoStavesStandApart) {
    expectApart({2, 55, 90, false, false, false}, 30);
}
TEST(CleanCollision, WordsStandApart) {
    expectApart({2, 57, 84, true, false, false}, 30);
}
TEST(CleanCollision, ChordsStandApart) {
    expectApart({2, 60, 84, false, false, true}, 30);
}
TEST(CleanCollision, TwoVoicesOfAStaffStandApart) {
    expectApart({2, 62, 82, false, false, false, true}, 60);
}
TEST(CleanCollision, TwoVoicesOfEachOfTwoStavesWithWordsStandApart) {
    expectApart({4, 60, 80, true, false, false, true}, 30);
}
TEST(CleanCollision, TwoVoicesThatKeepCrossingStandApart) {
    expectApart({2, 55, 86, false, true, false, true}, 30);
}
TEST(CleanCollision, ChordsInTwoVoicesStandApart) {
    expectApart({2, 64, 84, false, false, true, true}, 30);
}
TEST(CleanCollision, NotesFarAboveAndBelowStandApart) {
    expectApart({3, 36, 108, false, false, false}, 30);
}
TEST(CleanCollision, LetteredHeadsStandApart) {
    expectApart({2, 57, 84, true, true, false}, 15);
}

TEST(CleanCollision, NothingStandsOutsideOfItsPageWhateverItsSize) {
    for (const auto& [width, height] :
         {std::pair{200, 200}, {200, 10000}, {10000, 200}, {10000, 10000}, {816, 1056}})
        for (const int staves : {1, 5}) {
            Random random{std::mt19937(7)};
            CleanPageReader page;
            fill(page, random, {staves, 40, 100, true, false, true});
            page.setup.pageWidth = width;
            page.setup.pageHeight = height;
            page.engrave();
            for (std::size_t number = 0; number < page.engraved.pages.size(); ++number)
                for (const Mark& mark : page.marks(number)) {
                    const Box box = page.box(mark);
                    EXPECT_GE(box.left, -1);
                    EXPECT_GE(box.top, -1);
                    EXPECT_LE(box.right, width + 1) << static_cast<int>(mark.role);
                    EXPECT_LE(box.bottom, height + 1) << static_cast<int>(mark.role);
                }
        }
}

TEST(CleanCollision, AMeasureOf512StepsIsPressedIntoItsLine) {
    CleanPageReader page;
    page.meterOf(4, 4, 512);
    for (int at = 0; at < 1024; ++at)
        page.stroke(0, 60 + at % 20, at, 1);
    page.setup.end = 1024;
    page.engrave();
    for (const Box& head : page.boxes(Role::Head)) {
        EXPECT_GE(head.left, 0);
        EXPECT_LE(head.right, page.engraved.width);
    }
}

TEST(CleanCollision, TheSameMusicGivesTheSameMarks) {
    const auto once = [] {
        Random random{std::mt19937(11)};
        CleanPageReader page;
        fill(page, random, {2, 60, 80, true, false, true});
        page.engrave();
        std::vector<double> numbers;
        for (const Mark& mark : page.marks()) {
            const Box box = page.box(mark);
            numbers.insert(numbers.end(), {box.left, box.top, box.right, box.bottom});
        }
        return numbers;
    };
    EXPECT_EQ(once(), once());
}

} // namespace
} // namespace velmora::notation
