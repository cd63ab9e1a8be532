// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/HelpLibrary.h"
#include "shell/SkinnedWindow.h"

namespace velmora {

class ExToolTip;
class HelpView;
class SettingsStore;

/// The help in a window of its own; it stays where it is while the user composes, and comes up there again at
/// the next start.
class HelpWindow : public SkinnedWindow {
public:
    HelpWindow(frmskins& skins, ExToolTip& tips, SettingsStore& settings, HelpLibrary library);
    ~HelpWindow() override;

    /// Brings the window up with that page.
    /// @param around the window beside which it comes up at first; it may be null
    void open(const QString& page, const QWidget* around = nullptr);

protected:
    void moveEnded() override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void placeAtFirst(const QWidget* around);
    void savePlace() const;

    SettingsStore& settings_;
    HelpView* view_;
    bool placed_ = false;
};

} // namespace velmora
