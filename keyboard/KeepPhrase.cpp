// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeepPhrase.h"

#include "base/Files.h"
#include "composition/Changes.h"
#include "composition/SetupRules.h"
#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "keyboard/Phrase.h"
#include "keyboard/TempoFinder.h"
#include "score/SngFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace velmora {

namespace {
/// A position lasts so many seconds, divided by `Tempo`.
constexpr double kPositionTempo = 13.8;
constexpr int kUsualTicks = 6; ///< of a position: a sixteenth

/// Ticks of a position of the Score as it stands; nothing if they are no whole ones, or more than a quarter.
std::optional<int> ticksPerPosition(const Workspace& workspace) {
    const int measure = meterOf(workspace.setup).ticksPerMeasure();
    const int positions = workspace.score.NotesPerMeasure;
    if (positions < 1 || measure % positions != 0 || measure / positions > kTicksPerQuarter)
        return std::nullopt;
    return measure / positions;
}

bool isEmpty(const Workspace& workspace) {
    return workspace.score.usedChannels().empty();
}

/// The longest positions that a grid falls on: those of the Score if it does, or else sixteenths.
int positionsFor(const Workspace& workspace, int step) {
    const int usual = ticksPerPosition(workspace).value_or(kUsualTicks);
    if (step % usual == 0 || !isEmpty(workspace))
        return usual;
    const int measure = meterOf(workspace.setup).ticksPerMeasure();
    return std::gcd(step % kUsualTicks == 0 ? kUsualTicks : step, measure);
}

std::int16_t tempoOf(double secondsPerPosition) {
    return static_cast<std::int16_t>(std::clamp(std::lround(kPositionTempo / secondsPerPosition), 1L, 1380L));
}

/// A key that is let go of a little after the next was struck is no chord.
void trimOverlaps(std::vector<KeptNote>& notes, int step) {
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const auto next =
            std::ranges::find_if(notes.begin() + static_cast<std::ptrdiff_t>(i), notes.end(),
                                 [&](const KeptNote& other) { return other.first > notes[i].first; });
        if (next != notes.end() && notes[i].last >= next->first && notes[i].last < next->first + step)
            notes[i].last = next->first - 1;
    }
}

int headsBetween(const Score& score, int channel, int first, int end) {
    int heads = 0;
    for (int position = first; position < end; ++position)
        heads += cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Head ? 1 : 0;
    return heads;
}

/// Empties positions; what stands across their edges is cut there.
void clear(Score& score, int channel, int first, int end) {
    splitAfter(score, channel, first - 1);
    splitAfter(score, channel, end - 1);
    for (int position = first; position < end; ++position)
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Head)
            eraseNote(score, channel, position);
}

/// Who keeps a phrase wants to see it. How many rows are seen only the window knows: half of those that are
/// painted are, at the least.
bool bringIntoView(ViewState& view, const KeptNote& note, int numNotes) {
    const int row = RowToNote(note.note);
    const int rows = std::max(2, view.ViewRows / 2);
    const bool rowSeen = row >= view.ViewTopRow && row < view.ViewTopRow + rows;
    const bool columnSeen =
        note.first >= view.ViewFirstColumn && note.first <= view.ViewFirstColumn + view.ViewColumns;
    if (!rowSeen)
        view.ViewTopRow = std::clamp(row - rows / 2, 0, std::max(0, kLastRow - rows));
    if (!columnSeen) {
        view.ViewFirstColumn = std::max(0, note.first - view.ViewColumns / 4);
        view.ViewLastColumn = std::min(view.ViewFirstColumn + view.ViewColumns, numNotes - kEndMargin);
    }
    return !rowSeen || !columnSeen;
}

std::string counted(int count, const char* one, const char* many) {
    return count == 1 ? std::string("One note ") + one : std::to_string(count) + " notes " + many;
}
} // namespace

