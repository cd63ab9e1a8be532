// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace velmora {

class MidiInputQueue;

/// A system of the platform that brings MIDI from other programs and devices. It is created on the interface
/// thread; `run` is called once, on a thread of its own, because it may wait for another process, and for
/// ever if that hangs.
class MidiInputBackend {
public:
    /// How often it looks for a system that isn't there.
    static constexpr double kLookSeconds = 3;

    virtual ~MidiInputBackend() = default;
    /// Finds the sources, hears each of them from the moment when it is there, and tells the queue, until
    /// that is `ending`.
    virtual void run(MidiInputQueue& queue) = 0;
};

/// A row of the table of back ends, in the order of the list of sources.
struct MidiInputBackendRow {
    std::string_view name;
    std::unique_ptr<MidiInputBackend> (*create)(); ///< never null and never throws; touches no other process
};

[[nodiscard]] std::span<const MidiInputBackendRow> midiInputBackendRows();

/// One of each row. To be called before other threads run: it sets a variable of the environment.
[[nodiscard]] std::vector<std::unique_ptr<MidiInputBackend>> createMidiInputBackends();

/// ALSA's sequencer, by ALSA's own library.
[[nodiscard]] std::unique_ptr<MidiInputBackend> createAlsaInput();
/// JACK, by its own library.
[[nodiscard]] std::unique_ptr<MidiInputBackend> createJackInput();

} // namespace velmora
