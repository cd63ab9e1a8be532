// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>

namespace velmora {

/// Counts what the audio thread must not do, in the whole process, libraries included: pieces of memory taken
/// or given back, and locks taken. Only the calling thread's doings while the watch lives are counted.
class RealtimeWatch {
public:
    RealtimeWatch();
    ~RealtimeWatch();
    RealtimeWatch(const RealtimeWatch&) = delete;
    RealtimeWatch& operator=(const RealtimeWatch&) = delete;

    [[nodiscard]] std::size_t memoryCalls() const;
    /// Always 0 in a build with sanitizers, which watch locks themselves.
    [[nodiscard]] std::size_t locks() const;
    /// False in a build where locks aren't counted.
    [[nodiscard]] static bool countsLocks();
};

} // namespace velmora
