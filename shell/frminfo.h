// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>
#include <QWidget>

#include <chrono>
#include <functional>

class QAbstractButton;
class QLabel;
class QTimer;

namespace velmora {

class ExToolTip;

/// Where the tip window of @p size stands for the Melody Tableau: 1500 twips right of the window's left edge
/// and 3500 twips below the top of `MusicBox`, which counts from the screen's edge as if the window had no
/// place of its own; pushed back onto @p screen. 15 twips are a pixel.
[[nodiscard]] QPoint tableauTipPlace(int windowLeft, int musicBoxTop, QSize size, const QRect& screen);
/// Below @p control, or above it where there is no room; all on the screen.
[[nodiscard]] QPoint tipPlaceBeside(const QRect& control, QSize size, const QRect& screen);
/// How long a text has to stand to be read without haste: 3 s to find it and 75 ms a letter.
[[nodiscard]] std::chrono::milliseconds readingTime(const QString& text);

/// The tip window of a right click in Tips mode. It never takes the focus.
///
// clang-format off
/// | Control      | What the user sees | What it does                                                               |
/// |--------------|--------------------|----------------------------------------------------------------------------|
/// | `Label1`     | the text           |                                                                            |
/// | closePicture | a cross            | "Don't show Tips": `onDontShow`, and it closes                             |
/// | `Timer1`     |                    | closes it when the text can have been read; waits while the mouse is on it |
// clang-format on
class frminfo : public QWidget {
public:
    /// @p tips shows the tool text of the cross.
    explicit frminfo(ExToolTip& tips, QWidget* owner = nullptr);

    /// Sets the text of an index of `dotips` and fits the size to it; false, and nothing changes, if there is
    /// no such tip.
    bool setTip(int index);
    /// Shows the tip for the Melody Tableau of @p composing, whose `MusicBox` is @p musicBoxTop pixels down.
    void showForTableau(const QWidget& composing, int musicBoxTop);
    /// Shows any other tip next to its control.
    void showBeside(const QWidget& control, int index);

    void Timer1_Timer();

    std::function<void()> onDontShow; ///< the owner ends Tips mode

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void build();
    void showAt(QPoint place);
    void dontShow();

    QLabel* Label1;
    QAbstractButton* close_;
    QTimer* Timer1;
};

} // namespace velmora
