// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

#include <functional>

namespace velmora {

struct Appearance;

/// `Label9`, a grab area over the gap between `Beatbox` and `MusicBox`. While either button is held the bar
/// `P1` shows where the gap will be.
class Splitter : public QWidget {
public:
    Splitter(const Appearance& look, QWidget* area);

    /// Where `P1` was let go, in pixels of the area.
    std::function<void(int top)> onRelease;

    /// @p gap where the gap is in the area; empty where there is none.
    void layOut(const QRect& gap);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int kGrab = 8;

    void barTo(const QMouseEvent& event);

    const Appearance& look_;
    QWidget* P1_;
    Qt::MouseButton held_ = Qt::NoButton;
    QRect gap_; ///< what is seen of it, in its own pixels
};

} // namespace velmora
