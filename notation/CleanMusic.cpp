// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanMusic.h"

#include "notation/CleanChords.h"
#include "notation/CleanGroups.h"
#include "notation/CleanSpacing.h"
#include "notation/DrumSigns.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr std::array<Box, 27> kRooms{{
    {0, -4.4, 2.5, 2.65},       // treble clef
    {0, -0.65, 2.8, 2.65},      // bass clef
    {0, -1.05, 1.2, 1.05},      // percussion clef
    {-0.55, -1.35, 0.55, 1.35}, // sharp
    {-0.48, -1.6, 0.48, 0.55},  // flat
    {-0.48, -1.2, 0.48, 1.2},   // natural
    {-0.85, -0.55, 0.85, 0.55}, // whole head
    {-0.6, -0.55, 0.6, 0.55},   // half
    {-0.6, -0.55, 0.6, 0.55},   // black
    {-0.6, -0.55, 0.6, 0.55},   // cross
    {-0.06, 0, 1.1, 3.05},      // flags
    {-0.06, -3.05, 1.1, 0},     //
    {0, -1.05, 1.45, -0.4},     // rests
    {0, -0.6, 1.45, 0.05},      //
    {0, -1.55, 1.1, 1.55},      //
    {0, -0.95, 1.1, 0.95},      //
    {0, -1.45, 1.35, 1.45},     //
    {0, -1.85, 1.65, 2.05},     //
    {0, -2.35, 1.9, 2.55},      //
    {-0.2, -0.5, 0, 0.5},       // brace
    {0, -1.05, 1.75, 1.05},     // times
    {0, -1.75, 1.75, 1.75},     //
    {-0.6, -0.6, 0.6, 0.6},     // circled cross
    {-0.6, -0.55, 0.6, 0.55},   // diamonds
    {-0.6, -0.55, 0.6, 0.55},   //
    {-0.6, -0.55, 0.6, 0.55},   // triangles
    {-0.6, -0.55, 0.6, 0.55},   //
}};

constexpr int kLettersWhole = 196; ///< widths of heads with letters, in hundredths of a space
constexpr int kLettersBlack = 172;
constexpr int kOctave = 7;
constexpr int kBelowLine = -2; ///< a whole rest that hangs from the line of drums

bool isNamed(const Pitch& pitch) {
    return !pitch.name.empty() && pitch.name[0] >= 'A' && pitch.name[0] <= 'G';
}

MusicGlyph headOf(const Value& value) {
    return value.value == NoteValue::Whole  ? MusicGlyph::HeadWhole
           : value.value == NoteValue::Half ? MusicGlyph::HeadHalf
                                            : MusicGlyph::HeadBlack;
}

double lengthIn(const Value& value, double whole) {
    const double plain = whole / std::pow(2.0, static_cast<int>(value.value));
    const double dotted = plain * (2 - std::pow(0.5, value.dots));
    return value.triplet ? dotted * 2 / 3 : dotted;
}

} // namespace

const Box& roomOf(MusicGlyph glyph) {
    return kRooms.at(static_cast<std::size_t>(glyph));
}

CleanMusic::CleanMusic(const WrittenScore& score, const ScoreSetup& setup)
    : score_(score)
    , letters_(setup.learnToRead)
    , whole_(static_cast<double>(score.NotesPerMeasure) * std::max(1, score.NoteX) /
             std::max(1, score.TxtMeter) * kStepTicks)
    , octaves_(score.staves.size()) {
    const int first = score.NotesPerMeasure < 1 ? 0 : score.first / score.NotesPerMeasure + 1;
    std::vector<std::vector<std::size_t>> ofStaff(score.staves.size());
    std::size_t item = 0;
    for (int bar = 0; bar < score.bars(); ++bar) {
        firstOf_.push_back(item);
        int signs = 0;
        for (; item < score.items.size() && score.items[item].bar <= first + bar; ++item) {
            signs += static_cast<int>(score.items[item].values.size());
            ofStaff[static_cast<std::size_t>(score.items[item].staff)].push_back(item);
        }
        mostSigns_ = std::max(mostSigns_, signs / std::max<int>(1, static_cast<int>(score.staves.size())));
    }
    firstOf_.push_back(item);
    for (std::size_t staff = 0; staff < ofStaff.size(); ++staff)
        if (score.staves[staff].clef == StaffClef::Percussion)
            findDrums(static_cast<int>(staff), ofStaff[staff]);
        else
            findOctavesOf(static_cast<int>(staff), ofStaff[staff]);
    numberSinging();
}

