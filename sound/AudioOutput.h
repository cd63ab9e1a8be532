// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioMixer.h"
#include "sound/Mix.h"
#include "sound/StreamSupervisor.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace velmora {

struct AudioOutputSettings {
    StreamSettings stream = {};
    std::span<const AudioDriverRow> drivers = audioDriverTable();
    SupervisorTimes times = {};
};

struct AudioOutputFigures {
    std::string_view
        driver;          ///< a name of the table, "none" where nothing sounds; blank for the first moments
    double distance = 0; ///< seconds from the moment a block's first frame renders to its callback
    double latency = 0;  ///< seconds from the moment of a message to its sound, as far as the server knows
    std::int64_t frames = 0; ///< rendered by the sources so far
    int openings = 0;        ///< streams put in place so far
    int underruns = 0;
};

/// The one way out for sound: all sources mixed, limited, heard by the taps and sent to the best device there
/// is. It runs from its construction on, whether or not a device answers, and goes over to another one by
/// itself. See docs/audio-thread.md for what sources and taps may do.
class AudioOutput final : public Mix {
public:
    static constexpr int kRate = kAudioRate;

    /// Returns at once; streams are opened by a thread of its own.
    explicit AudioOutput(const AudioOutputSettings& settings = {});

    /// 32 at the most.
    bool add(AudioSource& source) override;
    /// Waits for the end of a block at the most.
    void remove(AudioSource& source) override { mixer_.sources.remove(source); }
    /// 8 at the most.
    bool addTap(AudioTap& tap) override;
    void removeTap(AudioTap& tap) override { mixer_.taps.remove(tap); }
    void wake() noexcept override { mixer_.bell.ring(); }
    [[nodiscard]] bool isLive() const override { return true; }

    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] AudioOutputFigures figures() const noexcept;

private:
    AudioMixer mixer_;
    StreamSupervisor supervisor_; ///< after the mixer: it ends first
};

} // namespace velmora