int KeepPlan::end() const {
    int end = mark;
    for (const KeptNote& note : notes)
        end = std::max(end, note.last + 1);
    return end;
}

std::vector<NoteGrid> gridsFor(const Workspace& workspace) {
    std::vector<NoteGrid> grids;
    const int position = ticksPerPosition(workspace).value_or(kUsualTicks);
    for (const NoteGridRow& row : kNoteGrids)
        if (isEmpty(workspace) || row.ticks % position == 0)
            grids.push_back(row.grid);
    return grids;
}

KeepChoice firstChoice(const Workspace& workspace, const Phrase& phrase) {
    const int active = workspace.score.ActiveChannel;
    KeepChoice choice{.channel = active < kMelodyChannels ? active : 0};
    const std::vector<NoteGrid> grids = gridsFor(workspace);
    const NoteGrid simplest = simplestGrid(phrase.notes, phrase.pulse, phrase.meter);
    // The finest there is, if that is too fine.
    const auto found = std::ranges::find_if(grids, [simplest](NoteGrid grid) {
        return grid >= simplest && rowOf(simplest).ticks % rowOf(grid).ticks == 0;
    });
    choice.grid = found != grids.end() ? *found : grids.back();
    return choice;
}

KeepPlan planKeep(const Workspace& workspace, const Phrase& phrase, const KeepChoice& choice) {
    const Score& score = workspace.score;
    KeepPlan plan;
    plan.choice = choice;
    plan.mark = std::clamp(workspace.view.PlayMark, 0, score.NumNotes);
    const int step = rowOf(choice.grid).ticks;
    plan.ticksPerPosition = positionsFor(workspace, step);
    const auto notes = quantise(phrase.notes, phrase.pulse, phrase.meter, choice.grid, choice.lengths);
    if (notes.empty())
        return plan;
    const double perBeat = phrase.meter.ticksPerBeat();
    plan.firstBeat = notes.front().start / perBeat;
    if (isEmpty(workspace))
        plan.steps = KeepPlan::Steps{
            tempoOf(phrase.pulse.period * plan.ticksPerPosition / perBeat),
            static_cast<std::int16_t>(phrase.meter.ticksPerMeasure() / plan.ticksPerPosition)};
    const auto position = [&](int tick) {
        return plan.mark + (tick - notes.front().start) / plan.ticksPerPosition;
    };
    for (const GridNote& note : notes)
        plan.notes.push_back({choice.channel, position(note.start), position(note.end()) - 1, note.note,
                              note.velocity, note.program});
    std::ranges::stable_sort(plan.notes, comesBefore);
    trimOverlaps(plan.notes, std::max(1, step / plan.ticksPerPosition));

    const int last = workspace.manners.growsToFile ? kMostNotes - kEndMargin - 1 : score.NumNotes - 1;
    plan.pastEnd = static_cast<int>(
        std::erase_if(plan.notes, [last](const KeptNote& note) { return note.last > last; }));
    SharedChannels channels(score, choice.channel);
    plan.withoutRoom = static_cast<int>(std::erase_if(plan.notes, [&channels](KeptNote& note) {
        const auto channel = channels.roomFor(note.first, note.last);
        if (channel) {
            note.channel = *channel;
            channels.endsAt(*channel, note.last);
        }
        return !channel;
    }));
    plan.replaced = headsBetween(score, choice.channel, plan.mark, plan.end());
    return plan;
}

std::string planText(const KeepPlan& plan) {
    std::string text;
    const auto say = [&text](const std::string& words) { text += (text.empty() ? "" : " ") + words; };
    if (plan.replaced > 0)
        say(counted(plan.replaced, "that stands there is replaced.", "that stand there are replaced."));
    if (plan.withoutRoom > 0)
        say(counted(plan.withoutRoom, "of a chord finds no free channel.",
                    "of chords find no free channel."));
    if (plan.pastEnd > 0)
        say(counted(plan.pastEnd, "does not fit into the score.", "do not fit into the score."));
    return text;
}

