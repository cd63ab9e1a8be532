// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/PlaybackEngine.h"

#include "base/MessageLoop.h"
#include "score/Manners.h"
#include "score/NotePlayer.h"
#include "score/PlayState.h"
#include "score/PlaybackView.h"
#include "score/PlayedScore.h"
#include "score/RecordingProgress.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/MidiPort.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {
constexpr double kSongFactor = 0.046;
constexpr double kSegmentFactor = 0.04; // a marked segment plays 15 percent faster; that is meant
constexpr float kShortestStep = 0.01F;
constexpr float kLongestStep = 10;

float stepOf(int tempo, double factor) {
    return tempo == 0 ? 0.0F : static_cast<float>(300.0 / tempo * factor);
}
} // namespace

PlaybackEngine::PlaybackEngine(const PlayedScore& played, NotePlayer& player, MidiPort& port,
                               MessageLoop& loop, Guests<PlaybackView>& views,
                               Guests<RecordingProgress>& recorders)
    : score_(played.score)
    , view_(played.view)
    , state_(played.state)
    , manners_(played.manners)
    , player_(player)
    , port_(port)
    , loop_(loop)
    , views_(views)
    , recorders_(recorders)
    , watches_(loop)
    , PlayStopwatch(watches_.create()) {}

float PlaybackEngine::songStep(int tempo) {
    return stepOf(tempo, kSongFactor);
}

float PlaybackEngine::segmentStep(int tempo) {
    return stepOf(tempo, kSegmentFactor);
}

bool PlaybackEngine::isPlayable(float step) {
    return step >= kShortestStep && step <= kLongestStep;
}

void PlaybackEngine::PlayAndStop_Click(bool stop) {
    if (!stop && !state_.Playing) {
        state_.Playing = true;
        views_.tell(&PlaybackView::DisableControls);
        loop_.YieldIfInput();
        PlaySong2();
    }
    views_.tell(&PlaybackView::EnableControls);
    state_.Playing = false;
}

void PlaybackEngine::playSegment() {
    if (state_.Playing)
        return;
    state_.Playing = true;
    PlaySelection();
    state_.Playing = false;
    score_.FindEndOfSong(); // the segment had an end of its own
    views_.tell(&PlaybackView::showSongEnd);
}

void PlaybackEngine::RewindBut_Click() {
    if (state_.Playing)
        return;
    views_.tell(&PlaybackView::clearMusicBox);
    view_.ViewFirstColumn = 0;
    view_.ViewLastColumn = std::min(view_.ViewColumns, score_.NumNotes);
    view_.PlayMark = 0;
    views_.tell(&PlaybackView::DrawNoteArray);
    showMovedView();
    loop_.YieldIfInput();
}

Turn PlaybackEngine::takeTurn() {
    PlayAndStop_Click(true);
    if (turns_.underWay()) {
        clearRecordingProgress();
        endRecording();
    }
    return begin();
}

/// What is still under way is over, and silent.
Turn PlaybackEngine::begin() {
    if (turns_.underWay()) {
        port_.reset();
        state_.PlayStepCount = 0;
        takeLineAway();
    }
    timetable_.reset();
    return Turn(turns_);
}

void PlaybackEngine::PlaySong2() {
    const Turn turn = begin();
    if (!beginSong())
        return;
    WalkEnd end = walk(turn);
    // Coming round is a fresh start each time; a loop, so that a week of it costs no stack.
    while (end == WalkEnd::ComesRound)
        end = beginSong() ? walk(turn) : WalkEnd::Stopped;
    if (end == WalkEnd::Paused || !finish(turn))
        return;
    view_.SelectStart = view_.SelectEnd = -1;
    view_.PlayMark = 0;
    state_.SegmentBase = state_.SegmentEnd = 0;
    views_.tell(&PlaybackView::DrawNoteArray);
    endRecording();
    views_.tell(&PlaybackView::EnableControls);
    state_.PlayStepCount = 0;
}

void PlaybackEngine::PlaySelection() {
    if (!segmentIsMarked())
        return;
    const Turn turn = begin();
    if (!beginSelection())
        return;
    WalkEnd end = walk(turn);
    while (end == WalkEnd::ComesRound)
        end = segmentIsMarked() && beginSelection() ? walk(turn) : WalkEnd::Stopped;
    if (end == WalkEnd::Paused || !finish(turn)) {
        state_.PlayingSegment = false;
        return;
    }
    endRecording();
    state_.PlayStepCount = 0;
    views_.tell(&PlaybackView::DrawNoteArray);
    state_.PlayingSegment = false;
    views_.tell(&PlaybackView::EnableControls);
}

