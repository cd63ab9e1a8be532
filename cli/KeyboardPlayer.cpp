// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/KeyboardPlayer.h"

#include "base/Text.h"
#include "keyboard/TakeScore.h"

#include <utility>

namespace velmora::cli {

namespace {
constexpr int kVolume = 127;
constexpr int kProgram = 24;

/// The key that types a character: letters and digits have the code of their capital, others only their text.
struct TypedKey {
    explicit TypedKey(std::string_view text) {
        const char first = text.front();
        const bool isLetter = toLower(first) >= 'a' && toLower(first) <= 'z';
        if (text == " ")
            code = ComputerKey::kSpace;
        else if (text.size() == 1 && (isLetter || (first >= '0' && first <= '9')))
            code = isLetter ? toLower(first) - 'a' + 'A' : first;
        position = code;
        if (position == 0)
            for (const char byte : text) // any two texts of one character differ in this
                position = position * 256 + static_cast<unsigned char>(byte);
    }
    int code = 0;
    int position = 0;
};

ComputerKey keyOf(std::string_view text) {
    const TypedKey typed(text);
    return {.position = typed.position, .code = typed.code, .text = text, .otherText = {}};
}
} // namespace

KeyboardPlayer::KeyboardPlayer(const KeyScheme& scheme, Output output)
    : keyboard(*this, loop_, channels_, manners_)
    , output_(std::move(output)) {
    keyboard.setView(this);
    keyboard.setScheme(scheme);
    keyboard.load(kVolume, kProgram);
}

void KeyboardPlayer::passTo(double seconds) {
    constexpr double kSameMoment = 1e-9;
    for (auto due = keyboard.nextDue(); due && *due < seconds - kSameMoment; due = keyboard.nextDue()) {
        loop_.serveUntil(*due);
        keyboard.runDue();
    }
    loop_.serveUntil(seconds);
}

void KeyboardPlayer::finish() {
    const auto goesOn = [this] {
        return keyboard.isStrumming() || (keyboard.isPlaying() && !keyboard.loops() && !keyboard.isPaused());
    };
    keyboard.runDue(); // of the last moment, too
    while (goesOn()) {
        loop_.serveUntil(keyboard.nextDue().value_or(loop_.now()));
        keyboard.runDue();
    }
    keyboard.unload();
}

void KeyboardPlayer::down(std::string_view text) {
    keyboard.Form_KeyDown(keyOf(text));
}

void KeyboardPlayer::up(std::string_view text) {
    keyboard.Form_KeyUp(keyOf(text));
}

void KeyboardPlayer::label(int key, std::string_view text) {
    if (keyboard.controls().Check1)
        keyboard.setLabel(key, text);
}

void KeyboardPlayer::tickHold(bool on) {
    if (std::exchange(ChkSustain, on) != on)
        keyboard.ChkSustain_Click(on);
}

void KeyboardPlayer::tickMute(bool on) {
    if (std::exchange(ChkMute, on) != on)
        keyboard.ChkMute_Click(on);
}

void KeyboardPlayer::save(std::string_view name) {
    switch (keyboard.saveProblem()) {
    case Keyboard::Unsaveable::Recording:
        return;
    case Keyboard::Unsaveable::Nothing:
        output_.box(loop_.now(), kNothingToSave);
        return;
    case Keyboard::Unsaveable::No:
        break;
    }
    const std::string file = takeScoreName(std::string(name));
    if (file.empty())
        return;
    if (const std::string problem = keyboard.SaveRecordingAsScore(file); !problem.empty())
        output_.failed(problem);
}

void KeyboardPlayer::reset() {
    output_.reset(loop_.now());
}

void KeyboardPlayer::send(std::uint32_t word) {
    output_.word(loop_.now(), word);
}

bool KeyboardPlayer::confirmOverwrite() {
    output_.box(loop_.now(), kOverwriteTake);
    return answer_;
}

} // namespace velmora::cli
