// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// What the keyboard asks of whoever shows it.
class KeyboardView {
public:
    /// The key sounds on `SoundChannel`, or no longer.
    virtual void showKey(int /*key*/, bool /*sounds*/) {}
    /// A beat of the metronome, from 1.
    virtual void showBeat(int /*number*/) {}
    /// A take begins or ends, playing begins, pauses or ends: the lamp and the buttons.
    virtual void showTransport() {}
    /// `Text9`: where in the take playing is.
    virtual void showPosition(int /*position*/) {}
    /// "Recording has not been saved. Overwrite?"
    virtual bool confirmOverwrite() { return true; }

protected:
    ~KeyboardView() = default;
};

} // namespace velmora
