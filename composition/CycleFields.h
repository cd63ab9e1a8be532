// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/EditState.h"
#include "composition/MelodyMaker.h"

#include <array>
#include <cstdint>

namespace velmora {

/// One of the three values that the Melody Maker and the Score Editor both show, and what a change of its
/// field does: also while a number is being typed.
struct CycleValue {
    std::int16_t EditState::*value;
    void (*set)(EditState& edit, std::int16_t value);
};

/// In the order of the fields: `Txtlen` and `Txtnotes`, `TxtRep` and `Txtbeats`, `TxtNt` and `Txtrepeat`.
inline constexpr std::array<CycleValue, 3> kCycleValues{{
    {&EditState::TotalNotes, [](EditState& edit, std::int16_t value) { edit.TotalNotes = value; }},
    {&EditState::CycleBeats,
     [](EditState& edit, std::int16_t value) { takeCycle(edit, value, edit.CycleNotes); }},
    {&EditState::CycleNotes,
     [](EditState& edit, std::int16_t value) { takeCycle(edit, edit.CycleBeats, value); }},
}};

} // namespace velmora
