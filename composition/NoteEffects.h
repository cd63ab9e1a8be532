// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/NoteReadout.h"
#include "composition/StrokeWriting.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

class NotePlayer;
struct Score;
struct Workspace;

// Single Note Effects: an instrument, a chord, a volume and four effects for each note, as the selectors in
// `EffectSelectors` stand. None of it shows anything, and none of it takes a snapshot for undo.

/// The note of the active channel with its head at @p head takes instrument and chord, and sounds with its
/// first cell's effects; a muted channel stays silent. An empty cell takes both silently, with the rest of a
/// note that has lost its head behind it. Percussion has no chord.
///
/// In careful manner all cells take volume and effects as well, so that the note sounds as the page says;
/// percussion, whose notes have no effects of their own, takes the volume, and no melody instrument.
/// @return the cells that were changed; nothing outside the Score
std::optional<NoteCells> applyNoteEffects(Workspace& workspace, NotePlayer& player, int head);

/// A right press or drag on `Pic2a`: gives @p position of the active channel volume, chord and effects and
/// takes its instrument back to the channel's; percussion gets its instrument and the volume alone.
/// @return what the labels show then; nothing outside the Score and while it is played
std::optional<NoteReadout> applyAlongIndicator(Workspace& workspace, int position);

/// "Undo all Single Note Effects", which can't be undone. Everything is to be shown anew, the open setup
/// toolbar as well.
void ClearEffects(Workspace& workspace);

/// `NoteInstrumentPick` becomes @p code, and every note cell of the active channel within the selection takes
/// it, with the channel itself; without a selection it is only picked.
/// @return the reason for the user if it is refused, and nothing is changed; blank otherwise
[[nodiscard]] std::string_view applyInstrumentToSelection(Workspace& workspace, std::int16_t code);
/// Why @p code can't be picked on the active channel; blank if it can.
[[nodiscard]] std::string_view refusalOf(const Score& score, std::int16_t code);

/// A read-out of an effect, and the top of its pointer in a strip.
struct EffectPlace {
    int shown = 0;
    int pointerTop = 0;
    bool operator==(const EffectPlace&) const = default;
};
/// Modulation, pan (shown as -64 to 63), reverb, chorus: `L1a` to `L4a`.
using EffectPlaces = std::array<EffectPlace, 4>;

/// The effects of a position of the active channel, for strips of @p height.
[[nodiscard]] EffectPlaces doNotemod(const Score& score, int position, int height);
/// The same for the graph boxes `Picture6`.
[[nodiscard]] inline EffectPlaces domodgraph(const Score& score, int position, int height) {
    return doNotemod(score, position, height);
}

/// The value, 0 to 127, of a selector whose pointer was dragged to @p top; the upper end is 127.
[[nodiscard]] int selectorValue(int top, int stripHeight, int pointerHeight);

} // namespace velmora
