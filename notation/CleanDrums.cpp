// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanNotes.h"
#include "notation/DrumSigns.h"
#include "sound/Instruments.h"

#include <algorithm>
#include <array>

namespace velmora::notation {

namespace {

constexpr double kAboveMusic = 0.5;
constexpr double kRow = 1.35;
constexpr double kNameGap = 0.6;

/// A drum's name over the note where a reader has to know it.
struct DrumName {
    std::string text;
    double left, right;
    std::size_t row = 0; ///< above the lowest
};

/// Names where a head of this form means another drum than before, each line anew.
class DrumNames {
public:
    DrumNames(const CleanStyle& style, const CleanLine& line, const CleanMusic& music)
        : style_(style)
        , line_(line)
        , music_(music) {
        meant_.fill(-1);
    }

    void note(const CleanSign& sign, double x) {
        const int key = sign.from->pitches.front().drumKey;
        const DrumSign& drum = drumSign(key);
        int& meant = meant_.at(static_cast<std::size_t>(drum.head));
        if (drum.key < 0 || meant == key)
            return;
        meant = key;
        const bool isFirst = music_.isFirstOfDrum(*sign.from);
        const std::string text(isFirst ? nameOfIdentifier(key) : drum.shortName);
        const double width = style_.extent(text, style_.drum).width;
        const double left = std::max(line_.left, std::min(x, line_.right - width));
        names_.push_back({text, left, left + width, rowFor(left, left + width)});
    }

    void draw(CleanInk& ink) const {
        double y = 0;
        for (const DrumName& name : names_)
            y = std::min(y, ink.sky.highest(name.left, name.right));
        for (const DrumName& name : names_)
            ink.text(name.text, style_.drum,
                     {name.left, y - (kAboveMusic + kRow * static_cast<double>(name.row)) * style_.space},
                     Role::Drum);
    }

private:
    std::size_t rowFor(double left, double right) {
        std::size_t row = 0;
        while (row < ends_.size() && ends_[row] + kNameGap * style_.space > left)
            ++row;
        ends_.resize(std::max(ends_.size(), row + 1));
        ends_[row] = right;
        return row;
    }

    const CleanStyle& style_;
    const CleanLine& line_;
    const CleanMusic& music_;
    std::array<int, 5> meant_{}; ///< by the form of the head
    std::vector<DrumName> names_;
    std::vector<double> ends_; ///< of the rows
};

} // namespace

void drawDrumNames(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    if (music.score().staves[static_cast<std::size_t>(staff)].clef != StaffClef::Percussion)
        return;
    DrumNames names(ink.style(), line, music);
    for (std::size_t i = 0; i < line.count(); ++i)
        for (const CleanSign& sign : line.bar(i).signs)
            if (sign.from->staff == staff && sign.struck)
                names.note(sign, line.xOf(i, sign.column));
    names.draw(ink);
}

} // namespace velmora::notation