void keepPlan(Workspace& workspace, const KeepPlan& plan) {
    if (plan.notes.empty())
        return;
    Edit edit(workspace, Change::Cells | Change::Effects | Change::Channels);
    workspace.history.name(kKeepName);
    Score& score = workspace.score;
    workspace.keepForUndo(kKeepName);
    if (score.ActiveChannel != plan.choice.channel)
        chooseChannel(workspace, plan.choice.channel);
    if (const int end = plan.end(); end > score.NumNotes) {
        edit.add(Change::Length);
        score.resizeNotes(std::min(end + kEndMargin, kMostNotes));
    }
    if (plan.steps) {
        setTempo(workspace, plan.steps->tempo);
        if (plan.steps->notesPerMeasure != score.NotesPerMeasure)
            TxBeats_Change(workspace, plan.steps->notesPerMeasure);
    }
    clear(score, plan.choice.channel, plan.mark, plan.end());
    for (const KeptNote& note : plan.notes)
        writeKept(score, note);
    score.FindEndOfSong();
    if (!workspace.play.Playing && bringIntoView(workspace.view, plan.notes.front(), score.NumNotes))
        edit.add(Change::Looks);
}

namespace {
/// As short as a slider of the tempo lets positions be.
constexpr double kShortest = kPositionTempo / 500;
constexpr int kBeatsAMeasure = 4;

/// Voices of channels: what begins takes the place of what has sounded longest, if it must.
std::vector<KeptNote> voiced(std::vector<KeptNote> notes) {
    std::ranges::stable_sort(notes, comesBefore);
    std::array<KeptNote*, kMelodyChannels> voices{};
    for (KeptNote& note : notes) {
        auto voice = std::ranges::find_if(
            voices, [&note](const KeptNote* other) { return !other || other->last < note.first; });
        if (voice == voices.end()) {
            voice = std::ranges::min_element(voices, {}, [](const KeptNote* other) { return other->first; });
            (*voice)->last = note.first - 1;
        }
        *voice = &note;
        note.channel = static_cast<int>(voice - voices.begin());
    }
    // More struck at once than there are channels.
    std::erase_if(notes, [](const KeptNote& note) { return note.last < note.first; });
    return notes;
}
} // namespace

std::string saveNotesAsPlayed(const std::filesystem::path& path, std::span<const PlayedNote> notes) {
    if (notes.empty())
        return "Nothing to save";
    const Pulse pulse = findPulse(onsetsOf(notes), {});
    const double perBeat = std::max(1.0, std::floor(pulse.period / kShortest));
    const std::int16_t tempo = tempoOf(pulse.period / perBeat);
    const double step = kPositionTempo / tempo;
    std::vector<KeptNote> kept;
    int end = 0;
    for (const PlayedNote& note : notes) {
        const double first = std::round((note.onset - notes.front().onset) / step);
        const double last = std::max(first, std::round((note.end - notes.front().onset) / step) - 1);
        if (last >= kMostNotes - kEndMargin)
            continue;
        kept.push_back(
            {0, static_cast<int>(first), static_cast<int>(last), note.note, note.velocity, note.program});
        end = std::max(end, kept.back().last + 1);
    }
    Score score(end + kEndMargin);
    score.Tempo = tempo;
    for (const KeptNote& note : voiced(std::move(kept))) {
        if (score.lastFilledPosition(note.channel, score.NumNotes) < 0)
            score.ChannelInstrument[note.channel] = note.program;
        writeKept(score, note);
    }
    score.FindEndOfSong();
    SetupState setup;
    setup.TxBeats = static_cast<std::int16_t>(std::clamp(perBeat * kBeatsAMeasure, 1.0, 1000.0));
    setup.TxtMeter = kBeatsAMeasure;
    setup.NoteX = 4;
    return replaceFile(path, serializePoliFile(score, setup));
}

} // namespace velmora
