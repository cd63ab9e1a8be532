// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/TipPainter.h"

#include "shell/IconSet.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

constexpr int kTextPixels = 12;
constexpr int kPadding = 8;      // left of the icon, and between it and the text
constexpr int kBarePadding = 10; // left of a text without icon
constexpr int kAcross = 20;      // what a text's width grows by
constexpr int kTitleHeight = 13; // what the height grows by for a title
constexpr int kDown = 15;        // above and below the lines
constexpr double kShadowInk = 0.16;
const QColor kIconAccent(14, 92, 210);
const QColor kRecordRed(204, 28, 36);

/// The shape of a style, a row each.
struct Form {
    int radius;
    QPoint shadow;
    int stem;     ///< its height
    QPoint below; ///< from the mouse to the tip's corner, or to the end of its stem: clear of the pointer
    int above;    ///< the gap to the mouse where the tip stands over it
};
constexpr std::array<Form, 3> kForms{{
    {2, {3, 4}, 0, {4, 20}, 4},
    {8, {3, 4}, kTipStemHeight, {10, 14}, 2},
    {0, {3, 3}, 0, {4, 20}, 4},
}};
const Form& formOf(TipStyle style) {
    return kForms[static_cast<std::size_t>(style)];
}

bool hasTitle(const TipContent& content) {
    return !content.title.trimmed().isEmpty();
}
bool hasIcon(const TipContent& content) {
    return !content.icon.empty() || !content.picture.isNull();
}

int widest(const QStringList& lines, const QFont& font) {
    const QFontMetrics metrics(font);
    int width = 0;
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    return width;
}
/// Of the first line's height and the next ones' distance.
int heightOf(qsizetype lines, const QFont& font) {
    return lines == 0 ? 0 : static_cast<int>(lines - 1) * kTipLine + QFontMetrics(font).height();
}

/// The lines of a tip, and the room that they take.
struct Words {
    QStringList title;
    QStringList text;
    QSize size; ///< of all lines
    int ascent = 0;
};
Words wordsOf(const TipContent& content) {
    const QFont font = tipFont(content.family);
    const QFont bold = tipTitleFont(content.family);
    Words words;
    if (hasTitle(content))
        words.title = tipLines(content.title.trimmed(), bold);
    words.text = tipLines(content.text, font);
    words.size = {std::max(widest(words.title, bold), widest(words.text, font)),
                  heightOf(words.title.size() + words.text.size(), font)};
    words.ascent = QFontMetrics(font).ascent();
    return words;
}

/// Sizes and places within the body, whose corner is at 0,0.
TipLayout bodyOf(const TipContent& content) {
    const Words words = wordsOf(content);
    TipLayout layout;
    layout.style = content.style;
    layout.title = words.title;
    layout.text = words.text;
    const int icon = hasIcon(content) ? content.iconSize : 0;
    const int across = words.size.width() + kAcross + (icon > 0 ? icon + kPadding : 0);
    const int down = std::max(words.size.height() + kDown, icon > 0 ? icon + 2 * kPadding : 0);
    layout.body = {0, 0, across, down};
    const bool oneLine = words.title.size() + words.text.size() == 1;
    if (icon > 0)
        layout.icon = {kPadding, oneLine ? (down - icon) / 2 : kPadding + 1, icon, icon};
    layout.firstBaseline = {icon > 0 ? icon + 2 * kPadding : kBarePadding,
                            (down - words.size.height() + 1) / 2 + words.ascent};
    return layout;
}

void moveWithin(TipLayout& layout, QPoint by) {
    layout.body.translate(by);
    layout.icon.translate(by);
    layout.firstBaseline += by;
}

/// On which side of the mouse the tip stands.
struct Side {
    bool left = false;
    bool above = false;
};
Side sideOf(const TipLayout& layout, const Form& form, QSize whole, QPoint mouse, const QRect& screen) {
    const QPoint corner = mouse + form.below;
    Side side;
    // Only a balloon has a reason to change sides: a box is pushed.
    side.left = layout.style == TipStyle::Balloon && corner.x() + whole.width() > screen.right() + 1;
    side.above = corner.y() + whole.height() > screen.bottom() + 1;
    return side;
}

/// The balloon with its stem at the upper left.
QPainterPath balloon(const QRectF& whole, qreal stem, qreal radius, qreal line) {
    const QRectF body = QRectF(whole.left(), whole.top() + stem, whole.width(), whole.height() - stem)
                            .adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const qreal turn = 2 * radius;
    QPainterPath path(whole.topLeft() + QPointF(line / 2, line / 2));
    path.lineTo(body.left() + turn, body.top());
    path.lineTo(body.right() - radius, body.top());
    path.arcTo(QRectF(body.right() - turn, body.top(), turn, turn), 90, -90);
    path.arcTo(QRectF(body.right() - turn, body.bottom() - turn, turn, turn), 0, -90);
    path.arcTo(QRectF(body.left(), body.bottom() - turn, turn, turn), -90, -90);
    path.arcTo(QRectF(body.left(), body.top(), turn, turn), 180, -90);
    path.closeSubpath();
    return path;
}

/// A line is as wide as whole pixels of the device allow.
qreal lineWidth(qreal scale) {
    return std::max(1.0, std::floor(scale)) / scale;
}

/// On a whole pixel of the device.
qreal snapped(qreal value, qreal scale) {
    return std::round(value * scale) / scale;
}

