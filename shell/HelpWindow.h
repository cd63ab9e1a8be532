// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/HelpLibrary.h"
#include "shell/SkinnedWindow.h"

namespace velmora {

class ExToolTip;
class HelpView;

/// The help in a window of its own; it stays where it is while the user composes.
class HelpWindow : public SkinnedWindow {
public:
    HelpWindow(frmskins& skins, ExToolTip& tips, HelpLibrary library);

    /// Brings the window up with that page.
    void open(const QString& page);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    HelpView* view_;
};

} // namespace velmora
