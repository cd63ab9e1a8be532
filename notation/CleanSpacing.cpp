// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanSpacing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora::notation {

namespace {

constexpr double kSixteenth = 2.5; ///< the space of one
constexpr double kDoubled = 1.35;  ///< what each longer value has more
constexpr double kNarrowest = 1.6;
constexpr double kLead = 1.2;       ///< from a bar line to the first column
constexpr double kEmptyBar = 6;     ///< of a bar that holds nothing but its rest
constexpr double kSignsApart = 0.3; ///< between signs of one staff
constexpr double kTieRoom = 0.8;    ///< that a tie is seen
constexpr double kBarLineApart = 0.6;

double spaceOf(double length, double whole) {
    return std::max(kNarrowest, kSixteenth + kDoubled * std::log2(length * 16 / whole));
}

/// What one staff has in one column.
struct Taken {
    int column;
    double left, right;
};

std::vector<Taken> takenBy(const CleanBar& bar, std::size_t begin, std::size_t end) {
    std::vector<Taken> taken;
    for (std::size_t i = begin; i < end; ++i) {
        const CleanSign& sign = bar.signs[i];
        if (sign.value.wholeBar)
            continue;
        const bool isTied = std::ranges::any_of(sign.heads, &CleanHead::tieOut);
        taken.push_back({sign.column, sign.left, sign.right + (isTied ? kTieRoom : 0)});
    }
    std::ranges::stable_sort(taken, {}, &Taken::column);
    std::size_t last = 0;
    for (std::size_t i = 1; i < taken.size(); ++i) {
        if (taken[i].column != taken[last].column) {
            taken[++last] = taken[i];
            continue;
        }
        taken[last].left = std::max(taken[last].left, taken[i].left);
        taken[last].right = std::max(taken[last].right, taken[i].right);
    }
    if (!taken.empty())
        taken.resize(last + 1);
    return taken;
}

void addRods(CleanBar& bar) {
    const int end = static_cast<int>(bar.times.size());
    std::size_t begin = 0;
    while (begin < bar.signs.size()) {
        std::size_t behind = begin;
        while (behind < bar.signs.size() && bar.signs[behind].from->staff == bar.signs[begin].from->staff)
            ++behind;
        const std::vector<Taken> taken = takenBy(bar, begin, behind);
        for (std::size_t i = 0; i < taken.size(); ++i) {
            const double left = taken[i].left;
            if (i == 0)
                bar.rods.push_back({-1, taken[i].column, left + kBarLineApart});
            else
                bar.rods.push_back(
                    {taken[i - 1].column, taken[i].column, taken[i - 1].right + left + kSignsApart});
        }
        if (!taken.empty())
            bar.rods.push_back({taken.back().column, end, taken.back().right + kBarLineApart});
        begin = behind;
    }
    bar.rods.push_back({-1, 0, kLead * 0.75});
    bar.rods.push_back({-1, end, 4});
}

} // namespace

void findColumns(CleanBar& bar) {
    for (const CleanSign& sign : bar.signs)
        bar.times.push_back(sign.value.wholeBar ? 0 : sign.at);
    if (bar.times.empty())
        bar.times.push_back(0);
    std::ranges::sort(bar.times);
    bar.times.erase(std::unique(bar.times.begin(), bar.times.end()), bar.times.end());
    for (CleanSign& sign : bar.signs)
        sign.column = static_cast<int>(
            std::ranges::lower_bound(bar.times, sign.value.wholeBar ? 0 : sign.at) - bar.times.begin());
}

void spaceColumns(CleanBar& bar, double whole) {
    constexpr double kNothing = std::numeric_limits<double>::max();
    std::vector<double> shortest(bar.times.size(), kNothing);
    for (const CleanSign& sign : bar.signs) {
        if (sign.value.wholeBar)
            continue;
        for (auto i = static_cast<std::size_t>(sign.column);
             i < bar.times.size() && bar.times[i] < sign.at + sign.length; ++i)
            shortest[i] = std::min(shortest[i], static_cast<double>(sign.length));
    }
    for (std::size_t i = 0; i < bar.times.size(); ++i) {
        const int next = i + 1 < bar.times.size() ? bar.times[i + 1] : bar.ticks;
        const double duration = std::max(1, next - bar.times[i]);
        if (shortest[i] == kNothing)
            bar.springs.push_back(kEmptyBar);
        else // where a longer note goes on, the shortest sounding one says how dense the music is
            bar.springs.push_back(spaceOf(shortest[i], whole) * std::min(1.0, duration / shortest[i]));
    }
    addRods(bar);
}

void Chain::add(const CleanBar& bar, double stretch) {
    if (barLines.empty())
        barLines.push_back(0);
    const int base = barLines.back();
    springs.push_back(kLead);
    for (const double spring : bar.springs)
        springs.push_back(spring * stretch);
    for (const Rod& rod : bar.rods)
        rods.push_back({base + 1 + rod.from, base + 1 + rod.to, rod.length});
    barLines.push_back(static_cast<int>(springs.size()));
}

void Chain::close() {
    std::ranges::stable_sort(rods, {}, &Rod::to);
}

void Chain::place(double force, std::vector<double>& x) const {
    x.resize(springs.size() + 1);
    x[0] = 0;
    auto rod = rods.begin();
    for (std::size_t i = 1; i < x.size(); ++i) {
        x[i] = x[i - 1] + springs[i - 1] * force;
        for (; rod != rods.end() && rod->to == static_cast<int>(i); ++rod)
            x[i] = std::max(x[i], x[static_cast<std::size_t>(rod->from)] + rod->length);
    }
}

std::vector<double> Chain::positions(double force) const {
    std::vector<double> x;
    place(force, x);
    return x;
}

double Chain::width(double force) const {
    return positions(force).back();
}

std::vector<double> Chain::fitted(double wanted) const {
    std::vector<double> x;
    place(0, x);
    if (x.back() >= wanted) {
        // Nothing gives any more: all is pressed together alike.
        const double scale = x.back() > 0 ? wanted / x.back() : 1;
        for (double& at : x)
            at *= scale;
        return x;
    }
    double low = 0;
    double high = 1;
    for (int i = 0; i < 30; ++i) {
        place(high, x);
        if (x.back() >= wanted)
            break;
        low = high;
        high *= 2;
    }
    for (int i = 0; i < 30 && high - low > 1e-4; ++i) {
        const double middle = (low + high) / 2;
        place(middle, x);
        (x.back() < wanted ? low : high) = middle;
    }
    place(low, x);
    x.back() = wanted;
    return x;
}

} // namespace velmora::notation