double CleanMusic::headWidth(MusicGlyph shape) const {
    if (!letters_ || !isOval(shape))
        return roomOf(shape).right - roomOf(shape).left;
    if (shape == MusicGlyph::HeadBlack)
        return kLettersBlack * 0.01;
    return kLettersWhole * 0.01;
}

void CleanMusic::numberSinging() {
    singing_.assign(score_.items.size(), -1);
    sung_.assign(score_.items.size(), -1);
    int number = 0;
    for (std::size_t i = 0; i < score_.items.size(); ++i) {
        const Written& item = score_.items[i];
        if (item.staff != 0 || item.voice != 0 || item.isRest)
            continue;
        if (!item.held)
            singing_[i] = number++;
        sung_[i] = number - 1;
    }
}

void CleanMusic::findOctavesOf(int staff, const std::vector<std::size_t>& items) {
    const auto index = static_cast<std::size_t>(staff);
    std::vector<const Written*> notes;
    notes.reserve(items.size());
    for (const std::size_t item : items)
        if (!score_.items[item].isRest)
            notes.push_back(&score_.items[item]);
    if (score_.staves[index].secondChannel >= 0)
        std::ranges::stable_sort(notes, {}, [&](const Written* item) {
            return (item->bar - 1) * score_.NotesPerMeasure + item->step;
        });
    octaves_[index] = findOctaves(notes, score_.staves[index].clef, score_);
}

void CleanMusic::findDrums(int staff, const std::vector<std::size_t>& items) {
    for (const std::size_t item : items)
        if (const Written& note = score_.items[item]; !note.isRest && !note.held)
            firstOfDrum_.try_emplace({staff, note.pitches.front().drumKey}, &note);
}

bool CleanMusic::isFirstOfDrum(const Written& note) const {
    const auto first = firstOfDrum_.find({note.staff, note.pitches.front().drumKey});
    return first != firstOfDrum_.end() && first->second == &note;
}

int CleanMusic::octavesAt(int staff, int position) const {
    const auto& ranges = octaves(staff);
    const auto after = std::ranges::upper_bound(ranges, position, {}, &OctaveRange::from);
    if (after == ranges.begin() || position >= std::prev(after)->to)
        return 0;
    return std::prev(after)->octaves;
}

const Written* CleanMusic::neighbour(std::size_t item, int direction) const {
    const Written& own = score_.items[item];
    const int wanted = own.bar + direction;
    for (std::size_t i = item + static_cast<std::size_t>(direction); i < score_.items.size();
         i += static_cast<std::size_t>(direction)) {
        const Written& other = score_.items[i];
        if ((other.bar - wanted) * direction > 0)
            break;
        if (other.bar == wanted && other.staff == own.staff && other.voice == own.voice)
            return other.isRest ? nullptr : &other;
    }
    return nullptr;
}

void CleanMusic::addHeads(CleanSign& sign, const Written& item) const {
    const StaffClef clef = score_.staves[static_cast<std::size_t>(item.staff)].clef;
    const bool drums = clef == StaffClef::Percussion;
    for (const Pitch& pitch : item.pitches) {
        CleanHead head;
        head.place = placeOnStaff(pitch, clef) - sign.octaves * kOctave;
        head.row = pitch.row;
        head.letter = isNamed(pitch) ? pitch.name[0] : ' ';
        head.shape = headOf(sign.value);
        if (drums)
            head.shape = drumGlyph(drumSign(pitch.drumKey).head, head.shape);
        if (sign.struck ||
            (&item == sign.from && pitch.sign != Sign::None && sign.at == item.step * kStepTicks)) {
            head.sign = drums ? Sign::None : pitch.sign;
            head.courtesy = pitch.courtesy;
        }
        // Two drums of one staff share its line: they are one head.
        if (!drums || sign.heads.empty())
            sign.heads.push_back(head);
    }
    std::ranges::stable_sort(sign.heads, {}, &CleanHead::place);
}

