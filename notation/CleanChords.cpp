// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanChords.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <span>

namespace velmora::notation {

namespace {

constexpr double kLedgerOverhang = 0.35;
constexpr double kSignGap = 0.25; ///< from an accidental to the head
constexpr double kParenthesis = 0.4;
constexpr double kVoiceGap = 0.2;
constexpr int kFirstLedger = 6;

using Signs = std::span<CleanSign* const>;

MusicGlyph glyphOf(Sign sign) {
    return sign == Sign::Sharp  ? MusicGlyph::Sharp
           : sign == Sign::Flat ? MusicGlyph::Flat
                                : MusicGlyph::Natural;
}

void partSeconds(CleanSign& sign, const CleanMusic& music) {
    const std::size_t count = sign.heads.size();
    bool moved = false;
    for (std::size_t n = 0; n < count; ++n) {
        CleanHead& head = sign.heads[sign.stemUp ? n : count - 1 - n];
        head.left = 0;
        if (n == 0)
            continue;
        const CleanHead& before = sign.heads[sign.stemUp ? n - 1 : count - n];
        moved = !moved && std::abs(head.place - before.place) < 2;
        if (moved)
            head.left = (sign.stemUp ? 1 : -1) * (music.headWidth(head.shape) - kStemWidth);
    }
}

bool mayShare(const CleanSign& upper, const CleanSign& lower) {
    const CleanHead& above = upper.heads.front();
    const CleanHead& below = lower.heads.back();
    return above.place == below.place && above.row == below.row && above.shape == below.shape &&
           upper.value.dots == lower.value.dots && upper.hasStem() && lower.hasStem() &&
           upper.heads.size() == 1 && lower.heads.size() == 1;
}

/// How far the heads of a sign reach to the left and to the right.
std::pair<double, double> widthOf(const CleanSign& sign, const CleanMusic& music) {
    double left = 1e6;
    double right = -1e6;
    for (const CleanHead& head : sign.heads) {
        left = std::min(left, head.left);
        right = std::max(right, head.left + music.headWidth(head.shape));
    }
    return {left, right};
}

/// The upper voice stays. Where the heads would touch, the lower one goes to its right, or to its left where
/// the upper one's flag hangs.
void partVoices(CleanSign& upper, CleanSign& lower, const CleanMusic& music) {
    const int distance = upper.heads.front().place - lower.heads.back().place;
    if (distance > 1)
        return;
    if (mayShare(upper, lower)) {
        lower.heads.back().shared = true;
        lower.heads.back().sign = Sign::None;
        lower.id = upper.id;
        return;
    }
    const auto [upperLeft, upperRight] = widthOf(upper, music);
    const auto [lowerLeft, lowerRight] = widthOf(lower, music);
    const double gap = distance == 1 ? kStemWidth * 0.5 : kVoiceGap;
    const double shift = upper.hasFlag() ? upperLeft - lowerRight - gap : upperRight - lowerLeft + gap;
    for (CleanHead& head : lower.heads)
        head.left += shift;
}

/// How far up and down a note reaches without its stem, in places.
struct Reach {
    double top, bottom;
};
Reach reachOf(const CleanSign& note) {
    constexpr double kHeadHalf = 1.1;
    Reach reach{note.heads.back().place + kHeadHalf, note.heads.front().place - kHeadHalf};
    for (const CleanHead& head : note.heads)
        if (head.sign != Sign::None) {
            const Box& room = roomOf(glyphOf(head.sign));
            reach.top = std::max(reach.top, head.place - 2 * room.top);
            reach.bottom = std::min(reach.bottom, head.place - 2 * room.bottom);
        }
    return reach;
}

/// Away from the other voice's note, where the two would touch.
void moveRest(CleanSign& rest, const CleanSign& note) {
    constexpr double kAir = 0.7;
    const Box& room = roomOf(restGlyph(rest.value));
    const Reach reach = reachOf(note);
    if (rest.from->voice == 0) {
        const double place = reach.top + kAir + 2 * room.bottom;
        rest.restPlace = std::max(rest.restPlace, 2 * static_cast<int>(std::ceil(place / 2)));
    } else {
        const double place = reach.bottom - kAir + 2 * room.top;
        rest.restPlace = std::min(rest.restPlace, 2 * static_cast<int>(std::floor(place / 2)));
    }
}

/// What both voices rest is one rest on its usual place.
void mergeRests(Signs rests) {
    if (rests.size() < 2 || !(rests[0]->value == rests[1]->value))
        return;
    rests[0]->restPlace = 0;
    rests[1]->merged = true;
}

/// The rest of a whole bar stands in its middle, clear of all that the other voice has there.
void placeBarRests(Signs signs) {
    std::vector<CleanSign*> rests;
    for (CleanSign* sign : signs)
        if (sign->value.wholeBar)
            rests.push_back(sign);
    if (rests.size() != 1 || rests[0]->restPlace == 0)
        return;
    for (const CleanSign* sign : signs)
        if (!sign->isRest())
            moveRest(*rests[0], *sign);
}

struct SignColumn {
    double width = 0;
    std::vector<const CleanHead*> heads;
};

bool clash(const CleanHead& a, const CleanHead& b) {
    const CleanHead& upper = a.place >= b.place ? a : b;
    const CleanHead& lower = a.place >= b.place ? b : a;
    const double distance = (upper.place - lower.place) * 0.5;
    return distance < roomOf(glyphOf(upper.sign)).bottom - roomOf(glyphOf(lower.sign)).top + 0.05;
}

/// Accidentals from outside inwards, each as near as the others let it.
double placeAccidentals(Signs signs, double left) {
    std::vector<CleanHead*> with;
    for (CleanSign* sign : signs)
        for (CleanHead& head : sign->heads)
            if (head.sign != Sign::None)
                with.push_back(&head);
    if (with.empty())
        return left;
    std::ranges::stable_sort(with, [](auto* a, auto* b) { return a->place > b->place; });
    std::vector<SignColumn> columns;
    std::vector<std::size_t> columnOf(with.size());
    for (std::size_t n = 0; n < with.size(); ++n) {
        const std::size_t at = n % 2 == 0 ? n / 2 : with.size() - 1 - n / 2;
        CleanHead* head = with[at];
        std::size_t column = 0;
        while (column < columns.size() &&
               std::ranges::any_of(columns[column].heads,
                                   [&](const CleanHead* other) { return clash(*head, *other); }))
            ++column;
        if (column == columns.size())
            columns.emplace_back();
        const Box& room = roomOf(glyphOf(head->sign));
        columns[column].width = std::max(columns[column].width,
                                         room.right - room.left + (head->courtesy ? 2 * kParenthesis : 0.0));
        columns[column].heads.push_back(head);
        columnOf[at] = column;
    }
    left -= kSignGap;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        for (std::size_t at = 0; at < with.size(); ++at)
            if (columnOf[at] == column)
                with[at]->signMiddle = left - columns[column].width * 0.5;
        left -= columns[column].width + 0.1;
    }
    return left;
}

/// Dots stand in spaces, each in its own, beside the rightmost head.
double placeDots(Signs signs, double right) {
    std::vector<int> taken;
    double end = right;
    for (CleanSign* sign : signs) {
        if (sign->value.dots == 0 || sign->isRest())
            continue;
        sign->dotsLeft = right + 0.3;
        end = std::max(end, sign->dotsLeft + 0.4 + (sign->value.dots - 1) * kDotStep);
        const int away = signs.size() > 1 && sign->from->voice > 0 ? -1 : 1;
        for (std::size_t i = sign->heads.size(); i-- > 0;) {
            CleanHead& head = sign->heads[i];
            int place = head.place % 2 == 0 ? head.place + away : head.place;
            for (int step = 2; std::ranges::find(taken, place) != taken.end() && step < 40; step += 2)
                place += (step / 2 % 2 == 1 ? -away : away) * step;
            head.dotPlace = place;
            taken.push_back(place);
        }
    }
    return end;
}

MusicGlyph restOf(const Value& value) {
    constexpr std::array kRests{MusicGlyph::RestWhole,      MusicGlyph::RestHalf,
                                MusicGlyph::RestQuarter,    MusicGlyph::RestEighth,
                                MusicGlyph::RestSixteenth,  MusicGlyph::RestThirtySecond,
                                MusicGlyph::RestSixtyFourth};
    return kRests.at(std::min<std::size_t>(static_cast<std::size_t>(value.value), kRests.size() - 1));
}

void arrangeMoment(Signs signs, const CleanMusic& music) {
    std::vector<CleanSign*> rests;
    std::vector<CleanSign*> notes;
    for (CleanSign* sign : signs) {
        if (sign->isRest()) {
            rests.push_back(sign);
            continue;
        }
        partSeconds(*sign, music);
        notes.push_back(sign);
    }
    if (notes.size() > 1)
        partVoices(*notes[0], *notes[1], music);
    double left = 0;
    double right = 0;
    for (const CleanSign* sign : notes)
        for (const CleanHead& head : sign->heads) {
            const double ledger = std::abs(head.place) >= kFirstLedger ? kLedgerOverhang : 0;
            left = std::min(left, head.left - ledger);
            right = std::max(right, head.left + music.headWidth(head.shape) + ledger);
        }
    for (const CleanSign* sign : notes)
        if (sign->hasFlag() && sign->stemUp)
            right = std::max(right, music.headWidth(sign->heads[0].shape) + roomOf(MusicGlyph::FlagUp).right);
    left = placeAccidentals(notes, left);
    right = placeDots(notes, right);
    mergeRests(rests);
    for (CleanSign* rest : rests) {
        if (rest->restPlace != 0)
            for (const CleanSign* note : notes)
                moveRest(*rest, *note);
        const double end = rest->value.wholeBar ? 1.2 : roomOf(restOf(rest->value)).right;
        rest->dotsLeft = end + 0.3;
        right = std::max(right, end + (rest->value.dots > 0 ? 0.7 + (rest->value.dots - 1) * kDotStep : 0));
    }
    for (CleanSign* sign : signs) {
        sign->left = -left;
        sign->right = right;
    }
}

} // namespace

