// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

/// Where a command's button stands.
enum class CommandPlace : std::uint8_t { Bar, BarRight, Tab, ToolPanel, Maker, Effects, Editor, TextLine };

/// A button of a control array such as `Cmd2`; its index is its place in the table.
struct CommandRow {
    std::string_view icon;
    std::string_view label; ///< the words on its face; blank where it shows its icon alone
    std::string_view title; ///< of its tool text
    std::string_view text;
    CommandPlace place = CommandPlace::Bar;
    bool toggles = false; ///< it stays pressed while its mode is on
};

} // namespace velmora
