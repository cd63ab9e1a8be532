// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <functional>

namespace velmora {

struct InstrumentSelection;
struct Score;
struct ViewState;

/// Gives the chosen melody instrument to the active channel, if that is a melody channel, and to every head
/// and continuation of the active channel within the selection marks, whichever group the channel belongs to.
/// With no name picked yet, @p storedCode (settings key `Intrumentval`) becomes the choice first.
/// @param beforeChange called once, before the first cell gets another code, and not where none does
/// @return the number of cells within the marks that took the code
int applyMelodyInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                          const ViewState& view, const std::function<void()>& beforeChange = {});

/// The same for percussion and the channels from 8 on; @p storedCode is that of key `Intrumentval2`.
int applyPercussionInstrument(Score& score, InstrumentSelection& chosen, std::int16_t storedCode,
                              const ViewState& view, const std::function<void()>& beforeChange = {});

} // namespace velmora