bool PlaybackEngine::segmentIsMarked() const {
    return state_.SegmentEnd >= 1 && state_.SegmentEnd - state_.SegmentBase >= 1;
}

bool PlaybackEngine::beginSong() {
    state_.PlayingSegment = false;
    showPlayMark(score_.NumNotes - 1);
    state_.PlayPosition = state_.PausePending ? view_.PlayMark : 0;
    state_.PausePending = false;
    return prepare(songStep(score_.Tempo));
}

bool PlaybackEngine::beginSelection() {
    state_.PausePending = false;
    state_.PlayingSegment = true;
    showPlayMark(score_.NumNotes - 10);
    state_.PlayPosition = view_.PlayMark;
    const bool ready = prepare(segmentStep(score_.Tempo));
    segmentEnd_ = state_.SegmentEnd;
    keepSegmentEnd();
    if (!ready)
        state_.PlayingSegment = false;
    return ready;
}

void PlaybackEngine::showPlayMark(int rightLimit) {
    if (view_.PlayMark >= view_.ViewFirstColumn && view_.PlayMark <= view_.ViewLastColumn)
        return;
    view_.ViewFirstColumn = std::min(view_.PlayMark, score_.NumNotes - 1);
    view_.ViewLastColumn = std::min(view_.ViewFirstColumn + view_.ViewColumns, rightLimit);
    showMovedView();
}

/// All but `MusicBox`, which is painted at any rate.
void PlaybackEngine::showMovedView() {
    views_.tell(&PlaybackView::followView);
    views_.tell(&PlaybackView::DrawBeatArray);
    views_.tell(&PlaybackView::drawBars);
}

bool PlaybackEngine::prepare(float step) {
    takeLineAway();
    views_.tell(&PlaybackView::followView);
    views_.tell(&PlaybackView::DrawNoteArray);
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        score_.PlayedCell[channel] = kEmptyCell;
        score_.PlayedInstrument[channel] = -1;
    }
    score_.FindEndOfSong();
    views_.tell(&PlaybackView::showSongEnd);
    state_.StepSeconds = step;
    watches_.start(PlayStopwatch);
    keepTimetable();
    return isPlayable(step);
}

/// A new one for each round; what comes round goes on from the last step's moment.
void PlaybackEngine::keepTimetable() {
    if (!manners_.keepsTime)
        timetable_.reset();
    else if (timetable_)
        timetable_ = timetable_->following(state_.StepSeconds);
    else
        timetable_.emplace(loop_.now(), state_.StepSeconds);
}

PlaybackEngine::WalkEnd PlaybackEngine::walk(const Turn& turn) {
    while (state_.Playing) {
        waitForStep();
        if (turn.isOver())
            break;
        if (state_.PausePending) {
            pause();
            return WalkEnd::Paused;
        }
        const int position = state_.PlayPosition;
        const double moment = loop_.now();
        PlayNotes(); // ending a chord serves events, and so does moving on
        if (turn.isOver())
            break;
        views_.tell(&PlaybackView::positionSounds, position, moment);
        AdvancePlayLine();
        if (turn.isOver())
            break;
        if (std::exchange(comesRound_, false)) {
            if (!state_.PausePending)
                return WalkEnd::ComesRound;
            state_.PlayPosition = state_.PlayingSegment ? view_.PlayMark : 0;
            pause();
            return WalkEnd::Paused;
        }
        if (!state_.PlayingSegment)
            views_.tell(&PlaybackView::domodgraph);
        showRecordingProgress();
        loop_.YieldIfInput();
    }
    return WalkEnd::Stopped;
}

void PlaybackEngine::waitForStep() {
    if (!timetable_) {
        watches_.WaitSeconds(PlayStopwatch, state_.StepSeconds);
        return;
    }
    const double moment = timetable_->next();
    loop_.serveUntil(moment);
    if (timetable_) // a newer play may have begun, one without
        timetable_->come(loop_.now());
}

void PlaybackEngine::pause() {
    port_.reset();
    takeLineAway();
    views_.tell(&PlaybackView::EnableControls);
    state_.Playing = false;
    view_.PlayMark = state_.PlayPosition;
    views_.tell(&PlaybackView::DrawNoteArray);
}

/// False if a newer play has taken its place: then marks and window are that one's.
bool PlaybackEngine::finish(const Turn& turn) {
    if (!turn.isOver() && isPlayable(state_.StepSeconds))
        waitForStep(); // the last position gets its time
    if (turn.isOver()) {
        port_.reset();
        return false;
    }
    takeLineAway();
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (score_.ChannelMuted[channel])
            continue;
        player_.CurrentChannel = channel;
        if (score_.PlayedCell[channel] >= 0)
            player_.StopNote(cellRow(score_.PlayedCell[channel]));
    }
    port_.reset();
    clearRecordingProgress();
    return true;
}

