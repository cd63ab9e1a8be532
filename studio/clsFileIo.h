// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace velmora {

/// The header of a WAV file of plain samples at CD stereo, the only one that `clsFileIo` writes.
inline constexpr std::size_t kWavHeaderSize = 44;

/// One open file, a block at a time: no buffer of its own stands between. Results are -1 (it is done) and 0
/// (it failed), as where the system answers yes and no. Thread-safe: no. Realtime-safe: no.
class clsFileIo {
public:
    static constexpr int kDone = -1;
    static constexpr int kFailed = 0;

    clsFileIo() = default;
    /// Closes what is open.
    ~clsFileIo();
    clsFileIo(const clsFileIo&) = delete;
    clsFileIo& operator=(const clsFileIo&) = delete;

    /// Opens a file for reading and writing, or makes it. What is in it stays; the first block goes to its
    /// beginning. Fails where another clsFileIo has it open.
    int OpenFile(const std::filesystem::path& path);
    /// The same for a file that its owner has open; it stays the owner's.
    int OpenFile(int descriptor, const std::filesystem::path& name);
    int CloseFile();
    /// Returns when all is on the disk.
    int FlushBuffers();
    /// Writes the 44 bytes at the present position and flushes.
    /// @param dataSize bytes of sound; throws std::overflow_error if the file wouldn't fit into 31 bits
    int writeWavHeader(std::int32_t dataSize);
    /// Writes without a flush, which is for the end. No bytes are a success, too.
    int WriteBytes(const void* address, std::size_t count);
    /// Reads up to that many bytes: at the end of the file it succeeds with fewer, or none.
    int ReadBytes(void* address, std::size_t count);

    [[nodiscard]] bool isOpen() const { return !name_.empty() && handle_ != kInvalid; }
    [[nodiscard]] const std::filesystem::path& name() const { return name_; }
    /// Of the last read or write.
    [[nodiscard]] std::size_t count() const { return count_; }
    /// Of the last call of the system, a code as in errno; 0 if it succeeded.
    [[nodiscard]] int lastResult() const { return lastResult_; }

private:
    static constexpr int kInvalid = -1;

    int told(bool succeeded);

    int handle_ = kInvalid;
    bool isOwner_ = true;
    std::filesystem::path name_;
    int lastResult_ = 0;
    std::size_t count_ = 0;
};

} // namespace velmora
