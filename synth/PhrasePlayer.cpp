// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/PhrasePlayer.h"

#include "keyboard/KeepPhrase.h"
#include "score/Score.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

static_assert(PhrasePlayer::kChannel >= kUsedChannels);

namespace {
/// At one moment: releases, then programs, then strikes.
int orderOf(const TimedMessage& message) {
    switch (shortmessage::status(message.word)) {
    case 0x80:
        return 0;
    case 0xC0:
        return 1;
    default:
        return 2;
    }
}
} // namespace

std::vector<TimedMessage> soundOf(const KeepPlan& plan, double step, int channel) {
    std::vector<TimedMessage> messages;
    int program = -1;
    for (const KeptNote& note : plan.notes) {
        const double from = (note.first - plan.mark) * step;
        if (note.program != program) {
            program = note.program;
            messages.push_back({from, shortmessage::programChange(channel, program)});
        }
        messages.push_back({from, shortmessage::noteOn(channel, note.note, std::max<int>(1, note.velocity))});
        messages.push_back({(note.last + 1 - plan.mark) * step, shortmessage::noteOff(channel, note.note)});
    }
    std::ranges::stable_sort(messages, [](const TimedMessage& one, const TimedMessage& other) {
        return std::pair(one.seconds, orderOf(one)) < std::pair(other.seconds, orderOf(other));
    });
    return messages;
}

void PhrasePlayer::play(std::vector<TimedMessage> messages) {
    stop();
    messages_ = std::move(messages);
    next_ = 0;
    clock_.start();
    timer_.start(0, Qt::PreciseTimer, this);
}

void PhrasePlayer::stop() {
    if (!timer_.isActive())
        return;
    timer_.stop();
    // What has been struck and not been let go of.
    for (std::size_t i = next_; i < messages_.size(); ++i)
        if (shortmessage::status(messages_[i].word) == 0x80)
            port_.send(messages_[i].word);
}

void PhrasePlayer::timerEvent(QTimerEvent* /*event*/) {
    sendDue();
    if (next_ == messages_.size()) {
        timer_.stop();
        if (onEnd)
            onEnd();
        return;
    }
    const double wait = messages_[next_].seconds * 1000 - static_cast<double>(clock_.elapsed());
    timer_.start(std::max(0, static_cast<int>(std::ceil(wait))), Qt::PreciseTimer, this);
}

void PhrasePlayer::sendDue() {
    const double now = static_cast<double>(clock_.nsecsElapsed()) / 1e9;
    while (next_ < messages_.size() && messages_[next_].seconds <= now)
        port_.send(messages_[next_++].word);
}

} // namespace velmora
