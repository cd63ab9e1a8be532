// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Triplets.h"

#include <algorithm>
#include <array>
#include <bit>

namespace velmora::notation {

namespace {
/// So long a span counts as one beat.
constexpr int kLongestPlain = kWholeTicks / 4;

/// The value that is this long as one of a triplet.
std::optional<Value> tripletValue(int ticks) {
    if (ticks % 2 != 0)
        return std::nullopt;
    auto value = singleValue(ticks / 2 * 3);
    if (!value || value->dots != 0)
        return std::nullopt;
    value->triplet = true;
    return value;
}

/// Halves @p part until what is left of the run fits.
void splitPart(const Region& part, int begin, int end, std::vector<Value>& into) {
    if (begin >= end)
        return;
    if (begin == part.start && end == part.end()) {
        if (const auto value = tripletValue(part.length))
            into.push_back(*value);
        return;
    }
    if (part.length < 2)
        return;
    splitPart(part.part(0), begin, std::min(end, part.middle()), into);
    splitPart(part.part(1), std::max(begin, part.middle()), end, into);
}

/// Writes a run within a span: thirds, two of them as one, and halves of a third.
void splitInSpan(const TripletSpan& span, int begin, int end, Sounding sounding, std::vector<Value>& into) {
    const Region region{.start = span.start, .length = span.length, .parts = Parts::Thirds};
    const int third = span.length / 3;
    if (begin == span.start && end == span.end()) {
        splitPart({.start = begin, .length = 2 * third}, begin, begin + 2 * third, into);
        return splitPart(region.part(2), begin + 2 * third, end, into);
    }
    for (int i = 0; i < 3; ++i) {
        const Region part = region.part(i);
        const bool takesTwo = i < 2 && begin <= part.start && end >= part.end() + third &&
                              (sounding == Sounding::Note || i == 0);
        if (takesTwo) {
            splitPart({.start = part.start, .length = 2 * third}, part.start, part.start + 2 * third, into);
            ++i;
        } else {
            splitPart(part, std::max(begin, part.start), std::min(end, part.end()), into);
        }
    }
}

struct Choice {
    std::size_t signs = 0;
    std::vector<TripletSpan> spans{};

    void add(const Choice& other) {
        signs += other.signs;
        spans.insert(spans.end(), other.spans.begin(), other.spans.end());
    }
};

class Chooser {
public:
    Chooser(const Meter& meter, std::span<const int> places) : meter_(meter), places_(places) {}

    Choice choose(const Region& region) {
        if (!needsThirds(region))
            return {.signs = signsOf(region, nullptr)};
        const TripletSpan span{region.start, region.length};
        const bool isSpan = region.parts == Parts::Halves && fits(span);
        // What falls on thirds alone would be cut in the middle by parts.
        if (isSpan && fallsOnThirds(span))
            return {.signs = signsOf(region, &span), .spans = {span}};
        Choice best = inParts(region);
        if (isSpan && showsItsThirds(span)) {
            const std::size_t signs = signsOf(region, &span);
            if (signs < best.signs)
                best = {.signs = signs, .spans = {span}};
        }
        return best;
    }

private:
    static constexpr std::size_t kNoWay = 1'000'000;

    Choice inParts(const Region& region) {
        Choice sum;
        if (region.parts == Parts::Groups) {
            for (const Region& group : meter_.groupsOf(region))
                sum.add(choose(group));
            return sum;
        }
        if (region.parts == Parts::Halves) {
            if (region.length < 4 * kFinestTicks)
                return {.signs = kNoWay};
            sum.add(choose(region.part(0)));
            sum.add(choose(region.part(1)));
            return sum;
        }
        const std::array parts{region.part(0), region.part(1), region.part(2)};
        for (const Region& part : parts)
            sum.add(choose(part));
        // Two beats of three may have one triplet.
        for (std::size_t first = 0; first < 2; ++first) {
            const TripletSpan span{parts[first].start, 2 * parts[first].length};
            if (!fits(span) || !showsItsThirds(span))
                continue;
            Choice pair{.signs = signsOf({.start = span.start, .length = span.length}, &span),
                        .spans = {span}};
            pair.add(choose(parts[first == 0 ? 2 : 0]));
            if (pair.signs < sum.signs)
                sum = pair;
        }
        std::ranges::sort(sum.spans, {}, &TripletSpan::start);
        return sum;
    }

    [[nodiscard]] auto inside(int start, int end) const {
        const auto first = std::ranges::upper_bound(places_, start);
        return std::span(first, std::ranges::lower_bound(places_, end));
    }
    [[nodiscard]] bool needsThirds(const Region& region) const {
        return std::ranges::any_of(inside(region.start, region.end()),
                                   [](int place) { return place % kFinestTicks != 0; });
    }
    /// Whether all that begins in it does so at a third, or at a half of one and so on.
    [[nodiscard]] bool fits(const TripletSpan& span) const {
        const unsigned third = static_cast<unsigned>(span.length) / 3;
        if (span.length > kWholeTicks || span.length % 6 != 0 || !std::has_single_bit(third))
            return false;
        return std::ranges::all_of(inside(span.start, span.end()),
                                   [&](int place) { return (place - span.start) % 2 == 0; });
    }

    [[nodiscard]] bool fallsOnThirds(const TripletSpan& span) const {
        return std::ranges::all_of(inside(span.start, span.end()),
                                   [&](int place) { return (place - span.start) % (span.length / 3) == 0; });
    }

    /// Over more than a beat a reader has to hear the thirds: something begins on each, or on nothing else. A
    /// note that only reaches into the triplet of a later beat is tied to it.
    [[nodiscard]] bool showsItsThirds(const TripletSpan& span) const {
        if (span.length <= kLongestPlain || fallsOnThirds(span))
            return true;
        if (span.length > 2 * kLongestPlain)
            return false;
        const int third = span.length / 3;
        return std::ranges::binary_search(places_, span.start + third) &&
               std::ranges::binary_search(places_, span.end() - third);
    }

    std::size_t signsOf(const Region& region, const TripletSpan* span) {
        signs_.clear();
        int begin = region.start;
        const auto write = [&](int end) {
            if (span != nullptr)
                splitInSpan(*span, begin, end, Sounding::Note, signs_);
            else
                splitRun(meter_, begin, end, Sounding::Note, signs_);
            begin = end;
        };
        for (const int place : inside(region.start, region.end()))
            write(place);
        write(region.end());
        return signs_.size();
    }

    const Meter& meter_;
    std::span<const int> places_;
    std::vector<Value> signs_;
};
} // namespace

std::vector<TripletSpan> findTriplets(const Meter& meter, std::span<const int> places) {
    if (std::ranges::all_of(places, [](int place) { return place % kFinestTicks == 0; }))
        return {};
    return Chooser(meter, places).choose(meter.bar()).spans;
}

void splitRun(const Meter& meter, std::span<const TripletSpan> spans, int begin, int end, Sounding sounding,
              std::vector<Value>& into) {
    for (const TripletSpan& span : spans) {
        if (span.end() <= begin || span.start >= end)
            continue;
        splitRun(meter, begin, std::max(begin, span.start), sounding, into);
        splitInSpan(span, std::max(begin, span.start), std::min(end, span.end()), sounding, into);
        begin = std::min(end, span.end());
    }
    splitRun(meter, begin, end, sounding, into);
}

} // namespace velmora::notation
