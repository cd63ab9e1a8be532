// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "base/VirtualLoop.h"
#include "keyboard/Keyboard.h"
#include "score/Manners.h"
#include "sound/MidiPort.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace velmora::cli {

/// The keyboard's window for scripts, in classic manners, on a clock that jumps. What it sends, and what its
/// message boxes say, is told with its moment.
class KeyboardPlayer final : private MidiPort, private KeyboardView {
public:
    /// What comes out: a message, a reset, or the text of a box.
    struct Output {
        std::function<void(double seconds, std::uint32_t word)> word;
        std::function<void(double seconds)> reset;
        std::function<void(double seconds, std::string_view text)> box;
        /// A file could not be written.
        std::function<void(const std::string& problem)> failed;
    };

    KeyboardPlayer(const KeyScheme& scheme, Output output);

    /// Lets time pass, with what is due before that moment.
    void passTo(double seconds);
    /// Lets a strum, and playing that ends by itself, come to an end; then the window closes.
    void finish();

    Keyboard keyboard;

    void down(std::string_view text);
    void up(std::string_view text);
    void save(std::string_view name);
    void setAnswer(bool yes) { answer_ = yes; }
    void label(int key, std::string_view text);
    void tickHold(bool on);
    void tickMute(bool on);

private:
    int deviceCount() override { return 0; }
    std::string deviceName(int /*device*/) override { return {}; }
    int open(int /*device*/) override { return kOk; }
    int close() override { return kOk; }
    void reset() override;
    void send(std::uint32_t word) override;
    bool confirmOverwrite() override;

    Output output_;
    VirtualLoop loop_;
    PerChannel<PlaybackChannelSetup> channels_;
    Manners manners_ = Manners::classic();
    bool answer_ = true;
    bool ChkSustain = false; ///< a tick that stands already is no click
    bool ChkMute = false;
};

} // namespace velmora::cli
