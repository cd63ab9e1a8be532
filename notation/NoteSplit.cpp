// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/NoteSplit.h"

#include <algorithm>

namespace velmora::notation {

namespace {
/// A dotted note may end with so long a part, but not begin beside its start.
constexpr int kLongestOffBeat = kWholeTicks / 2;
/// Three of these or of less are a group as in 6/8.
constexpr int kLongestOfGroup = kWholeTicks / 8;

class Splitter {
public:
    Splitter(const Meter& meter, Sounding sounding, std::vector<Value>& into)
        : meter_(meter)
        , isRest_(sounding == Sounding::Rest)
        , into_(into) {}

    void split(const Region& region, int begin, int end) {
        if (begin >= end)
            return;
        switch (region.parts) {
        case Parts::Halves:
            return splitHalves(region, begin, end);
        case Parts::Thirds:
            return isRest_ ? restInThirds(region, begin, end) : splitThirds(region, begin, end);
        case Parts::Groups:
            return isRest_ ? restInGroups(region, begin, end) : splitGroups(region, begin, end);
        }
    }

private:
    bool write(int ticks) {
        const auto value = singleValue(ticks);
        if (value)
            into_.push_back(*value);
        return value.has_value();
    }

    /// Whether a note over the middle shows it all the same.
    static bool showsMiddle(const Region& region, int begin, int end) {
        const int half = region.length / 2;
        const int length = end - begin;
        if (begin == region.start)
            return length * 2 == half * 3 || length * 4 == half * 7;
        if (end == region.end())
            return length * 2 == half * 3 && region.length <= kLongestOffBeat;
        return length == half && (begin - region.start) * 2 == half;
    }

    void splitHalves(const Region& region, int begin, int end) {
        const bool isWhole = begin == region.start && end == region.end();
        const int middle = region.middle();
        if (isWhole && write(end - begin))
            return;
        if (!isRest_ && begin < middle && end > middle && showsMiddle(region, begin, end) &&
            write(end - begin))
            return;
        if (region.length < 2 * kFinestTicks) // less than the finest
            return;
        split(region.part(0), begin, std::min(end, middle));
        split(region.part(1), std::max(begin, middle), end);
    }

    void splitThirds(const Region& region, int begin, int end) {
        const int share = region.length / 3;
        const int first = (begin - region.start) / share;
        const int last = (end - 1 - region.start) / share;
        if (first == last)
            return split(region.part(first), begin, end);
        if (last == first + 1) // as if the two were halves
            return split({.start = region.start + first * share, .length = 2 * share}, begin, end);
        if (begin == region.start && end == region.end() && write(end - begin))
            return;
        const int cut = region.start + (begin == region.start ? 2 : 1) * share;
        split(region, begin, cut);
        split(region, cut, end);
    }

    void restInThirds(const Region& region, int begin, int end) {
        const int share = region.length / 3;
        const int second = region.start + 2 * share;
        if (begin == region.start && end == region.end() && write(end - begin))
            return;
        if (begin == region.start && end >= second && share <= kLongestOfGroup && write(2 * share))
            return split(region.part(2), second, end);
        for (int i = 0; i < 3; ++i) {
            const Region part = region.part(i);
            split(part, std::max(begin, part.start), std::min(end, part.end()));
        }
    }

    void splitGroups(const Region& region, int begin, int end) {
        const auto groups = meter_.groupsOf(region);
        const auto holds = [](int place) {
            return [place](const Region& group) { return place >= group.start && place < group.end(); };
        };
        const auto first = std::ranges::find_if(groups, holds(begin));
        const auto last = std::ranges::find_if(groups, holds(end - 1));
        if (first == last)
            return split(*first, begin, end);
        const bool beginsGroup = begin == first->start;
        const bool endsGroup = end == last->end();
        const bool areAlike = std::all_of(first, last + 1, [&](const Region& group) {
            return group.length == first->length && group.parts == first->parts;
        });
        if (beginsGroup && endsGroup && areAlike && write(end - begin))
            return;
        const int cut = beginsGroup ? last->start : first->end();
        split(region, begin, cut);
        split(region, cut, end);
    }

    void restInGroups(const Region& region, int begin, int end) {
        const auto groups = meter_.groupsOf(region);
        const bool isHalfOfBar = groups.size() == 2 && groups[0].parts == Parts::Thirds;
        if (begin == region.start && end == region.end() && isHalfOfBar && write(end - begin))
            return;
        for (const Region& group : groups)
            split(group, std::max(begin, group.start), std::min(end, group.end()));
    }

    const Meter& meter_;
    bool isRest_;
    std::vector<Value>& into_;
};
} // namespace

void splitRun(const Meter& meter, int begin, int end, Sounding sounding, std::vector<Value>& into) {
    Splitter(meter, sounding, into).split(meter.bar(), begin, end);
}

} // namespace velmora::notation
