// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Take.h"

#include <cstddef>
#include <optional>

namespace velmora {

/// What a `TakePlayer` has sound.
class TakeSound {
public:
    virtual void strikeRow(int row) = 0;
    virtual void releaseRow(int row) = 0;
    /// At the beginning of each round.
    virtual void showPosition(int position) = 0;
    /// It has played to the end, or was stopped: what sounded has been released.
    virtual void playingEnded() = 0;

protected:
    ~TakeSound() = default;
};

/// Plays a trace step by step, on nobody's clock: it says when it is due, and is called then. One run of a
/// row is one note, and lasts two ticks longer than its run; each round of notes and rests ends with a tick
/// more.
class TakePlayer {
public:
    explicit TakePlayer(TakeSound& sound) : sound_(sound) {}

    bool Check5 = false; ///< "Loop Play"
    bool Check6 = false; ///< paused: it waits before the next round

    /// The first round is due at once. @param tick seconds, read at each wait
    void start(PlayList list, double now, double tick);
    void setTick(double tick) { tick_ = tick; }
    /// Ends it at once: the note that sounds is released.
    void stop();
    [[nodiscard]] bool isPlaying() const { return playing_; }

    /// When it goes on; nothing while it does not play or is paused.
    [[nodiscard]] std::optional<double> nextDue() const;
    /// Does what is due at @p now, which is no earlier than `nextDue` gave. What follows is due a tick after
    /// the moment that was given, however late this is.
    void proceed(double now);
    /// What it plays is gone: its note ends in time, and there is no more.
    void clear() { list_.clear(); }
    /// "Pause / Play" has been taken back.
    void resume(double now);

private:
    /// What comes next, once the wait is over.
    enum class Stage : unsigned char { Round, Note, NoteEnd, Rest, Equal };

    void beginRound();
    void waitFor(Stage stage);
    void restOrRoundEnd();
    void equalOrRoundEnd();
    void endRound();
    void release();
    [[nodiscard]] bool holds(std::int32_t item) const { return i_ < list_.size() && list_[i_] == item; }

    TakeSound& sound_;
    PlayList list_;
    std::size_t i_ = 0;
    std::size_t roundFrom_ = 0;
    double tick_ = 0.012;
    double due_ = 0;
    Stage stage_ = Stage::Round;
    std::optional<int> sounding_; ///< the row
    bool playing_ = false;
};

} // namespace velmora
