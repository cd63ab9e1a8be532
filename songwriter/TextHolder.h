// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QWidget>

#include <functional>

class QLineEdit;

namespace velmora {

class PageView;
struct SongParts;

/// `T3`, the box in which a text is typed where it is to stand on the page, with its edit box `Text1`. A drag
/// of its edge, or Alt with the arrows, moves it. Enter commits, Esc leaves.
class TextHolder : public QWidget {
public:
    TextHolder(const SongParts& parts, PageView& page);

    /// Comes up at a point of the page. One that stands already stays.
    /// @param style of what is typed
    void openAt(notation::Point at, const notation::TextStyle& style, const QString& text = {});
    /// Away, and empty again.
    void leave();
    /// Where the text will begin, in pixels of the page.
    [[nodiscard]] notation::Point at() const { return at_; }
    void setStyle(const notation::TextStyle& style);
    [[nodiscard]] const notation::TextStyle& style() const { return style_; }
    /// Where it stands in the view, after that was scrolled or zoomed.
    void place();

    std::function<void(const QString& text)> onCommit;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPressed(int key, Qt::KeyboardModifiers modifiers);
    void moveBy(QPoint pixels);

    const SongParts& parts_;
    PageView& page_;
    QLineEdit* Text1_;
    notation::Point at_;
    notation::TextStyle style_;
    QPoint grip_;
};

} // namespace velmora
