// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// Bytes of a known number that can be read from anywhere. Thread-safe: no. Realtime-safe: no.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// Returns how many there were: fewer than asked for only at the end, or where they can't be read.
    virtual std::size_t read(std::uint64_t offset, std::span<std::uint8_t> to) = 0;

protected:
    explicit ByteSource(std::uint64_t size) : size_(size) {}

private:
    std::uint64_t size_;
};

/// Bytes in memory, which must outlive it.
class MemoryBytes : public ByteSource {
public:
    explicit MemoryBytes(std::span<const std::uint8_t> bytes) : ByteSource(bytes.size()), bytes_(bytes) {}
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> to) override;

private:
    std::span<const std::uint8_t> bytes_;
};

struct OpenedBytes {
    std::unique_ptr<ByteSource> bytes; ///< none if it failed
    std::string error;                 ///< why, as the end of a sentence
};
/// Those of a regular file, as many as it has now; another kind of file could block or never end.
[[nodiscard]] OpenedBytes openBytes(const std::filesystem::path& file);

/// A look at a source that moves along with who looks: what lies near costs no reading. It holds 64 KiB.
class ByteWindow {
public:
    static constexpr std::size_t kReach = std::size_t{64} * 1024;

    explicit ByteWindow(ByteSource& source);
    [[nodiscard]] std::uint64_t size() const { return source_.size(); }
    /// Until the next call.
    /// @param count kReach at the most; there are fewer only at the source's end
    [[nodiscard]] std::span<const std::uint8_t> at(std::uint64_t offset, std::size_t count);

private:
    ByteSource& source_;
    std::vector<std::uint8_t> held_;
    std::uint64_t start_ = 0;
    std::size_t length_ = 0;
};

} // namespace velmora
