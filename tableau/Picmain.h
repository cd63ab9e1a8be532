// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/FormLayout.h"

#include <QWidget>

#include <functional>

class QScrollBar;

namespace velmora {

class ExToolTip;
struct Appearance;
struct Score;

/// Where the Tableau stands: its surfaces on white paper, the pitch guide at the left, the scroll bars.
///
/// | Part                 | What the user sees                                             |
/// |----------------------|----------------------------------------------------------------|
/// | `Pic3`, `Pic2a`      | two bars: notes with a chord; the note under a click           |
/// | `Beatbox`            | the percussion Tableau                                         |
/// | `MusicBox`           | the melody Tableau                                             |
/// | `PicX`, `SideBar`    | the pitch guide, and the colour it stands on                   |
/// | `HScroll1`, `VScroll1` | scroll bars                                                  |
class Picmain : public QWidget {
public:
    /// The parts that answer a right click.
    enum class Surface { None, MusicBox, Beatbox, Guide, Pic2a, Pic3 };

    Picmain(const Appearance& look, ExToolTip& tips, QWidget* parent);

    /// A press of the right button, and where on the screen.
    std::function<void(Surface, QPoint)> onRightPress;

    /// @p layout in coordinates of the window, @p origin where this stands in it.
    void layOut(const FormLayout& layout, QPoint origin);
    /// Where `MusicBox` begins, in the window's pixels.
    [[nodiscard]] int musicBoxTop() const { return musicBoxTop_; }
    /// The surface itself; null for `Surface::None`.
    [[nodiscard]] QWidget* surface(Surface which) const;
    /// The scroll bars follow the score's length; the measures in the bars follow its meter.
    void show(const Score& score);
    /// Greys the two Tableaux and the scroll bars while a score plays.
    void setEditable(bool editable);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    class Paper;
    class Guide;

    [[nodiscard]] Surface surfaceAt(QPoint at) const;

    const Appearance& look_;
    Paper* Pic3_;
    Paper* Pic2a_;
    Paper* Beatbox_;
    Paper* MusicBox_;
    Guide* PicX_;
    QScrollBar* HScroll1_;
    QScrollBar* VScroll1_;
    QRect splitter_;
    int musicBoxTop_ = 0;
};

} // namespace velmora
