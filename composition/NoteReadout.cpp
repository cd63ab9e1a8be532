// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/NoteReadout.h"

#include "composition/StrokeWriting.h"
#include "composition/Workspace.h"
#include "score/Manners.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"

#include <cstddef>
#include <string_view>

namespace velmora {

namespace {
std::string_view rowName(int cell) {
    const auto row = static_cast<std::size_t>(cellRow(cell));
    return row < NoteNames().size() ? std::string_view(NoteNames()[row]) : std::string_view();
}

std::string_view chordName(int type) {
    const auto index = static_cast<std::size_t>(type);
    return index < kChordTypes.size() ? kChordTypes[index].name : std::string_view();
}

/// A number as "##" formats it: 0 has no digits.
std::string_view digits(const std::string& number) {
    return number == "0" ? std::string_view() : std::string_view(number);
}
} // namespace

NoteReadout readNote(const Score& score, int position) {
    const int channel = score.ActiveChannel;
    const int cell = score.NoteCell.valueOr(channel, position, kEmptyCell);
    const bool blank = cellClass(cell) == CellClass::Empty;

    NoteReadout note;
    note.number = std::to_string(position + 1);
    note.vol = std::to_string(score.Volume.valueOr(channel, position + 1, kClearedVolume));
    note.inst = blank ? "Blank Note" : nameOfCode(score.NoteInstrument.valueOr(channel, position, 0));
    if (channel >= kFirstPercussion) {
        note.name = "-";
    } else if (blank) {
        note.name = " -";
        note.chord = "-";
    } else {
        note.name = rowName(cell);
        note.chord = chordName(score.Polyphonics.valueOr(channel + 1, position, 0));
    }
    return note;
}

NoteReadout Pic2a_MouseDown(Workspace& workspace, int position) {
    const Edit edit(workspace);
    workspace.history.name("Reset effects");
    Score& score = workspace.score;
    if (cellClass(score.NoteCell.valueOr(score.ActiveChannel, position, kEmptyCell)) == CellClass::Empty)
        resetEffects(score, score.ActiveChannel, position);
    return readNote(score, position);
}

std::string trackOf(int channel, const Manners& manners) {
    const bool isPastDrums = channel > kFirstPercussion && manners.readsChannelAsSquare;
    return std::to_string(isPastDrums ? channel : channel + 1);
}

std::string noteLine(const NoteReadout& note) {
    std::string line = "Note: ";
    line.append(digits(note.number)).append("     ");
    line.append("  Vol: ").append(digits(note.vol)).append("    ");
    line.append("  Inst: ").append(note.inst);
    return line;
}

std::string cellText(const Score& score, int position) {
    const int channel = score.ActiveChannel;
    const int cell = score.NoteCell.valueOr(channel, position, kEmptyCell);
    if (cellClass(cell) == CellClass::Empty)
        return {};
    std::string text(nameOfCode(score.NoteInstrument.valueOr(channel, position, 0)));
    return text.append(" - ").append(rowName(cell));
}

} // namespace velmora
