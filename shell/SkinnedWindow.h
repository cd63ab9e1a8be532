// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/FramePainter.h"
#include "shell/frmskins.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class QFocusFrame;

namespace velmora {

class ExToolTip;
class TitleButton;

/// Which title buttons a window has beside `imgTitleClose`.
struct TitleButtons {
    bool maximize = false;
    bool minimize = false;
    bool help = false;
};

/// The base of every top-level window: it draws its own frame in the chosen skin.
///
// clang-format off
/// | Part                 | The user sees                                | A press                    |
/// |----------------------|----------------------------------------------|----------------------------|
/// | `Ibak1`, `Ibak2`     | the left and the right half of the title bar | moves the window           |
/// | `lblTitle`, `fpic`   | title text, small picture                    | moves the window           |
/// | `Winedge`(0 to 7)    | sides and corners, tool text "Move"          | moves the window           |
/// | `Resizer`(0 to 7)    | thin areas over them, tool text "Resize"     | resizes the window         |
/// | `imgTitleClose`      | tool text "Exit"                             | `imgTitleClose_Click`      |
/// | `imgTitleMaxRestore` | "Maximize"; if the window is maximized,      | `imgTitleMaxRestore_Click` |
/// |                      | "Restore" and the picture `imgTitleRestore`  |                            |
/// | `imgTitleMinimize`   | "Minimize"                                   | `imgTitleMinimize_Click`   |
/// | `imgTitleHelp`       | "Help"                                       | `imgTitleHelp_Click`       |
/// | `Ibak5`              | the panel with the skin's tile               | what stands on it          |
// clang-format on
class SkinnedWindow : public QWidget, public SkinUser {
public:
    SkinnedWindow(frmskins& skins, TitleButtons buttons, QWidget* parent = nullptr,
                  Qt::WindowFlags flags = Qt::Window);
    ~SkinnedWindow() override;

    /// The panel under the title, as wide as the window: its edges are covered by the frame's, so that what
    /// stands 12 away from them stays where it is in every skin.
    [[nodiscard]] QWidget* Ibak5() const { return panel_; }
    [[nodiscard]] const Appearance& look() const { return skins_.look(); }
    [[nodiscard]] frmskins& skins() const { return skins_; }

    void ApplySkin();
    void LayoutFrame();
    void SetRegion();
    void appearanceChanged() override;

    void imgTitleClose_Click() { close(); }
    void imgTitleMaxRestore_Click();
    void imgTitleMinimize_Click() { showMinimized(); }
    void imgTitleHelp_Click();

    /// A drag of this part moves the window, as one of the title does.
    void moveBy(QWidget& part);

    /// Has @p tips follow the mouse in this window, and gives the parts of the frame their tool texts.
    void attachTips(ExToolTip& tips);

    /// Whether the platform says where this window stands, so that it can be stored and brought back.
    [[nodiscard]] static bool knowsItsPlace();

    /// What the help button opens; a window without it shows the button as disabled.
    void setHelp(std::function<void()> help);

protected:
    /// The window stands still after it was moved. It may have been put back onto the screen before.
    virtual void moveEnded() {}

    /// What has the ring while a control of the window has the focus; none for nothing.
    [[nodiscard]] virtual QWidget* ringed(QWidget* focused) const;

    /// Shows where the focus is as if a key had moved it there; for windows that have a button for Enter.
    void showFocusRing();

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class FramePart;
    class PressWatch;

    void buildTitle(TitleButtons buttons);
    void buildEdges();
    void followFocus();
    void placeFocusRing(QWidget* focused);
    void hideFocusRing();
    void nameMaxRestore();
    bool dragEvent(QEvent* event);
    void platformDrags(const QMouseEvent& mouse);
    bool resizeDragEvent(QEvent* event, Qt::Edges edges);
    void settle();
    [[nodiscard]] bool isSquare() const;

    frmskins& skins_;
    QWidget* panel_ = nullptr;
    QFocusFrame* focusFrame_ = nullptr;
    std::unique_ptr<PressWatch> presses_; ///< at work while there is a ring
    FramePart* Ibak1_ = nullptr;
    FramePart* Ibak2_ = nullptr;
    FramePart* lblTitle_ = nullptr;
    FramePart* fpic_ = nullptr;
    TitleButton* imgTitleClose_ = nullptr;
    TitleButton* imgTitleMaxRestore_ = nullptr;
    TitleButton* imgTitleMinimize_ = nullptr;
    TitleButton* imgTitleHelp_ = nullptr;
    std::array<FramePart*, 8> Winedge_{};
    std::array<QWidget*, 8> Resizer_{};
    std::function<void()> help_;
    QPointer<ExToolTip> tips_;

    bool pressed_ = false; ///< a drag of the window or of an edge may begin, or goes on
    QPoint pressedAt_;     ///< on the screen
    QRect pressedFrame_;
    QTimer settled_;
};

} // namespace velmora
