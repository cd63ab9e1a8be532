// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

struct ChordSteps;
struct Manners;
struct PlayState;
struct Score;
struct SetupState;
struct ViewState;

/// A score, and the records that playing it reads and writes. It owns none of them.
struct PlayedScore {
    Score& score;
    SetupState& setup;
    ViewState& view;
    PlayState& state;
    ChordSteps& chords;
    const Manners& manners;
};

} // namespace velmora
