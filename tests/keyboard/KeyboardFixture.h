// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/VirtualLoop.h"
#include "keyboard/Keyboard.h"
#include "score/Manners.h"
#include "sound/ShortMessage.h"
#include "tests/support/RecordingPort.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// A keyboard on a clock that jumps, in classic manners unless a test says otherwise.
class KeyboardFixture : public ::testing::Test, protected KeyboardView {
protected:
    KeyboardFixture() { keyboard.setView(this); }

    void beCareful() { manners = Manners::careful(); }

    /// Lets time pass, and does what is due.
    void passTo(double moment) {
        for (auto due = keyboard.nextDue(); due && *due <= moment; due = keyboard.nextDue()) {
            loop.serveUntil(*due);
            keyboard.runDue();
        }
        loop.serveUntil(moment);
    }
    /// A letter or a digit: its key has the code of its capital.
    static ComputerKey letter(const char* text) {
        const int code = *text >= 'a' ? *text - 'a' + 'A' : *text;
        return {.position = code, .code = code, .text = text, .otherText = {}};
    }
    /// Any other key: its position tells it from others.
    static ComputerKey sign(const char* text, int position = 1000) {
        return {.position = position, .code = 0, .text = text, .otherText = {}};
    }
    static ComputerKey space() {
        return {.position = 32, .code = ComputerKey::kSpace, .text = " ", .otherText = {}};
    }
    void down(const ComputerKey& key) { keyboard.Form_KeyDown(key); }
    void up(const ComputerKey& key) { keyboard.Form_KeyUp(key); }

    /// A note that went on or off, on the first channel unless another is named.
    static std::uint32_t on(int note, int channel = 0, int velocity = 100) {
        return shortmessage::noteOn(channel, note, velocity);
    }
    static std::uint32_t off(int note, int channel = 0) { return shortmessage::noteOff(channel, note); }
    static constexpr std::uint32_t kReset = RecordingPort::kReset;

    /// What has been sent since the last call.
    std::vector<std::uint32_t> sent() {
        auto words = port.words();
        port.sent.clear();
        return words;
    }
    /// Notes that were struck and not ended.
    [[nodiscard]] int ringing() const {
        std::array<std::array<bool, 256>, 16> sounds{};
        for (const auto& one : port.sent) {
            if (one.word == kReset)
                sounds = {};
            else if (shortmessage::status(one.word) == 0x90 || shortmessage::status(one.word) == 0x80)
                sounds[static_cast<std::size_t>(shortmessage::channel(one.word))]
                      [static_cast<std::size_t>(shortmessage::data1(one.word))] =
                          shortmessage::status(one.word) == 0x90;
        }
        int count = 0;
        for (const auto& channel : sounds)
            count += static_cast<int>(std::ranges::count(channel, true));
        return count;
    }

    VirtualLoop loop;
    RecordingPort port{loop};
    PerChannel<PlaybackChannelSetup> channels;
    Manners manners = Manners::classic();
    Keyboard keyboard{port, loop, channels, manners};

    bool answer = true;                      ///< to the question of overwriting
    std::vector<std::pair<int, bool>> shown; ///< keys that were shown as sounding, or no longer
    std::vector<int> beats;
    int asked = 0;

private:
    void showKey(int key, bool sounds) override { shown.emplace_back(key, sounds); }
    void showBeat(int number) override { beats.push_back(number); }
    bool confirmOverwrite() override {
        ++asked;
        return answer;
    }
};

} // namespace velmora
