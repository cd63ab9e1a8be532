// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct snd_seq_event;

namespace velmora {

// What ALSA's sequencer says, without asking it anything.

/// A port of the sequencer, with what its client and itself tell.
struct SequencerPort {
    int client = 0;
    int port = 0;
    unsigned capability = 0; ///< SND_SEQ_PORT_CAP_...
    unsigned type = 0;       ///< SND_SEQ_PORT_TYPE_...
    std::string clientName;
    std::string portName;

    [[nodiscard]] std::string fullName() const { return clientName + ':' + portName; }
};

/// Whether it is to be heard: it plays MIDI to whoever subscribes, and is neither ours, nor the system's
/// (timer and announcements), nor a loopback.
/// @param ourClient the number of our own client
[[nodiscard]] bool isWanted(const SequencerPort& port, int ourClient);

/// What an announcement of the system means for the list of sources.
struct SequencerNews {
    enum class Kind : std::uint8_t {
        None,
        Port,    ///< it has come, or is another than it was: it may be wanted or not
        NoPort,  ///< it has gone
        NoClient ///< it has gone with all its ports
    };
    Kind kind = Kind::None;
    int client = 0;
    int port = 0;
    bool operator==(const SequencerNews&) const = default;
};
[[nodiscard]] SequencerNews newsOf(const snd_seq_event& event);

/// The short message that an event stands for; nothing if it is none.
[[nodiscard]] std::optional<std::uint32_t> wordOf(const snd_seq_event& event);

} // namespace velmora
