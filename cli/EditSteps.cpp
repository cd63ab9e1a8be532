// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/EditSteps.h"

#include "cli/Commands.h"
#include "cli/HeadlessWindow.h"
#include "cli/StepWords.h"
#include "composition/MelodyMaker.h"
#include "composition/NoteEffects.h"
#include "composition/NoteReadout.h"
#include "composition/ScoreEditing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>

namespace velmora::cli {

using Values = std::span<const int>;

struct EditStep {
    std::string_view name;
    std::string_view words; ///< as the user is told
    std::array<StepWord, 7> kinds;
    void (*perform)(HeadlessWindow&, Values);
    std::size_t optional = 0; ///< words at the end that may be missing
};

namespace {

std::int16_t small(int value) {
    return static_cast<std::int16_t>(value); // the kinds of words see to its size
}

// State

void channel(HeadlessWindow& window, Values words) {
    window.TrackSel_Click(words[0]);
}

void instrument(HeadlessWindow& window, Values words) {
    window.workspace.score.ChannelInstrument[words[0]] = small(words[1]);
}

void pick(HeadlessWindow& window, Values words) {
    auto& picked = window.workspace.edit.ChannelPicked;
    for (std::size_t channel = 0; channel < picked.size(); ++channel)
        picked[channel] = (static_cast<unsigned>(words[0]) >> channel & 1U) != 0;
}

void mute(HeadlessWindow& window, Values words) {
    if (window.workspace.score.ChannelMuted[words[0]] != (words[1] != 0))
        window.workspace.toggleMuted(words[0]);
}

void oneTrack(HeadlessWindow& window, Values words) {
    window.workspace.CopyonlyOneTrack = words[0] != 0;
}

void noteEffects(HeadlessWindow& window, Values words) {
    window.workspace.view.NoteEffectsOn = words[0] != 0;
}

void allTracks(HeadlessWindow& window, Values words) {
    window.workspace.edit.Check2 = words[0] != 0;
}

void melodyBox(HeadlessWindow& window, Values words) {
    window.workspace.edit.Check5 = words[0] != 0;
}

void cycle(HeadlessWindow& window, Values words) {
    EditState& edit = window.workspace.edit;
    edit.CycleNotes = small(words[0]);
    edit.CycleBeats = small(words[1]);
    edit.TotalNotes = small(words[2]);
}

// The mouse on the Tableau

void stroke(HeadlessWindow& window, Values words) {
    window.TrackSel_Click(words[0]);
    window.draw({words[2], words[1]}, {words[3], words[1]});
}

void erase(HeadlessWindow& window, Values words) {
    window.TrackSel_Click(words[0]);
    window.rightClick({words[1], words[2]});
}

void select(HeadlessWindow& window, Values words) {
    ViewState& view = window.workspace.view;
    view.MouseMode = Mouse::Select;
    view.SelectStart = view.PlayMark = words[0];
    view.SelectEnd = words[1];
    window.ViewCol = words[1] - view.ViewFirstColumn;
}

void mark(HeadlessWindow& window, Values words) {
    ViewState& view = window.workspace.view;
    view.MouseMode = Mouse::Cursor;
    view.PlayMark = words[0];
    window.ViewCol = words[0] - view.ViewFirstColumn;
}

// Blocks of positions. After those that change the score its end is another one, up to which a later stroke
// is kept for undo.

void copy(HeadlessWindow& window, Values /*words*/) {
    copyIt(window.workspace);
}

void cut(HeadlessWindow& window, Values /*words*/) {
    CutBut_Click(window.workspace);
    window.workspace.score.FindEndOfSong();
}

void pasteOverwrite(HeadlessWindow& window, Values /*words*/) {
    PasteBut_Click(window.workspace, window.ViewCol);
    window.workspace.score.FindEndOfSong();
}

void pasteInsert(HeadlessWindow& window, Values /*words*/) {
    PasteIntoBut_Click(window.workspace, window.ViewCol);
    window.workspace.score.FindEndOfSong();
}

void insert(HeadlessWindow& window, Values words) {
    window.workspace.edit.Txtspc = small(words[0]);
    InsertColumnBut_Click(window.workspace, window.ViewCol);
    window.workspace.score.FindEndOfSong();
}

void duplicate(HeadlessWindow& window, Values /*words*/) {
    duplicateNotes(window.workspace, [&window] { window.pressCorner(); });
    window.workspace.score.FindEndOfSong();
}

void duplicateMelody(HeadlessWindow& window, Values /*words*/) {
    velmora::duplicateMelody(window.workspace);
    window.workspace.score.FindEndOfSong();
}

void create(HeadlessWindow& window, Values words) {
    window.workspace.edit.txtStart = small(words[0]);
    createMelody(window.workspace, words[0]);
    window.workspace.score.FindEndOfSong();
}

// Single Note Effects

void chord(HeadlessWindow& window, Values words) {
    window.workspace.effects.Combo3 = small(words[0]);
}

void pickInstrument(HeadlessWindow& window, Values words) {
    window.workspace.effects.NoteInstrumentPick = small(words[0]);
}

void apply(HeadlessWindow& window, Values words) {
    window.TrackSel_Click(words[0]);
    const bool before = std::exchange(window.workspace.view.NoteEffectsOn, true);
    window.rightClick({words[1], words[2]});
    window.workspace.view.NoteEffectsOn = before;
}

void indicator(HeadlessWindow& window, Values words) {
    EffectSelectors& effects = window.workspace.effects;
    effects.vol3 = small(words[2]);
    effects.T1 = small(words[3]);
    effects.T2 = small(words[4]);
    effects.T3 = small(words[5]);
    effects.T4 = small(words[6]);
    window.TrackSel_Click(words[0]);
    applyAlongIndicator(window.workspace, words[1]);
}

void look(HeadlessWindow& window, Values words) {
    window.TrackSel_Click(words[0]);
    Pic2a_MouseDown(window.workspace, words[1]);
}

void instrumentToSelection(HeadlessWindow& window, Values words) {
    const std::string_view refusal = applyInstrumentToSelection(window.workspace, small(words[0]));
    if (!refusal.empty())
        window.tell(refusal);
}

// The whole score

void clear(HeadlessWindow& window, Values /*words*/) {
    window.workspace.clear();
}

void clearEffects(HeadlessWindow& window, Values /*words*/) {
    ClearEffects(window.workspace);
}

/// As often as asked, or once; at the end of what there is it stops.
void undo(HeadlessWindow& window, Values words) {
    Workspace& workspace = window.workspace;
    for (int times = words.empty() ? 1 : words[0]; times > 0 && !workspace.undoStep().empty(); --times)
        if (!workspace.undoLast())
            throw Failure("The step \"" + std::string(workspace.undoStep()) +
                          "\" can't be undone: what was kept of it is gone.");
}

void redo(HeadlessWindow& window, Values words) {
    for (int times = words.empty() ? 1 : words[0]; times > 0 && window.workspace.redoLast(); --times) {
    }
}

using enum StepWord;
constexpr auto kSteps = std::to_array<EditStep>({
    {"channel", "C", {Channel}, channel},
    {"instrument", "C CODE", {Channel, Code}, instrument},
    {"pick", "C,C,...|none", {Channels}, pick},
    {"mute", "C on|off", {Channel, Switch}, mute},
    {"one-track", "on|off", {Switch}, oneTrack},
    {"note-effects", "on|off", {Switch}, noteEffects},
    {"all-tracks", "on|off", {Switch}, allTracks},
    {"melody-box", "on|off", {Switch}, melodyBox},
    {"stroke", "C ROW FIRST LAST", {Channel, Row, Column, Column}, stroke},
    {"erase", "C POSITION ROW", {Channel, Column, Row}, erase},
    {"select", "A B", {Position, Position}, select},
    {"mark", "P", {Position}, mark},
    {"cycle", "NOTES BEATS TOTAL", {Count, Count, Count}, cycle},
    {"copy", "", {}, copy},
    {"cut", "", {}, cut},
    {"paste-overwrite", "", {}, pasteOverwrite},
    {"paste-insert", "", {}, pasteInsert},
    {"insert", "N", {Count}, insert},
    {"duplicate", "", {}, duplicate},
    {"duplicate-melody", "", {}, duplicateMelody},
    {"create", "START", {Count}, create},
    {"chord", "TYPE", {Chord}, chord},
    {"pick-instrument", "CODE", {Code}, pickInstrument},
    {"apply", "C POSITION ROW", {Melody, Column, Row}, apply},
    {"indicator",
     "C POSITION VOLUME MOD PAN REVERB CHORUS",
     {Channel, Position, Value, Value, Pan, Value, Value},
     indicator},
    {"look", "C POSITION", {Channel, Position}, look},
    {"instrument-to-selection", "CODE", {Code}, instrumentToSelection},
    {"clear", "", {}, clear},
    {"clear-effects", "", {}, clearEffects},
    {"undo", "[N]", {Count}, undo, 1},
    {"redo", "[N]", {Count}, redo, 1},
});
static_assert(kSteps.size() == 31);

std::string usageOf(const EditStep& step) {
    std::string usage(step.name);
    return step.words.empty() ? usage : usage.append(" ").append(step.words);
}

[[noreturn]] void refuse(std::string_view text, const std::string& problem) {
    throw UsageError("\"" + std::string(text) + "\": " + problem);
}

const EditStep& stepNamed(std::string_view name, std::string_view text) {
    const auto* const found = std::ranges::find(kSteps, name, &EditStep::name);
    if (found == kSteps.end())
        refuse(text, "there is no such step; there are" + listOfSteps());
    return *found;
}

std::size_t countOf(const EditStep& step) {
    return static_cast<std::size_t>(std::ranges::find(step.kinds, None) - step.kinds.begin());
}

} // namespace

StepCall parseStep(std::string_view text) {
    const auto words = wordsOf(text);
    const EditStep& step = stepNamed(words.empty() ? std::string_view() : words.front(), text);
    const std::size_t most = countOf(step) + 1;
    if (words.size() > most || words.size() + step.optional < most)
        refuse(text, "wanted is " + usageOf(step));
    StepCall call{&step, {}, std::string(text)};
    for (std::size_t i = 1; i < words.size(); ++i) {
        const StepWord kind = step.kinds[i - 1];
        const auto value = valueOf(kind, words[i]);
        if (!value)
            refuse(text, "\"" + std::string(words[i]) + "\" is not " + std::string(wantedFor(kind)));
        call.values.push_back(*value);
    }
    return call;
}

std::vector<StepCall> parseLines(std::string_view text) {
    std::vector<StepCall> calls;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line = line.substr(0, line.find('#'));
        if (!wordsOf(line).empty())
            calls.push_back(parseStep(line));
    }
    return calls;
}

void checkPositions(const StepCall& call, int numNotes) {
    std::vector<int> positions;
    for (std::size_t i = 0; i < call.values.size(); ++i) {
        if (call.step->kinds[i] == Position)
            positions.push_back(call.values[i]);
    }
    if (!std::ranges::is_sorted(positions))
        refuse(call.text, "the first position is past the second");
    if (!positions.empty() && positions.back() > numNotes)
        refuse(call.text, "the last position of the score is " + std::to_string(numNotes));
}

void perform(const StepCall& call, HeadlessWindow& window) {
    window.step = call.text;
    call.step->perform(window, call.values);
}

std::string listOfSteps() {
    std::string list;
    for (const EditStep& step : kSteps)
        list.append("\n  ").append(usageOf(step));
    return list;
}

} // namespace velmora::cli
