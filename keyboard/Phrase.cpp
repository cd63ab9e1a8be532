// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Phrase.h"

#include "keyboard/PlayedLog.h"
#include "keyboard/Quantiser.h"
#include "keyboard/TempoFinder.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

namespace velmora {

namespace {
constexpr double kSilentMeasures = 2;
constexpr double kLeastSilence = 2;
/// Two measures of four beats as they usually are, before a tempo is known.
constexpr double kFirstSilence = 4;

double silenceOf(double period, PhraseMeter meter) {
    const double measure = period * meter.ticksPerMeasure() / meter.ticksPerBeat();
    return std::max(kLeastSilence, kSilentMeasures * measure);
}

/// What is to be looked at: the newest that is new, or else what there is.
std::span<const PlayedNote> candidates(std::span<const PlayedNote> notes, const PlayedLog& log,
                                       Phrase& phrase) {
    const auto after = [notes](double moment) {
        const auto first = std::ranges::upper_bound(notes, moment, {}, &PlayedNote::onset);
        return notes.last(static_cast<std::size_t>(notes.end() - first));
    };
    const auto own = notes.last(static_cast<std::size_t>(
        notes.end() - std::ranges::lower_bound(notes, log.start(), {}, &PlayedNote::onset)));
    if (own.empty())
        phrase.of = Phrase::Of::EarlierRun;
    const auto all = own.empty() ? notes : own;
    if (!log.kept())
        return all;
    const auto fresh = after(*log.kept());
    if (!fresh.empty() && fresh.size() <= all.size())
        return fresh;
    phrase.of = Phrase::Of::KeptBefore;
    return all;
}

Pulse beatsOf(std::span<const PlayedNote> notes, PhraseMeter meter,
              const std::optional<PlayedLog::Beats>& beats) {
    const std::vector<double> onsets = onsetsOf(notes);
    return beats ? pulseOfMetronome(onsets, meter, beats->start, beats->interval) : findPulse(onsets, meter);
}

std::string counted(long count, const char* one, const char* many) {
    return std::to_string(count) + (count == 1 ? one : many);
}
} // namespace

double Phrase::seconds() const {
    double end = 0;
    for (const PlayedNote& note : notes)
        end = std::max(end, note.end - notes.front().onset);
    return end;
}

std::span<const PlayedNote> afterSilence(std::span<const PlayedNote> notes, double silence) {
    if (notes.empty())
        return notes;
    std::size_t first = 0;
    double sounded = notes[0].end;
    for (std::size_t i = 1; i < notes.size(); ++i) {
        if (notes[i].onset - sounded >= silence)
            first = i;
        sounded = std::max(sounded, notes[i].end);
    }
    return notes.subspan(first);
}

Phrase lastPhrase(PlayedLog& log, PhraseMeter meter) {
    Phrase phrase;
    phrase.meter = meter;
    const std::vector<PlayedNote> all = log.notes();
    const auto notes = candidates(all, log, phrase);
    if (notes.empty())
        return phrase;
    const double last = notes.back().onset;
    const auto ran = log.beatsDuring(last, last);
    const double beaten = ran ? kSilentMeasures * ran->interval * ran->perMeasure : 0;
    auto taken = afterSilence(notes, ran ? std::max(kLeastSilence, beaten) : kFirstSilence);
    auto beats = log.beatsDuring(taken.front().onset, last);
    phrase.pulse = beatsOf(taken, meter, beats);
    if (!ran) {
        const auto told = afterSilence(notes, silenceOf(phrase.pulse.period, meter));
        if (told.size() != taken.size() && taken.size() > 1) {
            taken = told;
            beats = log.beatsDuring(taken.front().onset, last);
            phrase.pulse = beatsOf(taken, meter, beats);
        }
    }
    phrase.metronome = beats.has_value();
    phrase.notes.assign(taken.begin(), taken.end());
    return phrase;
}

std::string phraseText(const Phrase& phrase) {
    if (phrase.notes.empty())
        return "Nothing has been played on the keyboard in the last ten minutes.";
    std::string text = "The last phrase: ";
    if (phrase.of == Phrase::Of::KeptBefore)
        text = "Kept before: ";
    else if (phrase.of == Phrase::Of::EarlierRun)
        text = "Played before the program was started: ";
    const long seconds = std::max(1L, std::lround(phrase.seconds()));
    text += counted(static_cast<long>(phrase.notes.size()), " note, ", " notes, ") +
            counted(seconds, " second", " seconds");
    if (phrase.notes.size() > 1)
        text += (phrase.metronome ? ", " : ", about ") +
                counted(std::lround(phrase.pulse.beatsPerMinute()), " beat per minute", " beats per minute");
    return text;
}

PhraseMeter meterOf(const SetupState& setup) {
    return {std::max<int>(1, setup.TxtMeter), setup.NoteX};
}

} // namespace velmora
