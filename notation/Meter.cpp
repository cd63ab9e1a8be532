// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Meter.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>

namespace velmora::notation {

namespace {
constexpr int kFinestOfWhole = kWholeTicks / kFinestTicks;
constexpr int kLongestBar = 64; ///< whole notes
constexpr int kMostBeats = 512;
constexpr int kQuarter = kWholeTicks / 4;

bool isPowerOfTwo(int number) {
    return number > 0 && std::has_single_bit(static_cast<unsigned>(number));
}

bool isMeter(int TxtMeter, int NoteX) {
    return TxtMeter > 0 && TxtMeter <= kMostBeats && isPowerOfTwo(NoteX) && NoteX <= kFinestOfWhole &&
           TxtMeter <= kLongestBar * NoteX;
}

/// The sizes of the groups of an odd number of beats.
std::vector<int> oddGroups(int count) {
    if (count == 5)
        return {3, 2};
    if (count == 7)
        return {2, 2, 3};
    std::vector<int> groups(static_cast<std::size_t>(count) / 3, 3);
    if (count % 3 == 2)
        groups.push_back(2);
    if (count % 3 == 1) {
        groups.back() = 2;
        groups.push_back(2);
    }
    return groups;
}
} // namespace

int ticksOf(const Value& value) {
    const int plain = kWholeTicks >> static_cast<int>(value.value);
    if (value.triplet)
        return plain / 3 * 2;
    const int parts = 1 << value.dots;
    return plain % (parts * kFinestTicks) == 0 ? plain / parts * (2 * parts - 1) : 0;
}

std::optional<Value> singleValue(int ticks) {
    if (ticks <= 0 || ticks % kFinestTicks != 0)
        return std::nullopt;
    const int finest = ticks / kFinestTicks;
    for (int dots = 0, times = 1; dots <= 2; ++dots, times = 2 * times + 1) {
        if (finest % times != 0 || !isPowerOfTwo(finest / times))
            continue;
        const int plain = finest / times << dots;
        if (plain > kFinestOfWhole)
            return std::nullopt;
        const int value = std::countr_zero(static_cast<unsigned>(kFinestOfWhole / plain));
        return Value{.value = static_cast<NoteValue>(value), .dots = static_cast<std::uint8_t>(dots)};
    }
    return std::nullopt;
}

Meter::Meter(int TxtMeter, int NoteX) {
    if (!isMeter(TxtMeter, NoteX))
        TxtMeter = NoteX = 4;
    bar_ = make(0, TxtMeter, kWholeTicks / NoteX);
    findWindows(bar_, -1);
}

std::span<const Region> Meter::groupsOf(const Region& region) const {
    return std::span(groups_).subspan(static_cast<std::size_t>(region.firstPart),
                                      static_cast<std::size_t>(region.partCount));
}

Region Meter::group(int start, int length, std::span<const Region> parts) {
    const Region made{.start = start,
                      .length = length,
                      .parts = Parts::Groups,
                      .firstPart = static_cast<int>(groups_.size()),
                      .partCount = static_cast<int>(parts.size())};
    groups_.insert(groups_.end(), parts.begin(), parts.end());
    return made;
}

Region Meter::make(int start, int count, int unit) {
    const int length = count * unit;
    if (isPowerOfTwo(count))
        return {.start = start, .length = length};
    if (count == 3)
        return {.start = start, .length = length, .parts = Parts::Thirds};
    std::vector<int> sizes;
    if (count % 2 == 0)
        sizes = {count / 2, count / 2};
    else if (count % 3 == 0)
        sizes.assign(static_cast<std::size_t>(count) / 3, 3);
    else
        sizes = oddGroups(count);
    std::vector<Region> parts;
    for (const int size : sizes) {
        parts.push_back(make(start, size, unit));
        start += size * unit;
    }
    return group(start - length, length, parts);
}

void Meter::findWindows(const Region& region, int side) {
    const bool isWindow = (region.parts == Parts::Halves && region.length <= kQuarter) ||
                          (region.parts == Parts::Thirds && region.length < 2 * kQuarter);
    if (isWindow) {
        windows_.push_back({region.start, region.end(), side});
        return;
    }
    const bool joins = region.parts == Parts::Halves
                           ? region.length == 2 * kQuarter
                           : region.parts == Parts::Thirds && region.length == 3 * kQuarter;
    if (joins)
        side = region.start;
    if (region.parts == Parts::Groups) {
        for (int i = 0; i < region.partCount; ++i)
            findWindows(Region(groups_[static_cast<std::size_t>(region.firstPart + i)]), side);
        return;
    }
    for (int i = 0; i < (region.parts == Parts::Thirds ? 3 : 2); ++i)
        findWindows(region.part(i), side);
}

StepGrid::StepGrid(int NotesPerMeasure, const Meter& meter)
    : NotesPerMeasure_(NotesPerMeasure)
    , barTicks_(meter.bar().length) {
    // A step is this part of a whole note.
    const std::int64_t whole = static_cast<std::int64_t>(NotesPerMeasure) * kWholeTicks;
    const std::int64_t share = std::gcd<std::int64_t>(barTicks_, whole);
    const std::int64_t below = whole / share;
    if (below == 0 || kFinestOfWhole % below == 0)
        return;
    hasThirds_ = below % 3 == 0 && kFinestOfWhole / 2 % (below / 3) == 0;
    if (hasThirds_)
        return;
    unit_ = kFinestTicks;
    while (4LL * unit_ * NotesPerMeasure_ <= barTicks_ && barTicks_ % (2 * unit_) == 0)
        unit_ *= 2;
}

int StepGrid::ticksAt(int step) const {
    const std::int64_t above = static_cast<std::int64_t>(step) * barTicks_;
    if (unit_ == 0)
        return static_cast<int>(above / NotesPerMeasure_);
    const std::int64_t units =
        (2 * above + static_cast<std::int64_t>(unit_) * NotesPerMeasure_) / (2LL * unit_ * NotesPerMeasure_);
    return static_cast<int>(units) * unit_;
}

} // namespace velmora::notation
