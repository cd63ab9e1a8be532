// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/FrameRing.h"

#include <algorithm>

namespace velmora {

FrameRing::FrameRing(std::size_t frames) : values_(2 * frames) {}

void FrameRing::push(std::span<const float> stereo) noexcept {
    const std::uint64_t end = end_.load(std::memory_order_relaxed);
    const std::uint64_t used = end - begin_.load(std::memory_order_acquire);
    const bool fits = stereo.size() <= values_.size() - used;
    if (!fits || (gap_ > 0 && !gaps_.push({end, gap_}))) {
        gap_ += stereo.size();
        lost_.fetch_add(static_cast<std::int64_t>(stereo.size() / 2), std::memory_order_relaxed);
        return;
    }
    gap_ = 0;
    const std::size_t at = end % values_.size();
    const std::size_t first = std::min(stereo.size(), values_.size() - at);
    std::copy_n(stereo.begin(), first, values_.begin() + static_cast<std::ptrdiff_t>(at));
    std::copy(stereo.begin() + static_cast<std::ptrdiff_t>(first), stereo.end(), values_.begin());
    end_.store(end + stereo.size(), std::memory_order_release);
}

void FrameRing::settle() noexcept {
    // With every place for gaps taken it stays lost, and counted.
    if (gap_ > 0 && gaps_.push({end_.load(std::memory_order_relaxed), gap_}))
        gap_ = 0;
}

std::size_t FrameRing::pop(std::span<float> to) noexcept {
    const std::uint64_t begin = begin_.load(std::memory_order_relaxed);
    std::uint64_t there = end_.load(std::memory_order_acquire) - begin; // before the gaps are looked at
    if (const Gap* gap = gaps_.front()) {
        if (gap->before == begin) {
            const std::uint64_t count = std::min<std::uint64_t>(gap->values - silent_, to.size());
            std::fill_n(to.begin(), count, 0.0F);
            silent_ += count;
            if (silent_ == gap->values) {
                silent_ = 0;
                gaps_.pop();
            }
            return count;
        }
        there = std::min(there, gap->before - begin);
    }
    const std::size_t count = std::min<std::uint64_t>(there, to.size());
    const std::size_t at = begin % values_.size();
    const std::size_t first = std::min(count, values_.size() - at);
    std::copy_n(values_.begin() + static_cast<std::ptrdiff_t>(at), first, to.begin());
    std::copy_n(values_.begin(), count - first, to.begin() + static_cast<std::ptrdiff_t>(first));
    begin_.store(begin + count, std::memory_order_release);
    return count;
}

} // namespace velmora
