// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "sound/MidiInputBackend.h"
#include "sound/MidiInputQueue.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QSocketNotifier;

namespace velmora {

/// Who is told of what is played on MIDI inputs.
class MidiListener {
public:
    /// @param word a valid note-on (its velocity never 0), note-off, controller, channel pressure or pitch
    /// bend
    /// @param moment steadySeconds at which it was played
    virtual void midiMessage(int source, std::uint32_t word, double moment) = 0;
    /// Its notes and its pedal end: it has gone, or some of its messages are lost.
    virtual void midiEnded(int /*source*/) {}
    virtual void midiSourcesChanged() {}

protected:
    ~MidiListener() = default;
};

/// The MIDI inputs of the program: all that play MIDI on this machine, keyboards and other programs, opened
/// by themselves, also those that are plugged in later. It looks for them from the first `join` on, so a
/// program that nobody plays by MIDI has no threads and no connections for it.
///
/// All calls come from the interface thread, where guests are told, too, from its event loop; none of them
/// waits, but for the destructor, `kEndSeconds` at most.
class MidiInputs {
public:
    struct Source {
        int id;           ///< never given twice
        std::string name; ///< fit for a list; no two alike
    };
    static constexpr double kEndSeconds = 1.5;

    explicit MidiInputs(std::vector<std::unique_ptr<MidiInputBackend>> backends);
    /// A back end that hangs is left behind.
    ~MidiInputs();
    MidiInputs(const MidiInputs&) = delete;
    MidiInputs& operator=(const MidiInputs&) = delete;

    /// Has the guest told for as long as it stays.
    [[nodiscard]] Guests<MidiListener>::Stay join(MidiListener& guest);
    /// Those that are there, as the guests were told.
    [[nodiscard]] const std::vector<Source>& sources() const { return sources_; }

    /// Somebody has what is struck sound, so that others need not.
    bool isSounded = false;

    /// Tells what has come. The event loop does so by itself; for threads without one.
    void serve();

private:
    /// A back end with its thread.
    struct Lane;

    void start();
    /// True if the list of sources has changed.
    bool serve(Lane& lane);
    void list();

    std::vector<std::unique_ptr<MidiInputBackend>> backends_; ///< until they run
    std::shared_ptr<WakeDescriptor> bell_;
    std::vector<std::unique_ptr<Lane>> lanes_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<Source> sources_;
    Guests<MidiListener> guests_;
};

} // namespace velmora
