// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/CommandRow.h"
#include "shell/CommandButton.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

class ExToolTip;
struct Tip;

/// A control array of command buttons, made from a table: each with its face, its tool text and its name,
/// "Cmd2(3)" say. A button that no routine is bound to is disabled, and its tool text says that it is to
/// come.
class CommandBank {
public:
    /// The buttons belong to @p parent, or to the strip that a later `setParent` puts them on.
    CommandBank(std::string_view name, std::span<const CommandRow> rows, const Appearance& look,
                ExToolTip& tips, QWidget* parent);
    CommandBank(const CommandBank&) = delete;
    CommandBank& operator=(const CommandBank&) = delete;

    [[nodiscard]] CommandButton& operator[](int index) const {
        return *buttons_.at(static_cast<std::size_t>(index));
    }
    [[nodiscard]] const CommandRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    [[nodiscard]] int size() const { return static_cast<int>(buttons_.size()); }

    /// Has @p routine called by a press of the button, and enables it.
    void bind(int index, std::function<void()> routine);
    /// What a press of the button does; nothing for one that is disabled or not there.
    void press(int index) const;

    /// Shows a mode as on or off.
    void setOn(int index, bool on) const { (*this)[index].setChecked(on); }

private:
    [[nodiscard]] Tip tipOf(int index) const;

    std::span<const CommandRow> rows_;
    ExToolTip& tips_;
    std::vector<CommandButton*> buttons_;
    std::vector<std::function<void()>> routines_;
};

} // namespace velmora
