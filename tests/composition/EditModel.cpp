// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/composition/EditModel.h"

#include <algorithm>

namespace velmora {

EditModel::EditModel(int numNotes) : NumNotes(numNotes) {
    for (int layer = 0; layer < kLayers; ++layer) {
        const auto length = static_cast<std::size_t>(numNotes) + 1;
        const auto value = static_cast<std::int16_t>(clearedOf(layer));
        score[static_cast<std::size_t>(layer)].assign(16, std::vector<std::int16_t>(length, value));
        clip[static_cast<std::size_t>(layer)].assign(16, std::vector<std::int16_t>(length, value));
    }
}

int EditModel::clearedOf(int layer) {
    return layer == Cell ? -1 : layer == Volume ? 127 : layer == Pan ? 64 : 0;
}

std::optional<int> EditModel::read(const Cells& cells, int row, int index) {
    if (row < 0 || row > 15 || index < 0 || index >= static_cast<int>(cells[0].size()))
        return std::nullopt;
    return cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(index)];
}

void EditModel::write(Cells& cells, int row, int index, std::optional<int> value) {
    if (value && read(cells, row, index))
        cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(index)] =
            static_cast<std::int16_t>(*value);
}

void EditModel::makeHead(Cells& cells, int channel, int position) {
    const auto cell = read(cells, channel, position);
    if (cell && *cell >= 1000)
        write(cells, channel, position, *cell - 1000);
}

bool EditModel::inCopySet(int channel) const {
    const auto c = static_cast<std::size_t>(channel);
    return CopyonlyOneTrack ? channel == ActiveChannel && !muted[c] : picked[c];
}

bool EditModel::inCutSet(int channel) const {
    const auto c = static_cast<std::size_t>(channel);
    return !muted[c] && (!CopyonlyOneTrack || channel == ActiveChannel);
}

void EditModel::eraseTwoBuffers() {
    for (const Layer layer : {Cell, Instrument})
        clip[layer].assign(16, std::vector<std::int16_t>(static_cast<std::size_t>(NumNotes) + 1,
                                                         static_cast<std::int16_t>(clearedOf(layer))));
}

void EditModel::copySelectedArea(bool cutting) {
    SelectSpan = SelectEnd - SelectStart;
    if (CopyonlyOneTrack)
        ClipChannel = ActiveChannel;
    eraseTwoBuffers();
    for (int p = SelectStart; p <= SelectEnd; ++p)
        for (int c = 0; c <= 12; ++c)
            if (cutting ? inCutSet(c) : inCopySet(c))
                for (int l = 0; l < kLayers; ++l)
                    write(clip[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p - SelectStart),
                          read(score[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p)));
    for (int c = 0; c <= 12; ++c)
        makeHead(clip[Cell], c, 0);
}

void EditModel::copy() {
    if (SelectStart < 0)
        return;
    SelectEnd = SelectStart + CycleNotes;
    copySelectedArea(false);
    SelectStart = SelectEnd = -1;
}

void EditModel::cut() {
    if (SelectStart < 0 || SelectEnd < 0)
        return;
    keepWhole(false);
    copySelectedArea(true);
    const int n = SelectSpan;
    for (int p = SelectStart; p <= NumNotes - n; ++p)
        for (int c = 0; c <= 12; ++c)
            if (inCutSet(c))
                for (int l = 0; l < kLayers; ++l) {
                    Cells& cells = score[static_cast<std::size_t>(l)];
                    write(cells, rowOf(l, c), indexOf(l, p), read(cells, rowOf(l, c), indexOf(l, p + n)));
                }
    for (int c = 0; c <= 12; ++c)
        if (!muted[static_cast<std::size_t>(c)])
            makeHead(score[Cell], c, SelectStart);
    for (int p = NumNotes + 1 - n; p <= NumNotes; ++p)
        for (int c = 0; c <= 12; ++c)
            if (!muted[static_cast<std::size_t>(c)]) {
                write(score[Cell], c, p, -1);
                write(score[Instrument], c, p, 0);
            }
    SelectStart = SelectEnd = -1;
}

void EditModel::insertSpaces(int n, int viewCol) {
    const int t = PlayMark;
    SelectEnd = ViewFirstColumn + viewCol;
    for (int p = NumNotes; p >= t + n; --p)
        for (int c = 0; c <= 12; ++c)
            if (inCutSet(c))
                for (int l = 0; l < kLayers; ++l) {
                    Cells& cells = score[static_cast<std::size_t>(l)];
                    write(cells, rowOf(l, c), indexOf(l, p), read(cells, rowOf(l, c), indexOf(l, p - n)));
                }
    for (int p = t; p <= t + n - 1; ++p)
        for (int c = 0; c <= 12; ++c)
            if (inCutSet(c))
                for (int l = 0; l < kLayers; ++l)
                    write(score[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p), clearedOf(l));
}

void EditModel::insert(int n, int viewCol) {
    keepWhole(false);
    insertSpaces(n < 0 ? 0 : n, std::max(0, std::min(viewCol, ViewColumns)));
}

