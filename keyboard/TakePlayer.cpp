// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakePlayer.h"

#include <utility>

namespace velmora {

void TakePlayer::start(PlayList list, double now, double tick) {
    release();
    list_ = std::move(list);
    i_ = 0;
    due_ = now;
    tick_ = tick;
    stage_ = Stage::Round;
    playing_ = true;
}

void TakePlayer::stop() {
    if (!playing_)
        return;
    playing_ = false;
    release();
    sound_.playingEnded();
}

void TakePlayer::release() {
    if (const auto row = std::exchange(sounding_, std::nullopt))
        sound_.releaseRow(*row);
}

std::optional<double> TakePlayer::nextDue() const {
    const bool waits = Check6 && stage_ == Stage::Round && i_ < list_.size();
    return playing_ && !waits ? std::optional(due_) : std::nullopt;
}

void TakePlayer::resume(double now) {
    if (stage_ == Stage::Round && due_ < now)
        due_ = now;
}

void TakePlayer::proceed(double /*now*/) {
    switch (stage_) {
    case Stage::Round:
        beginRound();
        break;
    case Stage::Note:
        if (!holds(*sounding_))
            return waitFor(Stage::NoteEnd);
        ++i_;
        waitFor(Stage::Note);
        break;
    case Stage::NoteEnd:
        release();
        restOrRoundEnd();
        break;
    case Stage::Rest:
        ++i_;
        restOrRoundEnd();
        break;
    case Stage::Equal:
        ++i_;
        equalOrRoundEnd();
        break;
    }
}

void TakePlayer::beginRound() {
    if (i_ >= list_.size()) {
        if (!Check5)
            return stop();
        i_ = 0;
        return waitFor(Stage::Round);
    }
    roundFrom_ = i_;
    sound_.showPosition(static_cast<int>(i_));
    if (list_[i_] > 0) {
        sounding_ = list_[i_];
        sound_.strikeRow(*sounding_);
        waitFor(Stage::Note);
    } else if (holds(kRest)) {
        restOrRoundEnd();
    } else {
        equalOrRoundEnd();
    }
}

void TakePlayer::waitFor(Stage stage) {
    stage_ = stage;
    due_ += tick_;
}

void TakePlayer::restOrRoundEnd() {
    if (holds(kRest))
        waitFor(Stage::Rest);
    else
        endRound();
}

void TakePlayer::equalOrRoundEnd() {
    if (i_ + 1 < list_.size() && list_[i_] == list_[i_ + 1])
        waitFor(Stage::Equal);
    else
        endRound();
}

void TakePlayer::endRound() {
    if (i_ == roundFrom_)
        ++i_;
    waitFor(Stage::Round);
}

} // namespace velmora
