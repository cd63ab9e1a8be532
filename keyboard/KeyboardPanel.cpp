// SPDX-License-Identifier: GPL-2.0-or-later
// What the controls of the window do to the keyboard.
#include "keyboard/Keyboard.h"
#include "score/Manners.h"
#include "sound/Controllers.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace velmora {

namespace {
/// A slider of sound: the controller it sends, and the field of the channel's record it writes.
struct SoundSlider {
    KeyboardSlider slider;
    int controller;
    std::int16_t PlaybackChannelSetup::*field;
};
constexpr std::array<SoundSlider, 5> kSoundSliders{{
    {KeyboardSlider::Volume, controllers::kVolume, &PlaybackChannelSetup::volume},
    {KeyboardSlider::Modulation, controllers::kModulation, &PlaybackChannelSetup::modulation},
    {KeyboardSlider::Reverb, controllers::kReverb, &PlaybackChannelSetup::reverb},
    {KeyboardSlider::Chorus, controllers::kChorus, &PlaybackChannelSetup::chorus},
    {KeyboardSlider::Pan, controllers::kPan, &PlaybackChannelSetup::pan},
}};
constexpr int kPanCentre = 64;

const SoundSlider* soundSlider(KeyboardSlider slider) {
    const auto* const row = std::ranges::find(kSoundSliders, slider, &SoundSlider::slider);
    return row == kSoundSliders.end() ? nullptr : row;
}
} // namespace

void Keyboard::drag(KeyboardSlider slider, double share) {
    const double place = std::clamp(share, 0.0, 1.0);
    apply(slider, rowOf(slider).value(place));
    if (slider == KeyboardSlider::Strum)
        controls_.strumAtLeftEnd = place == 0;
}

void Keyboard::set(KeyboardSlider slider, double value) {
    const KeyboardSliderRow& row = rowOf(slider);
    const double within = std::clamp(value, row.least, row.most);
    apply(slider, row.whole ? std::trunc(within) : within);
    if (slider == KeyboardSlider::Strum)
        controls_.strumAtLeftEnd = within == row.least;
}

void Keyboard::rightClick(KeyboardSlider slider) {
    set(slider, rowOf(slider).rest);
}

void Keyboard::apply(KeyboardSlider slider, double value) {
    catchUp();
    const int whole = static_cast<int>(value);
    switch (slider) {
    case KeyboardSlider::Channel:
        chooseChannel(whole);
        break;
    case KeyboardSlider::Octave:
        controls_.OctaveShift = whole;
        refreshKeys();
        break;
    case KeyboardSlider::Chord:
        controls_.Text4 = whole;
        break;
    case KeyboardSlider::Strum:
        controls_.Text1 = whole;
        break;
    case KeyboardSlider::Speed:
        controls_.Text2 = value;
        break;
    case KeyboardSlider::Pauses:
        controls_.Text11 = value;
        break;
    case KeyboardSlider::Compression:
        controls_.Text12 = value;
        break;
    case KeyboardSlider::Tempo:
        controls_.Text8 = whole;
        break;
    default:
        setSound(slider, whole);
        break;
    }
}

void Keyboard::setSound(KeyboardSlider slider, int value) {
    const SoundSlider* const row = soundSlider(slider);
    if (!row)
        return;
    const int sent = slider == KeyboardSlider::Pan ? std::min(value + kPanCentre, 127) : value;
    record().*row->field = static_cast<std::int16_t>(sent);
    sound_.controller(controls_.SoundChannel, row->controller, sent);
}

double Keyboard::value(KeyboardSlider slider) const {
    switch (slider) {
    case KeyboardSlider::Channel:
        return controls_.SoundChannel;
    case KeyboardSlider::Octave:
        return controls_.OctaveShift;
    case KeyboardSlider::Chord:
        return controls_.Text4;
    case KeyboardSlider::Strum:
        return controls_.Text1;
    case KeyboardSlider::Speed:
        return controls_.Text2;
    case KeyboardSlider::Pauses:
        return controls_.Text11;
    case KeyboardSlider::Compression:
        return controls_.Text12;
    case KeyboardSlider::Tempo:
        return controls_.Text8;
    default:
        break;
    }
    const SoundSlider* const row = soundSlider(slider);
    if (!row)
        return 0;
    const int stored = channels_[controls_.SoundChannel].*row->field;
    return slider == KeyboardSlider::Pan ? stored - kPanCentre : stored;
}

void Keyboard::chooseChannel(int channel) {
    controls_.SoundChannel = channel;
    refreshKeys();
    if (!manners_.sendsChannelInstrument)
        return;
    sound_.program = record().instrument;
    sound_.programChange(channel, sound_.program);
}

void Keyboard::Option5_Click(int octaves) {
    catchUp();
    controls_.OctaveShift = octaves * 12;
    refreshKeys();
}

void Keyboard::setPolynotes(Polynotes polynotes) {
    catchUp();
    controls_.polynotes = polynotes;
}

void Keyboard::setStrum(bool on) {
    catchUp();
    controls_.Chkstrum = on;
}

void Keyboard::ChkSustain_Click(bool on) {
    catchUp();
    record().hold = on ? 1 : 0;
    sound_.controller(controls_.SoundChannel, controllers::kSustain, on ? 127 : 0);
}

void Keyboard::ChkMute_Click(bool on) {
    record().mute = on ? 1 : 0;
}

void Keyboard::chooseInstrument(int program, std::string_view name) {
    catchUp();
    sound_.programChange(controls_.SoundChannel, program);
    sound_.program = program;
    record().instrument = static_cast<std::int16_t>(program);
    record().name = name;
}

void Keyboard::sendInstrumentAgain() {
    sound_.send(shortmessage::kDrumBank);
    sound_.programChange(controls_.SoundChannel, sound_.program);
}

void Keyboard::panic() {
    catchUp();
    sound_.reset();
}

void Keyboard::setEditing(bool on) {
    if (on)
        releaseComputerKeys(); // what is down stays down, and repeats; the mouse plays on
    controls_.Check1 = on;
}

void Keyboard::setLabel(int key, std::string_view text) {
    if (!isPianoKey(key))
        return;
    scheme_.labels[static_cast<std::size_t>(key)] = text;
    voice_.forgetLastStruck();
}

void Keyboard::setScheme(const KeyScheme& chosen) {
    scheme_ = chosen;
    voice_.forgetLastStruck();
}

} // namespace velmora
