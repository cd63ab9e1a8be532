// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QBitmap>
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>

class QPainter;
class QPainterPath;

/// Tips as pictures: where everything stands, and how it is drawn. All measures are logical pixels.
namespace velmora {

enum class TipStyle : std::uint8_t {
    Rectangular, ///< a box
    Balloon,     ///< with a stem towards the mouse
    Plain        ///< square, of one colour
};

/// What is to be shown, and in which form.
struct TipContent {
    QString title;
    QString text;
    std::string icon; ///< a name of the icon set; where blank, `picture` stands in its place
    QPixmap picture;
    TipStyle style = TipStyle::Rectangular;
    QString family = QStringLiteral("Arial");
    int iconSize = 16;
    bool shadow = true;
};

struct TipColours {
    QColor ink;
    QColor from; ///< at the top of the body
    QColor to;   ///< at its foot
    QColor edge;
};

/// A tip laid out. `window` is on the screen; the rest is within the window.
struct TipLayout {
    TipStyle style = TipStyle::Rectangular;
    QRect window; ///< with stem and shadow
    QRect body;
    QPoint stem;       ///< the end of the balloon's stem
    QPoint shadow;     ///< how far it is thrown; null for none
    QRect icon;        ///< empty for none
    QStringList title; ///< lines
    QStringList text;
    QPoint firstBaseline; ///< of the lines, the title's first
};

inline constexpr int kTipWrap = 320; ///< the widest line of text
inline constexpr int kTipLine = 17;  ///< from one baseline to the next
inline constexpr int kTipStemHeight = 14;

/// The fonts of a tip's lines.
[[nodiscard]] QFont tipFont(const QString& family);
[[nodiscard]] QFont tipTitleFont(const QString& family);

/// The text in lines of at most @p width; breaks within a word only where it is wider than a line.
[[nodiscard]] QStringList tipLines(const QString& text, const QFont& font, int width = kTipWrap);

/// Text height and 13 more for a title; the wider text and 20.
[[nodiscard]] QSize tipSize(const TipContent& content);

/// Lays it out by the mouse, wholly on @p screen if it fits there, and clear of the pointer.
[[nodiscard]] TipLayout layoutTip(const TipContent& content, QPoint mouse, const QRect& screen);

/// The place nearest to @p place where all of @p size is on the screen; where it is too large, its beginning.
[[nodiscard]] QPoint pushedOnto(const QRect& screen, QPoint place, QSize size);

/// Body and stem, with every line's middle where it falls on whole pixels of a device of @p scale.
[[nodiscard]] QPainterPath tipOutline(const TipLayout& layout, qreal scale);

/// Which pixels are the tip's where nothing can shine through: body and stem without shadow.
[[nodiscard]] QBitmap tipMask(const TipLayout& layout);

void paintTip(QPainter& painter, const TipLayout& layout, const TipContent& content,
              const TipColours& colours);

/// A box of @p size as the rectangular tip has it, with square corners and no shadow.
void paintTipBox(QPainter& painter, QSize size, const TipColours& colours);

} // namespace velmora
