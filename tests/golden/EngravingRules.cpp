// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/EngravingRules.h"

namespace velmora {

namespace {
using notation::ScoreSetup;

constexpr std::string_view kGround = "Gould, Behind Bars: Ground rules";
constexpr std::string_view kTies = "Gould, Behind Bars: Chords, dotted notes, ties";
constexpr std::string_view kSigns = "Gould, Behind Bars: Accidentals and key signatures";
constexpr std::string_view kMetre = "Gould, Behind Bars: Metre";
constexpr std::string_view kTuplets = "Gould, Behind Bars: Tuplets";
constexpr std::string_view kPercussion = "Gould, Behind Bars: Percussion";
constexpr std::string_view kVocal = "Gould, Behind Bars: Vocal music";
constexpr std::string_view kLayout = "Gould, Behind Bars: Score layout";
constexpr std::string_view kReadKeys = "Read, Music Notation: Key signatures and accidentals";
constexpr std::string_view kOwn = "Velmora's own, for learners";

constexpr std::array kRules{
    // Values
    EngravingRule{
        .name = "bar-line-split",
        .rule = "A note that sounds over a bar line is written on both sides and tied.",
        .reason =
            "Bars are what players count by. Each must hold exactly its beats, so a note can't stick out "
            "of one; the curve says that the second head is not struck again.",
        .source = kTies,
        .music = {.voices = {{{"0t", "g4:4 a4 b4 c5 | _:8 a4"}}}},
        .reads = "G.quarter^ A.quarter^ B.quarterv C.quarterv~ | ~C.halfv A.half^"},
    EngravingRule{
        .name = "middle-split",
        .rule = "In 4/4 a note that begins off the beat is split at the middle of the bar.",
        .reason = "The third beat is where the eye looks for its place. Written as one sign, the note in the "
                  "middle would hide it.",
        .source = kMetre,
        .music = {.voices = {{{"0t", "g4:4 a4:2 b4:4 a4:2 g4:4 | g4:6 a4:4 b4:6"}}}},
        .reads = "G.quarter^ [A.eighth^ B.eighth]+[eighth^ A.eighth^] G.quarter^ | G.quarter.^ "
                 "A.eighth+eighth^ B.quarter.v"},
    EngravingRule{
        .name = "dots",
        .rule = "A dot makes a note half as long again.",
        .reason =
            "Three quarters of a bar are no power of two, so no head alone can say them. A dot is less to "
            "read than two heads and a tie.",
        .source = kTies,
        .music = {.voices = {{{"0t", "g4:12 a4:4 | b4:6 a4:2 g4:4 f4:3 e4:1"}}}},
        .reads = "G.half.^ A.quarter^ | B.quarter.v A.eighth^ G.quarter^ [F.eighth.^ E.sixteenth^]"},
    EngravingRule{
        .name = "double-dots",
        .rule = "A second dot adds half of what the first one added.",
        .reason =
            "Seven eighths are a half, a quarter and an eighth: one head with two dots instead of three "
            "heads with two ties.",
        .source = kTies,
        .music = {.voices = {{{"0t", "c5:14 b4:2 | a4:7 b4:1 c5:8"}}}},
        .reads = "C.half..v B.eighthv | A.quarter..^ B.sixteenthv C.halfv"},
    EngravingRule{
        .name = "triplets",
        .rule = "Three equal notes in the time of two have a 3 at their beam.",
        .reason =
            "A third of a beat has no sign of its own. The 3 says that these are played faster than they "
            "look; with a beam no bracket is needed.",
        .source = kTuplets,
        .music = {.steps = 48, .voices = {{{"0t", "c5:4 d5 e5 d5:12 c5:4 b4 a4 g4:12"}}}},
        .reads =
            "[C.eighth3v D.eighth3v E.eighth3v] D.quarterv [C.eighth3v B.eighth3v A.eighth3v] G.quarter^"},
    EngravingRule{
        .name = "triplet-bracket",
        .rule = "A triplet without a beam over all of it has a bracket.",
        .reason =
            "Where no beam shows which notes belong together, the bracket does; a rest is one of the three, "
            "too.",
        .source = kTuplets,
        .music = {.steps = 48, .voices = {{{"0t", "c5:8 d5:4 e5:12 r:4 d5 c5 b4:12 | c5:8 d5 e5 c5:24"}}}},
        .reads = "C.quarter3v D.eighth3v E.quarterv (eighth3) [D.eighth3v C.eighth3v] B.quarterv | "
                 "C.quarter3v D.quarter3v E.quarter3v C.halfv"},
    EngravingRule{
        .name = "rests",
        .rule = "Rests are split where notes are, and never have a longer sign than the beats allow.",
        .reason =
            "Silence is counted as notes are. Rests that begin and end on beats show how far the bar has "
            "come.",
        .source = kMetre,
        .music = {.voices = {{{"0t", "g4:2 r:6 a4:4 r:4 | g4:4 r:8 a4:4 | r:2 g4:6 r:8"}}}},
        .reads = "G.eighth^ (eighth+quarter) A.quarter^ (quarter) | G.quarter^ (quarter+quarter) A.quarter^ "
                 "| (eighth) G.quarter.^ (half)",
        .width = 560},
    EngravingRule{
        .name = "whole-bar-rest",
        .rule = "A bar of silence has one rest in its middle, whatever the meter.",
        .reason =
            "It means \"nothing in this bar\" and needs no counting. It stands in the middle so that it is "
            "not taken for a rest of four beats.",
        .source = kMetre,
        .music = {.upper = 3, .steps = 12, .voices = {{{"0t", "g4:4 a4 b4 | r:12 | c5:12"}}}},
        .reads = "G.quarter^ A.quarter^ B.quarterv | (bar) | C.half.v"},

    // Accidentals
    EngravingRule{
        .name = "accidental-holds",
        .rule = "A sharp or flat holds until the end of its bar.",
        .reason =
            "A sign for each note would hide what changes. In the next bar the key counts again, so the "
            "sign is written again.",
        .source = kSigns,
        .music = {.voices = {{{"0t", "f#4:4 g4 f#4 a4 | f#4 g4 a4:8"}}}},
        .reads = "#F#.quarter^ G.quarter^ F#.quarter^ A.quarter^ | #F#.quarter^ G.quarter^ A.half^"},
    EngravingRule{
        .name = "natural",
        .rule = "A natural takes a sharp or flat back within the bar, or one of the key.",
        .reason =
            "Since a sign holds, the plain note after it needs one as well: without it the player would go "
            "on with the one before.",
        .source = kSigns,
        .music = {.key = "F", .voices = {{{"0t", "bb4:4 b4 c5 bb4 | a4:16"}}}},
        .reads = "Bb.quarterv nB.quarterv C.quarterv bBb.quarterv | A.whole"},
    EngravingRule{
        .name = "courtesy",
        .rule = "The bar after an accidental reminds that it is over.",
        .reason =
            "By rule no sign is needed there, but a player who still hears the raised note is in doubt. "
            "The brackets say that the sign only reminds.",
        .source = kSigns,
        .music = {.voices = {{{"0t", "d5:4 g4 f#4 g4 | f4:4 e4 d4:8"}}}},
        .reads = "D.quarterv G.quarter^ #F#.quarter^ G.quarter^ | (n)F.quarter^ E.quarter^ D.half^"},
    EngravingRule{
        .name = "tied-accidental",
        .rule = "A note that is tied over the bar line needs no second sign.",
        .reason =
            "It is not struck again, so nobody asks how it is called. The next one that is struck has its "
            "sign.",
        .source = kSigns,
        .music = {.voices = {{{"0t", "a4:4 g4 c#5:8 | _:4 d5:4 c#5 d5"}}}},
        .reads = "A.quarter^ G.quarter^ #C#.halfv~ | ~C#.quarterv D.quarterv #C#.quarterv D.quarterv"},
    EngravingRule{
        .name = "sharp-key",
        .rule = "In a key of sharps the black keys are spelled as sharps, and the key's own have no sign.",
        .reason =
            "The key signature says once what holds throughout. The scale goes through all letters, each "
            "once.",
        .source = kReadKeys,
        .music = {.key = "E", .voices = {{{"0t", "e4:2 f#4 g#4 a4 b4 c#5 d#5 e5"}}}},
        .reads = "[E.eighth^ F#.eighth^ G#.eighth^ A.eighth^] [B.eighthv C#.eighthv D#.eighthv E.eighthv]"},
    EngravingRule{
        .name = "flat-key",
        .rule = "In a key of flats the same black keys are spelled as flats.",
        .reason = "G sharp and A flat are one key of the piano, but here A is the scale's fourth letter; "
                  "G sharp would leave A out and need a sign each time.",
        .source = kReadKeys,
        .music = {.key = "Eb", .voices = {{{"0t", "eb4:2 f4 g4 ab4 bb4 c5 d5 eb5"}}}},
        .reads = "[Eb.eighth^ F.eighth^ G.eighth^ Ab.eighth^] [Bb.eighthv C.eighthv D.eighthv Eb.eighthv]"},
    EngravingRule{
        .name = "chromatic",
        .rule = "A chromatic run rises by sharps and falls by flats.",
        .reason =
            "Each black key then leans to where the line goes, and a letter is raised before it is left: "
            "fewer naturals, and the eye sees the direction.",
        .source = kReadKeys,
        .music = {.voices = {{{"0t", "c5:2 c#5 d5 d#5 e5:8 | e5:2 eb5 d5 db5 c5:8"}}}},
        .reads = "[C.eighthv #C#.eighthv D.eighthv #D#.eighthv] E.halfv | [E.eighthv bEb.eighthv "
                 "(n)D.eighthv bDb.eighthv] (n)C.halfv"},
    EngravingRule{
        .name = "minor",
        .rule = "The leading note of a minor key is the raised seventh.",
        .reason =
            "In A minor it is G sharp, one letter below A, and never A flat: the line leads up into the next "
            "letter.",
        .source = kReadKeys,
        .music = {.voices = {{{"0t", "e4:4 a4:2 b4 c5:4 b4 | a4:4 g#4 a4:8"}}}},
        .reads = "E.quarter^ [A.eighth^ B.eighth^] C.quarterv B.quarterv | A.quarter^ #G#.quarter^ A.half^"},
    EngravingRule{
        .name = "key-found",
        .rule = "If no key was chosen, it is found from the notes.",
        .reason =
            "The tune is in B flat: with two flats at the beginning of the line no sign is left in the bars.",
        .source = kReadKeys,
        .music = {.key = "auto",
                  .voices = {{{"0t", "bb4:4 f4 bb4 c5 | d5:4 bb4 d5 eb5 | f5 eb5 d5 c5 | bb4:16"}}}},
        .reads = "Bb.quarterv F.quarter^ Bb.quarterv C.quarterv | D.quarterv Bb.quarterv D.quarterv "
                 "Eb.quarterv | F.quarterv Eb.quarterv D.quarterv C.quarterv | Bb.whole",
        .width = 760},

    // Beams and stems
    EngravingRule{
        .name = "beams-4-4",
        .rule = "In 4/4 a beam never crosses the middle of the bar.",
        .reason = "Beams show the beats. Eighths go by fours, sixteenths by the beat, so that halves and "
                  "quarters of "
                  "the bar are seen without counting.",
        .source = kMetre,
        .music =
            {.voices = {{{"0t",
                          "g4:2 a4 b4 a4 g4 a4 b4 a4 | g4:1 a4 b4 a4 g4 a4 b4 a4 g4:2 a4:1 b4 c5:2 b4"}}}},
        .reads = "[G.eighth^ A.eighth^ B.eighth^ A.eighth^] [G.eighth^ A.eighth^ B.eighth^ A.eighth^] | "
                 "[G.sixteenth^ A.sixteenth^ B.sixteenth^ A.sixteenth^] [G.sixteenth^ A.sixteenth^ "
                 "B.sixteenth^ A.sixteenth^] [G.eighth^ A.sixteenth^ B.sixteenth^] [C.eighthv B.eighthv]",
        .width = 720},
    EngravingRule{
        .name = "beams-3-4",
        .rule = "In 3/4 eighths go under one beam or by the beat, never by threes.",
        .reason = "Two groups of three would look like 6/8, which is counted in two.",
        .source = kMetre,
        .music = {.upper = 3, .steps = 12, .voices = {{{"0t", "g4:2 a4 b4 a4 g4 a4 | b4:4 a4:2 g4 f4 g4"}}}},
        .reads = "[G.eighth^ A.eighth^ B.eighth^ A.eighth^ G.eighth^ A.eighth^] | B.quarterv [A.eighth^ "
                 "G.eighth^ F.eighth^ G.eighth^]"},
    EngravingRule{.name = "beams-6-8",
                  .rule = "In 6/8 three eighths are one beat.",
                  .reason = "The same six notes as in 3/4, but counted in two: only the beams tell.",
                  .source = kMetre,
                  .music = {.upper = 6,
                            .lower = 8,
                            .steps = 12,
                            .voices = {{{"0t", "g4:2 a4 b4 a4 g4 a4 | b4:6 a4:4 g4:2"}}}},
                  .reads = "[G.eighth^ A.eighth^ B.eighth^] [A.eighth^ G.eighth^ A.eighth^] | B.quarter.v "
                           "A.quarter^ G.eighth^"},
    EngravingRule{
        .name = "beams-5-8",
        .rule = "An odd meter is beamed in twos and threes.",
        .reason = "Five can't be counted in equal beats; the groups say where the foot goes.",
        .source = kMetre,
        .music = {.upper = 5, .lower = 8, .steps = 10, .voices = {{{"0t", "g4:2 a4 b4 a4 g4 | b4:6 a4:4"}}}},
        .reads = "[G.eighth^ A.eighth^ B.eighth^] [A.eighth^ G.eighth^] | B.quarter.v A.quarter^"},
    EngravingRule{
        .name = "beam-slope",
        .rule = "A beam slopes with its notes, but little; over a turn it is level.",
        .reason =
            "The slope shows where the line goes. A steep one would make long stems and be hard on the eye.",
        .source = kGround,
        .music = {.voices = {{{"0t", "c4:2 e4 g4 a4 f5 d5 c5 b4 | g4 b4 a4 b4 e4:1 g4 b4 e5 c5:4"}}}},
        .reads = "[C.eighth^ E.eighth^ G.eighth^ A.eighth^] [F.eighthv D.eighthv C.eighthv B.eighthv] | "
                 "[G.eighth^ B.eighth^ A.eighth^ B.eighth^] [E.sixteenth^ G.sixteenth^ B.sixteenth^ "
                 "E.sixteenth^] C.quarterv",
        .width = 620},
    EngravingRule{
        .name = "beam-stub",
        .rule = "A short second beam points into its own beat.",
        .reason =
            "A dotted eighth and a sixteenth share one beam; the stub says which of them is the short one.",
        .source = kGround,
        .music = {.voices = {{{"0t", "g4:3 a4:1 b4:3 a4:1 c5:1 b4:3 a4:4"}}}},
        .reads = "[G.eighth.^ A.sixteenth^] [B.eighth.^ A.sixteenth^] [C.sixteenthv B.eighth.v] A.quarter^"},
    EngravingRule{
        .name = "stem-direction",
        .rule = "Stems point to the middle line: up from below, down from it and above.",
        .reason = "So they stay within the staff, and lines above each other keep out of each other's way.",
        .source = kGround,
        .music = {.voices = {{{"0t", "e4:4 a4 b4 e5 | c4:4 a5:4 g4:8"}}}},
        .reads = "E.quarter^ A.quarter^ B.quarterv E.quarterv | C.quarter^ A.quarterv G.half^"},
    EngravingRule{.name = "group-stems",
                  .rule = "The note farthest from the middle line decides for all under its beam.",
                  .reason = "Stems of one beam go one way; the farthest note would have the longest stem if "
                            "it went the other.",
                  .source = kGround,
                  .music = {.voices = {{{"0t", "c4:2 e4 a4 c5 g5 e5 b4 a4"}}}},
                  .reads =
                      "[C.eighth^ E.eighth^ A.eighth^ C.eighth^] [G.eighthv E.eighthv B.eighthv A.eighthv]"},

    // Voices and chords
    EngravingRule{
        .name = "two-voices",
        .rule = "Of two voices on one staff the upper has its stems up and the lower down.",
        .reason =
            "Stems tell who plays what even where the lines meet or cross. Each voice fills the bar with its "
            "own rests.",
        .source = kGround,
        .music = {.voices = {{{"0t", "e5:4 d5 c5:8 | d5:4 c5 r b4"}, {"1t", "g4:8 a4 | g4:4 c5 g4:8"}}}},
        .reads = "E.quarter^ D.quarter^ C.half^ | D.quarter^ C.quarter^ (quarter) B.quarter^ / G.halfv "
                 "A.halfv | G.quarterv C.quarterv G.halfv",
        .adjust = [](ScoreSetup& setup) { setup.twoVoices = true; }},
    EngravingRule{
        .name = "second",
        .rule = "Heads a step apart stand beside each other.",
        .reason = "They would print over one another. With the upper one on the left both stems come close "
                  "to one line, and the pair is read as one moment.",
        .source = kTies,
        .music = {.voices = {{{"0t", "c5:4 d5 e5 c5"}, {"1t", "b4:4 c5 d5 a4"}}}},
        .reads = "C.quarter^ D.quarter^ E.quarter^ C.quarter^ / B.quarterv C.quarterv D.quarterv A.quarterv",
        .adjust = [](ScoreSetup& setup) { setup.twoVoices = true; }},
    EngravingRule{
        .name = "chord-signs",
        .rule = "The accidentals of a chord stand in columns that don't touch.",
        .reason = "Three signs above each other would be one blot; stepping to the left, each "
                  "stays at the height of "
                  "its head.",
        .source = kSigns,
        .music = {.voices = {{{"0t", "f#4/maj:8 eb4/min7 | c#4/min:8 d4/maj"}}}},
        .reads =
            "#F#+#A#+#C#+#F#.halfv bEb+bGb+bBb+bDb.half^ | #C#+(n)E+#G#+#C#.half^ D+#F#+(n)A+(n)D.half^"},
    EngravingRule{.name = "chord-dots",
                  .rule = "Each head of a dotted chord has its own dot, in a space and above each other.",
                  .reason = "On a line a dot would not be seen. One column of dots is read as one value.",
                  .source = kTies,
                  .music = {.voices = {{{"0t", "c4/maj:12 g4/maj7:4 | a4/min7:12 r:4"}}}},
                  .reads = "C+E+G+C.half.^ G+B+D+#F#.quarterv | A+C+E+G.half.v (quarter)"},
    EngravingRule{.name = "chord-ties",
                  .rule = "Each head of a held chord has its tie, the outer ones bent outwards.",
                  .reason =
                      "A tie says of one head that it goes on. Bent apart, they can be told from each other.",
                  .source = kTies,
                  .music = {.voices = {{{"0t", "g4/maj:8 a4/min | _:8 g4/maj"}}}},
                  .reads = "G+B+D+G.halfv A+C+E+A.halfv~ | ~A+C+E+A.halfv G+B+D+G.halfv"},
    EngravingRule{.name = "tie-direction",
                  .rule = "A tie bends away from its note's stem.",
                  .reason = "On the stem's side it would cross it; on the head's side there is room.",
                  .source = kTies,
                  .music = {.voices = {{{"0t", "g4:12 e4:4 | _:4 g4:4 d5:8 | _:8 c5"}}}},
                  .reads = "G.half.^ E.quarter^~ | ~E.quarter^ G.quarter^ D.halfv~ | ~D.halfv C.halfv"},

    // Range
    EngravingRule{
        .name = "bass-clef",
        .rule = "Low music stands in the bass clef.",
        .reason =
            "Its five lines begin where those of the treble clef end, so deep notes need no ledger lines. "
            "Middle C is the line between the two.",
        .source = kGround,
        .music = {.key = "F",
                  .voices = {{{"0t", "c5:4 bb4 a4 c4 | f4:16"}, {"1b", "f3:4 g3 a3 c4 | f2:16"}}}},
        .reads = "C.quarterv Bb.quarterv A.quarter^ C.quarter^ | F.whole / F.quarterv G.quarterv A.quarterv "
                 "C.quarterv | F.whole"},
    EngravingRule{
        .name = "ledger-lines",
        .rule = "Beyond the staff each note has its own short lines.",
        .reason = "They go on with the staff only where they are needed; lines that ran on would "
                  "be a staff of seven "
                  "lines, where nobody finds their way.",
        .source = kGround,
        .music = {.voices = {{{"0t", "c4:4 a3 g3 e4 | a5 c6 e6 g5"}}}},
        .reads = "C.quarter^ A.quarter^ G.quarter^ E.quarter^ | A.quarterv C.quarterv E.quarterv G.quarterv"},
    EngravingRule{
        .name = "octave-up",
        .rule = "Beyond three ledger lines music is written an octave nearer, under 8va.",
        .reason = "More than three lines have to be counted. The bracket says how long it holds, "
                  "and the notes below "
                  "it are played an octave higher.",
        .source = "Read, Music Notation: Ledger lines and octave signs",
        .music =
            {.voices =
                 {
                     {{"0t", "g5:4 c6 g6 c7 | b6 g6 d6 c5"}},
                 }},
        .reads = "G.quarterv C.quarterv G.quarterv C.quarterv | B.quarterv G.quarterv D.quarterv C.quarterv"},

    // The page
    EngravingRule{
        .name = "percussion",
        .rule = "Drums stand on one line; the form of a head tells metal from skin.",
        .reason = "A stroke has no pitch, so its height says nothing. Crosses are cymbals and hi-hats, round "
                  "heads drums.",
        .source = kPercussion,
        .music =
            {.voices = {{{"10",
                          "bass:2 hat snare hat bass bass snare hat | crash:4 snare r:2 bass snare:4"}}}},
        .reads = "[-.eighth^ -.eighth^ -.eighth^ -.eighth^] [-.eighth^ -.eighth^ -.eighth^ -.eighth^] | "
                 "-.quarter^ -.quarter^ (eighth) -.eighth^ -.quarter^",
        .width = 700},
    EngravingRule{
        .name = "spacing",
        .rule = "Longer notes have more room, but not twice as much for twice the time.",
        .reason =
            "The eye feels the rhythm from the spacing; true proportion would make whole notes deserts and "
            "sixteenths a blot.",
        .source = kGround,
        .music = {.voices = {{{"0t", "c5:16 | c5:8 c5:4 c5:2 c5:1 c5"}}}},
        .reads = "C.whole | C.halfv C.quarterv [C.eighthv C.sixteenthv C.sixteenthv]"},
    EngravingRule{
        .name = "lines",
        .rule = "Lines end at one margin, the last where its music ends; each repeats clef and key, and the "
                "time is "
                "said once. A tie goes on in the next line, and bars are numbered.",
        .reason = "An even edge is quiet to the eye, but a last line that was stretched would look faster or "
                  "slower. "
                  "Who looks up at any line must know clef and key at once.",
        .source = kLayout,
        .music =
            {.key = "D",
             .voices = {{{"0t", "d4:4 e4 f#4 g4 | a4 b4 c#5 d5 | e5:8 d5 | _:4 a4 d5:8 | _:4 a4:4 g4 f#4 | "
                                "e4:8 a4 | d4:16"}}}},
        .reads = "D.quarter^ E.quarter^ F#.quarter^ G.quarter^ | A.quarter^ B.quarterv C#.quarterv "
                 "D.quarterv | E.halfv D.halfv~ | ~D.quarterv A.quarter^ D.halfv~ | ~D.quarterv A.quarter^ "
                 "G.quarter^ F#.quarter^ | E.half^ A.half^ | D.whole",
        .width = 440},
    EngravingRule{
        .name = "words",
        .rule = "Each syllable stands under its note: hyphens part a word, a line holds its last syllable.",
        .reason =
            "Singers read two lines at once; what stands above each other is sung together. The line under "
            "several notes says that they all have one vowel.",
        .source = kVocal,
        .music = {.key = "G", .voices = {{{"0t", "g4:4 a4 b4 c5 | d5:6 c5:2 b4:4 a4 | g4:16"}}}},
        .reads = "G.quarter^ A.quarter^ B.quarterv C.quarterv | D.quarter.v C.eighthv B.quarterv A.quarter^ "
                 "| G.whole",
        .adjust = [](ScoreSetup& setup) { setup.verses = {"Eve-ning comes to all _ _ of us"}; },
        .width = 500},
    EngravingRule{
        .name = "learn",
        .rule = "To learn, heads have their letter and the colour of their channel.",
        .reason =
            "It is the bridge from the grid to the staff: the same colour, the same note, and its name.",
        .source = kOwn,
        .music = {.voices = {{{"0t", "c4:4 d4 e4 f4 | g4:2 a4 b4 c5 d5:8"},
                              {"1b", "c3:8 g3 | c3:4 b2 g2:8"}}}},
        .reads = "C.quarter^ D.quarter^ E.quarter^ F.quarter^ | [G.eighth^ A.eighth^ B.eighth^ C.eighth^] "
                 "D.halfv / C.half^ G.halfv | C.quarter^ B.quarter^ G.half^",
        .adjust = [](ScoreSetup& setup) { setup.learnToRead = true; }},
    EngravingRule{.name = "heading",
                  .rule = "Title in the middle, composer on the right, tempo over the first bar.",
                  .reason = "What to play, by whom and how fast, each where every player looks for it.",
                  .source = kLayout,
                  .music = {.voices = {{{"0t", "c5:4 g4 e4 c4"}}}},
                  .reads = "C.quarterv G.quarter^ E.quarter^ C.quarter^",
                  .adjust =
                      [](ScoreSetup& setup) {
                          setup.title = "Morning Call";
                          setup.composer = "A. Composer";
                          setup.tempoWords = "Lively";
                          setup.tempo = 132;
                      }},
};
static_assert(kRules.size() == 40);
} // namespace

std::span<const EngravingRule> engravingRules() {
    return kRules;
}

} // namespace velmora
