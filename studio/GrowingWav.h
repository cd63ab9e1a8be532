// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/WavHeaderBytes.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <shared_mutex>
#include <span>
#include <string>

namespace velmora {

/// A WAV file that grows in its place and opens in other programs at any moment: what its header tells is
/// there. Where samples no longer fit the lengths of a plain header it becomes an RF64 file: in place where
/// the file system can put room into a file, else by a copy at `finish`; until then its lengths are all ones.
/// Calls return blank, or in words what went wrong and with which file. Thread-safe: no, but for `frames` and
/// `read`. Realtime-safe: no.
class GrowingWav {
public:
    /// @param place blank for a file that no folder shows and that goes with this object
    /// @param longest bytes of samples that a plain header may tell
    /// @param insertsRoom false to have long files copied, whatever the file system can
    GrowingWav(std::filesystem::path place, WaveFormat format, std::uint64_t longest = kLongestWav,
               bool insertsRoom = true);
    ~GrowingWav();
    GrowingWav(const GrowingWav&) = delete;
    GrowingWav& operator=(const GrowingWav&) = delete;

    /// Puts a file without sound in place. One that is there goes only when the new one stands; whoever still
    /// reads that goes on with it.
    [[nodiscard]] std::string open();
    /// Puts samples behind those that are there. After a failure what fitted stays, in whole frames, and the
    /// file is whole.
    /// @param frames whole ones, of the format
    [[nodiscard]] std::string append(std::span<const std::byte> frames);
    /// Has the header tell what is there.
    [[nodiscard]] std::string tell();
    /// The same at the end of a take; more may follow all the same.
    [[nodiscard]] std::string finish();

    /// So many whole frames are in the file.
    [[nodiscard]] std::int64_t frames() const { return bytes_.load() / format_.alignment(); }
    /// The samples from that frame on; returns how many bytes there were.
    std::size_t read(std::int64_t frame, std::span<std::byte> to) const;
    [[nodiscard]] const WaveFormat& format() const { return format_; }

    /// Puts a copy in place of that file, as a whole; if this is that file, there is nothing to do. An object
    /// that was never opened gives a header and no sample.
    [[nodiscard]] std::string saveTo(const std::filesystem::path& file) const;

private:
    [[nodiscard]] std::string openPlace();
    [[nodiscard]] std::string openHidden();
    [[nodiscard]] std::string settle(const std::string& problem);
    [[nodiscard]] std::string pad();
    void growLong();
    [[nodiscard]] bool insertRoom();
    [[nodiscard]] bool fillRoom(std::size_t room);
    void replaceByCopy();
    [[nodiscard]] bool is(const std::filesystem::path& file) const;
    [[nodiscard]] std::uint64_t dataBytes() const { return static_cast<std::uint64_t>(bytes_.load()); }
    [[nodiscard]] std::string failure(int code) const;

    std::filesystem::path place_;
    WaveFormat format_;
    std::uint64_t longest_;
    bool insertsRoom_;
    int descriptor_ = -1;
    std::atomic<std::int64_t> bytes_{0}; ///< of samples
    /// Where the samples begin, and the descriptor, change when room is made; readers share it.
    mutable std::shared_mutex moving_;
    std::size_t begin_ = kWavHeader;
    bool isLong_ = false; ///< beyond `longest_`
};

} // namespace velmora
