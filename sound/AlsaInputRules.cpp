// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AlsaInputRules.h"

#include "sound/PortNames.h"
#include "sound/ShortMessage.h"

#include <alsa/asoundlib.h>

#include <algorithm>

namespace velmora {

bool isWanted(const SequencerPort& port, int ourClient) {
    constexpr unsigned kReadable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
    constexpr unsigned kPlays =
        SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SYNTH | SND_SEQ_PORT_TYPE_APPLICATION;
    if (port.client == SND_SEQ_CLIENT_SYSTEM || port.client == ourClient)
        return false;
    if ((port.capability & kReadable) != kReadable || (port.capability & SND_SEQ_PORT_CAP_NO_EXPORT) != 0)
        return false;
    const std::string name = port.fullName();
    return (port.type & kPlays) != 0 && !isOurPort(name) && !isLoopback(name);
}

SequencerNews newsOf(const snd_seq_event& event) {
    using Kind = SequencerNews::Kind;
    if (event.source.client != SND_SEQ_CLIENT_SYSTEM || event.source.port != SND_SEQ_PORT_SYSTEM_ANNOUNCE)
        return {};
    const snd_seq_addr_t& about = event.data.addr;
    switch (event.type) {
    case SND_SEQ_EVENT_PORT_START:
    case SND_SEQ_EVENT_PORT_CHANGE:
        return {Kind::Port, about.client, about.port};
    case SND_SEQ_EVENT_PORT_EXIT:
        return {Kind::NoPort, about.client, about.port};
    case SND_SEQ_EVENT_CLIENT_EXIT:
        return {Kind::NoClient, about.client, 0};
    default:
        return {};
    }
}

std::optional<std::uint32_t> wordOf(const snd_seq_event& event) {
    using namespace shortmessage;
    const snd_seq_ev_note_t& note = event.data.note;
    const snd_seq_ev_ctrl_t& control = event.data.control;
    const auto value = [&](int least, int most) { return std::clamp(control.value, least, most); };
    std::uint32_t word = 0;
    switch (event.type) {
    case SND_SEQ_EVENT_NOTEON:
        word = noteOn(note.channel & 15, note.note, note.velocity);
        break;
    case SND_SEQ_EVENT_NOTEOFF:
        word = pack(0x80, note.channel & 15, note.note, note.velocity);
        break;
    case SND_SEQ_EVENT_CONTROLLER:
        if (control.param > 127)
            return std::nullopt;
        word = controller(control.channel & 15, static_cast<int>(control.param), value(0, 127));
        break;
    case SND_SEQ_EVENT_CHANPRESS:
        word = pack(0xD0, control.channel & 15, value(0, 127));
        break;
    case SND_SEQ_EVENT_PITCHBEND: {
        const int bend = value(-8192, 8191) + 8192; // the wire counts from its lowest
        word = pack(0xE0, control.channel & 15, bend % 128, bend / 128);
        break;
    }
    default:
        return std::nullopt;
    }
    return isValid(word) ? std::optional(word) : std::nullopt;
}

} // namespace velmora