void EditModel::pasteCells(int viewCol) {
    const int t = PlayMark;
    const int end = std::min(t + SelectSpan, NumNotes);
    SelectEnd = ViewFirstColumn + viewCol;
    for (int p = t; p <= end; ++p)
        for (int c = 0; c <= 12; ++c)
            if (inCopySet(c))
                for (int l = 0; l < kLayers; ++l)
                    write(score[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p),
                          read(clip[static_cast<std::size_t>(l)],
                               rowOf(l, CopyonlyOneTrack ? ClipChannel : c), indexOf(l, p - t)));
    if (end < 1000)
        for (int c = 0; c <= 12; ++c)
            if (!muted[static_cast<std::size_t>(c)])
                makeHead(score[Cell], c, end + 1);
}

void EditModel::pasteOver(int viewCol) {
    keepWhole(false);
    pasteCells(viewCol);
}

void EditModel::pasteInsert(int viewCol) {
    keepWhole(false);
    const int column = std::max(0, std::min(viewCol, ViewColumns));
    insertSpaces(SelectSpan + 1, column);
    pasteCells(column);
}

void EditModel::duplicate(const std::function<void()>& pressCorner) {
    keepWhole(false);
    const int first = Check2 ? 0 : 8;
    const int last = NoteEffectsOn ? 12 : 7;
    eraseTwoBuffers();
    SelectStart = 0;
    SelectEnd = CycleNotes;
    copySelectedArea(false);
    for (int c = first; c <= last; ++c)
        if (inCopySet(c))
            for (int p = SelectStart; p <= SelectEnd; ++p)
                for (const Layer l : {Cell, Instrument})
                    write(clip[l], c, p - SelectStart, read(score[l], c, p));
    for (int c = 0; c <= 12; ++c)
        makeHead(clip[Cell], c, 0);
    SelectStart = SelectEnd = -1;
    repeat(first, last, false);
    pressCorner();
    PlayMark = 0;
}

void EditModel::duplicateMelody() {
    keepWhole(false);
    copyMelody(SelectStart, Check5 ? 0 : 8, NoteEffectsOn || Check3 ? 12 : 7);
}

void EditModel::create(int txtStart) {
    keepWhole(false);
    copyMelody(txtStart, 0, 12);
}

void EditModel::copyMelody(int start, int first, int last) {
    eraseTwoBuffers();
    for (int l = 0; l < kLayers; ++l)
        for (auto& row : clip[static_cast<std::size_t>(l)])
            row.resize(static_cast<std::size_t>(NumNotes) + 1, static_cast<std::int16_t>(clearedOf(l)));
    SelectEnd = start + CycleNotes;
    for (int c = first; c <= last; ++c)
        if (picked[static_cast<std::size_t>(c)])
            for (int p = start; p <= SelectEnd - 1; ++p)
                for (int l = 0; l < kLayers; ++l)
                    write(clip[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p - start),
                          read(score[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p)));
    for (int c = 0; c <= 12; ++c)
        makeHead(clip[Cell], c, 0);
    SelectSpan = SelectEnd - start;
    for (int c = first; c <= last; ++c)
        if (picked[static_cast<std::size_t>(c)])
            for (int p = start; p <= SelectEnd; ++p)
                for (const Layer l : {Cell, Instrument})
                    write(clip[l], c, p - start, read(score[l], c, p));
    for (int c = first; c <= last; ++c)
        makeHead(clip[Cell], c, 0);
    PlayMark = PlayMark + start;
    SelectStart = SelectEnd = -1;
    repeat(first, last, true);
    for (int c = first; c <= last; ++c)
        if (inUse[static_cast<std::size_t>(c)])
            shown[static_cast<std::size_t>(c)] = true;
    PlayMark = 0;
}

void EditModel::repeat(int first, int last, bool melody) {
    if (TotalNotes == 0)
        TotalNotes = 8;
    if (CycleBeats == 0)
        CycleBeats = 8;
    if (CycleBeats < 0)
        return;
    for (int at = PlayMark; at <= PlayMark + TotalNotes; at += CycleBeats) {
        const int stop = std::min(at + SelectSpan, NumNotes);
        for (int c = first; c <= last; ++c)
            if (melody ? picked[static_cast<std::size_t>(c)] : inCopySet(c))
                for (int p = at; p <= stop; ++p)
                    for (int l = 0; l < kLayers; ++l)
                        write(score[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p),
                              read(clip[static_cast<std::size_t>(l)], rowOf(l, c), indexOf(l, p - at)));
        if (stop < NumNotes)
            for (int c = first; c <= last; ++c)
                if (melody ? picked[static_cast<std::size_t>(c)] : !muted[static_cast<std::size_t>(c)])
                    makeHead(score[Cell], c, stop + 1);
    }
}

bool EditModel::anyNotes() const {
    for (int c = 0; c <= 12; ++c)
        for (const std::int16_t cell : score[Cell][static_cast<std::size_t>(c)])
            if (cell >= 0)
                return true;
    return false;
}

