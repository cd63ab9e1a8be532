// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Accidentals.h"
#include "notation/Beams.h"
#include "notation/KeyFinder.h"
#include "notation/Keys.h"
#include "notation/ModScore.h"
#include "notation/SpelledVoice.h"
#include "notation/Triplets.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmora::notation {

namespace {

/// Reads one voice, a bar at a time.
class VoiceReader {
public:
    VoiceReader(std::vector<SpelledHeads> notes, int staff, int voice)
        : notes_(std::move(notes))
        , staff_(staff)
        , voice_(voice) {}

    /// What a bar holds of the voice: all of it, in the order of time.
    struct Bar {
        std::vector<Written> items;
        std::vector<const SpelledHeads*> heads; ///< of each item; null for a rest
        std::vector<int> places;                ///< where each begins, in ticks, and the bar's end

        void clear() {
            items.clear();
            heads.clear();
            places.clear();
        }
    };
    /// @param bar becomes the one from @p start; its room is used again
    void readBar(const Meter& meter, const StepGrid& grid, int number, int start, int end, Bar& bar) {
        bar.clear();
        int position = start;
        while (position < end) {
            while (next_ < notes_.size() && notes_[next_].note.end <= position)
                ++next_;
            const bool sounds = next_ < notes_.size() && notes_[next_].note.start <= position;
            const SpelledHeads* const heads = sounds ? &notes_[next_] : nullptr;
            int stop = end;
            if (sounds)
                stop = std::min(end, heads->note.end);
            else if (next_ < notes_.size())
                stop = std::min(end, notes_[next_].note.start);
            Written item;
            item.bar = number;
            item.staff = staff_;
            item.voice = voice_;
            item.step = position - start;
            item.steps = stop - position;
            item.isRest = !sounds;
            bar.places.push_back(grid.ticksAt(item.step));
            if (sounds)
                fillNote(item, *heads, start, end);
            bar.items.push_back(std::move(item));
            bar.heads.push_back(heads);
            position = stop;
        }
        bar.places.push_back(meter.bar().length);
        writeValues(meter, grid, bar);
    }

private:
    static void fillNote(Written& item, const SpelledHeads& heads, int barStart, int barEnd) {
        item.pitches = heads.pitches;
        item.held = item.tiedIn = heads.note.start < barStart;
        item.tiedOut = heads.note.end > barEnd;
        item.lastOfNote = !item.tiedOut;
        item.stemUp = stemPointsUp(item.pitches);
    }

    static void writeValues(const Meter& meter, const StepGrid& grid, Bar& bar) {
        if (bar.items.size() == 1 && bar.items.front().isRest) {
            bar.items.front().values = {{.value = NoteValue::Whole, .wholeBar = true}};
            return;
        }
        std::vector<TripletSpan> spans;
        if (grid.hasThirds())
            spans = findTriplets(meter, bar.places);
        for (std::size_t i = 0; i < bar.items.size(); ++i) {
            Written& item = bar.items[i];
            const auto sounding = item.isRest ? Sounding::Rest : Sounding::Note;
            splitRun(meter, spans, bar.places[i], bar.places[i + 1], sounding, item.values);
            if (item.values.empty()) // shorter than the shortest
                item.values.push_back({.value = NoteValue::FiveHundredTwelfth});
        }
    }

    std::vector<SpelledHeads> notes_;
    std::size_t next_ = 0;
    int staff_;
    int voice_;
};

/// Reads the voices of one staff together, since a sign holds for all.
class StaffReader {
public:
    StaffReader(const Score& score, const WrittenScore& written, int staff)
        : accidentals_(kKeys[static_cast<std::size_t>(written.key)].fifths)
        , clef_(written.staves[static_cast<std::size_t>(staff)].clef) {
        const Staff& of = written.staves[static_cast<std::size_t>(staff)];
        for (const int channel : {of.channel, of.secondChannel}) {
            if (channel < 0)
                continue;
            const auto notes = notesOf(score, channel, written.first, written.LastStep);
            voices_.emplace_back(
                spellVoice(notes, clef_, kKeys[static_cast<std::size_t>(written.key)].fifths), staff,
                static_cast<int>(voices_.size()));
        }
        bars_.resize(voices_.size());
    }

