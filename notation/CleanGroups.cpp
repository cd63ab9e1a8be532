// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanGroups.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velmora::notation {

namespace {

bool sameLine(const CleanSign& a, const CleanSign& b) {
    return a.from->staff == b.from->staff && a.from->voice == b.from->voice;
}

int groupNumber(const CleanBar& bar, std::size_t sign) {
    const CleanSign& own = bar.signs[sign];
    if (own.flags() < 1)
        return 0;
    std::size_t piece = 0;
    while (piece < sign && bar.signs[sign - piece - 1].from == own.from)
        ++piece;
    return piece < own.from->beams.size() ? own.from->beams[piece] : 0;
}

void joinGroup(CleanBar& bar, const std::vector<int>& members) {
    const auto signOf = [&](int i) -> CleanSign& { return bar.signs[static_cast<std::size_t>(i)]; };
    const Written& first = *signOf(members[0]).from;
    int highest = -1000;
    int lowest = 1000;
    for (const int i : members) {
        highest = std::max(highest, signOf(i).heads.back().place);
        lowest = std::min(lowest, signOf(i).heads.front().place);
    }
    bool up = highest + lowest < 0;
    for (const CleanSign& sign : bar.signs)
        if (sign.from->staff == first.staff && sign.from->voice != first.voice)
            up = first.voice == 0;
    for (const CleanHead& head : signOf(members[0]).heads)
        up = up || head.letter == ' ';
    for (const int i : members) {
        signOf(i).beam = static_cast<int>(bar.beams.size());
        signOf(i).stemUp = up;
        signOf(i).id = signOf(members[0]).id;
    }
    bar.beams.push_back(members);
}

bool fillsValue(double length, double whole) {
    const double part = std::log2(whole / length);
    return std::abs(part - std::round(part)) < 0.01;
}

} // namespace

void groupBeams(CleanBar& bar) {
    std::vector<int> members;
    int group = 0;
    const auto close = [&] {
        if (members.size() > 1)
            joinGroup(bar, members);
        members.clear();
    };
    for (std::size_t i = 0; i < bar.signs.size(); ++i) {
        const int number = groupNumber(bar, i);
        if (!members.empty() &&
            (number != group || !sameLine(bar.signs[i], bar.signs[static_cast<std::size_t>(members[0])])))
            close();
        group = number;
        if (number > 0)
            members.push_back(static_cast<int>(i));
    }
    close();
}

void groupTriplets(CleanBar& bar, double whole) {
    std::vector<int> members;
    double length = 0;
    const auto close = [&] {
        if (!members.empty())
            bar.tuplets.push_back(members);
        members.clear();
        length = 0;
    };
    for (std::size_t i = 0; i < bar.signs.size(); ++i) {
        const CleanSign& sign = bar.signs[i];
        if (!members.empty() &&
            (!sign.value.triplet || !sameLine(sign, bar.signs[static_cast<std::size_t>(members[0])])))
            close();
        if (!sign.value.triplet)
            continue;
        members.push_back(static_cast<int>(i));
        length += sign.length;
        if (members.size() > 1 && fillsValue(length, whole))
            close();
    }
    close();
}

} // namespace velmora::notation