void PlaybackEngine::PlayNotes() {
    const int top = std::min(score_.TopChannel, ChannelGrid::kChannels - 1);
    for (int channel = 0; channel <= top; ++channel) {
        if (!score_.ChannelMuted[channel])
            playChannel(channel);
    }
}

void PlaybackEngine::playChannel(int channel) {
    const int position = state_.PlayPosition;
    player_.CurrentChannel = channel;

    const std::int16_t oldCell = score_.PlayedCell[channel];
    // Past the last position nothing stands, so that a note there ends like any other.
    const std::int16_t newCell = score_.NoteCell.valueOr(channel, position, kEmptyCell);
    const std::int16_t instrument = score_.NoteInstrument.valueOr(channel, position, 0);
    const bool wasSounding = cellClass(oldCell) != CellClass::Empty;
    const bool isHead = cellClass(newCell) == CellClass::Head;

    // Unshifted, unlike the index that `Startnote` uses; both are meant.
    if (const auto volume = score_.Volume.at(channel, position))
        score_.ChannelVelocity[channel] = *volume;
    if (isHead && instrument != score_.PlayedInstrument[channel])
        player_.ChangeInstrument(instrument, channel);
    if (wasSounding && (isHead || cellClass(newCell) == CellClass::Empty))
        player_.StopNote(cellRow(oldCell));
    if (isHead)
        player_.Startnote(cellRow(newCell), channel);

    score_.PlayedCell[channel] = newCell;
    if (isHead)
        score_.PlayedInstrument[channel] = instrument;
}

void PlaybackEngine::AdvancePlayLine() {
    if (state_.ShowPlayLine)
        moveLine();
    else
        takeLineAway();
    ++state_.PlayPosition;
    keepSegmentEnd();
    if (state_.PlayPosition > score_.SongEnd) {
        if (!state_.LoopOn) {
            state_.Playing = false;
        } else if (state_.ShowPlayLine) {
            comesRound_ = state_.Playing; // a stop that came in the last step stays a stop
            if (comesRound_)
                return;
        } else {
            state_.PlayPosition = 0; // no note is stopped at the jump
        }
    }
    loop_.YieldIfInput();
}

/// A segment ends where it was marked, though commands look for the song's end meanwhile.
void PlaybackEngine::keepSegmentEnd() {
    if (state_.PlayingSegment)
        score_.SongEnd = segmentEnd_;
}

void PlaybackEngine::moveLine() {
    takeLineAway();
    int column = state_.PlayPosition - view_.ViewFirstColumn;
    if (column > view_.ViewColumns) {
        column = 0;
        view_.ViewFirstColumn = std::min(state_.PlayPosition, score_.NumNotes - 1);
        view_.ViewLastColumn = std::min(view_.ViewFirstColumn + view_.ViewColumns, score_.NumNotes - 1);
        views_.tell(&PlaybackView::DrawNoteArray);
        showMovedView();
    }
    linePosition_ = state_.PlayPosition;
    views_.tell(&PlaybackView::GetColumn, column);
    views_.tell(&PlaybackView::drawPlayLine, column);
}

void PlaybackEngine::takeLineAway() {
    const int column = linePosition_ - view_.ViewFirstColumn;
    if (linePosition_ >= 0 && column >= 0 && column <= view_.ViewColumns)
        views_.tell(&PlaybackView::PutColumn);
    linePosition_ = -1;
}

void PlaybackEngine::showRecordingProgress() {
    bool showing = false;
    recorders_.tell([&showing](const RecordingProgress& one) { showing = showing || one.showing(); });
    if (!showing)
        return;
    ++state_.PlayStepCount;
    if (score_.SongEnd <= 0)
        return;
    const double ratio = static_cast<double>(state_.PlayStepCount) / score_.SongEnd;
    recorders_.tell([ratio](RecordingProgress& one) {
        if (one.showing())
            one.showProgress(ratio);
    });
}

void PlaybackEngine::clearRecordingProgress() {
    recorders_.tell([](RecordingProgress& one) {
        if (one.showing())
            one.clearProgress();
    });
}

/// The one that was started with the song.
void PlaybackEngine::endRecording() {
    if (std::exchange(state_.RecordAtEnd, false))
        recorders_.tell(&RecordingProgress::stopRecording);
}

} // namespace velmora
