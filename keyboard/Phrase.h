// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PhraseMeter.h"
#include "keyboard/PlayedNote.h"
#include "keyboard/Pulse.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmora {

class PlayedLog;
struct SetupState;

/// What was played last, and the beats that it was played to.
struct Phrase {
    /// How it comes to be the last one.
    enum class Of : std::uint8_t {
        ThisRun,    ///< nothing of it has been kept
        KeptBefore, ///< nothing was played since that was kept
        EarlierRun  ///< nothing was played since the program started
    };

    std::vector<PlayedNote> notes; ///< in the order of their onsets; none if nothing was played
    PhraseMeter meter;
    Pulse pulse;
    bool metronome = false; ///< it told the beats
    Of of = Of::ThisRun;

    /// From the first onset to the last end.
    [[nodiscard]] double seconds() const;
};

/// Those of @p notes, which are in the order of their onsets, that come after the last silence of @p silence
/// seconds.
[[nodiscard]] std::span<const PlayedNote> afterSilence(std::span<const PlayedNote> notes, double silence);

/// The last phrase: what was played since something was kept, from the last silence of two measures on, which
/// are those of the metronome or of the tempo that is found; of two seconds at least.
[[nodiscard]] Phrase lastPhrase(PlayedLog& log, PhraseMeter meter);

/// "The last phrase: 13 notes, 6 seconds, about 96 beats per minute"; that nothing was played, if so.
[[nodiscard]] std::string phraseText(const Phrase& phrase);

/// The meter of the composition.
[[nodiscard]] PhraseMeter meterOf(const SetupState& setup);

} // namespace velmora
