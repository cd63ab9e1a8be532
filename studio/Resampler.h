// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// As many frames as sound for the same time at another rate: rounded, halves up.
[[nodiscard]] constexpr std::int64_t framesAtRate(std::int64_t frames, std::int64_t from, std::int64_t to) {
    return frames / from * to + (2 * (frames % from) * to + from) / (2 * from);
}

/// Turns a stream of one rate into one of another, without delay and of exactly the length that the rates
/// say. Thread-safe: no. Realtime-safe: no.
class Resampler {
public:
    /// @param channels interleaved values a frame
    Resampler(int from, int to, int channels);
    ~Resampler();
    Resampler(Resampler&&) noexcept;
    Resampler& operator=(Resampler&&) noexcept;

    /// Why it can't work (a library that isn't there), as the end of a sentence; blank if it can.
    [[nodiscard]] const std::string& problem() const;
    /// Takes all of @p interleaved and appends what is ready to @p out.
    void process(std::span<const float> interleaved, std::vector<float>& out);
    /// The rest, after the last `process`.
    void finish(std::vector<float>& out);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
