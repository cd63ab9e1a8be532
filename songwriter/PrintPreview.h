// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PrintLayout.h"

#include <QImage>
#include <QWidget>

#include <array>
#include <functional>

namespace velmora {

struct Appearance;

/// A sheet of paper in proportion, on a ground: the picture of a page where it will stand, and the margins'
/// lines over it.
///
// clang-format off
/// | Control      | The user sees             | What it presses                |
/// |--------------|---------------------------|--------------------------------|
/// | `Pic1`       | the paper with the page   | a drag moves the page: `onDrag` |
/// | `L1` to `L4` | dashed lines at the top, left, bottom and right margin |   |
// clang-format on
class PrintPreview : public QWidget {
public:
    /// @param look is read at each painting and must outlive the preview
    PrintPreview(const Appearance& look, QWidget* parent);

    /// Gives the paper its shape and places the lines.
    void CmdSize(const notation::PrintLayout& layout);
    /// Draws the page, which must stay until the next call.
    void showPage(const notation::EngravedScore& score, const notation::EngravedPage* page);

    /// By so much in the paper's own unit.
    std::function<void(double x, double y)> onDrag;
    std::function<void(int pages)> onTurn; ///< the wheel, or Page Up and Page Down

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Paper;
    class MarginLine;

    void placeLines();
    [[nodiscard]] QRectF imageBox() const;

    const Appearance& look_;
    notation::PrintLayout layout_;
    Paper* Pic1_;
    std::array<MarginLine*, 4> L_{};
    int turned_ = 0; ///< eighths of a degree of the wheel that have not turned a page yet
};

} // namespace velmora
