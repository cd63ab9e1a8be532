// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Instruments.h"

#include <array>

namespace velmora {

namespace {
// The names are fixed, unusual spellings included.

/// Identifiers 100 to 227: programs 0 to 127.
constexpr std::array<std::string_view, kInstrumentCount> kInstrumentNames{
    "Acoustic Grand Piano",
    "Bright Acoustic Piano",
    "Electric Grand Piano",
    "Honky-Tonk Piano",
    "Electric Piano 1",
    "Electric Piano 2",
    "Harpsichord",
    "Clav",
    "Celesta",
    "Glockenspiel",
    "Music Box",
    "Vibraphone",
    "Marimba",
    "Xylophone",
    "Tubular Bells",
    "Dulcimer",
    "Drawbar Organ",
    "Percussive Organ",
    "Rock Organ",
    "Church Organ",
    "Reed Organ",
    "Accordian",
    "Harmonica",
    "Tango Accordian",
    "Nylon Guitar",
    "Steel Guitar",
    "Jazz Electric Guitar",
    "Clean Electric Guitar",
    "Muted Electric Guitar",
    "Overdriven Guitar",
    "Distortion Guitar",
    "Guitar Harmonics",
    "Acoustic Bass",
    "Finger Electric Bass",
    "Pick Electric Bass",
    "Fretless Bass",
    "Slap Bass 1",
    "Slap Bass 2",
    "Synth Bass 1",
    "Synth Bass 2",
    "Violin",
    "Viola",
    "Cello",
    "Contrabass",
    "Tremolo Strings",
    "Pizzicato Strings",
    "Orchestral Strings",
    "Timpani",
    "String Ensemble 1",
    "String Ensemble 2",
    "Synth Strings 1",
    "Synth Strings 2",
    "Choir Aahs",
    "Voice Oohs",
    "Synth Voice",
    "Orchestra Hit",
    "Trumpet",
    "Trombone",
    "Tuba",
    "Muted Trumpet",
    "French Horn",
    "Brass Section",
    "Synth Brass 1",
    "Synth Brass 2",
    "Soprano Sax",
    "Alto Sax",
    "Tenor Sax",
    "Baritone Sax",
    "Oboe",
    "English Horn",
    "Bassoon",
    "Clarinet",
    "Piccolo",
    "Flute",
    "Recorder",
    "Pan Flute",
    "Blown Bottle",
    "Shakuhachi",
    "Whistle",
    "Ocarina",
    "Lead 1 (square)",
    "Lead 2 (sawtooth)",
    "Lead 3 (calliope)",
    "Lead 4 (chiff)",
    "Lead 5 (charang)",
    "Lead 6 (voice)",
    "Lead 7 (fifths)",
    "Lead 8 (bass+lead)",
    "Pad 1 (new age)",
    "Pad 2 (warm)",
    "Pad 3 (polysynth)",
    "Pad 4 (choir)",
    "Pad 5 (bowed)",
    "Pad 6 (metallic)",
    "Pad 7 (halo)",
    "Pad 8 (sweep)",
    "FX 1 (rain)",
    "FX 2 (soundtrack)",
    "FX 3 (crystal)",
    "FX 4 (atmosphere)",
    "FX 5 (brightness)",
    "FX 6 (goblins)",
    "FX 7 (echoes)",
    "FX 8 (sci-fi)",
    "Sitar",
    "Banjo",
    "Shamisen",
    "Koto",
    "Kalimba",
    "Bagpipe",
    "Fiddle",
    "Shanai",
    "Tinkle Bell",
    "Agogo",
    "Steel Drums",
    "Woodblock",
    "Taiko Drum",
    "Melodic Tom",
    "Synth Drum",
    "Reverse Cymbal",
    "Guitar Fret Noise",
    "Breath Noise",
    "Seashore",
    "Bird Tweet",
    "Telephone Ring",
    "Helicopter",
    "Applause",
    "Gunshot",
};
static_assert(!kInstrumentNames.back().empty(), "a row is missing");

/// Identifiers 35 to 81: percussion keys 35 to 81.
constexpr std::array<std::string_view, kPercussionCount> kPercussionNames{
    "Acoustic Bass Drum",
    "Bass Drum 1",
    "Side Stick",
    "Acoustic Snare",
    "Hand Clap",
    "Electric Snare",
    "Low Floor Tom",
    "Closed High-Hat",
    "High Floor Tom",
    "Pedal High-Hat",
    "Low Tom",
    "Open High-Hat",
    "Low-Mid Tom",
    "High-Mid Tom",
    "Crash Cymbal 1",
    "High Tom",
    "Ride Cymbal 1",
    "Chinese Cymbal",
    "Ride Bell",
    "Tambourine",
    "Splash Cymbal",
    "Cowbell",
    "Crash Cymbal 2",
    "Vibraslap",
    "Ride Cymbal 2",
    "High Bongo",
    "Low Bongo",
    "Mute High Conga",
    "Open High Conga",
    "Low Conga",
    "High Timbale",
    "Low Timbale",
    "High Agogo",
    "Low Agogo",
    "Cabasa",
    "Maracas",
    "Short Whistle",
    "Long Whistle",
    "Short Guiro",
    "Long Guiro",
    "Claves",
    "High Wood Block",
    "Low Wood Block",
    "Mute Cuica",
    "Open Cuica",
    "Mute Triangle",
    "Open Triangle",
};
static_assert(!kPercussionNames.back().empty(), "a row is missing");

} // namespace

std::string_view nameOfIdentifier(int identifier) {
    if (identifier >= kFirstInstrumentIdentifier && identifier <= kLastInstrumentIdentifier)
        return kInstrumentNames[static_cast<std::size_t>(identifier - kFirstInstrumentIdentifier)];
    if (identifier >= kFirstPercussionIdentifier && identifier <= kLastPercussionIdentifier)
        return kPercussionNames[static_cast<std::size_t>(identifier - kFirstPercussionIdentifier)];
    return {};
}

std::optional<std::int16_t> codeOfIdentifier(int identifier) {
    if (identifier >= kFirstInstrumentIdentifier && identifier <= kLastInstrumentIdentifier)
        return static_cast<std::int16_t>(identifier - kFirstInstrumentIdentifier);
    if (identifier >= kFirstPercussionIdentifier && identifier <= kLastPercussionIdentifier)
        return static_cast<std::int16_t>(identifier + kKeyToCode);
    return std::nullopt;
}

std::optional<int> identifierOfCode(int code) {
    if (code >= 0 && code < kInstrumentCount)
        return code + kFirstInstrumentIdentifier;
    const int key = code - kKeyToCode;
    if (key >= kFirstPercussionIdentifier && key <= kLastPercussionIdentifier)
        return key;
    return std::nullopt;
}

std::string_view nameOfCode(int code) {
    return nameOfIdentifier(identifierOfCode(code).value_or(0));
}

} // namespace velmora
