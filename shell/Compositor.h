// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// Whether what lies behind a window shines through where it is translucent. It may change at any time.
[[nodiscard]] bool windowsShineThrough();

} // namespace velmora
