// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora::cli {

/// From here on Ctrl-C and a polite kill no longer end the process but are remembered; a second one ends it.
void catchInterrupts();
/// True once one has come. Async-signal-safe and thread-safe.
[[nodiscard]] bool interrupted();

} // namespace velmora::cli
