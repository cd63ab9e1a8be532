// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <optional>

namespace velmora {

struct Appearance;
namespace notation {
class SongDocument;
} // namespace notation

/// `Pic1`: what is seen of a page. The page itself is marks; of these it keeps the picture of what is seen
/// and of what lies about it, so that scrolling moves a picture. A page behind others keeps none.
class PageView : public QWidget {
public:
    PageView(notation::SongDocument& song, const Appearance& look, int page, QWidget* parent);

    /// Logical pixels for one of the page's.
    void setZoom(double zoom);
    [[nodiscard]] double zoom() const { return zoom_; }
    /// The page's size on the screen, in logical pixels.
    [[nodiscard]] QSize pageSize() const;
    /// Which logical pixel of the page stands at the upper left.
    void scrollTo(QPoint corner);
    [[nodiscard]] QPoint corner() const { return corner_; }
    [[nodiscard]] notation::Point pagePoint(QPoint view) const;
    [[nodiscard]] QPoint viewPoint(notation::Point page) const;

    /// The page has other marks.
    void showMarks();
    /// Whether it keeps a picture: the page before all others does.
    void setFront(bool front);
    /// How often marks were made into pixels.
    [[nodiscard]] int rasterised() const { return rasterised_; }

    std::function<void(QMouseEvent*)> onLeft;        ///< press, move and release of the left button
    std::function<void(QPoint at)> onRight;          ///< a press of the right button
    std::function<void(QPoint at)> onDouble;         ///< a double click of the left one
    std::function<void(QPoint pixels)> onWheel;      ///< by how much to scroll
    std::function<void(double steps)> onZoom;        ///< the wheel with Ctrl
    std::function<bool(const QKeyEvent& key)> onKey; ///< whether it meant something

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QRect pagePixels() const;
    [[nodiscard]] QImage rasterise(const QRect& part);
    void keep(const QRect& seen);

    notation::SongDocument& song_;
    const Appearance& look_;
    int page_;
    double zoom_ = 1;
    QPoint corner_;
    bool front_ = false;
    QImage kept_;
    QRect keptPart_;   ///< of the page, in pixels of the device
    double scale_ = 1; ///< pixels of the device in a logical one
    int rasterised_ = 0;
};

} // namespace velmora
