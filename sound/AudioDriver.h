// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

class AudioBell;

inline constexpr int kAudioRate = 44100; ///< frames a second of the one output stream
inline constexpr int kAudioChannels = 2;

struct StreamSettings {
    /// Seconds of sound that wait in the server. Smaller is quicker; a driver enlarges it when the server
    /// runs dry.
    double buffer = 0.016;
};

/// A piece of the stream that a driver wants filled.
struct StreamRequest {
    float* samples; ///< room for 2 * frames interleaved values, of any content
    int frames;
    std::int64_t written; ///< frames of this stream before; a new stream counts from 0
    double called;        ///< steady seconds at which the callback began
    double ahead;         ///< seconds until frame 0 is heard, as the server estimates it; 0 if unknown
};

/// Whom a driver serves. Calls come from the driver's own thread.
class StreamClient {
public:
    virtual ~StreamClient() = default;
    /// True if nothing sounds and nobody listens: a driver without a device need not render then, until the
    /// bell rings. After such a rest it counts its frames from 0 again. Realtime-safe: yes.
    [[nodiscard]] virtual bool isSilent() noexcept { return false; }
    /// Rings when there may be sound again, but for other reasons too. Null for a client that is never
    /// silent; always the same. Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] virtual AudioBell* bell() noexcept { return nullptr; }
    /// Fills the request. Realtime-safe: yes.
    virtual void render(const StreamRequest& request) noexcept = 0;
    /// `AudioDriver::state` has changed. Realtime-safe: no.
    virtual void stateChanged() noexcept = 0;
    /// The server ran dry once. Realtime-safe: yes.
    virtual void ranDry() noexcept = 0;
};

enum class StreamState {
    Connecting, ///< nothing is known yet
    Running,    ///< the device takes sound
    Failed,     ///< for good: only a new driver can try again
};

/// One output stream of `kAudioRate`, stereo, on one kind of device. Started once, stopped once.
class AudioDriver {
public:
    virtual ~AudioDriver() = default;
    /// Begins to open the stream and returns soon; `state` tells how it goes.
    /// Thread-safe: no. Realtime-safe: no.
    virtual void start(StreamClient& client) = 0;
    /// Ends the stream. Once it returns, the client is not called any more. Harmless when not running.
    /// Thread-safe: no. Realtime-safe: no.
    virtual void stop() = 0;
    /// Thread-safe: yes. Realtime-safe: no.
    [[nodiscard]] virtual StreamState state() const = 0;
};

/// PulseAudio, or whatever speaks its protocol. Never starts a server.
[[nodiscard]] std::unique_ptr<AudioDriver> makePulseDriver(const StreamSettings& settings);
/// ALSA's own devices, for machines without a sound server.
[[nodiscard]] std::unique_ptr<AudioDriver> makeAlsaDriver(const StreamSettings& settings);
/// SDL's audio system of the given name. What is behind `makeAlsaDriver`; named so that it can be tried
/// without a card.
[[nodiscard]] std::unique_ptr<AudioDriver> makeSdlDriver(const std::string& system,
                                                         const StreamSettings& settings);
/// Nothing sounds, but time passes: blocks of 10 ms by the steady clock, and none while the client is silent.
/// Never fails.
[[nodiscard]] std::unique_ptr<AudioDriver> makeNullDriver(const StreamSettings& settings);

struct AudioDriverRow {
    std::string_view name;
    std::unique_ptr<AudioDriver> (*make)(const StreamSettings& settings);
};

/// In order of preference. The last row is what runs when no other does.
[[nodiscard]] std::span<const AudioDriverRow> audioDriverTable();

} // namespace velmora