void CleanMusic::joinTies(CleanBar& bar, std::size_t begin, std::size_t item) {
    const Written& own = score_.items[item];
    const auto has = [](const Written* other, const CleanHead& head) {
        return other == nullptr ||
               std::ranges::any_of(other->pitches, [&](const Pitch& p) { return p.row == head.row; });
    };
    const Written* before = own.tiedIn ? neighbour(item, -1) : nullptr;
    const Written* after = own.tiedOut ? neighbour(item, 1) : nullptr;
    for (std::size_t i = begin; i < bar.signs.size(); ++i)
        for (CleanHead& head : bar.signs[i].heads) {
            head.tieIn = i > begin || (own.tiedIn && has(before, head));
            head.tieOut = i + 1 < bar.signs.size() || (own.tiedOut && has(after, head));
        }
}

void CleanMusic::addSigns(CleanBar& bar, std::size_t index, bool twoVoices) {
    const Written& item = score_.items[index];
    double sum = 0;
    for (const Value& value : item.values)
        sum += value.wholeBar ? item.steps * static_cast<double>(kStepTicks) : lengthIn(value, whole_);
    // A length that cannot be written exactly still ends where its steps do.
    const double scale = sum > 0 ? item.steps * static_cast<double>(kStepTicks) / sum : 1;
    const bool isDrums = score_.staves[static_cast<std::size_t>(item.staff)].clef == StaffClef::Percussion;
    const std::size_t begin = bar.signs.size();
    double at = item.step * static_cast<double>(kStepTicks);
    for (std::size_t piece = 0; piece < item.values.size(); ++piece) {
        const Value& value = item.values[piece];
        CleanSign sign;
        sign.from = &item;
        sign.value = value;
        sign.at = static_cast<int>(std::lround(at));
        at +=
            (value.wholeBar ? item.steps * static_cast<double>(kStepTicks) : lengthIn(value, whole_)) * scale;
        sign.length = static_cast<int>(std::lround(at)) - sign.at;
        sign.struck = piece == 0 && !item.isRest && !item.held;
        sign.singing = piece == 0 ? singing_[index] : -1;
        sign.sung = sung_[index];
        sign.id = nextId_++;
        if (twoVoices && item.isRest)
            sign.restPlace = restPlaceOf(value, item.voice);
        else if (item.isRest && isDrums && restGlyph(value) == MusicGlyph::RestWhole)
            sign.restPlace = kBelowLine;
        if (!item.isRest) {
            sign.octaves = octavesAt(item.staff, (item.bar - 1) * score_.NotesPerMeasure + item.step);
            addHeads(sign, item);
            if (sign.heads.empty())
                continue;
            const int reach = sign.heads.front().place + sign.heads.back().place;
            sign.stemUp = twoVoices ? item.voice == 0 : reach < 0;
            if (isDrums)
                sign.stemUp = true;
        }
        bar.signs.push_back(std::move(sign));
    }
    joinTies(bar, begin, index);
}

CleanBar CleanMusic::bar(int index) {
    CleanBar bar;
    const auto at = static_cast<std::size_t>(index);
    bar.number = score_.first / score_.NotesPerMeasure + index + 1;
    bar.ticks = score_.NotesPerMeasure * kStepTicks;
    std::array<bool, 64> twoVoices{};
    for (std::size_t item = firstOf_[at]; item < firstOf_[at + 1]; ++item)
        if (score_.items[item].voice > 0)
            twoVoices.at(static_cast<std::size_t>(score_.items[item].staff) % twoVoices.size()) = true;
    for (std::size_t item = firstOf_[at]; item < firstOf_[at + 1]; ++item)
        addSigns(bar, item,
                 twoVoices.at(static_cast<std::size_t>(score_.items[item].staff) % twoVoices.size()));
    groupBeams(bar);
    groupTriplets(bar, whole_);
    findColumns(bar);
    arrangeColumns(bar, *this);
    spaceColumns(bar, whole_);
    return bar;
}

} // namespace velmora::notation
