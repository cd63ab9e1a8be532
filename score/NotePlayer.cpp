// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/NotePlayer.h"

#include "base/MessageLoop.h"
#include "score/Numbers.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"
#include "sound/MidiPort.h"
#include "sound/Midimod.h"
#include "sound/SetupState.h"
#include "sound/ShortMessage.h"

#include <array>
#include <utility>

namespace velmora {

NotePlayer::NotePlayer(Score& score, const SetupState& setup, const PlayState& state, ChordSteps& chords,
                       MidiPort& port, MessageLoop& loop)
    : score_(score)
    , setup_(setup)
    , state_(state)
    , chords_(chords)
    , port_(port)
    , loop_(loop) {}

void NotePlayer::ChangeInstrument(int code, int channel) {
    if (code < kFirstPercussionCode) {
        port_.send(shortmessage::controller(channel, 0, 0));
        port_.send(shortmessage::controller(channel, 32, 0));
        port_.send(shortmessage::programChange(channel, code));
        score_.ChannelIsDrum[channel] = false;
    } else if (channel >= kFirstPercussion) {
        score_.ChannelIsDrum[channel] = true;
        score_.ChannelDrumKey[channel] = static_cast<std::int16_t>(code - kKeyToCode);
    } else {
        score_.ChannelIsDrum[channel] = false;
    }
}

void NotePlayer::Startnote(int row, int channel) {
    if (channel >= kFirstPercussion)
        score_.ChannelIsDrum[channel] = true;
    start(row, channel, state_.PlayPosition);
}

void NotePlayer::StopNote(int row) {
    stop(row, CurrentChannel, state_.PlayPosition);
}

void NotePlayer::StartNoteBtnDn(int row, int position) {
    start(row, CurrentChannel, position);
}

void NotePlayer::StopNoteBtnUp(int row, int position) {
    stop(row, CurrentChannel, position);
}

NotePlayer::Pitch NotePlayer::pitchOf(int row, int channel) const {
    if (score_.ChannelIsDrum[channel])
        return {score_.ChannelDrumKey[channel], shortmessage::kDrumChannel};
    return {RowToNote(row), channel};
}

void NotePlayer::start(int row, int channel, int position) {
    const Pitch pitch = pitchOf(row, channel);
    // The slot written is the active channel's, whichever channel sounds; that is meant.
    if (const auto volume = score_.Volume.at(channel, position + 1))
        score_.ChannelVelocity[score_.ActiveChannel] = *volume;

    const int chord = score_.Polyphonics.valueOr(channel + 1, position, 0);
    if (channel < kMelodyChannels && (chord >= 1 || setup_.Ch[channel]))
        soften(channel);

    sendControllers(pitch.ch, position);
    port_.send(shortmessage::noteOn(pitch.ch, pitch.note, velocity(channel)));
    if (pitch.ch != shortmessage::kDrumChannel && chord != 0)
        sendChord(pitch, channel, chord);
}

void NotePlayer::sendControllers(int ch, int position) {
    // Addressed by MIDI channel, so percussion reads row 9; that is meant.
    const std::array<std::pair<const ChannelGrid&, void (*)(MidiPort&, int, int)>, 4> controllers{{
        {score_.Modulation_Change, SendModulation},
        {score_.Pan_Change, SendPan},
        {score_.Reverb_Change, SendReverb},
        {score_.Chorus_Change, SendChorus},
    }};
    for (const auto& [grid, send] : controllers) {
        if (const auto value = grid.at(ch, position + 1))
            send(port_, *value, ch);
    }
}

void NotePlayer::sendChord(Pitch pitch, int channel, int type) {
    chords_.SelectChord(type);
    soften(channel); // once more: the note itself is softened already
    strum(channel, 45);
    port_.send(shortmessage::noteOn(pitch.ch, pitch.note + chords_.ChordStep1, velocity(channel)));
    strum(channel, 35);
    if (chords_.ChordStep2 > 0) {
        port_.send(shortmessage::noteOn(pitch.ch, pitch.note + chords_.ChordStep2, velocity(channel)));
        strum(channel, 35);
    }
    if (chords_.ChordStep3 > 0)
        port_.send(shortmessage::noteOn(pitch.ch, pitch.note + chords_.ChordStep3, velocity(channel)));
}

void NotePlayer::stop(int row, int channel, int position) {
    const Pitch pitch = pitchOf(row, channel);
    port_.send(shortmessage::noteOff(pitch.ch, pitch.note));
    // The position has moved on when a note is stopped, hence the look at the one before, too.
    const bool chord = (channel < kMelodyChannels && setup_.Ch[channel]) ||
                       score_.Polyphonics.valueOr(channel + 1, position - 1, 0) != 0 ||
                       score_.Polyphonics.valueOr(channel + 1, position, 0) != 0;
    if (pitch.ch == shortmessage::kDrumChannel || !chord)
        return;
    // A step of 0 ends the note itself once more, harmlessly.
    for (const int step : {chords_.ChordStep1, chords_.ChordStep2, chords_.ChordStep3})
        port_.send(shortmessage::noteOff(pitch.ch, pitch.note + step));
    loop_.YieldIfInput();
}

void NotePlayer::soften(int channel) {
    auto& value = score_.ChannelVelocity[channel];
    value = static_cast<std::int16_t>(roundHalfEven(value * 0.8));
}

void NotePlayer::strum(int channel, int milliseconds) {
    if (setup_.Chkstrum[channel])
        loop_.block(milliseconds / 1000.0);
}

int NotePlayer::velocity(int channel) const {
    return score_.ChannelVelocity[channel];
}

} // namespace velmora
