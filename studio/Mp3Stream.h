// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Mp3Seam.h"
#include "studio/modLAME.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <span>
#include <vector>

namespace velmora {

/// A sound of any length through LAME, on all cores: stretches of some 20 seconds are encoded side by side,
/// each by a stream of its own that begins half a second early, so that it knows at its begin what one long
/// stream would. Two streams meet at a frame where the first leaves the second's sound its room. What comes
/// out depends on the sound and the record alone, not on cores or blocks, and is a stream as any. Memory
/// doesn't grow. Calls return codes as the four calls of modLAME do. One thread at a time.
class Mp3Stream {
public:
    /// @param keep takes the bytes of the file in order; false if it can't
    Mp3Stream(const EncoderRecord& record, std::function<bool(std::span<const unsigned char>)> keep);
    /// Waits for what is being encoded.
    ~Mp3Stream();
    Mp3Stream(const Mp3Stream&) = delete;
    Mp3Stream& operator=(const Mp3Stream&) = delete;

    [[nodiscard]] int open();
    /// Interleaved values, any number of frames.
    [[nodiscard]] int write(std::span<const float> interleaved);
    [[nodiscard]] int finish();
    /// Whether `keep` has refused bytes; nothing more is to be done then.
    [[nodiscard]] bool isRefused() const { return isRefused_; }
    /// After `finish`: what the first bytes must be overwritten with; none where there is no info frame.
    [[nodiscard]] const std::vector<unsigned char>& info() const { return info_; }

private:
    struct Stretch;
    using Running = std::future<std::unique_ptr<Stretch>>;
    [[nodiscard]] int submit(bool isLast);
    [[nodiscard]] int takeNext();
    [[nodiscard]] int join(std::unique_ptr<Stretch> next);
    [[nodiscard]] bool meets(const Stretch& next, std::size_t frame);
    void keepUntil(std::size_t end);
    void completeInfo();

    EncoderRecord record_;
    std::function<bool(std::span<const unsigned char>)> keep_;
    bool isRefused_ = false;
    std::size_t channels_;
    std::size_t frameValues_ = 0;   ///< values of a frame of MP3
    std::vector<float> gathered_;   ///< for the next stretch
    std::size_t gatheredFrom_ = 0;  ///< the frame of MP3 that they begin with
    std::size_t nextBegin_ = 0;     ///< the frame from which on the next stretch counts
    std::uint64_t values_ = 0;      ///< that came
    std::deque<Running> running_;   ///< in order
    std::unique_ptr<Stretch> last_; ///< whose end is still to meet the next
    std::vector<unsigned char> info_;
    std::uint64_t kept_ = 0; ///< bytes
    unsigned checksum_ = 0;  ///< of those behind the info frame
};

} // namespace velmora
