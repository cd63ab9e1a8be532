// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <span>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

class SoundReader;

/// The lowest and the highest value of a stretch of sound, left and right.
struct WaveColumn {
    std::array<float, 2> lowest{};
    std::array<float, 2> highest{};
    bool operator==(const WaveColumn&) const = default;
};

/// The same sound in so many columns. Where there are fewer, some stand several times.
[[nodiscard]] std::vector<WaveColumn> fold(std::span<const WaveColumn> columns, std::size_t count);

/// The waveform of a sound file of any length. It is read once, on a thread of its own; memory doesn't grow
/// with its length. Thread-safe: yes.
class TakePicture {
public:
    static constexpr std::size_t kColumns = 4096; ///< as a rule; a file of fewer frames has one a frame

    /// @param changed is called from that thread when there is more to show, some ten times a second, and at
    /// the end
    explicit TakePicture(std::filesystem::path file, std::function<void()> changed = {},
                         std::size_t columns = kColumns);
    /// Gives up what isn't done.
    ~TakePicture() = default;
    TakePicture(const TakePicture&) = delete;
    TakePicture& operator=(const TakePicture&) = delete;

    /// All of the file's columns; those that aren't known yet are silent.
    [[nodiscard]] std::vector<WaveColumn> columns() const;
    /// From 0 to 1: how much of them is known.
    [[nodiscard]] double share() const;
    /// Nothing more will come.
    [[nodiscard]] bool isDone() const { return isDone_.load(); }
    /// Why there is no more, in a sentence that names the file; blank if all is well.
    [[nodiscard]] std::string problem() const;
    // Of the file; 0 until it is open.
    [[nodiscard]] std::int64_t frames() const { return frames_.load(); }
    [[nodiscard]] int rate() const { return rate_.load(); }

private:
    void run(const std::stop_token& ends);
    void read(SoundReader& reader, const std::stop_token& ends);
    void take(std::span<const float> interleaved, std::size_t channels);

    std::filesystem::path file_;
    std::function<void()> changed_;
    std::atomic<std::int64_t> frames_{0};
    std::atomic<int> rate_{0};
    std::atomic<bool> isDone_{false};
    mutable std::mutex mutex_;
    std::vector<WaveColumn> columns_;
    std::size_t wanted_;
    std::int64_t known_ = 0; ///< frames
    std::size_t column_ = 0; ///< that the next of them belongs to
    std::string problem_;
    std::jthread thread_; ///< last: it uses all of the above
};

} // namespace velmora