void paintLines(QPainter& painter, const TipLayout& layout, const QString& family) {
    QPoint at = layout.firstBaseline;
    const auto lines = [&](const QStringList& texts, const QFont& font) {
        painter.setFont(font);
        for (const QString& line : texts) {
            painter.drawText(at, line);
            at.ry() += kTipLine;
        }
    };
    lines(layout.title, tipTitleFont(family));
    lines(layout.text, tipFont(family));
}

void paintPicture(QPainter& painter, const TipLayout& layout, const TipContent& content, const QColor& ink) {
    if (layout.icon.isEmpty())
        return;
    if (content.icon.empty())
        painter.drawPixmap(layout.icon, content.picture);
    else
        paintIcon(painter, layout.icon.topLeft(), content.icon, {ink, kIconAccent, kRecordRed},
                  layout.icon.width());
}

QLinearGradient shade(const QRectF& area, const TipColours& colours) {
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, colours.from);
    gradient.setColorAt(1, colours.to);
    return gradient;
}

} // namespace

QFont tipFont(const QString& family) {
    QFont font(family);
    font.setPixelSize(kTextPixels);
    return font;
}

QFont tipTitleFont(const QString& family) {
    QFont font = tipFont(family);
    font.setBold(true);
    return font;
}

QStringList tipLines(const QString& text, const QFont& font, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QStringList lines;
    for (const QString& paragraph : QString(text).remove(u'\r').trimmed().split(u'\n')) {
        QTextLayout layout(paragraph, font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            lines += paragraph.mid(line.textStart(), line.textLength()).trimmed();
        }
        layout.endLayout();
    }
    // Blank words are no line.
    return lines == QStringList(QString()) ? QStringList() : lines;
}

QSize tipSize(const TipContent& content) {
    const Words words = wordsOf(content);
    return {words.size.width() + kAcross,
            heightOf(words.text.size(), tipFont(content.family)) + (hasTitle(content) ? kTitleHeight : 0)};
}

TipLayout layoutTip(const TipContent& content, QPoint mouse, const QRect& screen) {
    TipLayout layout = bodyOf(content);
    const Form& form = formOf(content.style);
    layout.shadow = content.shadow ? form.shadow : QPoint();
    const QSize size = layout.body.size() + QSize(0, form.stem);
    const QSize whole = size + QSize(layout.shadow.x(), layout.shadow.y());
    const Side side = sideOf(layout, form, whole, mouse, screen);

    if (!side.above)
        moveWithin(layout, {0, form.stem});
    layout.stem = {side.left ? size.width() : 0, side.above ? size.height() : 0};
    // The stem's end, or the corner that stands in its place, goes to its place beside the mouse.
    const QPoint end = {side.left ? mouse.x() : mouse.x() + (side.above ? 0 : form.below.x()),
                        side.above ? mouse.y() - form.above : mouse.y() + form.below.y()};
    layout.window = {pushedOnto(screen, end - layout.stem, whole), whole};
    return layout;
}

QPoint pushedOnto(const QRect& screen, QPoint place, QSize size) {
    const QPoint last = screen.bottomRight() + QPoint(1 - size.width(), 1 - size.height());
    return {std::max(screen.left(), std::min(place.x(), last.x())),
            std::max(screen.top(), std::min(place.y(), last.y()))};
}

QPainterPath tipOutline(const TipLayout& layout, qreal scale) {
    const Form& form = formOf(layout.style);
    const qreal line = lineWidth(scale);
    const QSizeF size(snapped(layout.body.width(), scale), snapped(layout.body.height() + form.stem, scale));
    const QRectF whole(QPointF(0, 0), size);
    if (form.stem > 0) {
        QTransform turn;
        if (layout.stem.x() > 0)
            turn = QTransform(-1, 0, 0, 1, size.width(), 0);
        if (layout.stem.y() > 0)
            turn *= QTransform(1, 0, 0, -1, 0, size.height());
        return turn.map(balloon(whole, snapped(form.stem, scale), form.radius, line));
    }
    QPainterPath path;
    path.addRoundedRect(whole.adjusted(line / 2, line / 2, -line / 2, -line / 2), form.radius, form.radius);
    return path;
}

QBitmap tipMask(const TipLayout& layout) {
    QBitmap mask(layout.window.size());
    mask.fill(Qt::color0);
    QPainter painter(&mask);
    painter.setPen(QPen(Qt::color1, 1));
    painter.setBrush(Qt::color1);
    painter.drawPath(tipOutline(layout, 1));
    return mask;
}

void paintTip(QPainter& painter, const TipLayout& layout, const TipContent& content,
              const TipColours& colours) {
    const qreal scale = painter.device()->devicePixelRatio();
    const QPainterPath outline = tipOutline(layout, scale);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!layout.shadow.isNull()) {
        QColor shadow(Qt::black);
        shadow.setAlphaF(static_cast<float>(kShadowInk));
        painter.fillPath(outline.translated(layout.shadow), shadow);
    }
    painter.setPen(QPen(colours.edge, lineWidth(scale), Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(shade(outline.boundingRect(), colours));
    painter.drawPath(outline);
    painter.setPen(colours.ink);
    paintPicture(painter, layout, content, colours.ink);
    paintLines(painter, layout, content.family);
}

void paintTipBox(QPainter& painter, QSize size, const TipColours& colours) {
    const qreal scale = painter.device()->devicePixelRatio();
    const qreal line = lineWidth(scale);
    const QRectF whole(0, 0, snapped(size.width(), scale), snapped(size.height(), scale));
    painter.fillRect(whole, colours.edge);
    const QRectF inner = whole.adjusted(line, line, -line, -line);
    painter.fillRect(inner, shade(inner, colours));
}

} // namespace velmora
