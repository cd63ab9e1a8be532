// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QBasicTimer>
#include <QObject>

#include <cstddef>
#include <optional>

namespace velmora {

class MidiPort;

/// A few notes by which an instrument is heard before it is picked: on a MIDI channel that is none of the
/// score's, so that what that has set on its own stays. Percussion sounds on MIDI's drum channel, where the
/// key alone chooses. Nothing waits, and of two that are asked for in haste only the second sounds.
class InstrumentSample : public QObject {
public:
    static constexpr int kChannel = 15;

    /// @param port outlives it
    explicit InstrumentSample(MidiPort& port) : port_(port) {}
    ~InstrumentSample() override { stop(); }

    /// Begins the notes of an instrument's code, in a moment, instead of those that go on.
    void play(int code);
    /// No note is left sounding.
    void stop();
    /// The code whose notes go on or are to come.
    [[nodiscard]] std::optional<int> playing() const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void endNote();

    struct Sounding {
        int channel;
        int note;
    };

    MidiPort& port_;
    QBasicTimer timer_;
    int code_ = 0;
    std::size_t step_ = 0;
    std::optional<Sounding> sounding_;
};

} // namespace velmora
