// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/FrameSource.h"
#include "studio/MusicPlayer.h"
#include "studio/PlayRing.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

/// Plays a `FrameSource` in a mix. Where that is live, a thread of the player's own reads ahead into a ring,
/// and the audio thread only takes out of it: what isn't there in time is silence, and comes later. Otherwise
/// each block reads what it needs.
///
/// Whatever the control thread changes for the audio thread it changes while the player is out of the mix,
/// which makes no one wait: the mix lets go between two blocks.
class MixPlayer final : public MusicPlayer, private AudioSource {
public:
    MixPlayer(std::unique_ptr<FrameSource> source, Mix& mix);
    ~MixPlayer() override;
    MixPlayer(const MixPlayer&) = delete;
    MixPlayer& operator=(const MixPlayer&) = delete;

    [[nodiscard]] int rate() const override { return rate_; }
    [[nodiscard]] std::int64_t length() const override { return length_.load(std::memory_order_acquire); }
    [[nodiscard]] std::int64_t position() const override;
    [[nodiscard]] MediaMode mode() const override;
    [[nodiscard]] bool isSounding() const override;
    bool play(std::int64_t from, std::int64_t to) override;
    bool pause() override;
    bool resume() override;
    bool stop() override;
    [[nodiscard]] std::string problem() const override;

private:
    static constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();
    static constexpr std::size_t kChunk = 4096; ///< frames read at once

    void render(const AudioBlock& block) noexcept override;
    [[nodiscard]] bool rests() noexcept override;
    void ring(const AudioBlock& block, std::int64_t frames) noexcept;
    void dieAway(const AudioBlock& block) noexcept;

    void start();
    void halt(MediaMode mode);
    void seek(std::int64_t frame);
    void seekNow(std::int64_t frame);
    bool fill();
    void read();
    [[nodiscard]] bool isThirsty() const;

    Mix& mix_;
    const bool isLive_;
    std::unique_ptr<FrameSource> source_; ///< the reading thread's, where there is one
    const int rate_;
    std::vector<float> chunk_;
    std::stop_source ending_;

    PlayRing ring_;
    std::atomic<std::int64_t> length_;
    std::atomic<bool> isStale_{false};   ///< what is in the ring belongs to another place
    std::atomic<bool> isWhole_{false};   ///< nothing more will come into the ring
    std::atomic<bool> isThrough_{false}; ///< all of the range has sounded

    // The control thread's own.
    MediaMode mode_ = MediaMode::Stopped;
    std::int64_t base_ = 0; ///< frame that the ring began with
    std::int64_t to_ = 0;   ///< end of the range

    // The audio thread's own; the control thread's while the player is out of the mix.
    bool sounds_ = false;
    std::int64_t limit_ = kNoLimit; ///< frames of the mix since `base_`, at the end of the range
    int dying_ = 0;                 ///< frames left of the way to silence
    std::array<float, 2> last_{};   ///< values that sounded

    // Control and reading thread, under the mutex.
    mutable std::mutex mutex_;
    std::condition_variable nudge_;
    std::optional<std::int64_t> wanted_; ///< where to go on reading
    bool isNudged_ = false;
    bool isPlaying_ = false;
    bool isEnding_ = false;
    std::string problem_;

    std::thread thread_; // last: it uses everything above
};

} // namespace velmora
