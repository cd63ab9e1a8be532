// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velmora {

/// A take of the keyboard as a trace: which row was struck last, tick by tick. Silence is not seen at all.
struct Take {
    std::vector<std::int32_t>
        List1; ///< counts up while the first key of the take is down; 1 is a fresh strike of it
    std::vector<std::int32_t> List3; ///< row of the last key struck, which may be none of the Score's

    [[nodiscard]] int size() const { return static_cast<int>(List3.size()); }
    void clear() {
        List1.clear();
        List3.clear();
    }
    bool operator==(const Take&) const = default;
};

inline constexpr std::int32_t kRest = -1;

/// A trace that is ready to be played: a row, or `kRest`, for each tick.
using PlayList = std::vector<std::int32_t>;

// The passes that make pauses of the lengths of runs, and a score of the trace. Item 0 of the lists is not
// read by the first two; no list is read past its end, and the last item has no equal successor.

/// `BuildPlayList`, for saving: a run of more than 4 keeps its first share, by the compression `Text12`.
[[nodiscard]] PlayList BuildPlayList(const Take& take, double compression);
/// For playing with "Insert pauses": a run of more than 4 keeps the same few ticks, by `Text11`.
[[nodiscard]] PlayList playListWithPauses(const Take& take, double pauses);
/// For playing without.
[[nodiscard]] PlayList plainPlayList(const Take& take);

/// `ConvertRecording` and `ShortenPauses`: the cells of a channel of the Score, at the pitch that was played.
[[nodiscard]] std::vector<std::int16_t> ConvertRecording(const Take& take, double compression,
                                                         int octaveShift);

} // namespace velmora
