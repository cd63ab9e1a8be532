// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Take.h"

#include "score/Numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmora {

namespace {
constexpr int kLongestWhole = 4; ///< a run of more is cut
constexpr int kLongRun = 100;    ///< of `ConvertRecording`'s counter: such a run is thinned out
constexpr int kShortBegin = 10;  ///< a thinned run that ends before this place is so at its end only
constexpr int kPlayedUnseen = 3; ///< items behind a rest's end that the next rest isn't looked for in
constexpr std::int32_t kContinued = 1000; ///< added to a row where a note goes on

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(roundHalfEven(value));
}

/// The pass that `BuildPlayList` and "Insert pauses" share.
/// @param lengthOf how many ticks a run that is cut keeps
template<typename LengthOf>
PlayList withPauses(const Take& take, LengthOf lengthOf) {
    PlayList list;
    list.reserve(take.List3.size());
    int run = 0;
    const auto endRun = [&] {
        if (run > kLongestWhole) {
            const int kept = std::clamp(lengthOf(run), 1, run);
            std::fill(list.end() - run + kept, list.end(), kRest);
        }
        run = 0;
    };
    for (std::size_t n = 1; n < take.List3.size(); ++n) {
        if (take.List1[n] == 1) {
            endRun();
            list.push_back(kRest);
        } else if (n + 1 < take.List3.size() && take.List3[n] == take.List3[n + 1]) {
            ++run;
            list.push_back(take.List3[n]);
        } else {
            endRun(); // the last tick of a run has no place of its own
        }
    }
    return list;
}

/// `ConvertRecording` from a trace that is ready to be played to cells that still have all rests.
class Cells {
public:
    Cells(const PlayList& trace, double compression) : trace_(trace), compression_(compression) {}

    std::vector<std::int32_t> made() {
        if (trace_.empty())
            return {};
        cells_.reserve(trace_.size() + 1);
        cells_.push_back(trace_[0]);
        // The first head is always followed by a continuation.
        cells_.push_back(trace_[0] == kRest ? kRest : trace_[0] + kContinued);
        for (std::size_t i = 2; i + 1 < trace_.size(); ++i)
            i = addItem(i);
        return std::move(cells_);
    }

private:
    [[nodiscard]] bool hasEqualSuccessor(std::size_t i) const {
        return i + 1 < trace_.size() && trace_[i] == trace_[i + 1];
    }

    /// @return the last item that has been dealt with
    std::size_t addItem(std::size_t i) {
        if (!hasEqualSuccessor(i)) {
            endRun();
            return i;
        }
        if (trace_[i] == kRest) {
            cells_.push_back(kRest);
            return i;
        }
        ++c_;
        if (trace_[i] != trace_[i - 1])
            return addNote(i);
        cells_.push_back(trace_[i - 1] + kContinued);
        return i;
    }

    /// A whole run. The first tick of a rest behind it is passed over, that of another row is not.
    std::size_t addNote(std::size_t i) {
        const std::int32_t row = trace_[i];
        cells_.push_back(row);
        std::size_t j = i;
        for (; j < trace_.size() && trace_[j] == row; ++j) {
            if (hasEqualSuccessor(j))
                cells_.push_back(row + kContinued);
        }
        return j < trace_.size() && trace_[j] != kRest ? j - 1 : j;
    }

    void endRun() {
        if (c_ < kLongRun)
            cells_.push_back(kRest);
        else
            thinOut();
        c_ = 0;
    }

    void thinOut() {
        const int k = rounded(c_ * compression_ * 0.2);
        const int last = static_cast<int>(cells_.size()) - 1;
        removeEverySecond(last - c_ + k < kShortBegin ? last - k : last - c_ - k);
        const double from = roundHalfEven(static_cast<double>(cells_.size()) - 1 - k * 0.25);
        for (auto place = static_cast<std::size_t>(std::max(from, 0.0)); place < cells_.size(); ++place) {
            if (!isSpared(cells_[place]))
                cells_[place] = kRest;
        }
    }

    /// From a place to the end, beginning with that; what follows a removed item stays without being looked
    /// at.
    void removeEverySecond(int first) {
        auto kept = static_cast<std::size_t>(std::max(first, 0));
        for (std::size_t place = kept; place < cells_.size(); ++place) {
            if (!isSpared(cells_[place]) && ++place == cells_.size())
                break;
            cells_[kept++] = cells_[place];
        }
        cells_.resize(std::min(kept, cells_.size()));
    }
    /// Heads are, so that a note never lacks its beginning.
    static bool isSpared(std::int32_t cell) { return cell < kContinued; }

    const PlayList& trace_;
    double compression_;
    std::vector<std::int32_t> cells_;
    int c_ = 0; ///< items since the last end of a run, each note being one
};

enum class Removal : std::uint8_t { EverySecond, All };

/// Shortens the rests. One of R places that something follows counts as R + 1, one at the end as R.
/// @param share of a rest that is kept whatever the removal
void shortenRests(std::vector<std::int32_t>& cells, double share, double factor, Removal removal) {
    std::size_t to = 0;
    std::size_t from = 0;
    const auto pass = [&](std::size_t count) {
        for (; count > 0 && from < cells.size(); --count)
            cells[to++] = cells[from++];
    };
    while (from < cells.size()) {
        if (cells[from] != kRest) {
            pass(1);
            continue;
        }
        const auto rest = cells.begin() + static_cast<std::ptrdiff_t>(from);
        const auto end = std::find_if(rest, cells.end(), [](std::int32_t cell) { return cell != kRest; });
        const auto length = static_cast<std::size_t>(end - rest);
        const std::size_t counted = length + (end == cells.end() ? 0 : 1);
        const auto kept = static_cast<std::size_t>(std::trunc(static_cast<double>(counted) * share * factor));
        if (kept >= counted) { // nothing is removed, and the walk goes on behind what was to be kept
            pass(kept + kPlayedUnseen);
            continue;
        }
        const std::size_t more = length - std::min(kept, length);
        const std::size_t removed = removal == Removal::All ? more : more - more / 2;
        from += removed;
        pass(length - removed + 1 + kPlayedUnseen);
    }
    cells.resize(to);
}
} // namespace

PlayList BuildPlayList(const Take& take, double compression) {
    return withPauses(take, [compression](int run) { return rounded(run * compression * 0.1); });
}

PlayList playListWithPauses(const Take& take, double pauses) {
    const int length = rounded(pauses * 0.1);
    return withPauses(take, [length](int /*run*/) { return length; });
}

PlayList plainPlayList(const Take& take) {
    PlayList list;
    list.reserve(take.List3.size());
    for (std::size_t n = 1; n < take.List3.size(); ++n)
        list.push_back(take.List1[n] == 1 ? kRest : take.List3[n]);
    return list;
}

std::vector<std::int16_t> ConvertRecording(const Take& take, double compression, int octaveShift) {
    const PlayList trace = BuildPlayList(take, compression);
    std::vector<std::int32_t> cells = Cells(trace, compression).made();
    shortenRests(cells, 1, 0.1, Removal::EverySecond);
    shortenRests(cells, compression, 0.01, Removal::All);
    std::vector<std::int16_t> heard(cells.size());
    std::ranges::transform(cells, heard.begin(), [octaveShift](std::int32_t cell) {
        return static_cast<std::int16_t>(cell == kRest ? kRest : cell - octaveShift);
    });
    return heard;
}

} // namespace velmora
