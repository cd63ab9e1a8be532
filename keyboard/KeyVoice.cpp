// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyVoice.h"

#include "keyboard/KeyboardControls.h"
#include "keyboard/KeyboardSound.h"
#include "keyboard/PianoKeys.h"
#include "score/Manners.h"

#include <algorithm>
#include <span>

namespace velmora {

namespace {
/// A chord of the keyboard: semitones above the root.
struct ChordRow {
    int count;
    std::array<int, 4> steps;
    bool
        isStruck; ///< otherwise a press sounds the root alone, though a release ends the chord; that is meant
};
/// By the number in `Text4`.
constexpr std::array<ChordRow, 11> kChords{{
    {0, {}, false},
    {3, {4, 7, 12}, true},
    {3, {3, 7, 12}, true},
    {3, {4, 7, 11}, true},
    {3, {3, 7, 10}, true},
    {3, {3, 6, 10}, true},
    {3, {3, 6, 9}, true},
    {3, {4, 7, 10}, true},
    {4, {4, 7, 11, 14}, true},
    {4, {3, 7, 10, 14}, false},
    {1, {12}, true},
}};
constexpr int kFiveNotes = 8; ///< this chord strikes its root a second time
constexpr int kOctave = 10;

const ChordRow& chordAt(int number) {
    return kChords[static_cast<std::size_t>(std::clamp(number, 0, static_cast<int>(kChords.size()) - 1))];
}

constexpr std::size_t kManyKeys = 64; ///< more are never down in earnest
} // namespace

KeyVoice::KeyVoice(KeyboardSound& sound, const KeyboardControls& controls, const Manners& manners)
    : sound_(sound)
    , controls_(controls)
    , manners_(manners) {
    held_.reserve(kManyKeys);
    strums_.reserve(kManyKeys);
}

void KeyVoice::spacebarDown() {
    spacebar_ = true;
    Label5 = controls_.polynotes == Polynotes::OnSpacebar;
}

void KeyVoice::spacebarUp() {
    spacebar_ = false;
    Label5 = false;
}

bool KeyVoice::playsChord() const {
    return controls_.polynotes == Polynotes::Always ||
           (controls_.polynotes == Polynotes::OnSpacebar && Label5);
}

void KeyVoice::fillChord(int key) {
    const ChordRow& chord = chordAt(controls_.Text4);
    const int root = key + kLowestNote + controls_.OctaveShift;
    ChordNotes[0] = root;
    for (int i = 0; i < chord.count; ++i)
        ChordNotes[static_cast<std::size_t>(i) + 1] = root + chord.steps[static_cast<std::size_t>(i)];
}

void KeyVoice::sound(Held& held, int note, int velocity) {
    sound_.noteOn(held.channel, note, velocity, PlayedBy::Hand);
    if (note < 0 || note > 127 || held.count == held.notes.size())
        return;
    held.notes[held.count++] = static_cast<std::uint8_t>(note);
    ++holders_[static_cast<std::size_t>(held.channel)][static_cast<std::size_t>(note)];
}

void KeyVoice::NoteDown3(int key, Presser presser, double now) {
    Held& held = held_.emplace_back(Held{.presser = presser, .key = key, .channel = controls_.SoundChannel});
    ChordNotes[0] = key + kLowestNote + controls_.OctaveShift;
    sound(held, ChordNotes[0]);
    lastStruck_ = key;
    if (playsChord() && chordAt(controls_.Text4).isStruck) {
        fillChord(key);
        strikeChord(held, now);
    }
}

void KeyVoice::strikeChord(Held& held, double now) {
    const int number = controls_.Text4;
    const int count = chordAt(number).count;
    if (!spacebar_ && !controls_.Chkstrum) {
        for (int i = number == kFiveNotes ? 0 : 1; i <= count; ++i)
            sound(held, ChordNotes[static_cast<std::size_t>(i)]);
        return;
    }
    // From the top note down to the root, which is struck again. Of five notes the highest is left out.
    StrumDelay = controls_.Text1 * 0.010;
    const int top = number == kOctave ? 1 : 3;
    sound(held, ChordNotes[static_cast<std::size_t>(top)]);
    strums_.push_back({.presser = held.presser,
                       .key = held.key,
                       .channel = held.channel,
                       .next = top - 1,
                       .due = now + StrumDelay});
}

std::optional<double> KeyVoice::nextDue() const {
    if (strums_.empty())
        return std::nullopt;
    return std::ranges::min(strums_, {}, &Strum::due).due;
}

void KeyVoice::strumNext() {
    const auto strum = std::ranges::min_element(strums_, {}, &Strum::due);
    if (strum == strums_.end())
        return;
    const auto held = std::ranges::find_if(
        held_, [&](const Held& one) { return one.presser == strum->presser && one.key == strum->key; });
    if (held != held_.end())
        sound(*held, ChordNotes[static_cast<std::size_t>(strum->next)]);
    strum->due += StrumDelay;
    if (--strum->next < 0)
        strums_.erase(strum);
}

void KeyVoice::strikeNote(int note, int velocity, Presser presser) {
    Held& held = held_.emplace_back(Held{.presser = presser,
                                         .key = note - kLowestNote - controls_.OctaveShift,
                                         .channel = controls_.SoundChannel});
    if (presser.kind == Presser::Kind::Mouse)
        ChordNotes[0] = note;
    sound(held, note, velocity);
}

void KeyVoice::letGo(const Held& held) {
    for (const std::uint8_t note : std::span(held.notes).first(held.count))
        if (std::uint8_t& holders = holders_[static_cast<std::size_t>(held.channel)][note]; holders > 0)
            --holders;
}

void KeyVoice::endWhatWasStruck(const Held& held) {
    for (const std::uint8_t note : std::span(held.notes).first(held.count)) {
        std::uint8_t& holders = holders_[static_cast<std::size_t>(held.channel)][note];
        const bool isLast = holders > 0 && --holders == 0; // with none it has been cut meanwhile
        if (isLast && sound_.sounds(held.channel, note))
            sound_.noteOff(held.channel, note, PlayedBy::Hand);
    }
}

void KeyVoice::NoteUp3(const Held& held) {
    const auto off = [&](int note) { sound_.noteOff(held.channel, note, PlayedBy::Hand); };
    letGo(held);
    if (held.presser.kind != Presser::Kind::ComputerKey) {
        for (const std::uint8_t note : std::span(held.notes).first(held.count))
            off(note);
        return;
    }
    const bool endsChord = playsChord() && controls_.Text4 != 0;
    const int root = held.key + kLowestNote + controls_.OctaveShift;
    if (!Label5)
        ChordNotes[0] = root;
    if (!Label5 || !endsChord) // the root ends in any case, also where no chord stands for it
        off(root);
    if (!endsChord)
        return;
    fillChord(held.key);
    for (int i = 0; i <= chordAt(controls_.Text4).count; ++i)
        off(ChordNotes[static_cast<std::size_t>(i)]);
}

void KeyVoice::end(const Held& held, bool quietly) {
    std::erase_if(strums_,
                  [&](const Strum& strum) { return strum.presser == held.presser && strum.key == held.key; });
    const bool byComputer = held.presser.kind == Presser::Kind::ComputerKey;
    if (quietly || manners_.endsWhatWasStruck)
        endWhatWasStruck(held);
    else
        NoteUp3(held);
    if (byComputer && lastStruck_ == held.key)
        lastStruck_.reset();
    // At the fastest strum a release cuts all sound.
    if (byComputer && !quietly && controls_.Chkstrum && controls_.strumAtLeftEnd &&
        (Label5 || controls_.polynotes == Polynotes::Always))
        sound_.reset();
}

template<class Which>
void KeyVoice::releaseIf(const Which& which, bool quietly) {
    for (std::size_t i = 0; i < held_.size();) {
        if (!which(held_[i].presser)) {
            ++i;
            continue;
        }
        const Held released = held_[i];
        held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(i));
        end(released, quietly);
    }
}

void KeyVoice::release(Presser presser) {
    releaseIf([&](const Presser& one) { return one == presser; }, false);
}

void KeyVoice::releaseAll(std::optional<Presser::Kind> kind, bool quietly) {
    releaseIf([&](const Presser& one) { return !kind || one.kind == *kind; }, quietly);
}

void KeyVoice::releaseSource(int midiSource) {
    releaseIf([&](const Presser& one) { return one.kind == Presser::Kind::Midi && one.source == midiSource; },
              false);
}

bool KeyVoice::holds(Presser presser) const {
    return std::ranges::find(held_, presser, &Held::presser) != held_.end();
}

void KeyVoice::silenced() {
    for (auto& channel : holders_)
        channel.fill(0);
}

} // namespace velmora
