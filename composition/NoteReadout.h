// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

namespace velmora {

struct Manners;
struct Score;
struct Workspace;

/// What the read-outs say about one cell of the active channel.
struct NoteReadout {
    std::string number; ///< `LblNote`, counted from 1
    std::string name;   ///< `LblNoteName`
    std::string vol;    ///< `LblVol`
    std::string inst;   ///< `LblInst`
    std::string chord;  ///< `Label7`
    bool operator==(const NoteReadout&) const = default;
};

[[nodiscard]] NoteReadout readNote(const Score& score, int position);
/// The left press on `Pic2a`: the same, but looking at a blank cell resets its four effects; that is meant.
NoteReadout Pic2a_MouseDown(Workspace& workspace, int position);

/// `LblTrk`: the number on the channel's square; in classic manner percussion counts on from 8, as if MIDI's
/// drum channel had a square, too.
[[nodiscard]] std::string trackOf(int channel, const Manners& manners);

/// The tool text line: number, volume and instrument.
[[nodiscard]] std::string noteLine(const NoteReadout& note);
/// Instrument and name of a cell of the active channel; blank for an empty one.
[[nodiscard]] std::string cellText(const Score& score, int position);

} // namespace velmora
