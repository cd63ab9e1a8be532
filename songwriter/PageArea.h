// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

namespace velmora {

class ScoreSheet;
struct SongParts;

/// Where the sheets lie: like paper on a desk, the first before the others, of which the titles look out
/// behind it. A page has a sheet while it can be seen, or was moved, or is being typed on: of hundreds of
/// pages a few are widgets.
class PageArea : public QWidget {
public:
    PageArea(const SongParts& parts, QWidget* parent);

    /// Shows the pages that are open now, and what they hold.
    void showPages();
    /// Has the page before all others. One that isn't open changes nothing.
    void raisePage(int page);
    /// The page before all others; 0 without any.
    [[nodiscard]] int front() const { return front_; }
    /// The sheet of a page that has one now.
    [[nodiscard]] ScoreSheet* sheet(int page) const;
    [[nodiscard]] ScoreSheet* frontSheet() const { return sheet(front_); }
    /// The next open page, or the one before.
    void step(int by);

    void setZoom(double zoom);
    [[nodiscard]] double zoom() const { return zoom_; }
    /// A step up or down the row of zooms.
    void zoomBy(int steps);
    void setTextStyle(const notation::TextStyle& style);

    std::function<void()> onFront; ///< another page is before the others, or another zoom holds

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::vector<int> seenPages() const;
    ScoreSheet& makeSheet(int page);
    void makeSeen();
    void dropIfCovered(ScoreSheet& behind);
    void drop(ScoreSheet& sheet);
    [[nodiscard]] QRect placeOf(int order) const;
    void layOut();
    void showWhole(ScoreSheet& sheet);

    const SongParts& parts_;
    std::vector<int> pages_;            ///< that are open
    std::map<int, ScoreSheet*> sheets_; ///< those that are made, by page
    std::map<int, QPoint> corners_;     ///< where a page stood whose sheet has gone
    int front_ = 0;
    double zoom_ = 1;
    notation::TextStyle style_;
};

} // namespace velmora
