// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The name under which Velmora stands in the lists of other programs.
inline constexpr const char* kMidiClientName = "Velmora";

/// An open connection to one destination. It is destroyed on the thread of its back end.
class MidiOutlet {
public:
    /// Messages that an outlet holds when its receiver takes none.
    static constexpr std::size_t kQueueLength = 4096;

    /// Lets what was sent go out, for a second at most, then disconnects.
    virtual ~MidiOutlet() = default;
    /// Queues a valid short message. False when it was dropped: the queue is full or the receiver is lost.
    /// Called from one thread alone. Realtime-safe: yes.
    virtual bool send(std::uint32_t word) noexcept = 0;
    /// How many more messages find room. Called from the thread that sends. Realtime-safe: yes.
    [[nodiscard]] virtual std::size_t room() const noexcept = 0;
    /// False once the connection is lost for good. Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] virtual bool alive() const noexcept = 0;
};

/// A system of the platform that carries MIDI to other programs and devices. It is created on the interface
/// thread; everything else is called from one thread of its own (`BackendThread`), because it may wait for
/// another process, and for ever if that hangs.
class MidiBackend {
public:
    virtual ~MidiBackend() = default;
    /// Full names of all destinations but our own, each once; none when the system is not there at all.
    [[nodiscard]] virtual std::vector<std::string> destinations() = 0;
    /// Opens one of them by its full name; null when it has gone or the system refuses. At most one outlet of
    /// a back end is open at a time.
    [[nodiscard]] virtual std::unique_ptr<MidiOutlet> open(const std::string& destination) = 0;
};

/// A row of the table of back ends, in the order of the device list.
struct MidiBackendRow {
    std::string_view name;
    std::unique_ptr<MidiBackend> (*create)(); ///< never null and never throws; touches no other process
};

[[nodiscard]] std::span<const MidiBackendRow> midiBackendRows();

/// One of each row. To be called before other threads run: it sets a variable of the environment.
[[nodiscard]] std::vector<std::unique_ptr<MidiBackend>> createMidiBackends();

/// ALSA's sequencer, by RtMidi.
[[nodiscard]] std::unique_ptr<MidiBackend> createAlsaBackend();
/// JACK, by its own library.
[[nodiscard]] std::unique_ptr<MidiBackend> createJackBackend();

} // namespace velmora
