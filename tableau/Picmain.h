// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/BeatPainter.h"
#include "tableau/FormLayout.h"
#include "tableau/MelodyPainter.h"
#include "tableau/PixelStrip.h"
#include "tableau/TableauBox.h"
#include "tableau/TableauScene.h"
#include "tableau/TableauScreen.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>

class QLabel;

namespace velmora {

class ExToolTip;
class Splitter;
class ViewScroll;
struct Appearance;
struct Workspace;

/// Where the Tableau stands: its surfaces on white paper, the pitch guide at the left, the scroll bars.
///
/// | Part                 | What the user sees                                             |
/// |----------------------|----------------------------------------------------------------|
/// | `Pic3`, `Pic2a`      | two bars: notes with a chord; the note under a click           |
/// | `Beatbox`            | the percussion Tableau                                         |
/// | `Label9`, `P1`       | the gap under it, and the bar that shows where it is dragged to |
/// | `MusicBox`           | the melody Tableau                                             |
/// | `PicX`, `SideBar`    | the pitch guide, and the colour it stands on                   |
/// | `HScroll1`, `VScroll1` | scroll bars                                                  |
///
/// It paints what it is told to, when it is told to, and hands on what the mouse does.
class Picmain : public QWidget {
public:
    enum class Surface { None, MusicBox, Beatbox, Guide, Pic2a, Pic3 };

    Picmain(const Appearance& look, ExToolTip& tips, Workspace& workspace, QWidget* parent);

    /// A press of the right button outside the Tableaux, and where on the screen.
    std::function<void(Surface, QPoint)> onRightPress;
    /// `HScroll1` has moved the view.
    std::function<void()> onScrolled;
    /// The wheel was turned with Ctrl by so many notches, up if positive, and where on `MusicBox`.
    std::function<void(int notches, int y)> onZoom;
    /// The gap was dragged: how high `Beatbox` is to be, in pixels.
    std::function<void(int)> onSplit;

    /// What the mouse does on `MusicBox`, `Beatbox`, `Pic2a` and `Pic3`.
    [[nodiscard]] TableauBox::Mouse& mouseOn(Surface which);
    /// The surface itself; null for `Surface::None`.
    [[nodiscard]] QWidget* surface(Surface which) const;

    /// @p layout in coordinates of the window, @p origin where this stands in it. Nothing is painted anew.
    void layOut(const FormLayout& layout, QPoint origin);
    /// Where `MusicBox` begins, in the window's pixels.
    [[nodiscard]] int musicBoxTop() const { return musicBoxTop_; }
    /// Greys the two Tableaux and the scroll bars while a score plays.
    void setEditable(bool editable);
    /// A quiet word on where to draw, over an empty Tableau.
    void showHint(bool shown);

    // Painting. Nothing is painted while nobody sees it; coming up paints everything.
    void DrawNoteArray();
    void DrawBeatArray();
    void drawGuide();
    void drawPolynoteBar(); ///< `Pic3`
    void markPolynote(int column);
    /// `Pic2a`, with the column of a click marked in it.
    void drawIndicatorBar(std::optional<int> clicked = std::nullopt);
    void drawAll();
    void clearMusicBox();

    // What comes and goes over a painted Tableau.
    void GetRow(Box box, int row);
    void PutRow(Box box, int row);
    void GetBox();
    void PutBox();
    void GetColumn(int column);
    void PutColumn();
    void drawPlayLine(int column);
    void drawPressBall(int row, int column);
    void drawBand(Box box, int row, int fromColumn, int toColumn);
    void drawSelectEdge(int column);
    void blendSelectStrip();
    void drawSelectDrag(int fromColumn, int toColumn);

    /// The scroll bars follow the view and the score's length, without acting on it.
    void followView();
    void setScrollMaximum(int maximum);
    /// As if the user had moved `HScroll1` by so much, or `VScroll1`.
    void advanceScroll(int columns);
    void advanceRows(int rows);
    /// By a whole view, for keys: -1 or 1.
    void advancePage(int pages);

    [[nodiscard]] int width(Box box) const;
    /// How often the Tableau has been painted anew.
    [[nodiscard]] int paintings(Box box) const { return paintings_[static_cast<std::size_t>(box)]; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Guide;

    [[nodiscard]] TableauBox& box(Box which) const;
    [[nodiscard]] QImage& painted(Box which);
    /// Has @p draw write into the picture of a box within @p part, and shows that.
    template<class Draw>
    void drawOver(Box which, const QRect& part, Draw draw);
    [[nodiscard]] QRect columnStrip(Box which, int column) const;
    [[nodiscard]] int rowHeight(Box which) const;
    [[nodiscard]] QRect rowStrip(Box which, int row) const;
    void placeHint();
    void scrolledColumns(int value);
    void scrolledRows(int value);
    void zoomBy(const QWheelEvent& event);

    const Appearance& look_;
    Workspace& workspace_;
    TableauScene scene_;
    MelodyPainter melody_;
    BeatPainter beat_;

    TableauBox* Pic3_;
    TableauBox* Pic2a_;
    TableauBox* Beatbox_;
    TableauBox* MusicBox_;
    Guide* PicX_;
    QLabel* hint_;
    ViewScroll* HScroll1_;
    ViewScroll* VScroll1_;
    Splitter* Label9_;
    PixelStrip row_;      ///< under a rubber band
    PixelStrip whole_;    ///< `SwapScreen`: `MusicBox` before a selection is drawn
    PixelStrip line_;     ///< under the play line on `MusicBox`
    PixelStrip beatLine_; ///< and on `Beatbox`
    int lineColumn_ = 0;
    std::optional<int> clicked_; ///< marked in `Pic2a`
    QPoint wheel_;               ///< parts of a step that the wheel has turned
    int zoomWheel_ = 0;          ///< likewise, with Ctrl
    int musicBoxTop_ = 0;
    std::array<int, 2> paintings_{};
};

} // namespace velmora
