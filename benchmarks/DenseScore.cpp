// SPDX-License-Identifier: GPL-2.0-or-later
#include "DenseScore.h"

#include "sound/ShortMessage.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace velmora {

namespace {
constexpr double kStepSeconds = 0.125;
constexpr int kTicksPerStep = 120; // 480 a quarter note, at 120 quarter notes a minute

/// One player: strikes every `every` steps, `voices` notes at once, each `length` steps long.
struct Player {
    int channel;
    int program;
    int lowest;
    int every;
    int length;
    int voices;
    int velocity;
};
constexpr std::array<Player, 11> kBand{{
    {0, 0, 55, 1, 4, 1, 84},    // piano, running
    {1, 24, 50, 4, 3, 3, 76},   // guitar chords
    {2, 33, 33, 2, 2, 1, 96},   // bass
    {3, 48, 57, 16, 16, 3, 64}, // strings
    {4, 61, 60, 8, 3, 2, 80},   // brass
    {5, 73, 72, 4, 3, 1, 72},   // flute
    {6, 11, 64, 3, 4, 1, 80},   // vibraphone
    {7, 19, 48, 16, 15, 3, 60}, // church organ
    {8, 52, 60, 16, 15, 2, 64}, // choir
    {9, 0, 36, 2, 1, 1, 100},   // drums
    {9, 0, 42, 2, 1, 1, 70},    // cymbals
}};
constexpr std::array<int, 7> kScale{0, 2, 4, 5, 7, 9, 11};

int pitch(const Player& player, int step, int voice) {
    if (player.channel == shortmessage::kDrumChannel)
        return player.lowest + (step / player.every) % 3 * 2;
    const int bar = step / 16 * 3;
    const auto degree = static_cast<std::size_t>((step / player.every * 5 + bar + voice * 2) % 7);
    return player.lowest + kScale[degree] + 12 * ((step / player.every + voice) % 2);
}

struct Stroke {
    int step;
    std::uint32_t word;
};

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFFU);
}

std::string midiFile(const std::vector<Stroke>& strokes) {
    std::string track;
    int last = 0;
    for (const Stroke& stroke : strokes) {
        const auto ticks = static_cast<std::uint32_t>((stroke.step - last) * kTicksPerStep);
        if (ticks > 0x7F)
            track += static_cast<char>(0x80U | ticks >> 7U);
        track += static_cast<char>(ticks & 0x7FU);
        last = stroke.step;
        append(track, stroke.word & 0xFFU, 1);
        append(track, static_cast<std::uint32_t>(shortmessage::data1(stroke.word)), 1);
        if (shortmessage::status(stroke.word) != 0xC0)
            append(track, static_cast<std::uint32_t>(shortmessage::data2(stroke.word)), 1);
    }
    append(track, 0x00FF2F00, 4);
    std::string file = "MThd";
    append(file, 6, 4);
    append(file, 0x0000'0001, 4); // one track
    append(file, 480, 2);
    file += "MTrk";
    append(file, static_cast<std::uint32_t>(track.size()), 4);
    return file + track;
}
} // namespace

DenseScore makeDenseScore(double seconds) {
    const int steps = static_cast<int>(seconds / kStepSeconds);
    DenseScore score;
    std::vector<Stroke> strokes;
    for (const Player& player : kBand)
        strokes.push_back({0, shortmessage::programChange(player.channel, player.program)});
    for (const Player& player : kBand) {
        for (int step = 0; step + player.length <= steps; step += player.every) {
            for (int voice = 0; voice < player.voices; ++voice, ++score.notes) {
                const int note = pitch(player, step, voice);
                const int velocity = player.velocity + step % 5 * 3;
                strokes.push_back({step, shortmessage::noteOn(player.channel, note, velocity)});
                strokes.push_back({step + player.length, shortmessage::noteOff(player.channel, note)});
            }
        }
    }
    const auto isOn = [](const Stroke& stroke) { return shortmessage::status(stroke.word) == 0x90; };
    std::stable_sort(strokes.begin(), strokes.end(), [&](const Stroke& a, const Stroke& b) {
        return a.step != b.step ? a.step < b.step : isOn(a) < isOn(b);
    });
    for (const Stroke& stroke : strokes)
        score.messages.push_back({stroke.step * kStepSeconds, stroke.word});
    score.midiFile = midiFile(strokes);
    return score;
}

} // namespace velmora
