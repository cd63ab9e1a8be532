// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Windows.h"
#include "shell/SkinnedWindow.h"

#include <QBasicTimer>

#include <string>

class QPlainTextEdit;

namespace velmora {

class CommandButton;
struct Desk;

/// The log of the Recording Studio: its messages with the times of day, which it follows as they come.
///
/// | Control | The user sees    | A press                                |
/// |---------|------------------|----------------------------------------|
/// | `log`   | the text `Text2` |                                        |
/// | `copy`  | "Copy"           | takes the whole text to the clipboard  |
/// | `close` | "Close"          | closes the window, as Esc does         |
class frmLog : public SkinnedWindow {
public:
    /// @param composing where it comes up for the first time; it may be null
    frmLog(Desk& desk, QWidget* composing);

    void open(Windows::Focus focus = Windows::Focus::Take);
    void refresh();

protected:
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Desk& desk_;
    QPlainTextEdit* log_;
    CommandButton* copy_;
    CommandButton* close_;
    std::string shown_;
    QBasicTimer following_;
};

} // namespace velmora
