// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QWidget>

#include <functional>
#include <map>

namespace velmora {

class ScoreSheet;
struct SongParts;

/// Where the sheets lie: like paper on a desk, the first before the others, of which the titles look out
/// behind it.
class PageArea : public QWidget {
public:
    PageArea(const SongParts& parts, QWidget* parent);

    /// Makes sheets for pages that have none, and shows what they hold now.
    void showPages();
    /// Has the page before all others. One that isn't open changes nothing.
    void raisePage(int page);
    /// The page before all others; 0 without any.
    [[nodiscard]] int front() const { return front_; }
    [[nodiscard]] ScoreSheet* sheet(int page) const;
    [[nodiscard]] ScoreSheet* frontSheet() const { return sheet(front_); }
    /// The next open page, or the one before.
    void step(int by);

    void setZoom(double zoom);
    [[nodiscard]] double zoom() const { return zoom_; }
    /// A step up or down the row of zooms.
    void zoomBy(int steps);
    void setTextStyle(const notation::TextStyle& style);
    /// Pages are put back where they lie at first, the first before all others.
    void tidy();

    std::function<void()> onFront; ///< another page is before the others, or another zoom holds

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] ScoreSheet* makeSheet(int page);
    [[nodiscard]] QRect placeOf(int order) const;
    void layOut();
    void showWhole(ScoreSheet& sheet);

    const SongParts& parts_;
    std::map<int, ScoreSheet*> sheets_; ///< by page
    int front_ = 0;
    double zoom_ = 1;
    notation::TextStyle style_;
};

} // namespace velmora
