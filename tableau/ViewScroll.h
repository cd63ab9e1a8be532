// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QScrollBar>

#include <functional>

namespace velmora {

struct ScrollRange;

/// A scroll bar of the Tableau. What lies between its arrows is a drag rail, `Label10` of `HScroll1` and
/// `Label13` of `VScroll1`: a press there brings the thumb under the mouse, and a drag takes it along.
class ViewScroll : public QScrollBar {
public:
    ViewScroll(Qt::Orientation orientation, const char* name, QWidget* parent);

    /// The value for a place along a rail of that length; the range itself decides where this is not given.
    std::function<int(int place, int length)> valueAt;
    /// A user, and not `follow`, has moved it.
    std::function<void(int value)> onScroll;

    /// Takes over where the view is, without acting on it.
    void follow(const ScrollRange& range, int value);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void initStyleOption(QStyleOptionSlider* option) const override;

private:
    [[nodiscard]] QRect part(int subControl) const;
    [[nodiscard]] int along(const QPoint& at) const;
    void dragTo(const QPoint& at);

    bool following_ = false;
    bool dragging_ = false;
    int grip_ = 0; ///< from the thumb's beginning to the mouse that holds it
};

} // namespace velmora
