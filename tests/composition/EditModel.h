// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace velmora {

/// A second, slow account of the editing commands: cell by cell, step by step, in plain nested vectors. It
/// shares nothing with the program but the numbers of the codes.
struct EditModel {
    using Cells = std::vector<std::vector<std::int16_t>>; ///< [row][index], 16 rows

    /// The layers, in this order, in `score` and in `clip`.
    enum Layer { Cell, Instrument, Chord, Volume, Modulation, Pan, Reverb, Chorus, kLayers };

    explicit EditModel(int numNotes);

    int NumNotes;
    std::array<Cells, kLayers> score;
    std::array<Cells, kLayers> clip;

    int SelectStart = -1, SelectEnd = -1, PlayMark = 0;
    int ViewFirstColumn = 0, ViewColumns = 99;
    int SelectSpan = 0, ClipChannel = 0;
    int CycleNotes = 0, CycleBeats = 0, TotalNotes = 0, Txtspc = 0;
    bool CopyonlyOneTrack = false, NoteEffectsOn = false, Check2 = false, Check3 = false, Check5 = false;
    int ActiveChannel = 0, SongEnd = 0;
    std::array<bool, 13> picked{}, muted{}, inUse{}, shown{};
    std::array<int, 13> instrument{}; ///< of each channel

    void copy();
    void cut();
    void pasteOver(int viewCol);
    void pasteInsert(int viewCol);
    void insert(int n, int viewCol);
    void duplicate(const std::function<void()>& pressCorner);
    void duplicateMelody();
    void create(int txtStart);
    void clear();
    bool undo();
    /// Before a stroke on `MusicBox`.
    void keepChannel();
    void findEndOfSong();
    /// Channels without a cell are in use no more, but for the active one: once the notes have changed.
    void leaveEmptyChannels();
    /// "Add new notes" and "Subtract notes".
    void setLength(int numNotes);

private:
    struct Kept {
        bool whole;
        bool replaced; ///< by a clearing
        int channel;
        int fields; ///< of a channel's note row
        int NumNotes;
        std::array<Cells, kLayers> score;
        std::array<bool, 13> inUse, shown;
        std::array<int, 13> instrument;
    };
    static int rowOf(int layer, int channel) { return layer == Chord ? channel + 1 : channel; }
    static int indexOf(int layer, int position) { return layer >= Volume ? position + 1 : position; }
    static int clearedOf(int layer);
    static std::optional<int> read(const Cells& cells, int row, int index);
    static void write(Cells& cells, int row, int index, std::optional<int> value);
    static void makeHead(Cells& cells, int channel, int position);

    void keepWhole(bool replaced);
    bool anyNotes() const;
    bool inCopySet(int channel) const;
    bool inCutSet(int channel) const;
    void eraseTwoBuffers();
    void copySelectedArea(bool cutting);
    void pasteCells(int viewCol);
    void insertSpaces(int n, int viewCol);
    void copyMelody(int start, int first, int last);
    void repeat(int first, int last, bool melody);
    void clearChannel(int channel);
    void undoChannel(const Kept& kept);
    void undoWhole(const Kept& kept);

    std::optional<Kept> kept_;
};

} // namespace velmora
