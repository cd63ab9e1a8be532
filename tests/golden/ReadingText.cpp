// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/ReadingText.h"

#include <array>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

namespace {
using notation::Pitch;
using notation::Written;

constexpr std::array<std::string_view, 4> kSigns{"", "#", "b", "n"};

std::string headText(const Pitch& pitch) {
    const std::string sign(kSigns.at(static_cast<std::size_t>(pitch.sign)));
    return (pitch.courtesy ? '(' + sign + ')' : sign) + pitch.name;
}

std::string headsText(const Written& note) {
    std::string text;
    for (const Pitch& pitch : note.pitches)
        text += (text.empty() ? "" : "+") + headText(pitch);
    return text;
}

/// Writes what one voice plays on one staff.
class VoiceReading {
public:
    explicit VoiceReading(const std::vector<const Written*>& items) {
        for (const Written* item : items)
            for (const int beam : item->beams)
                ++left_[{item->bar, beam}];
        for (const Written* item : items)
            add(*item);
    }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    using Beam = std::pair<int, int>; ///< bar and group

    void add(const Written& item) {
        if (!text_.empty())
            text_ += item.bar == bar_ ? " " : " | ";
        bar_ = item.bar;
        if (item.isRest)
            addRest(item);
        else
            addNote(item);
    }
    void addRest(const Written& rest) {
        text_ += '(';
        for (std::size_t i = 0; i < rest.values.size(); ++i)
            text_ += (i == 0 ? "" : "+") + textOf(rest.values[i]);
        text_ += ')';
    }
    void addNote(const Written& note) {
        for (std::size_t i = 0; i < note.values.size(); ++i) {
            const Beam beam{note.bar, i < note.beams.size() ? note.beams[i] : 0};
            text_ += i == 0 ? "" : "+";
            if (beam.second != 0 && begun_.insert(beam).second)
                text_ += '[';
            if (i == 0)
                text_ += (note.tiedIn ? "~" : "") + headsText(note) + '.';
            text_ += textOf(note.values[i]);
            if (i + 1 == note.values.size())
                addStem(note);
            if (beam.second != 0 && --left_[beam] == 0)
                text_ += ']';
        }
    }
    void addStem(const Written& note) {
        if (note.values.front().value != notation::NoteValue::Whole)
            text_ += note.stemUp ? '^' : 'v';
        text_ += note.tiedOut ? "~" : "";
    }

    std::string text_;
    int bar_ = 0;
    std::map<Beam, int> left_; ///< values that a beam still has before it
    std::set<Beam> begun_;
};
} // namespace

std::string readingText(const notation::WrittenScore& score) {
    std::string all;
    for (std::size_t staff = 0; staff < score.staves.size(); ++staff)
        for (int voice = 0; voice < (score.staves[staff].secondChannel < 0 ? 1 : 2); ++voice) {
            std::vector<const Written*> items;
            for (const Written& item : score.items)
                if (item.staff == static_cast<int>(staff) && item.voice == voice)
                    items.push_back(&item);
            all += (all.empty() ? "" : " / ") + VoiceReading(items).text();
        }
    return all;
}

} // namespace velmora
