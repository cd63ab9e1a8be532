// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractSlider>

#include <functional>

namespace velmora {

struct Appearance;

/// A pointer on a bar, lying or upright. It is moved with the left mouse button, the wheel and the keys; a
/// press beside the pointer brings it there.
///
/// A value is the whole part of what the pointer's place gives, as a share of the bar; on an upright one the
/// whole part of the share from the top is what the value lacks.
class Slider : public QAbstractSlider {
public:
    /// @param look is read at each painting and must outlive the slider
    Slider(const Appearance& look, Qt::Orientation orientation, QWidget* parent);

    /// The value at which the pointer rests: from there the bar is filled. One between the ends has a tick.
    void setRest(int value);

    /// Sets the value from code: nobody is told. Whoever sets it as a `QAbstractSlider`, such as a screen
    /// reader, counts as the user.
    void setValue(int value);
    /// Likewise, where the value must give way.
    void setRange(int least, int most);

    std::function<void(int value)> onDrag; ///< the user has changed the value
    std::function<void()> onRelease; ///< the change is complete: the button is up, the key or wheel step done
    /// Where given, a click means its half of the bar, -1 or 1, in place of bringing the pointer to the
    /// mouse; the pointer can still be dragged.
    std::function<void(int direction)> onHalf;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    /// Where the pointer is painted.
    [[nodiscard]] QRectF pointer() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] bool lies() const { return orientation() == Qt::Horizontal; }
    [[nodiscard]] int travel() const;
    [[nodiscard]] double centreOf(int value) const;
    [[nodiscard]] int valueAt(double place) const;
    [[nodiscard]] double placeOf(QPointF point) const;
    [[nodiscard]] int halfAt(double place) const;
    void stepByUser(const std::function<void()>& step);

    const Appearance& look_;
    int rest_ = 0;
    bool byCode_ = false;
    double grip_ = 0;    ///< from the pointer's middle to the mouse, along the bar
    double last_ = 0;    ///< where the mouse was last, along the bar
    bool drags_ = false; ///< the mouse moves the pointer
    bool moved_ = false; ///< since the press
};

} // namespace velmora
