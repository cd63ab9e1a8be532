// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <array>
#include <cstdint>

namespace velmora {

inline constexpr int kContinuation = 1000; ///< what a continuation's code has above its head's

/// A layer of the Score and its copy buffer. What channel c holds for position p stands at
/// [c + channelShift][p + positionShift], in both.
struct ScoreLayer {
    ChannelGrid Score::*cells;
    ChannelGrid Score::*clip;
    int channelShift;
    int positionShift;
    std::int16_t cleared; ///< where nothing is
};

/// All that copying and moving positions carries along.
inline constexpr std::array kScoreLayers{
    ScoreLayer{&Score::NoteCell, &Score::ClipNoteCell, 0, 0, kEmptyCell},
    ScoreLayer{&Score::NoteInstrument, &Score::ClipNoteInstrument, 0, 0, 0},
    ScoreLayer{&Score::Polyphonics, &Score::ClipPolyphonics, 1, 0, 0},
    ScoreLayer{&Score::Volume, &Score::ClipVolume, 0, 1, kClearedVolume},
    ScoreLayer{&Score::Modulation_Change, &Score::ClipModulation, 0, 1, kClearedEffect},
    ScoreLayer{&Score::Pan_Change, &Score::ClipPan, 0, 1, kClearedPan},
    ScoreLayer{&Score::Reverb_Change, &Score::ClipReverb, 0, 1, kClearedEffect},
    ScoreLayer{&Score::Chorus_Change, &Score::ClipChorus, 0, 1, kClearedEffect},
};
static_assert(kScoreLayers.size() == 8);

/// The two layers that make a note; their buffers are erased by every copy, the others are not.
inline constexpr std::size_t kNoteLayers = 2;

} // namespace velmora
