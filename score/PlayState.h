// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// What playing is doing, read and set by the commands that start, pause and stop it.
struct PlayState {
    bool Playing = false;      ///< the loop is to run; clearing it is the only stop signal
    bool PausePending = false; ///< pause at the next step; stays set afterwards so that the next play resumes
    int PlayPosition = 0;      ///< position being played
    int SegmentBase = 0;       ///< `ViewFirstColumn` at the click that began a selection; 0 after a play
    int SegmentEnd = 0;        ///< `SelectEnd` at mouse-up; 0 after a play
    bool PlayingSegment = false;
    bool LoopOn = false;      ///< "Play Continuous Loop"
    bool ShowPlayLine = true; ///< the moving position line
    float StepSeconds = 0;    ///< seconds a position
    bool RecordAtEnd = false; ///< the recording that was started with the song stops when it ends
    int PlayStepCount = 0;    ///< positions played, for the progress of a recording
};

} // namespace velmora
