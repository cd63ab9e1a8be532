// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace velmora::notation {

/// The clean reading measures time in ticks: every value of `NoteValue` with its dots, and two thirds of it
/// but for the shortest, is a whole number of them. Places that need no triplet are multiples of
/// `kFinestTicks`.
inline constexpr int kWholeTicks = 1536;
inline constexpr int kFinestTicks = 3;

/// 0 for a value that no sign has, as the dots of the shortest.
[[nodiscard]] int ticksOf(const Value& value);
/// The one sign without a `3` of that length, with two dots at most.
[[nodiscard]] std::optional<Value> singleValue(int ticks);

/// How a stretch of a bar falls into parts.
enum class Parts : std::uint8_t {
    Halves, ///< and each of them so on
    Thirds, ///< of halves each
    Groups  ///< as the list has them
};

/// A stretch of a bar that belongs together: the bar, a half of it, a group of beats, a beat, or less.
struct Region {
    int start = 0; ///< ticks from the bar line
    int length = 0;
    Parts parts = Parts::Halves;
    int firstPart = 0; ///< of groups: in the meter's list
    int partCount = 0;

    [[nodiscard]] constexpr int end() const { return start + length; }
    [[nodiscard]] constexpr int middle() const { return start + length / 2; }
    /// Part 0 or 1 of halves, 0 to 2 of thirds.
    [[nodiscard]] constexpr Region part(int index) const {
        const int share = length / (parts == Parts::Thirds ? 3 : 2);
        return {.start = start + index * share, .length = share};
    }
};

/// A window that beams stay in.
struct BeamWindow {
    int start;
    int end;
    int side; ///< windows of one side may join where they hold nothing but eighths; -1 joins none
};

/// The bar of a time signature: where it may be split, and what may stand under one beam.
///
/// An upper number that is a multiple of 3 beyond 3 makes groups of three beats; 5 is 3 + 2 and 7 is 2 + 2
/// + 3. A signature that is none (a lower number that is no power of two, a bar of more than 64 whole notes
/// or 512 beats) counts as 4/4.
class Meter {
public:
    Meter(int TxtMeter, int NoteX);

    [[nodiscard]] const Region& bar() const { return bar_; }
    [[nodiscard]] std::span<const Region> groupsOf(const Region& region) const;
    [[nodiscard]] std::span<const BeamWindow> beamWindows() const { return windows_; }

private:
    Region make(int start, int count, int unit);
    Region group(int start, int length, std::span<const Region> parts);
    void findWindows(const Region& region, int side);

    Region bar_;
    std::vector<Region> groups_;
    std::vector<BeamWindow> windows_;
};

/// Where the steps of a bar fall in ticks.
///
/// A step that no sum of values is takes the nearest place on a grid of notes no longer than half of it, so
/// that who reads values and rounds to steps has the grid's again. Steps shorter than the shortest value may
/// share a place.
class StepGrid {
public:
    StepGrid(int NotesPerMeasure, const Meter& meter);

    [[nodiscard]] int ticksAt(int step) const;
    /// Whether places need triplets.
    [[nodiscard]] bool hasThirds() const { return hasThirds_; }
    [[nodiscard]] bool isExact() const { return unit_ == 0; }

private:
    int NotesPerMeasure_;
    int barTicks_;
    int unit_ = 0; ///< of the nearest places, in ticks; 0 for exact ones
    bool hasThirds_ = false;
};

} // namespace velmora::notation
