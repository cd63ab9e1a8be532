// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Instruments.h"

#include <gtest/gtest.h>

using namespace velmora;

namespace {
struct Row {
    int identifier;
    int code;
    std::string_view name;
};
constexpr Row kRows[] = {
    {35, 128, "Acoustic Bass Drum"},
    {36, 129, "Bass Drum 1"},
    {37, 130, "Side Stick"},
    {38, 131, "Acoustic Snare"},
    {39, 132, "Hand Clap"},
    {40, 133, "Electric Snare"},
    {41, 134, "Low Floor Tom"},
    {42, 135, "Closed High-Hat"},
    {43, 136, "High Floor Tom"},
    {44, 137, "Pedal High-Hat"},
    {45, 138, "Low Tom"},
    {46, 139, "Open High-Hat"},
    {47, 140, "Low-Mid Tom"},
    {48, 141, "High-Mid Tom"},
    {49, 142, "Crash Cymbal 1"},
    {50, 143, "High Tom"},
    {51, 144, "Ride Cymbal 1"},
    {52, 145, "Chinese Cymbal"},
    {53, 146, "Ride Bell"},
    {54, 147, "Tambourine"},
    {55, 148, "Splash Cymbal"},
    {56, 149, "Cowbell"},
    {57, 150, "Crash Cymbal 2"},
    {58, 151, "Vibraslap"},
    {59, 152, "Ride Cymbal 2"},
    {60, 153, "High Bongo"},
    {61, 154, "Low Bongo"},
    {62, 155, "Mute High Conga"},
    {63, 156, "Open High Conga"},
    {64, 157, "Low Conga"},
    {65, 158, "High Timbale"},
    {66, 159, "Low Timbale"},
    {67, 160, "High Agogo"},
    {68, 161, "Low Agogo"},
    {69, 162, "Cabasa"},
    {70, 163, "Maracas"},
    {71, 164, "Short Whistle"},
    {72, 165, "Long Whistle"},
    {73, 166, "Short Guiro"},
    {74, 167, "Long Guiro"},
    {75, 168, "Claves"},
    {76, 169, "High Wood Block"},
    {77, 170, "Low Wood Block"},
    {78, 171, "Mute Cuica"},
    {79, 172, "Open Cuica"},
    {80, 173, "Mute Triangle"},
    {81, 174, "Open Triangle"},
    {100, 0, "Acoustic Grand Piano"},
    {101, 1, "Bright Acoustic Piano"},
    {102, 2, "Electric Grand Piano"},
    {103, 3, "Honky-Tonk Piano"},
    {104, 4, "Electric Piano 1"},
    {105, 5, "Electric Piano 2"},
    {106, 6, "Harpsichord"},
    {107, 7, "Clav"},
    {108, 8, "Celesta"},
    {109, 9, "Glockenspiel"},
    {110, 10, "Music Box"},
    {111, 11, "Vibraphone"},
    {112, 12, "Marimba"},
    {113, 13, "Xylophone"},
    {114, 14, "Tubular Bells"},
    {115, 15, "Dulcimer"},
    {116, 16, "Drawbar Organ"},
    {117, 17, "Percussive Organ"},
    {118, 18, "Rock Organ"},
    {119, 19, "Church Organ"},
    {120, 20, "Reed Organ"},
    {121, 21, "Accordian"},
    {122, 22, "Harmonica"},
    {123, 23, "Tango Accordian"},
    {124, 24, "Nylon Guitar"},
    {125, 25, "Steel Guitar"},
    {126, 26, "Jazz Electric Guitar"},
    {127, 27, "Clean Electric Guitar"},
    {128, 28, "Muted Electric Guitar"},
    {129, 29, "Overdriven Guitar"},
    {130, 30, "Distortion Guitar"},
    {131, 31, "Guitar Harmonics"},
    {132, 32, "Acoustic Bass"},
    {133, 33, "Finger Electric Bass"},
    {134, 34, "Pick Electric Bass"},
    {135, 35, "Fretless Bass"},
    {136, 36, "Slap Bass 1"},
    {137, 37, "Slap Bass 2"},
    {138, 38, "Synth Bass 1"},
    {139, 39, "Synth Bass 2"},
    {140, 40, "Violin"},
    {141, 41, "Viola"},
    {142, 42, "Cello"},
    {143, 43, "Contrabass"},
    {144, 44, "Tremolo Strings"},
    {145, 45, "Pizzicato Strings"},
    {146, 46, "Orchestral Strings"},
    {147, 47, "Timpani"},
    {148, 48, "String Ensemble 1"},
    {149, 49, "String Ensemble 2"},
    {150, 50, "Synth Strings 1"},
    {151, 51, "Synth Strings 2"},
    {152, 52, "Choir Aahs"},
    {153, 53, "Voice Oohs"},
    {154, 54, "Synth Voice"},
    {155, 55, "Orchestra Hit"},
    {156, 56, "Trumpet"},
    {157, 57, "Trombone"},
    {158, 58, "Tuba"},
    {159, 59, "Muted Trumpet"},
    {160, 60, "French Horn"},
    {161, 61, "Brass Section"},
    {162, 62, "Synth Brass 1"},
    {163, 63, "Synth Brass 2"},
    {164, 64, "Soprano Sax"},
    {165, 65, "Alto Sax"},
    {166, 66, "Tenor Sax"},
    {167, 67, "Baritone Sax"},
    {168, 68, "Oboe"},
    {169, 69, "English Horn"},
    {170, 70, "Bassoon"},
    {171, 71, "Clarinet"},
    {172, 72, "Piccolo"},
    {173, 73, "Flute"},
    {174, 74, "Recorder"},
    {175, 75, "Pan Flute"},
    {176, 76, "Blown Bottle"},
    {177, 77, "Shakuhachi"},
    {178, 78, "Whistle"},
    {179, 79, "Ocarina"},
    {180, 80, "Lead 1 (square)"},
    {181, 81, "Lead 2 (sawtooth)"},
    {182, 82, "Lead 3 (calliope)"},
    {183, 83, "Lead 4 (chiff)"},
    {184, 84, "Lead 5 (charang)"},
    {185, 85, "Lead 6 (voice)"},
    {186, 86, "Lead 7 (fifths)"},
    {187, 87, "Lead 8 (bass+lead)"},
    {188, 88, "Pad 1 (new age)"},
    {189, 89, "Pad 2 (warm)"},
    {190, 90, "Pad 3 (polysynth)"},
    {191, 91, "Pad 4 (choir)"},
    {192, 92, "Pad 5 (bowed)"},
    {193, 93, "Pad 6 (metallic)"},
    {194, 94, "Pad 7 (halo)"},
    {195, 95, "Pad 8 (sweep)"},
    {196, 96, "FX 1 (rain)"},
    {197, 97, "FX 2 (soundtrack)"},
    {198, 98, "FX 3 (crystal)"},
    {199, 99, "FX 4 (atmosphere)"},
    {200, 100, "FX 5 (brightness)"},
    {201, 101, "FX 6 (goblins)"},
    {202, 102, "FX 7 (echoes)"},
    {203, 103, "FX 8 (sci-fi)"},
    {204, 104, "Sitar"},
    {205, 105, "Banjo"},
    {206, 106, "Shamisen"},
    {207, 107, "Koto"},
    {208, 108, "Kalimba"},
    {209, 109, "Bagpipe"},
    {210, 110, "Fiddle"},
    {211, 111, "Shanai"},
    {212, 112, "Tinkle Bell"},
    {213, 113, "Agogo"},
    {214, 114, "Steel Drums"},
    {215, 115, "Woodblock"},
    {216, 116, "Taiko Drum"},
    {217, 117, "Melodic Tom"},
    {218, 118, "Synth Drum"},
    {219, 119, "Reverse Cymbal"},
    {220, 120, "Guitar Fret Noise"},
    {221, 121, "Breath Noise"},
    {222, 122, "Seashore"},
    {223, 123, "Bird Tweet"},
    {224, 124, "Telephone Ring"},
    {225, 125, "Helicopter"},
    {226, 126, "Applause"},
    {227, 127, "Gunshot"},
};
static_assert(std::size(kRows) == 47 + 128);
} // namespace

