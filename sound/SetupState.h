// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"

#include <cstdint>
#include <string>

namespace velmora {

/// Name and controllers of one MIDI channel index, shared by the setup toolbar and the keyboard.
struct PlaybackChannelSetup {
    std::string name;
    std::int16_t instrument = 0;
    std::int16_t volume = 127;
    std::int16_t pan = 64; ///< 0 to 127; shown as -64 to 63
    std::int16_t reverb = 0;
    std::int16_t chorus = 0;
    std::int16_t modulation = 0;
    std::int16_t hold = 0;
    std::int16_t mute = 0;
};

/// What the setup toolbar's fields hold and other rooms read. The window shows this record.
struct SetupState {
    bool SetupOpen = false;      ///< the toolbar exists
    PerChannel<bool, 8> Ch{};    ///< a chord for the whole melody channel
    PerChannel<bool> Chkstrum{}; ///< chords of the channel are strummed
    int Combo2 = 0;              ///< device list: 0 "MIDI Mapper", then each device
    int Combo3 = 0;              ///< chord list
    std::int16_t TxBeats = 16;   ///< "Notes per measure"; `Score::NotesPerMeasure` follows it
    std::int16_t TxtMeter = 4;   ///< "Beats per measure"
    std::int16_t NoteX = 4;      ///< "Note Value"
    bool ChTreble = true;
    bool ChBass = true;
    PerChannel<PlaybackChannelSetup> channels;
};

} // namespace velmora
