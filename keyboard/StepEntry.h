// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiInputs.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace velmora {

class MidiPort;
struct Workspace;

/// Writes what is played on MIDI inputs into the Score, note by note, while the pointer rests in `MusicBox`:
/// each note on the active channel at the play mark, which moves on by its length, with the channel's
/// instrument and its own velocity.
///
/// Keys that are struck while others are held, or within `kChordSeconds` of one another, are a chord and
/// stand at one position. A channel holds one note at a position, so the first of a chord goes on the active
/// channel and each further one on the next melody channel, upwards and round, that is not muted and empty
/// there, with the active channel's instrument. Of a chord with more notes than such channels the rest is not
/// written.
///
/// A note that would end behind the score makes it longer by measures; in classic manners it is not written.
/// What is written sounds on the active channel, unless the inputs are sounded anyway. Nothing is written
/// while the score plays, nor on a percussion channel. A note that is undone takes the
/// mark back with it, as of the next note.
class StepEntry final : private MidiListener {
public:
    static constexpr double kChordSeconds = 0.030;

    /// All that is referred to outlives this object.
    StepEntry(MidiInputs& inputs, Workspace& workspace, MidiPort& port);
    ~StepEntry();
    StepEntry(const StepEntry&) = delete;
    StepEntry& operator=(const StepEntry&) = delete;

    /// The tick.
    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return on_; }

    int length = 0; ///< positions of a note; 0 for a beat of the meter
    /// A note has been written: it is to be in view.
    std::function<void(int channel, int row, int position)> onWritten;

    /// Positions of the next note, at least 1.
    [[nodiscard]] int stepLength() const;

private:
    /// A key that is down, and what sounds for it.
    struct Held {
        int source;
        int key; ///< MIDI channel and note
        bool sounding;
        int channel;
        int note;
    };
    /// The notes of the last position.
    struct Chord {
        int place = -1;
        int end = -1; ///< where it left the mark
        double moment = 0;
        std::vector<int> rows;
    };
    /// The first note of a position, by which undoing is noticed.
    struct Written {
        int channel;
        int row;
        int place;
        int end;
    };

    void midiMessage(int source, std::uint32_t word, double moment) override;
    void midiEnded(int source) override;

    void strike(int source, std::uint32_t word, double moment);
    void release(const Held& held);
    void releaseAll();
    void takeMarkBack();
    [[nodiscard]] bool joinsChord(double moment) const;
    void write(int note, int velocity, double moment);
    [[nodiscard]] bool hasRoom(int end);
    [[nodiscard]] int channelForMore(int place, int end) const;
    void writeAt(int channel, int row, int place, int velocity);

    MidiInputs& inputs_;
    Workspace& workspace_;
    MidiPort& port_;
    bool on_ = false;
    std::vector<Held> held_;
    Chord chord_;
    std::vector<Written> written_;
    Guests<MidiListener>::Stay stay_;
};

} // namespace velmora
