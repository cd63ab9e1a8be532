// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

/// Where a command's button stands.
enum class CommandPlace : std::uint8_t {
    Bar,
    BarRight,
    Tab,
    ToolPanel,
    Maker,
    Effects,
    Editor,
    TextLine,
    Strip
};

/// A button of a control array such as `Cmd2`; its index is its place in the table.
struct CommandRow {
    std::string_view name; ///< by which the program's own lines call it: see indexOf
    std::string_view icon;
    std::string_view label; ///< the words on its face; blank where it shows its icon alone
    std::string_view title; ///< of its tool text
    std::string_view text;
    CommandPlace place = CommandPlace::Bar;
    bool toggles = false; ///< it stays pressed while its mode is on
};

/// The index of the row of that name. It is looked up while compiling, where an unknown name is an error.
template<std::size_t Count>
consteval int indexOf(const std::array<CommandRow, Count>& rows, std::string_view name) {
    for (std::size_t i = 0; i < Count; ++i)
        if (rows[i].name == name)
            return static_cast<int>(i);
    throw "no command has this name";
}

/// Whether each row has a name, and each its own: what a table asserts.
template<std::size_t Count>
consteval bool eachHasAName(const std::array<CommandRow, Count>& rows) {
    for (std::size_t i = 0; i < Count; ++i)
        if (rows[i].name.empty() || indexOf(rows, rows[i].name) != static_cast<int>(i))
            return false;
    return true;
}

} // namespace velmora
