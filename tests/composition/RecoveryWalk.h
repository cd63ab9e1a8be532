// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"
#include "sound/SetupState.h"

#include <random>

namespace velmora {

/// Somebody composes at random. What stands after so many steps follows from the seed, and the score itself
/// says which seed and how many steps.
struct RecoveryWalk {
    explicit RecoveryWalk(int seed) : random(static_cast<unsigned>(seed) + 1) {
        setup.TxBeats = static_cast<std::int16_t>(seed);
    }
    void step() {
        const int channel = below(kMelodyChannels);
        const int begin = below(900);
        const int row = below(128);
        for (int at = 0; at < 100; ++at) {
            score.NoteCell.set(channel, begin + at, static_cast<std::int16_t>(at ? 1000 + row : row));
            score.NoteInstrument.set(channel, begin + at, static_cast<std::int16_t>(below(128)));
            score.Volume.set(channel, begin + at + 1, static_cast<std::int16_t>(below(128)));
        }
        ++score.Tempo;
    }
    int below(int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); }

    std::minstd_rand random;
    Score score{1000};
    SetupState setup;
};

} // namespace velmora
