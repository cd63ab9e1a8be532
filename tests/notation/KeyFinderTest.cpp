// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/KeyFinder.h"

#include "CleanMusicReader.h"

#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <iostream>
#include <sstream>

using namespace velmora;
using namespace velmora::notation;
using testing::Gt;
using testing::SizeIs;

namespace {

struct Sounding {
    int semitones; ///< above the tonic
    int steps;     ///< of a sixteenth
};
struct Melody {
    std::string name;
    bool isMinor = false;
    std::vector<Sounding> notes;
};

Sounding soundingOf(std::string_view word, bool isMinor) {
    constexpr std::array kMajor{0, 2, 4, 5, 7, 9, 11};
    constexpr std::array kMinor{0, 2, 3, 5, 7, 8, 10};
    int sign = 0;
    for (; word.front() == '#' || word.front() == 'b'; word.remove_prefix(1))
        sign += word.front() == '#' ? 1 : -1;
    const auto degree = static_cast<std::size_t>(word.front() - '1');
    Sounding sounding{(isMinor ? kMinor : kMajor).at(degree) + sign, 4};
    for (const char mark : word.substr(1)) {
        sounding.steps = mark == '_'   ? 2
                         : mark == '=' ? 1
                         : mark == '.' ? sounding.steps * 3 / 2
                                       : sounding.steps + 4;
    }
    return sounding;
}

std::vector<Melody> knownMelodies() {
    std::vector<Melody> melodies;
    std::ifstream file(VELMORA_KNOWN_MELODIES);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        std::istringstream fields(line);
        Melody melody;
        std::string mode;
        std::getline(fields, melody.name, '|');
        std::getline(fields, mode, '|');
        melody.isMinor = mode == "m";
        for (std::string word; fields >> word;)
            melody.notes.push_back(soundingOf(word, melody.isMinor));
        melodies.push_back(melody);
    }
    return melodies;
}

/// The key that is found for the melody from @p tonic on, read from a score.
int keyFound(const Melody& melody, int tonic) {
    CleanMusicReader music;
    int position = 0;
    for (const Sounding& note : melody.notes) {
        music.stroke(0, tonic + note.semitones, position, note.steps);
        position += note.steps;
    }
    music.setup.key = kAutomaticKey;
    return music.read().key;
}

/// The key whose signature the melody has there.
int keyWanted(const Melody& melody, int tonic) {
    const int major = melody.isMinor ? tonic + 3 : tonic;
    const auto* const found = std::ranges::find_if(
        kKeys, [&](const Key& key) { return ((key.fifths * 7 - major) % 12 + 12) % 12 == 0; });
    return static_cast<int>(found - kKeys.begin());
}

struct Share {
    int right = 0;
    int all = 0;
    void add(bool isRight) {
        right += isRight ? 1 : 0;
        ++all;
    }
    [[nodiscard]] double percent() const { return 100.0 * right / all; }
};

} // namespace

TEST(KeyFinder, FindsTheSignatureOfNineOfTenKnownMelodiesInAllTranspositions) {
    const auto melodies = knownMelodies();
    ASSERT_THAT(melodies, SizeIs(Gt(200U)));
    std::array<Share, 2> halves; // the profiles were chosen by the first, every other melody
    Share minor;
    for (std::size_t i = 0; i < melodies.size(); ++i)
        for (int tonic = 54; tonic < 66; ++tonic) {
            const bool isRight = keyFound(melodies[i], tonic) == keyWanted(melodies[i], tonic);
            halves[i % 2].add(isRight);
            if (melodies[i].isMinor)
                minor.add(isRight);
        }
    std::cout << melodies.size() << " melodies: " << halves[0].percent() << " % and " << halves[1].percent()
              << " %, minor " << minor.percent() << " %\n";
    EXPECT_GE(halves[0].percent(), 90);
    EXPECT_GE(halves[1].percent(), 90);
    EXPECT_GE(minor.percent(), 90);
}
TEST(KeyFinder, FindsCInSilence) {
    EXPECT_EQ(findKey({}), 0);
}
TEST(KeyFinder, HearsTheTonesOfChords) {
    CleanMusicReader music;
    music.stroke(0, 60, 0, 4);
    music.score.Polyphonics.set(1, 0, 1);
    const PitchWeights heard = pitchWeights(music.score, 0, 16);
    EXPECT_EQ(heard.weights[0], 8); // C twice
    EXPECT_EQ(heard.weights[4], 4);
    EXPECT_EQ(heard.weights[7], 4);
    EXPECT_EQ(heard.lowestOfLast, 0);
}
TEST(KeyFinder, HearsNoMutedChannelAndNoPercussion) {
    CleanMusicReader music;
    music.stroke(0, 60, 0, 4).stroke(1, 61, 0, 4).stroke(8, 62, 0, 4);
    music.score.ChannelMuted[1] = true;
    const PitchWeights heard = pitchWeights(music.score, 0, 16);
    EXPECT_EQ(heard.weights[0], 4);
    EXPECT_EQ(heard.weights[1], 0);
    EXPECT_EQ(heard.weights[2], 0);
}
TEST(KeyFinder, HearsWhatIsWrittenAlone) {
    CleanMusicReader music;
    music.stroke(0, 60, 0, 16).stroke(0, 61, 16, 16);
    EXPECT_EQ(pitchWeights(music.score, 16, 32).weights[0], 0);
    EXPECT_EQ(pitchWeights(music.score, 16, 32).weights[1], 16);
}
TEST(KeyFinder, AChosenKeyStays) {
    CleanMusicReader music;
    EXPECT_EQ(music.key("Ab").tune({60, 62, 64}).read().key, 9);
}
