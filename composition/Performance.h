// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/TimedMessage.h"

#include <optional>
#include <vector>

namespace velmora {

struct ChordSteps;
struct Manners;
struct Score;
struct SetupState;
struct Workspace;

/// What is performed: a score with the records that playing reads. Nothing of it changes.
struct PerformedScore {
    const Score& score;
    const SetupState& setup;
    const ChordSteps& chords;
    const Manners& manners;

    /// That of the composing window.
    [[nodiscard]] static PerformedScore of(const Workspace& workspace);
};

/// Positions, both played: "Play Segment" from a mark at the first one.
struct PerformedSegment {
    int first;
    int last;
};

/// All that playing a score sends, each message with its moment and where in the score it comes from: what a
/// file of sound, a MIDI file or a list is made of.
struct Performance {
    /// Where a message comes from.
    struct Origin {
        int position; ///< that playing had reached
        int channel;  ///< of the Score, which is not always the message's; -1 for the silence at the end
    };

    /// In the order of sending, which is the order of their moments. Playing begins at second 0, waits a step
    /// and then sends position 0. The last message, a reset, is the end of playing. Some words may be no MIDI
    /// (`shortmessage::isValid`); ports leave these out. Empty where playing does nothing at all: at a tempo
    /// that isn't playable, and for a segment that ends at position 0.
    std::vector<TimedMessage> messages;
    std::vector<Origin> origins; ///< one for each message
    double seconds = 0;          ///< that playing takes; no sound dies away after that
    double step = 0;             ///< seconds that a position lasts

    int first = 0;            ///< the first position that is played
    int notesPerMeasure = 16; ///< positions; measures count from position 0
    int beatsPerMeasure = 4;  ///< what the user calls them, which may be of another length
    int noteValue = 4;
};

/// Plays the whole score, or a segment of it, on a clock that jumps, with copies of the records: in
/// milliseconds, and without a trace in them. The channels that sound are those of playing: not muted, and up
/// to `TopChannel`. The mark and "Play Continuous Loop" don't count.
/// Thread-safe: as reading what is performed is.
[[nodiscard]] Performance perform(const PerformedScore& performed,
                                  const std::optional<PerformedSegment>& segment = std::nullopt);
/// The whole score of the composing window, as "Play" would play it from its beginning.
[[nodiscard]] Performance perform(const Workspace& workspace);

} // namespace velmora
