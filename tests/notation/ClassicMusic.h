// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/EngravedText.h"
#include "notation/Engraver.h"
#include "notation/ModScore.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <sstream>
#include <string>
#include <vector>

namespace velmora::notation {

/// A score drawn note by note, with channel 0 on a treble staff until more is ticked.
struct ClassicMusic {
    Score score{1000};
    SetupState meter;
    ScoreSetup setup;

    ClassicMusic() {
        setup.classicPage = true;
        setup.newScore = false;
        setup.staves.chkChannel[0] = true;
    }

    ClassicMusic& stroke(int channel, int row, int first, int steps) {
        for (int i = 0; i < steps; ++i)
            score.NoteCell.set(channel, first + i, static_cast<std::int16_t>(i == 0 ? row : row + 1000));
        score.FindEndOfSong();
        return *this;
    }
    /// Notes of equal length, one after the other from position 0.
    ClassicMusic& tune(const std::vector<int>& rows, int steps) {
        int position = 0;
        for (const int row : rows) {
            stroke(0, row, position, steps);
            position += steps;
        }
        return *this;
    }
    ClassicMusic& measure(int NotesPerMeasure) {
        score.NotesPerMeasure = static_cast<std::int16_t>(NotesPerMeasure);
        return *this;
    }

    [[nodiscard]] WrittenScore read() const { return readClassic(score, meter, setup); }

    /// "BAR:STEP+STEPS VALUES" of each item of a staff, "r" before those of rests, the beam behind.
    [[nodiscard]] std::vector<std::string> values(int staff = 0) const {
        std::vector<std::string> all;
        for (const Written& item : read().items) {
            if (item.staff != staff)
                continue;
            std::string text = (item.isRest ? "r"
                                : item.held ? "-"
                                            : "") +
                               std::to_string(item.bar) + ':' + std::to_string(item.step) + '+' +
                               std::to_string(item.steps);
            for (const Value& value : item.values)
                text += ' ' + textOf(value);
            if (item.beamCount > 0)
                text += ' ' + std::to_string(item.beamIndex) + '/' + std::to_string(item.beamCount);
            all.push_back(text);
        }
        return all;
    }

    [[nodiscard]] EngravedScore engrave() const { return engraveClassic(read(), setup); }

    /// The lines of what is drawn.
    [[nodiscard]] std::vector<std::string> drawn() const { return linesOf(engravedText(engrave())); }
    /// Those behind the first system's ruling.
    [[nodiscard]] std::vector<std::string> music() const {
        const auto all = drawn();
        std::size_t first = 0;
        const EngravedScore empty = engrave();
        for (const Mark& mark : empty.pages.front().marks) {
            ++first;
            if (mark.role == Role::BarLine)
                break;
        }
        return {all.begin() + static_cast<std::ptrdiff_t>(first) + 1, all.end()};
    }
    /// Those of the list that begin with a word.
    [[nodiscard]] std::vector<std::string> drawn(const std::string& word) const {
        std::vector<std::string> some;
        for (const std::string& line : drawn())
            if (line.starts_with(word))
                some.push_back(line);
        return some;
    }

    static std::vector<std::string> linesOf(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
};

} // namespace velmora::notation
