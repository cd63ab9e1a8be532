// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// Who is told of each note that a hand plays, by whatever means, with its moment on the steady clock; not of
/// what is played back.
class PlayedNotes {
public:
    virtual void struck(int channel, int note, int velocity, int program, double moment) = 0;
    virtual void ended(int channel, int note, double moment) = 0;
    virtual void pedal(int channel, bool down, double moment) = 0;
    /// Everything ends.
    virtual void silenced(double moment) = 0;
    /// Beats fall from @p start on, the first an interval later; with the interval 0 none do any more.
    virtual void metronome(double /*start*/, double /*interval*/, int /*beatsPerMeasure*/) {}

protected:
    ~PlayedNotes() = default;
};

} // namespace velmora
