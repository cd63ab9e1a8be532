// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/SkinnedWindow.h"

#include <QElapsedTimer>

#include <functional>

class QLabel;
class QProgressBar;

namespace velmora {

class CommandButton;

/// How long something still takes, in words; blank as long as that can't be told.
/// @param seconds since it began
/// @param share of it done, 0 to 1
[[nodiscard]] QString timeLeft(double seconds, double share);

/// How far something has come that takes its time, over a window that goes on meanwhile.
///
/// | Control    | What the user sees           | A press                               |
/// |------------|------------------------------|---------------------------------------|
/// | `words`    | what is being done           |                                       |
/// | `progress` | how far it has come          |                                       |
/// | `left`     | how long it still takes      |                                       |
/// | `cancel`   | "Cancel", "OK" after the end | closes the window, as Esc does        |
class ProgressWindow : public SkinnedWindow {
public:
    /// @param words what is being done, with the name of the file
    ProgressWindow(frmskins& skins, ExToolTip& tips, QWidget* parent, const QString& title,
                   const QString& words);

    std::function<void()> onCancel; ///< only while it goes on

    /// Comes up over its parent. A hand that is just drawing there isn't disturbed.
    void open();
    void showShare(double share);
    /// It is done: what came of it is shown until the user has read it.
    void finish(const QString& words);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setWords(const QString& words);

    ExToolTip& tips_;
    QLabel* words_;
    QProgressBar* progress_;
    QLabel* left_;
    CommandButton* cancel_;
    QElapsedTimer began_;
    bool done_ = false;
};

} // namespace velmora