    void readBar(const Meter& meter, const StepGrid& grid, int start, WrittenScore& into) {
        const int number = start / into.NotesPerMeasure + 1;
        for (std::size_t i = 0; i < voices_.size(); ++i)
            voices_[i].readBar(meter, grid, number, start, start + into.NotesPerMeasure, bars_[i]);
        if (clef_ != StaffClef::Percussion)
            setSigns(number, bars_);
        for (VoiceReader::Bar& bar : bars_) {
            if (bar.items.size() > 1)
                groupBeams(meter, bar.items, bar.places);
            else
                bar.items.front().beams.assign(bar.items.front().values.size(), 0);
            pointStems(bar.items);
            std::ranges::move(bar.items, std::back_inserter(into.items));
        }
    }

private:
    /// In the order of time; of what begins together, the first voice first.
    void setSigns(int number, std::vector<VoiceReader::Bar>& bars) {
        std::vector<std::size_t> next(bars.size(), 0);
        for (;;) {
            std::size_t voice = bars.size();
            for (std::size_t i = 0; i < bars.size(); ++i) {
                const bool isEarlier = next[i] < bars[i].items.size() &&
                                       (voice == bars.size() ||
                                        bars[i].items[next[i]].step < bars[voice].items[next[voice]].step);
                voice = isEarlier ? i : voice;
            }
            if (voice == bars.size())
                return;
            const std::size_t item = next[voice]++;
            if (bars[voice].heads[item] != nullptr)
                setSigns(number, bars[voice].items[item], *bars[voice].heads[item]);
        }
    }

    void setSigns(int number, Written& item, const SpelledHeads& heads) {
        for (std::size_t i = 0; i < item.pitches.size(); ++i) {
            const SpelledNote& spelled = heads.spelled[i];
            if (item.held) {
                accidentals_.hold(number, spelled.line, spelled.alter);
                continue;
            }
            const auto drawn = accidentals_.strike(number, spelled.line, spelled.alter);
            item.pitches[i].sign = drawn.sign;
            item.pitches[i].courtesy = drawn.courtesy;
        }
    }

    /// Two voices keep apart by their stems; percussion has them up.
    void pointStems(std::vector<Written>& items) const {
        if (voices_.size() < 2 && clef_ != StaffClef::Percussion)
            return;
        for (Written& item : items)
            item.stemUp = item.voice == 0;
    }

    Accidentals accidentals_;
    StaffClef clef_;
    std::vector<VoiceReader> voices_;
    std::vector<VoiceReader::Bar> bars_; ///< of each voice, the bar that is being read
};

/// The mean row of a channel's notes; the lower of two has the higher pitch.
double meanRow(const Score& score, int channel, int first, int end) {
    const auto notes = notesOf(score, channel, first, end);
    double sum = 0;
    for (const GridNote& note : notes)
        sum += note.row;
    return notes.empty() ? 0 : sum / static_cast<double>(notes.size());
}

/// Two melody channels of one clef share a staff, the higher one as first voice.
std::vector<Staff> inPairs(const Score& score, const std::vector<Staff>& staves, int first, int end) {
    std::vector<Staff> paired;
    for (const Staff& staff : staves) {
        Staff* const before = paired.empty() ? nullptr : &paired.back();
        const bool joins = before != nullptr && staff.clef != StaffClef::Percussion &&
                           before->clef == staff.clef && before->secondChannel < 0;
        if (!joins) {
            paired.push_back(staff);
            continue;
        }
        before->secondChannel = staff.channel;
        if (meanRow(score, before->secondChannel, first, end) < meanRow(score, before->channel, first, end))
            std::swap(before->channel, before->secondChannel);
    }
    return paired;
}

int keyOf(const Score& score, const ScoreSetup& setup, int first, int end) {
    if (setup.key == kAutomaticKey)
        return findKey(pitchWeights(score, first, end));
    return std::clamp(setup.key, 0, static_cast<int>(kKeys.size()) - 1);
}

} // namespace

WrittenScore readClean(const Score& score, const SetupState& meter, const ScoreSetup& setup) {
    WrittenScore written;
    const int M = written.NotesPerMeasure = score.NotesPerMeasure;
    written.TxtMeter = meter.TxtMeter;
    written.NoteX = meter.NoteX;
    if (M < 1)
        return written;
    written.first = std::clamp(setup.start, 0, kMostNotes) / M * M;
    const int end = setup.end < 0 ? score.SongEnd : std::min(setup.end, kMostNotes);
    written.LastStep = (end + M - 1) / M * M;
    written.key = keyOf(score, setup, written.first, written.LastStep);
    written.staves = stavesOf(setup.newScore ? AssignStaves(score, M) : setup.staves);
    if (setup.twoVoices)
        written.staves = inPairs(score, written.staves, written.first, written.LastStep);

    const Meter bars(meter.TxtMeter, meter.NoteX);
    const StepGrid grid(M, bars);
    std::vector<StaffReader> readers;
    readers.reserve(written.staves.size());
    for (int staff = 0; staff < static_cast<int>(written.staves.size()); ++staff)
        readers.emplace_back(score, written, staff);
    for (int start = written.first; start < written.LastStep; start += M)
        for (StaffReader& reader : readers)
            reader.readBar(bars, grid, start, written);
    for (const Staff& staff : written.staves)
        for (const int channel : {staff.channel, staff.secondChannel})
            if (const auto notes = notesOf(score, channel, written.first, written.LastStep); !notes.empty())
                written.lastNoteEnd = std::max(written.lastNoteEnd, notes.back().end);
    return written;
}

} // namespace velmora::notation