TEST(InstrumentsTest, EveryIdentifierHasItsNameAndCodeAndEveryCodeItsIdentifier) {
    for (const Row& row : kRows) {
        EXPECT_EQ(nameOfIdentifier(row.identifier), row.name);
        EXPECT_EQ(nameOfCode(row.code), row.name);
        EXPECT_EQ(codeOfIdentifier(row.identifier), row.code);
        EXPECT_EQ(identifierOfCode(row.code), row.identifier);
    }
}

TEST(InstrumentsTest, NothingElseHasAName) {
    for (const int identifier : {-1, 0, 34, 82, 99, 228, 100000}) {
        EXPECT_EQ(nameOfIdentifier(identifier), "") << identifier;
        EXPECT_EQ(codeOfIdentifier(identifier), std::nullopt) << identifier;
    }
    for (const int code : {-1, 175, 32767, -32768}) {
        EXPECT_EQ(nameOfCode(code), "") << code;
        EXPECT_EQ(identifierOfCode(code), std::nullopt) << code;
    }
}

TEST(InstrumentsTest, TheFirstPercussionRowIsCode128AndKey35) {
    EXPECT_EQ(nameOfCode(128), "Acoustic Bass Drum");
    EXPECT_EQ(nameOfCode(174), "Open Triangle");
    EXPECT_EQ(identifierOfCode(128), 35);
}

TEST(InstrumentsTest, TheChoiceStartsWithTheNylonGuitarAndTheBassDrum) {
    const InstrumentSelection chosen;
    EXPECT_EQ(nameOfCode(chosen.MelodyInstrument), "Nylon Guitar");
    EXPECT_EQ(nameOfCode(chosen.PercussionInstrument), "Acoustic Bass Drum");
    EXPECT_EQ(chosen.MelodyInstrumentName, "");
    EXPECT_FALSE(chosen.PickSecond);
}
