// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "cli/ScoreOptions.h"
#include "score/PlayState.h"
#include "score/PlaybackView.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "shell/MessageLoop.h"
#include "sound/Chords.h"
#include "sound/MidiPort.h"
#include "sound/SetupState.h"
#include "sound/TimedMessage.h"

#include <vector>

namespace velmora::cli {

/// A score opened as the Open command opens it, long enough for every row of the file, with what performing
/// needs.
class Session {
public:
    /// Throws Failure if the file can't be read.
    Session(const std::filesystem::path& file, const ScoreOptions& options);

    /// Plays the score, or the segment that the options name, to its end on @p loop's clock.
    void perform(MidiPort& port, MessageLoop& loop, PlaybackView& window);

    /// Seconds from the first position's beginning to the last one's end.
    [[nodiscard]] double seconds() const;

    Score score;
    SetupState setup;
    ChordSteps chords;
    ViewState view;
    PlayState state;

private:
    void markSegment(ScoreOptions::Segment segment);
};

/// Performs the session on a clock that jumps: every message that playing sends, with its moment.
[[nodiscard]] std::vector<TimedMessage> performedMessages(Session& session);

} // namespace velmora::cli
