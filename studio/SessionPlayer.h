// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <string>

namespace velmora {

/// What a recording asks of the rest of the program: to play the notes that it records, within the mix that
/// it takes.
class SessionPlayer {
public:
    enum class End {
        Over,  ///< the song has ended, or was stopped
        Paused ///< it may go on, and `onEnded` tells when that ends
    };

    virtual ~SessionPlayer() = default;

    /// Plays the song from its beginning and serves events meanwhile.
    /// @param showPosition whether the composing window shows where it is
    /// @param progress called with the share played, 0 to 1
    virtual End playNotes(bool showPosition, const std::function<void(double)>& progress) = 0;
    virtual void stopNotes() = 0;
    /// Called when a song that was paused has ended after all.
    std::function<void()> onEnded;

    /// Has everything sound through the built-in synthesizer from now on. The name of the device that sounded
    /// before, if it was another one.
    virtual std::string soundWithin() { return {}; }
    /// Takes that back.
    virtual void soundAsBefore() {}
};

} // namespace velmora
