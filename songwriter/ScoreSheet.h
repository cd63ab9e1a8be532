// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <QWidget>

#include <functional>

class QAbstractButton;
class QPlainTextEdit;
class QScrollBar;

namespace velmora {

class PageView;
class TextHolder;
struct SongParts;

/// A page of the Songwriter: a window within the frame.
///
/// | Control                    | The user sees                            | What it presses                |
/// |----------------------------|------------------------------------------|--------------------------------|
/// | `T1`                       | the caption, "... Page 1"                | a drag moves the sheet         |
/// | `imgTitleClose`            | "Exit"                                   | closes the page                |
/// | `Resizer`                  | its edges                                | a drag resizes it              |
/// | `Pic1`                     | the page; a drag moves the sheet too     | the right button: `T3`         |
/// | `HScroll1`, `VScroll1`     | scroll bars                              | move `Pic1` within the sheet   |
/// | `T3` with `Text1`          | a text that is being typed               | Enter puts it on the page      |
/// | `Text2`                    | the page's texts, a line each            | Enter stores them, Esc leaves  |
class ScoreSheet : public QWidget {
public:
    ScoreSheet(const SongParts& parts, int page, QWidget* parent);

    [[nodiscard]] int page() const { return page_; }
    /// The page has other marks, another size or another caption.
    void showPage();
    void setZoom(double zoom);
    /// Whether it stands before all others.
    void setFront(bool front);
    [[nodiscard]] bool isFront() const { return front_; }
    /// "Add Text", as the right button: `T3` at a point of the view, or in its middle.
    void addText(QPoint at);
    void addTextInTheMiddle();
    /// "Edit Text": the lines of the page's texts.
    void editTexts();
    /// What is typed has the font and size of the panel from now on.
    void setTextStyle(const notation::TextStyle& style);
    [[nodiscard]] const notation::TextStyle& textStyle() const { return style_; }
    void scrollTo(QPoint corner);
    [[nodiscard]] PageView& Pic1() const { return *view_; }
    /// Moved or resized by the user: nobody else moves it then.
    [[nodiscard]] bool isPlaced() const { return placed_; }
    void setPlaced(bool placed);
    /// Whether something stands in it that is on no page yet.
    [[nodiscard]] bool isTyping() const;

    std::function<void()> onRaise; ///< it was pressed
    std::function<void()> onClose;
    std::function<void()> onPlaced; ///< the user has moved it for the first time
    std::function<void()> onWhole;  ///< a double click on its title
    std::function<void(double steps)> onZoom;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    class CloseButton;
    void addLines();
    void layOut();
    void scrolled();
    void commit(const QString& text);
    void reopenText(QPoint at);
    void storeLines();
    void drag(const QMouseEvent& event);
    [[nodiscard]] bool viewKey(int key, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] Qt::Edges edgesAt(QPoint at) const;
    bool eventFilter(QObject* watched, QEvent* event) override;

    const SongParts& parts_;
    int page_;
    PageView* view_;
    QAbstractButton* imgTitleClose_;
    QScrollBar* HScroll1_;
    QScrollBar* VScroll1_;
    TextHolder* T3_;
    QPlainTextEdit* Text2_ = nullptr;
    notation::TextStyle style_;
    int edited_ = -1; ///< the text that `T3` has taken off the page, by its index; -1 for a new one
    bool front_ = false;
    bool placed_ = false;
    QPoint grip_;
    QRect gripped_;
    Qt::Edges edges_;
};

} // namespace velmora
