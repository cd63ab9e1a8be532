// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Keyboard.h"

#include "base/Files.h"
#include "base/MessageLoop.h"
#include "score/Manners.h"
#include "score/SngFile.h"
#include "sound/Controllers.h"
#include "sound/Instruments.h"
#include "sound/ShortMessage.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
/// Moments that differ by less are one.
constexpr double kSameMoment = 1e-9;

/// A step of playing lasts longer than a tick of recording, as meant.
constexpr double kPlayingTicks = 1.2;

/// What a channel is called and plays when the keyboard is loaded. The first two names stand the other way
/// round from their programs, as meant.
struct StartInstrument {
    const char* name;
    std::int16_t program;
};
constexpr std::array<StartInstrument, 16> kStartInstruments{{
    {"Drawbar Organ", 0},
    {"Acoustic Grand Piano", 16},
    {"Nylon Guitar", 24},
    {"Pick Electric Bass", 34},
    {"String Ensemble 1", 48},
    {"Synth Strings 1", 50},
    {"Choir Aahs", 52},
    {"Brass Section", 61},
    {"Lead 1 (square)", 80},
    {"Percussion", 0},
    {"Lead 6 (voice)", 85},
    {"Pad 2 (warm)", 89},
    {"Pad 4 (choir)", 91},
    {"FX 2 (soundtrack)", 97},
    {"Woodblock", 115},
    {"FX 7 (echoes)", 102},
}};

/// Of beats 1 to 4, above `OctaveShift`.
constexpr std::array<int, 4> kBeatNotes{54, 64, 70, 72};

constexpr Presser kMouse{.kind = Presser::Kind::Mouse};
} // namespace

Keyboard::Keyboard(MidiPort& port, const MessageLoop& clock, PerChannel<PlaybackChannelSetup>& channels,
                   const Manners& manners)
    : clock_(clock)
    , channels_(channels)
    , manners_(manners)
    , sound_(port, clock)
    , voice_(sound_, controls_, manners)
    , recorder_(take)
    , player_(*this) {
    down_.reserve(32);
    sources_.reserve(8);
    sound_.onNote = [this](int channel, int note, bool sounds) {
        const int key = keyOfNote(note);
        if (channel != controls_.SoundChannel || !isPianoKey(key))
            return;
        shown_[static_cast<std::size_t>(key)] = sounds;
        if (view_)
            view_->showKey(key, sounds);
    };
    sound_.onSilence = [this] {
        voice_.silenced();
        refreshKeys();
    };
}

void Keyboard::load(int volume, int program) {
    for (std::size_t i = 0; i < kStartInstruments.size(); ++i) {
        channels_[i].name = kStartInstruments[i].name;
        channels_[i].instrument = kStartInstruments[i].program;
    }
    sound_.send(shortmessage::kDrumBank);
    setSound(KeyboardSlider::Volume, volume);
    sound_.program = program;
    if (manners_.sendsChannelInstrument) {
        record().name = nameOfCode(program);
        record().instrument = static_cast<std::int16_t>(program);
    }
    sound_.programChange(controls_.SoundChannel, program);
}

void Keyboard::unload() {
    catchUp();
    unloading_ = true;
    recorder_.stop();
    voice_.releaseAll(std::nullopt, true);
    player_.stop();
    cMetronome1.StopMetronome();
    if (beatNote_ && sound_.sounds(kMetronomeChannel, *beatNote_))
        endBeat();
    beatNote_.reset();
    sound_.reset();
    down_.clear();
    sources_.clear();
    unloading_ = false;
    showTransport();
}

// Time

std::optional<std::pair<double, Keyboard::Work>> Keyboard::next() const {
    std::optional<std::pair<double, Work>> earliest;
    const auto consider = [&](std::optional<double> due, Work work) {
        if (due && (!earliest || *due < earliest->first - kSameMoment))
            earliest = {*due, work};
    };
    consider(voice_.nextDue(), Work::Strum);
    consider(recorder_.nextDue(), Work::Sample);
    consider(player_.nextDue(), Work::Play);
    consider(cMetronome1.nextDue(), Work::Beat);
    return earliest;
}

std::optional<double> Keyboard::nextDue() const {
    const auto due = next();
    return due ? std::optional(due->first) : std::nullopt;
}

void Keyboard::run(double due, Work work) {
    switch (work) {
    case Work::Strum:
        voice_.strumNext();
        break;
    case Work::Sample:
        recorder_.sample(tickSeconds());
        break;
    case Work::Play:
        player_.setTick(tickSeconds() * kPlayingTicks);
        player_.proceed(due);
        break;
    case Work::Beat:
        if (const auto number = cMetronome1.beat(clock_.now()))
            beat(*number);
        break;
    }
}

void Keyboard::runDue() {
    const double now = clock_.now() + kSameMoment;
    for (auto due = next(); due && due->first <= now; due = next())
        run(due->first, due->second);
}

void Keyboard::catchUp() {
    const double now = clock_.now() - kSameMoment;
    for (auto due = next(); due && due->first < now; due = next())
        run(due->first, due->second);
}

// The computer's keys

