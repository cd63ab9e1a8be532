// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicValues.h"
#include "notation/Keys.h"
#include "notation/ModScore.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmora::notation {

namespace {

constexpr int kUpTo = 51;        ///< a note whose place is below has its stem up
constexpr int kLoweredFrom = 83; ///< on a bass staff
constexpr int kBassShift = 48;

/// What `SelectKey` takes from the key.
class SelectedKey {
public:
    explicit SelectedKey(const Key& key) : key_(key) {}

    [[nodiscard]] bool KeyIsFlat() const { return key_.KeyIsFlat(); }
    /// There is no memory within a measure and no natural: meant.
    [[nodiscard]] Sign signOf(std::string_view NoteName) const {
        if (NoteName.size() < 2 || isSet(NoteName))
            return Sign::None;
        return NoteName.back() == '#' ? Sign::Sharp : Sign::Flat;
    }

private:
    static constexpr std::array<std::string_view, 5> kSharps{"F#", "C#", "G#", "D#", "A#"};
    static constexpr std::array<std::string_view, 6> kFlats{"Bb", "Eb", "Ab", "Db", "Gb", "Cb"};

    /// A flag of `KeyAccidental`: they are set in their order.
    [[nodiscard]] bool isSet(std::string_view NoteName) const {
        const auto sharp = std::ranges::find(kSharps, NoteName) - kSharps.begin();
        const auto flat = std::ranges::find(kFlats, NoteName) - kFlats.begin();
        return sharp < key_.fifths || flat < -key_.fifths;
    }

    const Key& key_;
};

/// Reads the channel of a staff, a bar at a time.
class ChannelReader {
public:
    ChannelReader(const Score& score, const ScoreSetup& setup, bool ChBass, int staff, WrittenScore& into)
        : cells_(score.NoteCell)
        , into_(into)
        , key_(kKeys.at(static_cast<std::size_t>(into.key)))
        , staff_(staff)
        , clef_(into.staves[static_cast<std::size_t>(staff)].clef)
        , channel_(into.staves[static_cast<std::size_t>(staff)].channel)
        , isLowered_(clef_ == StaffClef::Bass && ChBass)
        , joinNotes_(clef_ == StaffClef::Percussion ? 0 : static_cast<std::size_t>(setup.joinNotes)) {}

    void readBar(int start) {
        const int end = start + into_.NotesPerMeasure;
        CurrentStep_ = barStart_ = start;
        groups_ = 0;
        while (CurrentStep_ < end) {
            const int cell = cellAt(CurrentStep_);
            if (LO_ > 0)
                writePart(end, true);
            else if (cellClass(cell) == CellClass::Head)
                readNote(cell, end);
            else if (cell < kEmptyCell)
                ++CurrentStep_;
            else
                writeRest(end);
        }
        closeGroup();
    }

private:
    [[nodiscard]] int cellAt(int position) const { return cells_.valueOr(channel_, position, kEmptyCell); }
    [[nodiscard]] int NB() const { return CurrentStep_ - barStart_; }

    Written& add(int steps, bool isRest) {
        Written& item = into_.items.emplace_back();
        item.bar = barStart_ / into_.NotesPerMeasure + 1;
        item.staff = staff_;
        item.step = NB();
        item.steps = steps;
        item.isRest = isRest;
        CurrentStep_ += steps;
        return item;
    }

    /// A continuation without a head is rest.
    void writeRest(int end) {
        closeGroup();
        int stop = CurrentStep_ + 1;
        while (stop < end && cellClass(cellAt(stop)) != CellClass::Head)
            ++stop;
        const int RestRun = stop - CurrentStep_;
        add(RestRun, true).values = restValues(restClass(RestRun, into_.NotesPerMeasure));
    }

