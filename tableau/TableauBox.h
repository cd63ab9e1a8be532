// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScreen.h"

#include <QImage>
#include <QWidget>

#include <functional>

namespace velmora {

/// A surface of the Tableau on the screen: it shows a picture that stays as it was painted, and says what the
/// mouse does over it.
class TableauBox : public QWidget {
public:
    TableauBox(const char* name, const char* said, QWidget* parent);

    /// What a button does here, with whether Shift is held and where, in logical pixels.
    struct Mouse {
        std::function<void(MouseButton, int shift, int x, int y)> down, move, up;
        /// The release will not come: the grab is gone.
        std::function<void()> lost;
        /// It comes over the surface, or leaves it.
        std::function<void(bool isOver)> over{};
    };
    Mouse mouse;
    /// The picture has another size or sharpness than the widget: it is to be painted anew.
    std::function<void()> onStale;

    /// The picture, of this widget's size at the scale factor of its screen.
    [[nodiscard]] QImage& picture();
    /// Shows what has changed in the picture.
    void showPart(const QRect& part) { update(part); }
    /// Whether the picture has to be painted anew before anything can be drawn over it.
    [[nodiscard]] bool isStale() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void loseUnless(Qt::MouseButtons down);
    void lose();

    QImage picture_;
    MouseButton held_ = MouseButton::None;
};

} // namespace velmora
