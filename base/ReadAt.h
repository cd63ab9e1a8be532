// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmora {

/// Reads from a place of an open file, as much as there is and fits. Returns how many bytes that was, fewer
/// than asked for at the end and where reading fails. Thread-safe: yes.
std::size_t readAt(int descriptor, std::uint64_t offset, std::span<std::byte> to);

} // namespace velmora
