// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace velmora {

/// How loud a sound is.
struct Loudness {
    static constexpr double kSilent = -std::numeric_limits<double>::infinity();
    double integrated = kSilent; ///< LUFS, by EBU R 128; also what is too short to tell (0.4 s) is silent
    double peak = kSilent;       ///< dB of full scale: the highest sample of the louder side
};

/// Measures sound as it comes, one channel or two; one counts as it is heard, from both sides. Memory doesn't
/// grow. Thread-safe: no. Realtime-safe: no.
class LoudnessMeter {
public:
    LoudnessMeter(int rate, int channels);
    ~LoudnessMeter();
    LoudnessMeter(LoudnessMeter&&) noexcept;
    LoudnessMeter& operator=(LoudnessMeter&&) noexcept;

    /// Why it can't work (a library that isn't there), as the end of a sentence; blank if it can.
    [[nodiscard]] const std::string& problem() const;
    void add(std::span<const float> interleaved);
    [[nodiscard]] Loudness result() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

struct MeasuredLoudness {
    Loudness loudness;
    bool wasCancelled = false;
    std::string error; ///< why it can't be told, in a sentence that names the file
};
/// Of a sound file, its first two channels.
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] MeasuredLoudness measureLoudness(const std::filesystem::path& file,
                                               const std::function<void(double)>& progress = {},
                                               const std::stop_token& cancel = {});

} // namespace velmora