void Keyboard::strike(int key, std::string_view text, const ComputerKey& by) {
    if (voice_.isLastStruckAndDown(key))
        return;
    recorder_.keyDown(text);
    voice_.NoteDown3(key, {.id = by.position}, clock_.now());
    noteRow(rowOfKey(key));
}

/// For the take, which the first one begins.
void Keyboard::noteRow(int row) {
    const TakeRecorder::State before = recorder_.state();
    recorder_.struck(row, clock_.now(), tickSeconds());
    if (recorder_.state() != before)
        showTransport();
}

bool Keyboard::strikeByText(std::string_view text, const ComputerKey& by) {
    const auto key = text.empty() ? std::nullopt : scheme_.keyOf(text);
    if (key)
        strike(*key, text, by);
    return key.has_value();
}

void Keyboard::Form_KeyDown(const ComputerKey& key) {
    catchUp();
    const bool repeats = std::ranges::find(down_, key.position) != down_.end();
    if (!repeats)
        down_.push_back(key.position); // also while editing, so that it is known to repeat after that
    if (controls_.Check1)
        return;
    const bool isSpace = key.code == ComputerKey::kSpace;
    if (isSpace)
        voice_.spacebarDown();
    if (repeats)
        return;
    bool struck = false;
    if (key.code >= ComputerKey::kFirstCode && key.code <= ComputerKey::kLastCode) {
        const char capital = static_cast<char>(key.code);
        struck = strikeByText({&capital, 1}, key);
    }
    // The typed character plays as well, should it be the label of another key.
    struck = strikeByText(key.text, key) || struck;
    if (!struck && isSpace)
        recorder_.keyDown(key.text); // it plays nothing, and is the key now down all the same
    else if (!struck)
        (void)strikeByText(key.otherText, key);
}

void Keyboard::Form_KeyUp(const ComputerKey& key) {
    catchUp();
    std::erase(down_, key.position);
    if (controls_.Check1)
        return;
    if (key.code == ComputerKey::kSpace)
        voice_.spacebarUp();
    recorder_.keyUp();
    voice_.release({.id = key.position});
}

void Keyboard::releaseComputerKeys() {
    catchUp();
    if (!down_.empty())
        recorder_.keyUp();
    voice_.releaseAll(Presser::Kind::ComputerKey);
    voice_.spacebarUp(); // last, so that chords end whole
}

void Keyboard::releaseKeys() {
    releaseComputerKeys();
    down_.clear(); // their releases may never come
    voice_.releaseAll(Presser::Kind::Mouse);
}

void Keyboard::releaseAll() {
    releaseKeys();
    while (!sources_.empty())
        endMidi(sources_.back().source);
    voice_.releaseAll();
}

// The mouse

void Keyboard::CmdKey_MouseDown(int key, int velocity) {
    if (!isPianoKey(key))
        return;
    catchUp();
    voice_.release(kMouse);
    voice_.strikeNote(key + kLowestNote + controls_.OctaveShift,
                      manners_.playsByHeight ? velocity : kVelocity, kMouse);
}

void Keyboard::CmdKey_MouseUp() {
    catchUp();
    voice_.release(kMouse);
}

// MIDI inputs

void Keyboard::midi(int source, std::uint32_t word) {
    if (!shortmessage::isValid(word))
        return;
    catchUp();
    auto state = std::ranges::find(sources_, source, &MidiSource::source);
    if (state == sources_.end())
        state = sources_.insert(sources_.end(), {.source = source});
    const int number = shortmessage::data1(word);
    const int value = shortmessage::data2(word);
    const Presser presser{
        .kind = Presser::Kind::Midi, .source = source, .id = shortmessage::channel(word) * 128 + number};
    const auto pass = [&] {
        state->channel = controls_.SoundChannel;
        sound_.send((word & ~0x0FU) | static_cast<std::uint32_t>(controls_.SoundChannel));
    };
    switch (shortmessage::status(word)) {
    case 0x90:
        voice_.release(presser);
        if (value > 0) {
            voice_.strikeNote(number, value, presser);
            recorder_.keyDown("MIDI " + std::to_string(number));
            noteRow(rowOfKey(keyOfNote(number)));
        } else {
            recorder_.keyUp();
        }
        break;
    case 0x80:
        recorder_.keyUp();
        voice_.release(presser);
        break;
    case 0xB0:
        if (number == controllers::kSustain) {
            state->pedal = value >= 64;
            state->channel = controls_.SoundChannel;
            sound_.controller(controls_.SoundChannel, controllers::kSustain, value);
        } else if (number == controllers::kModulation) {
            state->modulated = true;
            pass();
        }
        break;
    case 0xE0:
        state->bent = true;
        pass();
        break;
    default: // its programs are not ours: what is shown is what sounds
        break;
    }
}

void Keyboard::endMidi(int source) {
    catchUp();
    voice_.releaseSource(source);
    const auto state = std::ranges::find(sources_, source, &MidiSource::source);
    if (state == sources_.end())
        return;
    if (state->pedal)
        sound_.controller(state->channel, controllers::kSustain, 0);
    if (state->bent)
        sound_.send(shortmessage::pack(0xE0, state->channel, 0, 64));
    if (state->modulated)
        sound_.controller(state->channel, controllers::kModulation, channels_[state->channel].modulation);
    sources_.erase(state);
}

