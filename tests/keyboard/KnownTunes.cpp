// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/keyboard/KnownTunes.h"

#include <charconv>
#include <cstddef>

namespace velmora {

const std::vector<KnownTune>& knownTunes() {
    static const std::vector<KnownTune> kTunes{
        {"Twinkle, Twinkle, Little Star", 4, 4, 0,
         "c4:4 c4:4 g4:4 g4:4 a4:4 a4:4 g4:8 f4:4 f4:4 e4:4 e4:4 d4:4 d4:4 c4:8 "
         "g4:4 g4:4 f4:4 f4:4 e4:4 e4:4 d4:8 g4:4 g4:4 f4:4 f4:4 e4:4 e4:4 d4:8"},
        {"Frère Jacques", 4, 4, 0,
         "c4:4 d4:4 e4:4 c4:4 c4:4 d4:4 e4:4 c4:4 e4:4 f4:4 g4:8 e4:4 f4:4 g4:8 "
         "g4:2 a4:2 g4:2 f4:2 e4:4 c4:4 g4:2 a4:2 g4:2 f4:2 e4:4 c4:4 c4:4 g3:4 c4:8 c4:4 g3:4 c4:8"},
        {"Ode to Joy", 4, 4, 0,
         "e4:4 e4:4 f4:4 g4:4 g4:4 f4:4 e4:4 d4:4 c4:4 c4:4 d4:4 e4:4 e4:6 d4:2 d4:8 "
         "e4:4 e4:4 f4:4 g4:4 g4:4 f4:4 e4:4 d4:4 c4:4 c4:4 d4:4 e4:4 d4:6 c4:2 c4:8"},
        {"Mary Had a Little Lamb", 4, 4, 0,
         "e4:6 d4:2 c4:4 d4:4 e4:4 e4:4 e4:8 d4:4 d4:4 d4:8 e4:4 g4:4 g4:8 "
         "e4:6 d4:2 c4:4 d4:4 e4:4 e4:4 e4:4 e4:4 d4:4 d4:4 e4:4 d4:4 c4:16"},
        {"London Bridge", 4, 4, 0,
         "g4:6 a4:2 g4:4 f4:4 e4:4 f4:4 g4:8 d4:4 e4:4 f4:8 e4:4 f4:4 g4:8 "
         "g4:6 a4:2 g4:4 f4:4 e4:4 f4:4 g4:8 d4:8 g4:8 e4:4 c4:12"},
        {"Au clair de la lune", 4, 4, 0,
         "c4:4 c4:4 c4:4 d4:4 e4:8 d4:8 c4:4 e4:4 d4:4 d4:4 c4:16 "
         "d4:4 d4:4 d4:4 d4:4 a3:8 a3:8 d4:4 c4:4 b3:4 a3:4 g3:16"},
        {"Jingle Bells", 4, 4, 0,
         "e4:4 e4:4 e4:8 e4:4 e4:4 e4:8 e4:4 g4:4 c4:6 d4:2 e4:12 r:4 "
         "f4:4 f4:4 f4:6 f4:2 f4:4 e4:4 e4:4 e4:2 e4:2 e4:4 d4:4 d4:4 e4:4 d4:8 g4:8"},
        {"Yankee Doodle", 2, 4, 0,
         "c4:2 c4:2 d4:2 e4:2 c4:2 e4:2 d4:2 g3:2 c4:2 c4:2 d4:2 e4:2 c4:4 b3:4 "
         "c4:2 c4:2 d4:2 e4:2 f4:2 e4:2 d4:2 c4:2 b3:2 g3:2 a3:2 b3:2 c4:4 c4:4 "
         "a3:3 b3:1 a3:2 g3:2 a3:2 b3:2 c4:4 g3:3 a3:1 g3:2 f3:2 e3:4 g3:4"},
        {"Oh! Susanna", 4, 4, 2,
         "c4:1 d4:1 e4:2 g4:2 g4:3 a4:1 g4:2 e4:2 c4:3 d4:1 e4:2 e4:2 d4:2 c4:2 d4:6 "
         "c4:1 d4:1 e4:2 g4:2 g4:3 a4:1 g4:2 e4:2 c4:3 d4:1 e4:2 e4:2 d4:2 d4:2 c4:6"},
        {"When the Saints Go Marching In", 4, 4, 12,
         "c4:4 e4:4 f4:4 g4:16 r:4 c4:4 e4:4 f4:4 g4:16 r:4 c4:4 e4:4 f4:4 g4:8 e4:8 c4:8 e4:8 d4:16 "
         "e4:4 e4:4 d4:4 c4:12 c4:4 e4:8 g4:8 g4:4 f4:12"},
        {"Auld Lang Syne", 4, 4, 4,
         "c4:4 f4:6 f4:2 f4:4 a4:4 g4:6 f4:2 g4:4 a4:4 f4:6 f4:2 a4:4 c5:4 d5:12 "
         "d5:4 c5:6 a4:2 a4:4 f4:4 g4:6 f4:2 g4:4 a4:4 f4:6 d4:2 d4:4 c4:4 f4:12"},
        {"Joy to the World", 2, 4, 0,
         "d5:4 c#5:3 b4:1 a4:6 g4:2 f#4:4 e4:4 d4:6 a4:2 b4:6 b4:2 c#5:6 c#5:2 d5:6 "
         "d5:2 d5:2 c#5:2 b4:2 a4:2 a4:3 g4:1 f#4:2 d5:2 d5:2 c#5:2 b4:2 a4:2 a4:3 g4:1 f#4:4"},
        {"Skip to My Lou", 4, 4, 0,
         "e4:4 c4:4 e4:2 e4:2 g4:4 d4:4 b3:4 d4:2 d4:2 f4:4 e4:4 c4:4 e4:2 e4:2 g4:4 "
         "d4:2 e4:2 f4:2 e4:2 d4:4 c4:4"},
        {"Amazing Grace", 3, 4, 4,
         "d4:4 g4:8 b4:2 g4:2 b4:8 a4:4 g4:8 e4:4 d4:8 d4:4 g4:8 b4:2 g4:2 b4:8 a4:4 d5:12 r:8 "
         "b4:4 d5:8 b4:2 g4:2 b4:8 a4:4 g4:8 e4:4 d4:8"},
        {"My Bonnie Lies over the Ocean", 3, 4, 4,
         "g4:4 e5:6 d5:2 c5:4 d5:4 c5:4 a4:4 g4:4 e4:16 g4:4 e5:6 d5:2 c5:4 c5:4 b4:4 c5:4 d5:16"},
        {"God Save the King", 3, 4, 0,
         "g4:4 g4:4 a4:4 f#4:6 g4:2 a4:4 b4:4 b4:4 c5:4 b4:6 a4:2 g4:4 a4:4 g4:4 f#4:4 g4:12 "
         "d5:4 d5:4 d5:4 d5:6 c5:2 b4:4 c5:4 c5:4 c5:4 c5:6 b4:2 a4:4"},
        {"Minuet in G", 3, 4, 0,
         "d5:4 g4:2 a4:2 b4:2 c5:2 d5:4 g4:4 g4:4 e5:4 c5:2 d5:2 e5:2 f#5:2 g5:4 g4:4 g4:4 "
         "c5:4 d5:2 c5:2 b4:2 a4:2 b4:4 c5:2 b4:2 a4:2 g4:2 f#4:4 g4:2 a4:2 b4:2 g4:2 a4:12"},
        {"O Tannenbaum", 3, 4, 4,
         "c4:4 f4:3 f4:1 f4:6 g4:2 a4:3 a4:1 a4:6 a4:2 g4:2 a4:2 a#4:4 e4:4 g4:4 f4:4 "
         "c5:2 c5:2 a4:2 d5:6 c5:2 c5:2 a#4:2 a#4:6"},
        {"Scarborough Fair", 3, 4, 0,
         "d4:8 d4:4 a4:8 a4:4 e4:6 f4:2 e4:4 d4:12 r:4 a4:4 c5:4 d5:8 c5:4 a4:4 b4:4 g4:4 a4:12"},
        {"Silent Night", 6, 8, 0,
         "g4:3 a4:1 g4:2 e4:6 g4:3 a4:1 g4:2 e4:6 d5:4 d5:2 b4:6 c5:4 c5:2 g4:6 "
         "a4:4 a4:2 c5:3 b4:1 a4:2 g4:3 a4:1 g4:2 e4:6"},
        {"Greensleeves", 6, 8, 2,
         "a4:2 c5:4 d5:2 e5:3 f5:1 e5:2 d5:4 b4:2 g4:3 a4:1 b4:2 c5:4 a4:2 a4:3 g#4:1 a4:2 b4:4 g#4:2 e4:4 "
         "a4:2 c5:4 d5:2 e5:3 f5:1 e5:2 d5:4 b4:2 g4:3 a4:1 b4:2"},
        {"Row, Row, Row Your Boat", 6, 8, 0,
         "c4:6 c4:6 c4:4 d4:2 e4:6 e4:4 d4:2 e4:4 f4:2 g4:12 c5:2 c5:2 c5:2 g4:2 g4:2 g4:2 e4:2 e4:2 e4:2 "
         "c4:2 c4:2 c4:2 g4:4 f4:2 e4:4 d4:2 c4:12"},
        {"Pop Goes the Weasel", 6, 8, 0,
         "c4:4 c4:2 d4:4 d4:2 e4:2 g4:2 e4:2 c4:6 c4:4 c4:2 d4:4 d4:2 e4:6 c4:6 "
         "c4:4 c4:2 d4:4 d4:2 e4:2 g4:2 e4:2 c4:6 a4:6 d4:4 f4:2 e4:6 c4:6"},
        {"The Irish Washerwoman", 6, 8, 2,
         "d5:1 c5:1 b4:2 g4:2 g4:2 d4:2 g4:2 g4:2 b4:2 g4:2 b4:2 d5:2 c5:2 b4:2 c5:2 a4:2 a4:2 e4:2 a4:2 "
         "a4:2 "
         "c5:2 a4:2 c5:2 e5:2 d5:2 c5:2 b4:2 g4:2 g4:2 d4:2 g4:2 g4:2"},
    };
    return kTunes;
}

namespace {
int pitchOf(std::string_view word) {
    constexpr std::string_view kNames = "c d ef g a b";
    int pitch = static_cast<int>(kNames.find(word[0]));
    word.remove_prefix(1);
    if (word[0] == '#') {
        ++pitch;
        word.remove_prefix(1);
    }
    return pitch + 12 * (word[0] - '0' + 1);
}
} // namespace

std::vector<TuneNote> notesOf(const KnownTune& tune) {
    std::vector<TuneNote> notes;
    int at = 0;
    std::string_view rest = tune.text;
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(word.size() < rest.size() ? word.size() + 1 : rest.size());
        const std::string_view digits = word.substr(word.find(':') + 1);
        int length = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), length);
        if (word[0] != 'r')
            notes.push_back({at, length, pitchOf(word)});
        at += length;
    }
    return notes;
}

} // namespace velmora
