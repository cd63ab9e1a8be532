// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace velmora {

// The bytes of a step: whole numbers in groups of seven bits, the last without its highest, and cells as
// they are in memory. They never leave the process.

/// Appends to bytes.
class StepWriter {
public:
    explicit StepWriter(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}

    void number(std::size_t value) {
        for (; value >= 0x80; value >>= 7)
            bytes_.push_back(static_cast<std::uint8_t>(value | 0x80));
        bytes_.push_back(static_cast<std::uint8_t>(value));
    }
    void cells(std::span<const std::int16_t> values) {
        const std::size_t at = bytes_.size();
        bytes_.resize(at + values.size_bytes());
        std::memcpy(bytes_.data() + at, values.data(), values.size_bytes());
    }
    void byte(std::uint8_t value) { bytes_.push_back(value); }

private:
    std::vector<std::uint8_t>& bytes_;
};

/// Reads what a `StepWriter` has written, in its order.
class StepReader {
public:
    explicit StepReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] bool atEnd() const { return bytes_.empty(); }
    [[nodiscard]] std::size_t number() {
        std::size_t value = 0;
        for (int shift = 0;; shift += 7) {
            const std::uint8_t one = byte();
            value |= static_cast<std::size_t>(one & 0x7F) << shift;
            if (one < 0x80)
                return value;
        }
    }
    void cells(std::span<std::int16_t> values) {
        std::memcpy(values.data(), bytes_.data(), values.size_bytes());
        skipCells(values.size());
    }
    void skipCells(std::size_t count) { bytes_ = bytes_.subspan(count * sizeof(std::int16_t)); }
    [[nodiscard]] std::uint8_t byte() {
        const std::uint8_t one = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return one;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace velmora
