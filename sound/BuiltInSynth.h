// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "sound/AudioSource.h"
#include "sound/SoftSynth.h"
#include "sound/SpscRing.h"
#include "sound/SynthEngine.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

/// The synthesizer that sounds in the mix. The interface thread sends messages, the audio thread renders them
/// at a constant distance from the moment they were sent, on a grid of 64 frames, whatever sizes the blocks
/// have.
///
/// The SoundFont is loaded on a thread of its own from construction on. Until then the source is silent and
/// messages wait; when it is there, instruments and controllers arrive as if it had always been, but notes
/// begun more than kStaleSeconds before stay silent.
class BuiltInSynth : public AudioSource, public SoftSynth {
public:
    static constexpr std::size_t kQueueCapacity = 8192;
    /// Places of the queue that notes can't take: a flood of notes must not keep their ends out.
    static constexpr std::size_t kPlacesForEnds = 2048;
    static constexpr double kStaleSeconds = 0.5;
    /// Seconds of silence, after the last voice and the last message, until it rests.
    static constexpr double kRestSeconds = 3;
    /// What counts as silence for that: -120 dB.
    static constexpr float kInaudible = 1e-6F;

    /// Called at each message, on the sender's thread; to be set before the first. It may wake whoever leaves
    /// the synthesizer out while it rests.
    std::function<void()> onMessage;

    /// @p options name SoundFont and sample rate; one core is used and presets load ahead, whatever they say.
    explicit BuiltInSynth(SynthOptions options);
    /// May come at any moment, but only when no mix calls `render` any more.
    ~BuiltInSynth() override;
    BuiltInSynth(const BuiltInSynth&) = delete;
    BuiltInSynth& operator=(const BuiltInSynth&) = delete;

    /// Sends a packed short message that belongs to @p moment (steadySeconds). Moments should not run
    /// backwards; a moment that has gone by means at once. What is no channel message is ignored. An
    /// instrument that is chosen for the first time is read from the disk here. Thread-safe: no, one sender.
    /// Realtime-safe: no.
    void send(std::uint32_t word, double moment) override;
    /// Ends every sounding note at @p moment; see SynthEngine::reset. Thread-safe: no, one sender.
    void reset(double moment) override;

    /// True while it sounds or may come to sound: loading has not failed. Thread-safe: yes.
    [[nodiscard]] bool available() override { return !failed_.load(std::memory_order_acquire); }
    /// True while any voice sounds or rings out, as of the last block. Thread-safe: yes.
    [[nodiscard]] bool sounding() const { return voices_.load(std::memory_order_relaxed) > 0; }
    /// True once messages sound. Thread-safe: yes.
    [[nodiscard]] bool ready() const { return audible_.load(std::memory_order_acquire) != nullptr; }
    /// Waits until loading has ended, well or not, or the time is over; tells `ready()`. Thread-safe: yes.
    bool waitUntilReady(double seconds) const;
    /// Why there will be no sound, in words; blank while loading and when all is well. Thread-safe: yes.
    [[nodiscard]] std::string error() const;

    /// Adds the synthesizer's sound. Realtime-safe: yes.
    void render(const AudioBlock& block) noexcept override;
    [[nodiscard]] bool rests() noexcept override;

private:
    struct Event {
        double moment = 0;
        std::uint32_t word = 0;
        bool reset = false;
    };
    struct Preset {
        int bank;
        int program;
    };

    void load(const SynthOptions& options);
    void push(const Event& event, std::size_t spare);
    void choosePreset(std::uint32_t word);
    void discardEvents() noexcept;
    [[nodiscard]] double framesAhead(const Event& event, const AudioBlock& block) const noexcept;
    [[nodiscard]] bool applyDue(SynthEngine& engine, const AudioBlock& block, int frame) noexcept;
    [[nodiscard]] bool applyEvent(SynthEngine& engine, const Event& event) const noexcept;
    void refill(SynthEngine& engine, const AudioBlock& block, int frame) noexcept;
    void listenForSilence(SynthEngine& engine) noexcept;

    const int sampleRate_;
    SpscRing<Event, kQueueCapacity> events_;
    std::atomic<bool> endsLost_{false}; ///< something other than a note found no place

    // The sender's own.
    PerChannel<int> bank_;

    // Sender and loader, under the mutex.
    mutable std::mutex mutex_;
    mutable std::condition_variable loaded_;
    std::vector<Preset> awaited_; ///< chosen before the engine was there
    std::unique_ptr<SynthEngine> engine_;
    std::string error_;

    // What the audio thread sees of the loader.
    std::atomic<SynthEngine*> audible_{nullptr};
    std::atomic<bool> failed_{false};

    std::atomic<int> voices_{0}; ///< the audio thread's news

    // The audio thread's own: rendered frames that the last block had no room for.
    static constexpr int kSpanFrames = 1024;
    std::array<float, std::size_t{2} * kSpanFrames> span_{};
    int spanAt_ = 0;
    int spanEnd_ = 0;
    int quietFrames_ = 0; ///< rendered since the last sound or message, as far as they matter
    bool started_ = false;
    double staleBefore_ = 0;

    std::thread loader_; // last: it uses everything above
};

} // namespace velmora
