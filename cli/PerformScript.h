// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

class KeyboardPlayer;

/// An event of a script: when, and what a hand does then.
struct PerformEvent {
    double seconds = 0;
    std::function<void(KeyboardPlayer&)> run;
};

/// The events of a script, in their order. Throws UsageError for the first line that is none, with its
/// number.
[[nodiscard]] std::vector<PerformEvent> parsePerformScript(std::string_view text);

/// A line for each event, for the command's help.
[[nodiscard]] std::string performEvents();

} // namespace velmora::cli
