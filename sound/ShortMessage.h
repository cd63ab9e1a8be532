// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// Packed short messages as `MidiPort::send` takes them. Arguments are not clamped: a chord step above note
/// 127 gives a word that carries bit 15, which ports drop.
namespace shortmessage {

inline constexpr int kDrumChannel = 9;
/// Sent once a port is open: program change 0 on the drum channel.
inline constexpr std::uint32_t kDrumBank = 201;

[[nodiscard]] constexpr std::uint32_t pack(int status, int channel, int data1, int data2 = 0) {
    return static_cast<std::uint32_t>(status + channel + data1 * 0x100 + data2 * 0x10000);
}
[[nodiscard]] constexpr std::uint32_t noteOn(int channel, int note, int velocity) {
    return pack(0x90, channel, note, velocity);
}
[[nodiscard]] constexpr std::uint32_t noteOff(int channel, int note) {
    return pack(0x80, channel, note);
}
[[nodiscard]] constexpr std::uint32_t programChange(int channel, int program) {
    return pack(0xC0, channel, program);
}
[[nodiscard]] constexpr std::uint32_t controller(int channel, int number, int value) {
    return pack(0xB0, channel, number, value);
}

[[nodiscard]] constexpr int status(std::uint32_t word) {
    return static_cast<int>(word & 0xF0U);
}
[[nodiscard]] constexpr int channel(std::uint32_t word) {
    return static_cast<int>(word & 0x0FU);
}
[[nodiscard]] constexpr int data1(std::uint32_t word) {
    return static_cast<int>((word >> 8U) & 0xFFU);
}
[[nodiscard]] constexpr int data2(std::uint32_t word) {
    return static_cast<int>((word >> 16U) & 0xFFU);
}
/// True for a channel message whose data bytes are MIDI data.
[[nodiscard]] constexpr bool isValid(std::uint32_t word) {
    return (word & 0x80U) != 0 && status(word) != 0xF0 && (word & 0xFF808000U) == 0;
}

} // namespace shortmessage
} // namespace velmora
