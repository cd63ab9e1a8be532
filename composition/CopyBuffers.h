// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

struct Score;

// Between the Score and its copy buffers, in all layers.

/// Empties the buffers of notes and instruments and gives them the score's length; the others stay.
void eraseNoteBuffers(Score& score);
/// Takes @p count positions of a channel from @p first on.
void copyToBuffers(Score& score, int channel, int first, int count);
/// The same, but notes and instruments alone.
void copyNotesToBuffers(Score& score, int channel, int first, int count);
/// A fragment that begins in the middle of a note begins with a head in the buffer.
void makeFirstHeads(Score& score);
/// Writes the first @p count positions of the buffers' channel @p source to @p channel, from @p at on.
void pasteFromBuffers(Score& score, int source, int channel, int at, int count);

} // namespace velmora
