// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string_view>

class QWidget;

namespace velmora {

class CommandBank;
class Frmmenu;

/// The ways in which a user's hand reaches a command. One that it doesn't have stays blank.
struct CommandWays {
    CommandBank* bank = nullptr; ///< of its button
    int index = -1;
    std::string_view item; ///< of a menu
    const char* key = nullptr;
};

/// Has each way press one routine, as long as the window lives. A key held down presses once, and none where
/// the menu item, or else the button, is disabled.
void bindCommand(QWidget& window, Frmmenu& menu, const CommandWays& ways, const std::function<void()>& press);

/// A row of a window's table of commands.
template<class Window>
struct CommandBinding {
    struct Button {
        CommandBank Window::*bank = nullptr;
        int index = -1;
    };

    Button button; ///< blank where none stands for it
    void (*press)(Window&);
    std::string_view item = {};
    const char* key = nullptr;
};

template<class Window>
void bindCommands(Window& window, Frmmenu& menu, std::span<const CommandBinding<Window>> rows) {
    for (const auto& [button, press, item, key] : rows)
        bindCommand(window, menu, {button.bank ? &(window.*button.bank) : nullptr, button.index, item, key},
                    [&window, press = press] { press(window); });
}

} // namespace velmora
