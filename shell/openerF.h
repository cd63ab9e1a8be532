// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/SkinnedWindow.h"

#include <functional>

namespace velmora {

class ExToolTip;

/// The start window.
///
/// | Control    | What the user sees                    | Routine                           |
/// |------------|---------------------------------------|-----------------------------------|
/// | `Label4`   | "Integrated Notation Interface   "    |                                   |
/// | `Command2` | "Start Program"                       | `onStart`, and the window hides   |
/// | `Command1` | "Exit"                                | `onExit`                          |
class openerF : public SkinnedWindow {
public:
    openerF(frmskins& skins, ExToolTip& tips);

    std::function<void()> onStart; ///< loads and shows the composing window
    std::function<void()> onExit;  ///< ends the program

    void Command2_Click();
    void Command1_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    bool started_ = false;
};

} // namespace velmora
