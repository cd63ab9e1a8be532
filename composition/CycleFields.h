// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/MelodyMaker.h"
#include "composition/Workspace.h"

#include <array>
#include <cstdint>

namespace velmora {

/// One of the three values that the Melody Maker and the Score Editor both show, and what a change of its
/// field does: also while a number is being typed.
struct CycleValue {
    std::int16_t EditState::*value;
    std::int16_t Cycle::*counted; ///< what it stands for
    void (*set)(Workspace& workspace, std::int16_t value);
};

/// In the order of the fields: `Txtlen` and `Txtnotes`, `TxtRep` and `Txtbeats`, `TxtNt` and `Txtrepeat`.
inline constexpr std::array<CycleValue, 3> kCycleValues{{
    {&EditState::TotalNotes, &Cycle::total,
     [](Workspace& workspace, std::int16_t value) { workspace.edit.TotalNotes = value; }},
    {&EditState::CycleBeats, &Cycle::beats,
     [](Workspace& workspace, std::int16_t value) {
         takeCycle(workspace.edit, workspace.manners, value, workspace.edit.CycleNotes);
     }},
    {&EditState::CycleNotes, &Cycle::notes,
     [](Workspace& workspace, std::int16_t value) {
         takeCycle(workspace.edit, workspace.manners, workspace.edit.CycleBeats, value);
     }},
}};

} // namespace velmora
