// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PlayedNotes.h"

namespace velmora {

/// Tells two of what is played, in this order. Both outlive it.
class PlayedNotesFork final : public PlayedNotes {
public:
    PlayedNotesFork(PlayedNotes& first, PlayedNotes& second) : first_(first), second_(second) {}

    void struck(int channel, int note, int velocity, int program, double moment) override {
        first_.struck(channel, note, velocity, program, moment);
        second_.struck(channel, note, velocity, program, moment);
    }
    void ended(int channel, int note, double moment) override {
        first_.ended(channel, note, moment);
        second_.ended(channel, note, moment);
    }
    void pedal(int channel, bool down, double moment) override {
        first_.pedal(channel, down, moment);
        second_.pedal(channel, down, moment);
    }
    void silenced(double moment) override {
        first_.silenced(moment);
        second_.silenced(moment);
    }
    void metronome(double start, double interval, int beatsPerMeasure) override {
        first_.metronome(start, interval, beatsPerMeasure);
        second_.metronome(start, interval, beatsPerMeasure);
    }

private:
    PlayedNotes& first_;
    PlayedNotes& second_;
};

} // namespace velmora
