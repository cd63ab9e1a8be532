// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioSource.h"
#include "studio/FrameRing.h"
#include "studio/TakeConverter.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>

namespace velmora {

class GrowingWav;

/// One stretch of a take, from "record" to "stop": what it hears goes to the end of the file. Where the sound
/// is live a thread of its own converts and writes, several times a second, and the hearing thread never
/// waits; else both is done at once.
class TakeRun : public AudioTap {
public:
    enum class Pace : std::uint8_t { Live, AtOnce };
    /// So many frames may wait for the disk: almost twelve seconds.
    static constexpr std::size_t kRoom = std::size_t{1} << 19U;

    /// @param file is open, outlives this and is written by no one else meanwhile; its format is one that a
    /// `TakeConverter` has no problem with
    /// @param grown is called when the file has grown, from whichever thread writes
    TakeRun(GrowingWav& file, Pace pace, std::function<void()> grown, std::size_t room = kRoom);
    /// Ends.
    ~TakeRun() override;
    TakeRun(const TakeRun&) = delete;
    TakeRun& operator=(const TakeRun&) = delete;

    /// The next sound of the take. For one thread. Realtime-safe: if live.
    void hear(std::span<const float> stereo) noexcept;
    void tapped(const AudioBlock& block) noexcept override;
    /// Has all that was heard in the file. Only once nobody calls `hear` any more.
    void end();

    // Thread-safe: yes.
    [[nodiscard]] std::int64_t heard() const noexcept { return heard_.load(); } ///< frames of the mix
    /// Of them, those up to the last that has more than half of a 16-bit step; 0 for none.
    [[nodiscard]] std::int64_t soundEnd() const noexcept { return soundEnd_.load(); }
    [[nodiscard]] std::int64_t lost() const noexcept { return ring_ ? ring_->lost() : 0; }
    /// The file takes no more: what is heard from then on doesn't count.
    [[nodiscard]] bool hasFailed() const noexcept { return failed_.load(); }
    [[nodiscard]] std::string problem() const;

private:
    void run();
    void drain();
    void write(std::span<const std::byte> bytes);
    void tell();
    void check(std::string problem);

    GrowingWav& file_;
    std::function<void()> grown_;
    TakeConverter converter_;
    std::unique_ptr<FrameRing> ring_; ///< if live
    bool isTold_ = true;
    bool hasEnded_ = false;
    std::atomic<std::int64_t> heard_{0};
    std::atomic<std::int64_t> soundEnd_{0};
    std::atomic<bool> failed_{false};
    mutable std::mutex mutex_;
    std::condition_variable ending_;
    bool isEnding_ = false;
    std::string problem_;
    std::thread thread_; ///< last: it uses all of the above
};

} // namespace velmora
