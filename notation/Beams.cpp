// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Beams.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace velmora::notation {

namespace {
constexpr int kEighth = kWholeTicks / 8;

/// A value under a beam, or one that ends it.
struct Flagged {
    std::size_t item;
    std::size_t value;
    int start;
    bool isPlainEighth;
};

struct Reach {
    int above = 0; ///< pixels from the middle line
    int below = 0;

    void add(std::span<const Pitch> pitches) {
        for (const Pitch& pitch : pitches) {
            above = std::max(above, kMiddlePlace - pitch.place);
            below = std::max(below, pitch.place - kMiddlePlace);
        }
    }
    [[nodiscard]] bool pointsUp() const { return below > above; }
};

class Grouper {
public:
    Grouper(const Meter& meter, std::span<Written> items, std::span<const int> starts)
        : meter_(meter)
        , items_(items) {
        flagged_.reserve(items.size());
        for (std::size_t i = 0; i < items.size(); ++i)
            addItem(i, starts[i]);
    }

    void group() {
        const auto windows = meter_.beamWindows();
        std::size_t from = 0;
        for (std::size_t i = 0; i < windows.size(); ++i) {
            std::size_t last = i;
            while (last + 1 < windows.size() && windows[i].side >= 0 &&
                   windows[last + 1].side == windows[i].side && isAllEighths(windows[last]) &&
                   isAllEighths(windows[last + 1]))
                ++last;
            const int end = windows[last].end;
            while (from < flagged_.size() && flagged_[from].start < windows[i].start)
                ++from;
            std::size_t to = from;
            while (to < flagged_.size() && flagged_[to].start < end)
                ++to;
            groupRuns(from, to);
            from = to;
            i = last;
        }
        pointStems();
    }

private:
    void addItem(std::size_t index, int start) {
        Written& item = items_[index];
        item.beams.assign(item.values.size(), 0);
        for (std::size_t i = 0; i < item.values.size(); ++i) {
            const Value& value = item.values[i];
            if (!item.isRest && value.value >= NoteValue::Eighth)
                flagged_.push_back({index, i, start, value == Value{.value = NoteValue::Eighth}});
            start += ticksOf(value);
        }
    }

    [[nodiscard]] bool isAllEighths(const BeamWindow& window) const {
        int sum = 0;
        for (const Flagged& value : flagged_) {
            if (value.start < window.start || value.start >= window.end)
                continue;
            if (!value.isPlainEighth)
                return false;
            sum += kEighth;
        }
        return sum == window.end - window.start;
    }

    [[nodiscard]] int endOf(const Flagged& value) const {
        return value.start + ticksOf(items_[value.item].values[value.value]);
    }

    /// What follows without a gap has one beam.
    void groupRuns(std::size_t from, std::size_t to) {
        while (from < to) {
            std::size_t end = from + 1;
            while (end < to && flagged_[end].start == endOf(flagged_[end - 1]))
                ++end;
            if (end - from > 1)
                join(from, end);
            from = end;
        }
    }

    void join(std::size_t from, std::size_t end) {
        const int number = static_cast<int>(groups_.size()) + 1;
        for (std::size_t i = from; i < end; ++i) {
            Written& item = items_[flagged_[i].item];
            item.beams[flagged_[i].value] = number;
            if (item.beamCount == 0) {
                item.beamIndex = static_cast<int>(i - from) + 1;
                item.beamCount = static_cast<int>(end - from);
            }
        }
        groups_.push_back({flagged_[from].item, flagged_[end - 1].item});
    }

    /// Groups that share a note, of which each holds a piece, point one way.
    void pointStems() {
        for (std::size_t i = 0; i < groups_.size();) {
            const std::size_t first = groups_[i].first;
            std::size_t last = groups_[i].last;
            for (++i; i < groups_.size() && groups_[i].first == last; ++i)
                last = groups_[i].last;
            const auto chain = items_.subspan(first, last - first + 1);
            Reach reach;
            for (const Written& item : chain)
                reach.add(item.pitches);
            for (Written& item : chain)
                item.stemUp = reach.pointsUp();
        }
    }

    struct Group {
        std::size_t first; ///< item
        std::size_t last;
    };

    const Meter& meter_;
    std::span<Written> items_;
    std::vector<Flagged> flagged_;
    std::vector<Group> groups_;
};
} // namespace

void groupBeams(const Meter& meter, std::span<Written> items, std::span<const int> starts) {
    Grouper(meter, items, starts).group();
}

bool stemPointsUp(std::span<const Pitch> pitches) {
    Reach reach;
    reach.add(pitches);
    return reach.pointsUp();
}

} // namespace velmora::notation
