// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/StrokeWriting.h"

#include "composition/ScoreLayers.h"
#include "score/Manners.h"

#include <algorithm>
#include <cstdint>

namespace velmora {

namespace {
constexpr int kCopiedCells = 5;

bool isContinuation(const Score& score, int channel, int position) {
    return cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Continuation;
}

bool isMelody(int channel) {
    return channel < kMelodyChannels;
}

void writeCell(Score& score, const DrawnNote& note, int position, int cell) {
    score.NoteCell.set(note.channel, position, static_cast<std::int16_t>(cell));
    score.NoteInstrument.set(note.channel, position, score.ChannelInstrument[note.channel]);
}

void eraseCell(Score& score, int channel, int position) {
    score.NoteCell.set(channel, position, kEmptyCell);
    score.NoteInstrument.set(channel, position, 0);
    if (isMelody(channel)) {
        score.Polyphonics.set(channel + 1, position, 0);
        resetEffects(score, channel, position);
    } else {
        score.rememberBeat(channel, position, 0);
    }
}
} // namespace

NoteCells noteAt(const Score& score, int channel, int position) {
    if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Empty)
        return {position, position};
    NoteCells note{headOf(score, channel, position), position};
    while (isContinuation(score, channel, note.last + 1))
        ++note.last;
    return note;
}

void writeNote(Score& score, const DrawnNote& note) {
    writeCell(score, note, note.first, note.row);
    for (int position = note.first + 1; position <= std::min(note.last, score.NumNotes); ++position)
        writeCell(score, note, position, kContinuation + note.row);
}

void splitAfter(Score& score, int channel, int last) {
    const int cell = score.NoteCell.valueOr(channel, last + 1, kEmptyCell);
    if (cellClass(cell) == CellClass::Continuation)
        score.NoteCell.set(channel, last + 1, static_cast<std::int16_t>(cell - kContinuation));
}

void giveVolume(Score& score, int channel, std::int16_t volume, NoteCells cells) {
    const auto isHead = [&](int position) {
        return cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) == CellClass::Head;
    };
    const bool behindANote = isHead(cells.first - 1);
    const bool beforeANote = isHead(cells.last + 1);
    const int first = behindANote ? cells.first + 1 : cells.first;
    const int last = beforeANote && cells.last > cells.first ? cells.last : cells.last + 1;
    for (int index = std::max(first, 0); index <= last; ++index)
        score.Volume.set(channel, index, volume);
}

bool answersRightClick(const Score& score, int channel, int position) {
    if (score.NoteCell.valueOr(channel, position, kEmptyCell) >= 1)
        return true;
    return isMelody(channel) && score.Polyphonics.valueOr(channel + 1, position, 0) > 0;
}

int headOf(const Score& score, int channel, int position) {
    while (isContinuation(score, channel, position))
        --position;
    return position;
}

int walkToHead(Score& score, int channel, int position) {
    const int head = headOf(score, channel, position);
    for (int passed = position; passed > head && isMelody(channel); --passed) {
        score.Polyphonics.set(channel + 1, passed, 0);
        resetEffects(score, channel, passed);
    }
    return head;
}

void eraseNote(Score& score, int channel, int head) {
    int position = head;
    do {
        eraseCell(score, channel, position++);
    } while (isContinuation(score, channel, position));
}

void resetEffects(Score& score, int channel, int position) {
    if (position < 0)
        return; // index 0 belongs to no position
    score.Modulation_Change.set(channel, position + 1, kClearedEffect);
    score.Pan_Change.set(channel, position + 1, kClearedPan);
    score.Reverb_Change.set(channel, position + 1, kClearedEffect);
    score.Chorus_Change.set(channel, position + 1, kClearedEffect);
}

bool setChord(Score& score, const Manners& manners, int channel, int position, int chord) {
    if (!isMelody(channel))
        return false;
    bool changed = false;
    const auto give = [&](int at) {
        const auto old = score.Polyphonics.at(channel + 1, at);
        changed = changed || (old && *old != chord);
        score.Polyphonics.set(channel + 1, at, static_cast<std::int16_t>(chord));
    };
    if (!manners.storesChordType) {
        give(position);
        give(headOf(score, channel, position));
        return changed;
    }
    const NoteCells note = noteAt(score, channel, position);
    for (int at = note.first; at <= note.last; ++at)
        give(at);
    return changed;
}

void copyFiveCells(Score& score, int channel, int position) {
    for (const ScoreLayer& layer : kScoreLayers) {
        const int row = channel + layer.channelShift;
        for (int cell = 0; cell < kCopiedCells; ++cell) {
            if (const auto value = (score.*layer.cells).at(row, position + cell + layer.positionShift))
                (score.*layer.clip).set(row, cell + layer.positionShift, *value);
        }
    }
}

} // namespace velmora