    void readNote(int cell, int end) {
        int NoteEnd = CurrentStep_ + 1;
        while (NoteEnd < into_.LastStep && cellClass(cellAt(NoteEnd)) == CellClass::Continuation)
            ++NoteEnd;
        LO_ = NoteEnd - CurrentStep_;
        into_.lastNoteEnd = NoteEnd;
        pitch_ = pitchOf(cell);
        writePart(end, false);
    }

    [[nodiscard]] Pitch pitchOf(int cell) const {
        if (clef_ == StaffClef::Percussion)
            return {.name = "-", .row = cellRow(cell)};
        Pitch pitch{
            .name = SpellNote(cell, key_.KeyIsFlat()), .place = RowToY(cellRow(cell)), .row = cellRow(cell)};
        pitch.sign = key_.signOf(pitch.name);
        if (isLowered_ && pitch.place >= kLoweredFrom)
            pitch.place -= kBassShift;
        return pitch;
    }

    /// What the bar that ends at @p end holds of the note.
    void writePart(int end, bool held) {
        const int steps = std::min(LO_, end - CurrentStep_);
        std::vector<Value> values;
        for (const ClassicPiece& piece : splitNote(steps, into_.NotesPerMeasure))
            values.push_back(piece.value);
        const bool joins = joinNotes_ > 0 && canJoin(values);
        if (!joins || (PN_ > 0 && into_.items.back().values != values))
            closeGroup();
        LO_ -= steps;
        Written& item = add(steps, false);
        item.values = std::move(values);
        item.pitches = {pitch_};
        item.held = item.tiedIn = held;
        item.tiedOut = LO_ > 0;
        item.lastOfNote = LO_ == 0;
        item.stemUp = pitch_.place > kUpTo;
        if (joins)
            join();
    }

    /// Takes the last item into the group.
    void join() {
        const int M = into_.NotesPerMeasure;
        ++PN_;
        if (PN_ == joinNotes_ || 16 * NB() + M > 16 * M)
            closeGroup();
    }

    /// The pending notes are the last items. A single one stays without a beam.
    void closeGroup() {
        if (PN_ > 1) {
            ++groups_;
            for (std::size_t i = 0; i < PN_; ++i) {
                Written& item = into_.items[into_.items.size() - PN_ + i];
                item.beams = {groups_};
                item.beamIndex = static_cast<int>(i) + 1;
                item.beamCount = static_cast<int>(PN_);
            }
        }
        PN_ = 0;
    }

    const ChannelGrid& cells_;
    WrittenScore& into_;
    SelectedKey key_;
    int staff_;
    StaffClef clef_;
    int channel_;
    bool isLowered_;
    std::size_t joinNotes_; ///< 0 for off
    int CurrentStep_ = 0;
    int barStart_ = 0;
    int LO_ = 0;
    Pitch pitch_;
    std::size_t PN_ = 0;
    int groups_ = 0; ///< of this bar
};

} // namespace

WrittenScore readClassic(const Score& score, const SetupState& meter, const ScoreSetup& setup) {
    WrittenScore written;
    const int M = written.NotesPerMeasure = score.NotesPerMeasure;
    written.TxtMeter = meter.TxtMeter;
    written.NoteX = meter.NoteX;
    written.key = std::max(setup.key, 0);
    if (M < 1)
        return written;
    written.first = std::clamp(setup.start, 0, kMostNotes) / M * M;
    const int end = setup.end < 0 ? score.SongEnd : std::min(setup.end, kMostNotes);
    written.LastStep = (end + M - 1) / M * M;
    written.staves = stavesOf(setup.newScore ? AssignStaves(score, M) : setup.staves);
    std::vector<ChannelReader> readers;
    readers.reserve(written.staves.size());
    for (int staff = 0; staff < static_cast<int>(written.staves.size()); ++staff)
        readers.emplace_back(score, setup, meter.ChBass, staff, written);
    for (int start = written.first; start < written.LastStep; start += M)
        for (ChannelReader& reader : readers)
            reader.readBar(start);
    return written;
}

} // namespace velmora::notation