void EditModel::clear() {
    const bool emptyOverOld = kept_ && kept_->replaced && !anyNotes();
    if (!emptyOverOld)
        keepWhole(true);
    for (int c = 0; c <= 12; ++c) {
        clearChannel(c);
        for (int l = Volume; l < kLayers; ++l)
            for (std::int16_t& value : score[static_cast<std::size_t>(l)][static_cast<std::size_t>(c)])
                value = static_cast<std::int16_t>(clearedOf(l));
    }
    SelectStart = SelectEnd = -1;
    PlayMark = ViewFirstColumn = SongEnd = ActiveChannel = 0;
    CycleNotes = CycleBeats = TotalNotes = 0;
    NoteEffectsOn = false;
    inUse.fill(false);
    shown.fill(false);
    inUse[0] = shown[0] = true;
}

void EditModel::clearChannel(int channel) {
    inUse[static_cast<std::size_t>(channel)] = false;
    for (const Layer l : {Cell, Instrument, Chord})
        for (std::int16_t& value : score[l][static_cast<std::size_t>(rowOf(l, channel))])
            value = static_cast<std::int16_t>(clearedOf(l));
}

void EditModel::findEndOfSong() {
    SongEnd = 0;
    inUse[static_cast<std::size_t>(ActiveChannel)] = true;
    for (int c = 0; c <= 12; ++c) {
        const auto i = static_cast<std::size_t>(c);
        if (muted[i])
            continue;
        int p = NumNotes;
        while (p >= 0 && *read(score[Cell], c, p) < 0)
            --p;
        if (p >= 1) {
            SongEnd = std::max(SongEnd, p + 1);
            inUse[i] = shown[i] = true;
        } else if (c > 0) {
            inUse[i] = shown[i] = false;
        }
    }
}

void EditModel::leaveEmptyChannels() {
    for (int c = 0; c <= 12; ++c) {
        int notes = 0;
        for (int p = 0; p <= NumNotes; ++p)
            notes += *read(score[Cell], c, p) >= 0 ? 1 : 0;
        if (notes == 0 && c != ActiveChannel)
            inUse[static_cast<std::size_t>(c)] = false;
    }
}

void EditModel::setLength(int numNotes) {
    NumNotes = numNotes;
    const auto length = static_cast<std::size_t>(numNotes) + 1;
    for (int l = 0; l < kLayers; ++l) {
        for (auto& row : score[static_cast<std::size_t>(l)])
            row.resize(length, static_cast<std::int16_t>(clearedOf(l)));
        if (l == Cell || l == Instrument || l == Chord)
            for (auto& row : clip[static_cast<std::size_t>(l)])
                row.resize(length, static_cast<std::int16_t>(clearedOf(l)));
    }
}

void EditModel::keepWhole(bool replaced) {
    kept_ = Kept{true, replaced, ActiveChannel, 0, NumNotes, score, inUse, shown, instrument};
}

void EditModel::keepChannel() {
    int last = std::min(SongEnd >= 1 ? SongEnd + 100 : NumNotes, NumNotes);
    while (last > 0 && *read(score[Cell], ActiveChannel, last) < 0)
        --last;
    kept_ = Kept{false, false, ActiveChannel, last + 1, NumNotes, score, inUse, shown, instrument};
}

bool EditModel::undo() {
    if (!kept_)
        return false;
    if (kept_->whole)
        undoWhole(*kept_);
    else
        undoChannel(*kept_);
    kept_.reset();
    findEndOfSong();
    return true;
}

void EditModel::undoWhole(const Kept& kept) {
    if (NumNotes < kept.NumNotes)
        setLength(kept.NumNotes);
    if (kept.replaced)
        ActiveChannel = kept.channel;
    for (int l = 0; l < kLayers; ++l) {
        score[static_cast<std::size_t>(l)] = kept.score[static_cast<std::size_t>(l)];
        for (auto& row : score[static_cast<std::size_t>(l)])
            row.resize(static_cast<std::size_t>(NumNotes) + 1, static_cast<std::int16_t>(clearedOf(l)));
    }
    inUse = kept.inUse;
    shown = kept.shown;
    instrument = kept.instrument;
}

void EditModel::undoChannel(const Kept& kept) {
    const int c = kept.channel;
    clearChannel(c);
    for (int p = 0; p < kept.fields; ++p) {
        const auto cell = read(kept.score[Cell], c, p);
        write(score[Cell], c, p, cell);
        write(score[Instrument], c, p, read(kept.score[Instrument], c, p));
        if (cell && *cell >= 1 && p <= NumNotes)
            inUse[static_cast<std::size_t>(c)] = true;
    }
    // The chords kept are those of the row with the channel's own number.
    for (int p = 0; c <= 8 && p < kept.fields + 1; ++p)
        write(score[Chord], c, p, read(kept.score[Chord], c, p));
    for (int l = Volume; l < kLayers; ++l)
        for (int index = 1; index < kept.fields + 1; ++index)
            write(score[static_cast<std::size_t>(l)], c, index,
                  read(kept.score[static_cast<std::size_t>(l)], c, index));
    if (c == 0)
        instrument[0] = kept.instrument[0];
}

} // namespace velmora
