// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// Steps of a random walk: under a sanitizer, where each is slow, a tenth of them.
constexpr int stepsOfWalk(int steps) {
    return VELMORA_SANITIZED ? steps / 10 : steps;
}

} // namespace velmora