// The metronome

void Keyboard::chkRunning_Click(bool on) {
    catchUp();
    if (on == cMetronome1.isRunning())
        return;
    if (on) {
        cMetronome1.StartMetronome(clock_.now());
    } else {
        cMetronome1.StopMetronome();
        endBeat();
    }
    if (sound_.played)
        sound_.played->metronome(cMetronome1.start(), on ? cMetronome1.beatInterval() : 0,
                                 cMetronome1.BeatsPerMeasure);
}

void Keyboard::setBeatsPerMinute(int beats) {
    catchUp();
    cMetronome1.BeatsPerMinute = beats;
}

void Keyboard::setTone(bool on) {
    catchUp();
    controls_.Check9 = on;
}

void Keyboard::endBeat() {
    if (const auto note = std::exchange(beatNote_, std::nullopt))
        sound_.noteOff(kMetronomeChannel, *note, PlayedBy::Playback);
}

void Keyboard::beat(int number) {
    if (view_)
        view_->showBeat(number);
    if (!controls_.Check9 || number < 1 || number > static_cast<int>(kBeatNotes.size()))
        return;
    endBeat();
    beatNote_ = controls_.OctaveShift + kBeatNotes[static_cast<std::size_t>(number) - 1];
    sound_.noteOn(kMetronomeChannel, *beatNote_, kVelocity, PlayedBy::Playback);
}

// Takes

void Keyboard::CmdRec_Click() {
    catchUp();
    if (recorder_.state() != TakeRecorder::State::Off) {
        recorder_.stop();
    } else {
        if (take.size() > 2 && view_ && !view_->confirmOverwrite())
            return; // the old take stays
        player_.stop();
        recorder_.start();
        voice_.forgetLastStruck();
    }
    showTransport();
}

void Keyboard::Check7_Click() {
    catchUp();
    if (recorder_.state() != TakeRecorder::State::Off)
        return;
    if (player_.isPlaying()) {
        player_.stop();
        return;
    }
    player_.start(controls_.Check3 ? playListWithPauses(take, controls_.Text11) : plainPlayList(take),
                  clock_.now(), tickSeconds() * kPlayingTicks);
    showTransport();
}

void Keyboard::Check4_Click() {
    catchUp();
    recorder_.stop();
    player_.Check5 = false;
    player_.Check6 = false;
    player_.stop();
    showTransport();
}

void Keyboard::Check6_Click() {
    catchUp();
    recorder_.stop();
    player_.Check6 = !player_.Check6;
    if (!player_.Check6)
        player_.resume(clock_.now());
    showTransport();
}

void Keyboard::setLoop(bool on) {
    catchUp();
    player_.Check5 = on;
}

Keyboard::Unsaveable Keyboard::saveProblem() const {
    if (recorder_.state() != TakeRecorder::State::Off)
        return Unsaveable::Recording;
    return take.size() < 2 ? Unsaveable::Nothing : Unsaveable::No;
}

std::string Keyboard::SaveRecordingAsScore(const std::filesystem::path& path) {
    recorder_.stop();
    const auto cells = ConvertRecording(take, controls_.Text12, controls_.OctaveShift);
    std::string problem =
        replaceFile(path, serializeRecording(cells, static_cast<std::int16_t>(sound_.program),
                                             static_cast<std::int16_t>(controls_.Text8)));
    if (problem.empty()) {
        take.clear();
        player_.clear();
        showTransport();
    }
    return problem;
}

void Keyboard::strikeRow(int row) {
    playedNote_ = {controls_.SoundChannel, keyOfRow(row) + kLowestNote + controls_.OctaveShift};
    sound_.noteOn(playedNote_->first, playedNote_->second, kVelocity, PlayedBy::Playback);
}

void Keyboard::releaseRow(int /*row*/) {
    if (const auto note = std::exchange(playedNote_, std::nullopt))
        sound_.noteOff(note->first, note->second, PlayedBy::Playback);
}

void Keyboard::showPosition(int position) {
    if (view_)
        view_->showPosition(position);
}

void Keyboard::playingEnded() {
    player_.Check6 = false;
    if (!unloading_)
        sound_.reset();
    showTransport();
}

// What is seen

void Keyboard::showTransport() {
    if (view_)
        view_->showTransport();
}

int Keyboard::keyOfNote(int note) const {
    return note - kLowestNote - controls_.OctaveShift;
}

bool Keyboard::sounds(int key) const {
    return sound_.sounds(controls_.SoundChannel, key + kLowestNote + controls_.OctaveShift);
}

void Keyboard::refreshKeys() {
    for (int key = 0; key < kPianoKeys; ++key) {
        bool& shown = shown_[static_cast<std::size_t>(key)];
        if (shown == sounds(key))
            continue;
        shown = !shown;
        if (view_)
            view_->showKey(key, shown);
    }
}

} // namespace velmora