MusicGlyph restGlyph(const Value& value) {
    return value.wholeBar ? MusicGlyph::RestWhole : restOf(value);
}
int restPlaceOf(const Value& value, int voice) {
    constexpr int kOuterLine = 4;
    const int line = voice == 0 ? kOuterLine : -kOuterLine;
    return restGlyph(value) == MusicGlyph::RestWhole ? line - 2 : line; // a whole rest hangs below its line
}
MusicGlyph accidentalGlyph(Sign sign) {
    return glyphOf(sign);
}

void arrangeColumns(CleanBar& bar, const CleanMusic& music) {
    std::size_t begin = 0;
    std::vector<std::pair<int, CleanSign*>> ofStaff;
    std::vector<CleanSign*> moment;
    while (begin < bar.signs.size()) {
        const int staff = bar.signs[begin].from->staff;
        ofStaff.clear();
        for (; begin < bar.signs.size() && bar.signs[begin].from->staff == staff; ++begin)
            ofStaff.emplace_back(bar.signs[begin].column, &bar.signs[begin]);
        moment.clear();
        for (const auto& entry : ofStaff)
            moment.push_back(entry.second);
        std::ranges::stable_sort(ofStaff, {}, &std::pair<int, CleanSign*>::first);
        const std::vector<CleanSign*> all = moment;
        for (std::size_t i = 0; i < ofStaff.size();) {
            moment.clear();
            const int column = ofStaff[i].first;
            for (; i < ofStaff.size() && ofStaff[i].first == column; ++i)
                moment.push_back(ofStaff[i].second);
            arrangeMoment(moment, music);
        }
        placeBarRests(all);
    }
}

} // namespace velmora::notation
