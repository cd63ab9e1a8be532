// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "base/Turns.h"
#include "score/StopWatch.h"
#include "score/Timetable.h"

#include <optional>

namespace velmora {

class MessageLoop;
class MidiPort;
class NotePlayer;
class PlaybackView;
class RecordingProgress;
struct Manners;
struct PlayState;
struct PlayedScore;
struct Score;
struct ViewState;

/// Walks the Score position by position: there is no list of events. In careful manners the steps keep a
/// `Timetable`; in classic ones tempo is a floor, not a clock: the work of a step adds to the step.
class PlaybackEngine {
public:
    PlaybackEngine(const PlayedScore& played, NotePlayer& player, MidiPort& port, MessageLoop& loop,
                   Guests<PlaybackView>& views, Guests<RecordingProgress>& recorders);

    /// Plays the whole score if nothing plays, or (@p stop) ends what plays.
    void PlayAndStop_Click(bool stop);
    /// Plays the marked segment if nothing plays, from the play-from mark to `SegmentEnd`.
    void playSegment();
    /// Back to position 0; only while nothing plays.
    void RewindBut_Click();

    /// For long work of another kind that sounds: what plays ends here, and the work's turn is over once
    /// anything plays again.
    [[nodiscard]] Turn takeTurn();

    /// Plays from the start, or from the mark after a pause, until the end or until `Playing` is cleared.
    void PlaySong2();
    /// Plays the segment; a position lasts 0.04 / 0.046 of its time in `PlaySong2`, which is meant.
    void PlaySelection();
    /// Seconds that a position lasts in either; 0 for a tempo of 0.
    [[nodiscard]] static float songStep(int tempo);
    [[nodiscard]] static float segmentStep(int tempo);
    /// Steps shorter than 0.01 s or longer than 10 s play nothing.
    [[nodiscard]] static bool isPlayable(float step);

    /// One step of every channel up to `TopChannel` at `PlayPosition`.
    void PlayNotes();
    /// Moves the play line and the position on, and decides what comes after the last position.
    void AdvancePlayLine();

private:
    /// How a walk over the positions ended.
    enum class WalkEnd { Paused, Stopped, ComesRound };

    [[nodiscard]] Turn begin();
    [[nodiscard]] bool beginSong();
    [[nodiscard]] bool beginSelection();
    [[nodiscard]] bool segmentIsMarked() const;
    void showPlayMark(int rightLimit);
    void showMovedView();
    [[nodiscard]] bool prepare(float step);
    void keepTimetable();
    [[nodiscard]] WalkEnd walk(const Turn& turn);
    void waitForStep();
    void pause();
    void playChannel(int channel);
    void keepSegmentEnd();
    void moveLine();
    void takeLineAway();
    void showRecordingProgress();
    void clearRecordingProgress();
    void endRecording();
    [[nodiscard]] bool finish(const Turn& turn);

    Score& score_;
    ViewState& view_;
    PlayState& state_;
    const Manners& manners_;
    NotePlayer& player_;
    MidiPort& port_;
    MessageLoop& loop_;
    Guests<PlaybackView>& views_;
    Guests<RecordingProgress>& recorders_;

    mStopWatch watches_;
    int PlayStopwatch;
    std::optional<Timetable> timetable_; ///< of what plays, if its steps keep one
    int segmentEnd_ = 0;                 ///< the last position of the segment that plays
    int linePosition_ = -1;              ///< where the play line stands; -1 for nowhere
    bool comesRound_ = false;            ///< the loop starts afresh
    Turns turns_; ///< of plays: events are served while one ends, so a newer may begin before
};

} // namespace velmora
