// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/InstrumentSample.h"

#include "score/Score.h"
#include "sound/Instruments.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <array>

namespace velmora {

static_assert(InstrumentSample::kChannel >= kUsedChannels);

namespace {
constexpr int kRest = 60;    ///< milliseconds: an arrow key that is held passes silently
constexpr int kMiddleC = 60; ///< the first note
constexpr int kVelocity = 100;

struct Step {
    int semitones;    ///< above the first note; percussion repeats its key
    int milliseconds; ///< up to the next
};
constexpr std::array kSteps{Step{0, 160}, Step{4, 160}, Step{7, 160}, Step{12, 480}};
} // namespace

void InstrumentSample::play(int code) {
    stop();
    code_ = code;
    step_ = 0;
    timer_.start(kRest, Qt::PreciseTimer, this);
}

void InstrumentSample::stop() {
    timer_.stop();
    endNote();
}

std::optional<int> InstrumentSample::playing() const {
    return timer_.isActive() ? std::optional(code_) : std::nullopt;
}

void InstrumentSample::timerEvent(QTimerEvent* /*event*/) {
    endNote();
    if (step_ == kSteps.size())
        return timer_.stop();
    const auto& [semitones, milliseconds] = kSteps[step_];
    const bool percussion = code_ >= kFirstPercussionCode;
    if (step_ == 0 && !percussion) {
        port_.send(shortmessage::controller(kChannel, 0, 0));
        port_.send(shortmessage::controller(kChannel, 32, 0));
        port_.send(shortmessage::programChange(kChannel, code_));
    }
    sounding_ = percussion ? Sounding{shortmessage::kDrumChannel, code_ - kKeyToCode}
                           : Sounding{kChannel, kMiddleC + semitones};
    port_.send(shortmessage::noteOn(sounding_->channel, sounding_->note, kVelocity));
    ++step_;
    timer_.start(milliseconds, Qt::PreciseTimer, this);
}

void InstrumentSample::endNote() {
    if (sounding_)
        port_.send(shortmessage::noteOff(sounding_->channel, sounding_->note));
    sounding_.reset();
}

} // namespace velmora
