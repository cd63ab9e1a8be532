// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Keys.h"
#include "notation/ModScore.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::notation {

/// A score drawn note by note and read cleanly, with channel 0 on a treble staff until more is ticked.
struct CleanMusicReader {
    Score score{2000};
    SetupState meter;
    ScoreSetup setup;

    CleanMusicReader() {
        setup.newScore = false;
        setup.staves.chkChannel[0] = true;
    }

    CleanMusicReader& meterOf(int upper, int lower, int NotesPerMeasure) {
        meter.TxtMeter = static_cast<std::int16_t>(upper);
        meter.NoteX = static_cast<std::int16_t>(lower);
        score.NotesPerMeasure = static_cast<std::int16_t>(NotesPerMeasure);
        return *this;
    }
    CleanMusicReader& key(std::string_view word) {
        const auto* const found = std::ranges::find(kKeys, word, &Key::word);
        setup.key = static_cast<int>(found - kKeys.begin());
        return *this;
    }
    CleanMusicReader& stroke(int channel, int note, int first, int steps) {
        for (int i = 0; i < steps; ++i)
            score.NoteCell.set(channel, first + i,
                               static_cast<std::int16_t>(RowToNote(note) + (i == 0 ? 0 : 1000)));
        score.FindEndOfSong();
        return *this;
    }
    /// Lengths in steps one after the other, rests negative; all of one pitch.
    CleanMusicReader& rhythm(const std::vector<int>& lengths, int note = 67) {
        score.ClearNoteArrays();
        int position = 0;
        for (const int length : lengths) {
            if (length > 0)
                stroke(0, note, position, length);
            position += std::abs(length);
        }
        setup.end = position;
        return *this;
    }
    /// MIDI notes of equal length one after the other.
    CleanMusicReader& tune(const std::vector<int>& notes, int steps = 4) {
        int position = 0;
        for (const int note : notes) {
            stroke(0, note, position, steps);
            position += steps;
        }
        return *this;
    }

    [[nodiscard]] WrittenScore read() const { return readClean(score, meter, setup); }

    /// The values of each item, those of one joined by "+"; rests in brackets.
    [[nodiscard]] std::string values(int staff = 0, int voice = 0) const {
        std::string all;
        for (const Written& item : read().items) {
            if (item.staff != staff || item.voice != voice)
                continue;
            std::string text;
            for (const Value& value : item.values)
                text += (text.empty() ? "" : "+") + textOf(value);
            all += (all.empty() ? "" : " ") + (item.isRest ? '(' + text + ')' : text);
        }
        return all;
    }
    /// The groups' numbers of all values, an item's together.
    [[nodiscard]] std::string beams(int voice = 0) const {
        std::string all;
        for (const Written& item : read().items) {
            if (item.voice != voice)
                continue;
            all += all.empty() ? "" : " ";
            for (const int beam : item.beams)
                all += std::to_string(beam);
        }
        return all;
    }
    /// Name and sign of each head: "F##" is F sharp with a sharp drawn, "F#" without; "Fn" a natural,
    /// courtesy signs in brackets, held notes with "-" before.
    [[nodiscard]] std::string names(int staff = 0) const {
        std::string all;
        for (const Written& item : read().items) {
            if (item.staff != staff || item.isRest)
                continue;
            std::string text = item.held ? "-" : "";
            for (const Pitch& pitch : item.pitches) {
                const std::string sign = pitch.sign == Sign::None    ? ""
                                         : pitch.sign == Sign::Sharp ? "#"
                                         : pitch.sign == Sign::Flat  ? "b"
                                                                     : "n";
                text += (&pitch == item.pitches.data() ? "" : "+") + pitch.name;
                text += pitch.courtesy ? '(' + sign + ')' : sign;
            }
            all += (all.empty() ? "" : " ") + text;
        }
        return all;
    }
    [[nodiscard]] std::string stems(int voice = 0) const {
        std::string all;
        for (const Written& item : read().items)
            if (item.voice == voice && !item.isRest)
                all += item.stemUp ? 'u' : 'd';
        return all;
    }
};

} // namespace velmora::notation
