// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "score/ChannelGrid.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

/// What a cell of `NoteCell` says.
enum class CellClass : std::uint8_t { Empty, Head, Continuation };

/// -1 (or any negative code) is empty, 0 to 999 a head, 1000 and up the continuation of the head to the left.
[[nodiscard]] constexpr CellClass cellClass(int cell) {
    return cell < 0 ? CellClass::Empty : cell < 1000 ? CellClass::Head : CellClass::Continuation;
}
/// The row of a head or continuation.
[[nodiscard]] constexpr int cellRow(int cell) {
    return cell % 1000;
}
/// MIDI note of a melody row and the reverse: row 0 is the highest pitch.
[[nodiscard]] constexpr int RowToNote(int row) {
    return 127 - row;
}

inline constexpr int kUsedChannels = 13;   ///< channels 0 to 12 hold music, 13 to 15 are spare
inline constexpr int kMelodyChannels = 8;  ///< channels 0 to 7
inline constexpr int kFirstPercussion = 8; ///< 8 and 10 to 12; index 9 stays empty, see `Score`
inline constexpr int kMostNotes = 200'000; ///< positions: more than seven hours of music, 102 MB
inline constexpr std::int16_t kEmptyCell = -1;

/// Whether a channel can be selected. Index 9 can't, though its row is read, undone and written like others.
[[nodiscard]] constexpr bool isChannel(int channel) {
    return channel >= 0 && channel < kUsedChannels && channel != kFirstPercussion + 1;
}

/// A reset value of one effect array.
inline constexpr std::int16_t kClearedVolume = 127;
inline constexpr std::int16_t kClearedPan = 64;
inline constexpr std::int16_t kClearedEffect = 0;

/// The composition: 13 usable channels by `NumNotes` + 1 positions of cells, and what belongs to them.
///
/// A note is a run of cells in one channel: one head and then continuations. Channels 0 to 7 are melody, 8
/// and 10 to 12 percussion; index 9 is deliberately left empty, since MIDI channel index 9 is the drum
/// channel. The five effect arrays hold the value of position p at index p + 1; `Polyphonics` holds the chord
/// type of melody channel c in row c + 1, at index p.
struct Score {
    explicit Score(int numNotes = 1000);

    int NumNotes; ///< the last position; every array has `NumNotes` + 1 cells a channel

    ChannelGrid NoteCell;       ///< -1 empty, row 0 to 127 a head, 1000 + row a continuation
    ChannelGrid NoteInstrument; ///< 0 to 127 program, 128 and up percussion key + 93; 0 in empty cells
    ChannelGrid Polyphonics;    ///< chord type 0 to 7, at [channel + 1][position]
    ChannelGrid Volume;         ///< velocity 0 to 127, at [channel][position + 1], as the next four
    ChannelGrid Modulation_Change;
    ChannelGrid Pan_Change;
    ChannelGrid Reverb_Change;
    ChannelGrid Chorus_Change;

    ChannelGrid ClipNoteCell; ///< what the copy commands took, indexed as their namesakes
    ChannelGrid ClipNoteInstrument;
    ChannelGrid ClipPolyphonics;
    ChannelGrid ClipVolume;
    ChannelGrid ClipModulation;
    ChannelGrid ClipPan;
    ChannelGrid ClipReverb;
    ChannelGrid ClipChorus;

    PerChannel<std::int16_t> ChannelInstrument;   ///< code that new notes of the channel receive
    PerChannel<std::int16_t> ChannelVelocity;     ///< velocity of the next note-on
    PerChannel<bool> ChannelMuted;                ///< playing and `FindEndOfSong` skip the channel
    PerChannel<bool, kUsedChannels> ChannelInUse; ///< holds notes or is active
    PerChannel<bool> ChannelShown;                ///< its button in the channel strip is lit
    PerChannel<bool> ChannelIsDrum;               ///< sounds on MIDI channel index 9 with `ChannelDrumKey`
    PerChannel<std::int16_t> ChannelDrumKey;
    PerChannel<std::int16_t> PlayedCell;       ///< what playing sent last; -1 before playing
    PerChannel<std::int16_t> PlayedInstrument; ///< likewise

    /// For percussion channel c and positions 0 to 14, [c - 7][p + 1] remembers the instrument: as its code
    /// when a file is read, as code - 128 when drawn with the mouse (the two differ on purpose).
    std::array<std::array<std::int16_t, 16>, 5> BeatMemo{};

    std::int16_t Tempo = 100;          ///< one position lasts 13.8 / `Tempo` seconds
    int ActiveChannel = 0;             ///< the channel being edited
    std::int16_t NotesPerMeasure = 16; ///< columns between measure lines
    int SongEnd = 0;                   ///< 1 + the last position that sounds, as `FindEndOfSong` found it
    int TopChannel = 1;                ///< highest channel that playing visits; editing raises it
    int TopMelodyHint = 0;             ///< raised to the active channel by edits of melody
    int TopDrumHint = 0;               ///< 1, 2, 3, 4 when channel 8, 10, 11, 12 is selected

    std::string currentFile; ///< path of the open score, blank for a new one

    /// Empties the cells of channels 0 to 12; the effect arrays keep their values.
    void ClearNoteArrays();
    /// The same for one channel; a negative channel names none.
    void ClearThisArray(int channel);
    /// The reset to a new score, as far as the Score itself is concerned. `ChannelInstrument` stays.
    void ClearAll();
    /// Finds `SongEnd` over the channels that aren't muted, and marks the channels in use.
    void FindEndOfSong();
    /// A channel that holds no cell any more is no longer in use, unless it is the active one.
    void Isnotes();
    /// "Add new notes" and "Subtract notes": gives every array @p numNotes + 1 positions, contents kept.
    void resizeNotes(int numNotes);

    /// Writes `BeatMemo` for a percussion channel; what lies outside its 5 by 16 entries is left out.
    void rememberBeat(int channel, int position, std::int16_t value);
    /// The highest position of a channel that is not empty, at or below @p bound; -1 for none.
    [[nodiscard]] int lastFilledPosition(int channel, int bound) const;
    /// Channels with any cell that is not empty, muted or not, in ascending order.
    [[nodiscard]] std::vector<int> usedChannels() const;
};

/// What `LblNumnotes` shows: "77 Notes".
[[nodiscard]] std::string noteCountText(int songEnd);

/// "5C" for MIDI note 60's row 67: octave and name of each melody row, 0 to 127.
[[nodiscard]] const std::array<std::string, 128>& NoteNames();

} // namespace velmora
