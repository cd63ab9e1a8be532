// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

struct mpg123_handle_struct;

namespace velmora {

/// Turns frames of an MP3 stream into sound, one for one, by libmpg123. Thread-safe: no. Realtime-safe: no.
class Mp3Decoder {
public:
    Mp3Decoder(int rate, int channels);
    /// Why it can't work, as the end of a sentence; blank if it can.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    /// What is decoded next doesn't follow what was decoded last.
    void startAnew();
    /// @param frame a whole one
    /// @param interleaved room for the frame's sound, which is silent where it can't be decoded
    void decode(std::span<const std::uint8_t> frame, std::span<float> interleaved);

private:
    struct Deleter {
        void operator()(mpg123_handle_struct* handle) const;
    };
    std::unique_ptr<mpg123_handle_struct, Deleter> handle_;
    std::string problem_;
};

} // namespace velmora
