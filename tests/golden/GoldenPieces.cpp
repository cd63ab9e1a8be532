// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPieces.h"

namespace velmora {

namespace {
// A melody with words; a note that comes before its bar.
constexpr GoldenPiece kJoy{.name = "joy",
                           .title = "Ode to Joy",
                           .composer = "L. van Beethoven (1824)",
                           .tempoWords = "Allegro assai",
                           .tempo = 120,
                           .music = {.key = "auto", .voices = {{{"0t", R"(
        f#4:4 f#4 g4 a4 | a4 g4 f#4 e4 | d4 d4 e4 f#4 | f#4:6 e4:2 e4:8 |
        f#4:4 f#4 g4 a4 | a4 g4 f#4 e4 | d4 d4 e4 f#4 | e4:6 d4:2 d4:8 |
        e4:4 e4 f#4 d4 | e4 f#4:2 g4 f#4:4 d4 | e4 f#4:2 g4 f#4:4 e4 | d4 e4 a3 f#4 |
        _ f#4 g4 a4 | a4 g4 f#4 e4 | d4 d4 e4 f#4 | e4:6 d4:2 d4:8)"}}}},
                           .words = "Freu-de, schö-ner Göt-ter-fun-ken, Toch-ter aus E-ly-si-um, "
                                    "wir be-tre-ten feu-er-trun-ken, Himm-li-sche, dein Hei-lig-tum! "
                                    "Dei-ne Zau-ber bin-den _ wie-der, was die _ Mo-de streng ge-teilt; "
                                    "al-le Men-schen wer-den Brü-der, wo dein sanf-ter Flü-gel weilt.",
                           .height = 700};

// Two hands in 3/4, with rests that come before the tune and between its calls.
constexpr GoldenPiece kDanube{.name = "danube",
                              .title = "The Blue Danube",
                              .composer = "J. Strauss II (1866)",
                              .tempoWords = "Tempo di Valse",
                              .tempo = 180,
                              .music = {.upper = 3,
                                        .steps = 12,
                                        .key = "auto",
                                        .voices = {{{"0t", R"(
        r:8 d4:4 | d4 f#4 a4 | a4:8 a5:4 | a5:8 f#5:4 | f#5:8 d4:4 | d4 f#4 a4 | a4:8 a5:4 | a5:8 g5:4 |
        g5:8 c#4:4 | c#4 e4 b4 | b4:8 b5:4 | b5:8 g5:4 | g5:8 c#4:4 | c#4 e4 b4 | b4:8 b5:4 | b5:8 f#5:4 |
        f#5:8 d4:4 | d4 f#4 a4 | d5:8 d6:4 | d6:8 a5:4 | a5:8 d4:4 | d4 f#4 a4 | d5:8 d6:4 | d6:8 b5:4 |
        b5:8 e4:4 | e4 g4 b4 | b4:12 | _:4 g#4 a4 | f#5:12 | _:4 d5 f#4 | f#4:8 e4:4 | b4:8 a4:4 |
        d4:6 r:2 d4:4 | d4:12)"},
                                                    {"1b", R"(
        r:12 | r | d3:4 f#3 a3 | d3 f#3 a3 | d3 f#3 a3 | d3 f#3 a3 | d3 f#3 a3 | d3 f#3 a3 |
        e3 g3 a3 | a2 g3 a3 | e3 g3 a3 | a2 g3 a3 | e3 g3 a3 | a2 g3 a3 | e3 g3 a3 | d3 f#3 a3 |
        d3 f#3 a3 | d3 f#3 a3 | d3 f#3 a3 | f#2 d3 a3 | d3 f#3 a3 | f#2 d3 a3 | d3 f#3 a3 | g2 d3 b3 |
        g2 d3 b3 | e2 b2 g3 | e2 b2 g3 | c#3 e3 a3 | d3 f#3 a3 | a2 d3 a3 | a2 c#3 g3 | a2 c#3 g3 |
        d3 a2 d2 | d2:12)"}}}}};

// Chords by chord type, a bass and drums; the tune comes in behind a rest.
constexpr GoldenPiece kSaints{.name = "saints",
                              .title = "When the Saints Go Marching In",
                              .composer = "Traditional",
                              .tempoWords = "March",
                              .tempo = 160,
                              .music = {.key = "auto",
                                        .voices = {{{"0t", R"(
        r:4 f4 a4 bb4 | c5:16 | r:4 f4 a4 bb4 | c5:16 | r:4 f4 a4 bb4 | c5:8 a4 | f4 a4 | g4:16 |
        r:4 a4 a4 g4 | f4:12 f4:4 | a4:8 c5 | c5:4 bb4:12 | r:8 a4:4 bb4 | c5:8 a4 | f4 g4 | f4:16)"},
                                                    {"1t", R"(
        r:16 | f4/maj:16 | r | f4/maj:8 f4/maj | f4/maj:16 | f4/maj:8 d4/min | f4/maj:8 d4/min | c4/maj:16 |
        c4/maj:8 c4/maj | f4/maj:16 | f4/maj7 | bb3/maj | bb3/maj:8 g4/min7 | f4/maj d4/min | g4/min7 c4/maj |
        f4/maj:16)"},
                                                    {"2b", R"(
        r:16 | f2:8 c3 | f2 c3 | f2 c3 | f2 c3 | f2 d3 | f2 d3 | c3:4 d3 e3 c3 |
        c3:8 g2 | f2 c3 | f2:4 e2 eb2 d2 | bb2:8 f2 | bb2 g2 | f2 d3 | g2 c3 | f2:12 r:4)"},
                                                    {"10", R"(
        stick:4 stick stick stick | bass:4 snare bass snare | bass snare bass snare | bass snare bass snare:2 snare |
        bass:4 snare bass snare | bass snare bass snare | bass snare bass snare | bass snare:2 snare snare snare tom tom |
        crash:4 snare bass snare | bass snare bass snare | hat:2 hat snare hat hat hat snare hat |
        hat hat snare hat hat hat snare hat | bass:4 snare bass snare | bass snare bass snare |
        bass snare:1 snare snare:2 bass:4 snare | crash:8 r)"}}}}};

// 6/8 with dotted figures, in a minor key with both sevenths.
constexpr GoldenPiece kGreensleeves{.name = "greensleeves",
                                    .title = "Greensleeves",
                                    .composer = "Traditional (1580)",
                                    .tempoWords = "Andante",
                                    .tempo = 96,
                                    .music = {.upper = 6,
                                              .lower = 8,
                                              .steps = 12,
                                              .key = "auto",
                                              .voices = {{{"0t", R"(
        r:10 a4:2 | c5:4 d5:2 e5:3 f#5:1 e5:2 | d5:4 b4:2 g4:3 a4:1 b4:2 | c5:4 a4:2 a4:3 g#4:1 a4:2 |
        b4:4 g#4:2 e4:4 a4:2 | c5:4 d5:2 e5:3 f#5:1 e5:2 | d5:4 b4:2 g4:3 a4:1 b4:2 |
        c5:3 b4:1 a4:2 g#4:3 f#4:1 g#4:2 | a4:6 a4:4 r:2 | g5:6 g5:3 f#5:1 e5:2 | d5:4 b4:2 g4:3 a4:1 b4:2 |
        c5:4 a4:2 a4:3 g#4:1 a4:2 | b4:4 g#4:2 e4:6 | g5:6 g5:3 f#5:1 e5:2 | d5:4 b4:2 g4:3 a4:1 b4:2 |
        c5:3 b4:1 a4:2 g#4:3 f#4:1 g#4:2 | a4:12)"},
                                                          {"1b", R"(
        r:12 | a2:2 e3 a3 a2 e3 a3 | g2 d3 g3 g2 d3 g3 | f2 c3 f3 f2 c3 f3 | e2 b2 e3 e2 b2 e3 |
        a2 e3 a3 a2 e3 a3 | g2 d3 g3 g2 d3 g3 | f2 c3 f3 e2 b2 e3 | a2 e3 a3 a2:6 | c3:2 g3 c4 c3 g3 c4 |
        g2 d3 g3 g2 d3 g3 | f2 c3 f3 f2 c3 f3 | e2 b2 e3 e2 b2 e3 | c3:2 g3 c4 c3 g3 c4 | g2 d3 g3 g2 d3 g3 |
        f2 c3 f3 e2 b2 e3 | a2:12)"}}}}};

// Syncopation within the bar and over its line, in four flats.
constexpr GoldenPiece kRag{.name = "rag",
                           .title = "Lamplight Rag",
                           .composer = "",
                           .tempoWords = "Slow march time",
                           .tempo = 88,
                           .music = {.upper = 2,
                                     .steps = 16,
                                     .key = "auto",
                                     .voices = {{{"0t", R"(
        r:12 eb4:2 e4 | f4:2 ab4:4 c5:2 eb5:4 c5:4 | _:2 bb4:4 ab4:2 bb4:4 eb4:4 | _:2 f4:4 g4:2 bb4 db5 c5 bb4 |
        ab4:2 c5:4 ab4:2 eb4:6 eb4:2 | f4:2 ab4:4 c5:2 eb5:4 f5:4 | _:2 eb5:4 c5:2 ab4:4 a4:4 |
        bb4:2 f5:4 eb5:2 d5:2 db5 c5 bb4 | eb5:8 _:4 eb4:2 e4 | f4:2 ab4:4 c5:2 eb5:4 gb5:4 |
        _:2 f5:4 eb5:2 db5 bb4:4 ab4:2 | c5:2 eb5:4 c5:2 bb4 g4:4 ab4:2 | _:8 r:4 ab4)"},
                                                 {"1b", R"(
        r:16 | ab2:4 eb3 ab2 eb3 | g2 eb3 eb2 eb3 | eb2 db3 eb2 db3 | ab2 c3 eb2 c3 | ab2 eb3 f2 ab3 |
        c3 eb3 f2 eb3 | bb2 d3 bb2 ab3 | g2 f2 eb2 db2 | c2 ab2 c3 ab2 | db3 ab2 e3 bb2 | eb3 ab2 eb2 db3 |
        ab2:8 r:4 ab2)"}}}}};

// Triplets below dotted figures; four sharps; two hands that are three voices.
constexpr GoldenPiece kMoonlight{.name = "moonlight",
                                 .title = "Moonlight Sonata",
                                 .composer = "L. van Beethoven (1801)",
                                 .tempoWords = "Adagio sostenuto",
                                 .tempo = 54,
                                 .music = {.steps = 48,
                                           .key = "auto",
                                           .voices = {{{"0t", R"(
        r:48 | r | r | r | r:36 g#4:9 g#4:3 | g#4:36 g#4:9 g#4:3 | g#4:24 a4 | g#4 f#4:12 b4 | e4:48)"},
                                                       {"1t", R"(
        g#3:4 c#4 e4 g#3 c#4 e4 g#3 c#4 e4 g#3 c#4 e4 | g#3 c#4 e4 g#3 c#4 e4 g#3 c#4 e4 g#3 c#4 e4 |
        a3 c#4 e4 a3 c#4 e4 a3 d4 f#4 a3 d4 f#4 | g#3 c4 f#4 g#3 c#4 e4 g#3 c#4 d#4 f#3 c4 d#4 |
        e3 g#3 c#4 g#3 c#4 e4 g#3 c#4 e4 g#3 c#4 e4 | g#3 d#4 f#4 g#3 d#4 f#4 g#3 d#4 f#4 g#3 d#4 f#4 |
        g#3 c#4 e4 g#3 c#4 e4 a3 c#4 f#4 a3 c#4 f#4 | g#3 b3 e4 g#3 b3 e4 a3 b3 d#4 a3 b3 d#4 |
        g#3 b3 e4 g#3 b3 e4 g#3 b3 e4 e4:12)"},
                                                       {"2b", R"(
        c#3/oct:48 | b2/oct | a2/oct:24 f#2/oct | g#2/oct g#2/oct | c#3/oct:48 | c3/oct |
        c#3/oct:24 f#2/oct | b2/oct:48 | e2/oct)"}}}},
                                 .height = 900};

// From the lowest to the highest keys and back: ledger lines, 8va and 8vb, long runs.
constexpr GoldenPiece kLadders{.name = "ladders",
                               .title = "Ladders",
                               .composer = "",
                               .tempoWords = "Presto",
                               .tempo = 144,
                               .music = {.key = "auto",
                                         .voices = {{{"0t", R"(
        c4:1 e4 g4 c5 e5 g5 c6 e6 g6 e6 c6 g5 e5 c5 g4 e4 | c5 e5 g5 c6 e6 g6 c7 e7 g7:4 r:4 |
        f7:2 e7 d7 c7 b6 a6 g6 f6 | e6:4 c6 g5 e5 | b3:2 g3 b3 d4 f4 a4 c5 d#5 | e5:1 d#5 e5 d#5 e5:4 a3:8 |
        c6:4 a5 e6 c7 | b6:2 a6 g#6 f6 e6 d6 c6 b5 | a5:1 b5 c6 d6 e6 f6 f#6 g6 g#6 a6 bb6 b6 c7:4 | c4:16)"},
                                                     {"1b", R"(
        c2:16 | c3:4 g2 c2 g1 | f1:2 g1 a1 b1 c2 d2 e2 f2 | g1:8 g2 | g4:4 f4 e4 d4 | c4:8 a2:8 |
        a1:4 e1 a1 c2 | d2:2 f2 e1 e2 e1 e2 g#2 b2 | a1:8 f1:4 g1 | c1:16)"}}}},
                               .height = 800};

// Five staves over several systems and pages: three violins in canon, chords and a bass.
#define CANON_A "f#5:8 e5 | d5 c#5 | b4 a4 | b4 c#5 | "
#define CANON_B "d5:8 c#5 | b4 a4 | g4 f#4 | g4 e4 | "
#define CANON_C "d4:4 f#4 a4 g4 | f#4 d4 f#4 e4 | d4 b3 d4 a4 | g4 b4 a4 g4 | "
#define CANON_D "f#4:4 d4 e4 c#5 | d5 f#5 a5 a4 | b4 g4 a4 f#4 | d4 d5 d5:6 c#5:2 | "
#define CANON_E                                                                                              \
    "d5:2 c#5 d5 d4 c#4 a4 e4 f#4 | d4 d5 c#5 b4 c#5 f#5 a5 b5 | "                                           \
    "g5 f#5 e5 g5 f#5 e5 d5 c#5 | b4 a4 g4 f#4 e4 g4 f#4 e4 | "
#define CANON_REST "r:16 | r | r | r | "
#define CANON_CHORDS "d4/maj:8 a3/maj | b3/min f#3/min | g3/maj d4/maj | g3/maj a3/maj | "
#define CANON_GROUND "d3:8 a2 | b2 f#2 | g2 d2 | g2 a2 | "
constexpr GoldenPiece kCanon{
    .name = "canon",
    .title = "Canon",
    .composer = "J. Pachelbel (1680)",
    .tempoWords = "Adagio",
    .tempo = 60,
    .music = {.key = "auto",
              .voices = {{{"0t", CANON_REST CANON_A CANON_B CANON_C CANON_D CANON_E "d4:16"},
                          {"1t", CANON_REST CANON_REST CANON_A CANON_B CANON_C CANON_D "d4:16"},
                          {"2t", CANON_REST CANON_REST CANON_REST CANON_A CANON_B CANON_C "f#4:16"},
                          {"3t", CANON_CHORDS CANON_CHORDS CANON_CHORDS CANON_CHORDS CANON_CHORDS CANON_CHORDS
                           "d4/maj:16"},
                          {"4b", CANON_GROUND CANON_GROUND CANON_GROUND CANON_GROUND CANON_GROUND CANON_GROUND
                           "d2:16"}}}}};

constexpr std::array kPieces{kJoy, kDanube, kSaints, kGreensleeves, kRag, kMoonlight, kLadders, kCanon};
} // namespace

std::span<const GoldenPiece> goldenPieces() {
    return kPieces;
}

} // namespace velmora
