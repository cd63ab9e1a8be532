// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioSource.h"

namespace velmora {

/// What sounds together, and who listens: `AudioOutput`, the one stream of the program, or `VirtualMix`, in
/// which time passes as it is told to. 44,100 frames a second, stereo.
class Mix {
public:
    virtual ~Mix() = default;

    /// The source sounds from the next block on. It must be removed before it dies. False if there are too
    /// many. Thread-safe: yes, but not from the audio thread. Realtime-safe: no.
    virtual bool add(AudioSource& source) = 0;
    /// Once it returns, no block calls the source any more.
    virtual void remove(AudioSource& source) = 0;
    /// As for sources.
    virtual bool addTap(AudioTap& tap) = 0;
    virtual void removeTap(AudioTap& tap) = 0;

    /// To be called when a source that may rest has been told to sound. Thread-safe: yes. Realtime-safe: no.
    virtual void wake() noexcept = 0;
    /// False where blocks come as they are asked for, on the caller's thread: sources and taps may take their
    /// time there, and do at once what a thread of theirs does otherwise.
    [[nodiscard]] virtual bool isLive() const = 0;
};

} // namespace velmora
