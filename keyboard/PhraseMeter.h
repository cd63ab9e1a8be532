// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/NoteGrid.h"

namespace velmora {

/// A meter as music is felt in it: in 6/8 and its kin three eighths are a beat.
struct PhraseMeter {
    int beats = 4; ///< of a measure, as they are written
    int value = 4; ///< of the note that is such a beat

    [[nodiscard]] constexpr bool isCompound() const { return value >= 8 && beats >= 3 && beats % 3 == 0; }
    /// Of what is felt as a beat.
    [[nodiscard]] constexpr int ticksPerBeat() const { return writtenTicks() * (isCompound() ? 3 : 1); }
    [[nodiscard]] constexpr int ticksPerMeasure() const { return writtenTicks() * beats; }

    bool operator==(const PhraseMeter&) const = default;

private:
    /// Of a beat as it is written. A value that is none of 1, 2, 4, 8, 16 and 32 counts as a quarter.
    [[nodiscard]] constexpr int writtenTicks() const {
        return value > 0 && 4 * kTicksPerQuarter % value == 0 ? 4 * kTicksPerQuarter / value
                                                              : kTicksPerQuarter;
    }
};

} // namespace velmora
