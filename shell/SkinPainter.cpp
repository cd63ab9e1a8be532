// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinPainter.h"

#include "shell/PixelGrid.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

namespace velmora {

namespace {
constexpr Rgb kBevelLight{236, 234, 228};
constexpr Rgb kBevelShade{136, 132, 126};
constexpr Rgb kBevelDark{64, 64, 64};

QPainterPath rounded(const QRectF& rect, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

/// Bars of the second tone, each with its place and width, along a tile 24 long.
constexpr std::array<std::array<int, 2>, 6> kBrushMarks{{{1, 1}, {4, 2}, {9, 1}, {13, 3}, {19, 1}, {22, 1}}};

constexpr int tileSize(PanelPattern pattern) {
    switch (pattern) {
    case PanelPattern::Dimple:
        return 8;
    case PanelPattern::BrushedDown:
    case PanelPattern::BrushedAcross:
        return 24;
    case PanelPattern::Rivets:
        return 64;
    default:
        return 4;
    }
}

void paintRivets(QPainter& painter, const Skin& skin) {
    painter.setRenderHint(QPainter::Antialiasing);
    QColor shade = toQColor(mix(skin.panel.to, kBlack, 0.12));
    shade.setAlphaF(0.55F);
    for (const int x : {16, 48})
        for (const int y : {16, 48}) {
            painter.setBrush(shade);
            painter.drawEllipse(QPointF(x, y), 2, 2);
            painter.setBrush(toQColor(mix(skin.panel.from, kWhite, 0.35)));
            painter.drawEllipse(QPointF(x - 0.5, y - 0.5), 1.2, 1.2);
        }
}

void paintPattern(QPainter& painter, const Skin& skin, int size) {
    const QColor second = toQColor(skin.panel.to);
    painter.setPen(Qt::NoPen);
    switch (skin.pattern) {
    case PanelPattern::Pinstripe:
        painter.fillRect(0, 0, size, 2, second);
        break;
    case PanelPattern::Dimple:
    case PanelPattern::Rivets:
        painter.fillRect(0, 0, size / 2, size / 2, second);
        painter.fillRect(size / 2, size / 2, size / 2, size / 2, second);
        if (skin.pattern == PanelPattern::Rivets)
            paintRivets(painter, skin);
        break;
    case PanelPattern::BrushedDown:
        for (const auto& [place, width] : kBrushMarks)
            painter.fillRect(place, 0, width, size, second);
        break;
    case PanelPattern::BrushedAcross:
        for (const auto& [place, width] : kBrushMarks)
            painter.fillRect(0, place, size, width, second);
        break;
    case PanelPattern::Weave:
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(second, 1.4));
        for (const int shift : {-4, 0, 4})
            painter.drawLine(QPointF(shift - 1, 5), QPointF(shift + 5, -1));
        break;
    case PanelPattern::Plain:
        break;
    }
}

QPixmap panelTile(const Skin& skin, qreal scale) {
    const QString key = QStringLiteral("panel/%1/%2")
                            .arg(QLatin1String(skin.caption.data(), static_cast<int>(skin.caption.size())))
                            .arg(scale);
    QPixmap tile;
    if (QPixmapCache::find(key, &tile))
        return tile;
    const int size = tileSize(skin.pattern);
    // Where a tile is no whole number of pixels, as many stand side by side as make one.
    int times = 1;
    while (times < 8 && std::abs(size * times * scale - std::round(size * times * scale)) > 0.001)
        ++times;
    const int pixels = static_cast<int>(std::round(size * times * scale));
    tile = QPixmap(pixels, pixels);
    tile.setDevicePixelRatio(scale);
    tile.fill(toQColor(skin.panel.from));
    QPainter painter(&tile);
    for (int x = 0; x < times; ++x)
        for (int y = 0; y < times; ++y) {
            painter.save();
            painter.translate(x * size, y * size);
            painter.setClipRect(0, 0, size, size);
            paintPattern(painter, skin, size);
            painter.restore();
        }
    painter.end();
    QPixmapCache::insert(key, tile);
    return tile;
}

QFont fontOf(const QStringList& families, int pixels, bool bold) {
    QFont font;
    font.setFamilies(families);
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}
} // namespace

// Each family is followed by free ones of the same, or nearly the same, widths.
QFont textFont(int pixels, bool bold) {
    static const QStringList families{"Arial", "Liberation Sans", "Arimo", "DejaVu Sans"};
    return fontOf(families, pixels, bold);
}

QFont titleFont(int pixels) {
    static const QStringList families{"Tahoma", "Noto Sans", "DejaVu Sans", "Liberation Sans"};
    return fontOf(families, pixels, true);
}

void fillRounded(QPainter& painter, const QRectF& rect, qreal radius, const QBrush& fill,
                 const QColor& edge) {
    const PixelGrid grid(painter);
    QRectF body = grid.rect(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, radius > 0);
    if (edge.isValid()) {
        painter.fillPath(rounded(body, radius), edge);
        body.adjust(grid.line(), grid.line(), -grid.line(), -grid.line());
        radius = std::max(0.0, radius - grid.line());
    }
    painter.fillPath(rounded(body, radius), fill);
    painter.restore();
}

void strokeRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& edge, int lines) {
    const PixelGrid grid(painter);
    const qreal width = grid.line() * lines;
    const QRectF outer = grid.rect(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, radius > 0);
    QPainterPath ring = rounded(outer, radius); // the inner one is a hole in it
    ring.addPath(rounded(outer.adjusted(width, width, -width, -width), std::max(0.0, radius - width)));
    painter.fillPath(ring, edge);
    painter.restore();
}

void horizontalLine(QPainter& painter, qreal x, qreal y, qreal width, const QColor& colour) {
    const PixelGrid grid(painter);
    painter.fillRect(
        QRectF(QPointF(grid.x(x), grid.y(y)), QPointF(grid.x(x + width), grid.y(y) + grid.line())), colour);
}

void verticalLine(QPainter& painter, qreal x, qreal y, qreal height, const QColor& colour) {
    const PixelGrid grid(painter);
    painter.fillRect(
        QRectF(QPointF(grid.x(x), grid.y(y)), QPointF(grid.x(x) + grid.line(), grid.y(y + height))), colour);
}

void paintBevel(QPainter& painter, const QRectF& rect, bool sunk) {
    const qreal line = PixelGrid(painter).line();
    const auto [upperOuter, lowerOuter] =
        sunk ? std::pair(kBevelShade, kWhite) : std::pair(kWhite, kBevelDark);
    const auto [upperInner, lowerInner] =
        sunk ? std::pair(kBevelDark, kBevelLight) : std::pair(kBevelLight, kBevelShade);
    const auto corner = [&](const QRectF& r, Rgb upper, Rgb lower) {
        horizontalLine(painter, r.left(), r.top(), r.width(), toQColor(upper));
        verticalLine(painter, r.left(), r.top(), r.height(), toQColor(upper));
        horizontalLine(painter, r.left(), r.bottom() - line, r.width(), toQColor(lower));
        verticalLine(painter, r.right() - line, r.top(), r.height(), toQColor(lower));
    };
    corner(rect.adjusted(line, line, -line, -line), upperInner, lowerInner);
    corner(rect, upperOuter, lowerOuter);
}

QBrush downwards(const RgbPair& pair, const QRectF& rect) {
    if (pair.from == pair.to)
        return toQColor(pair.from);
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, toQColor(pair.from));
    gradient.setColorAt(1, toQColor(pair.to));
    return gradient;
}

void paintPanel(QPainter& painter, const Skin& skin, const QRectF& rect) {
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.drawTiledPixmap(rect, panelTile(skin, painter.device()->devicePixelRatio()), rect.topLeft());
    painter.restore();
}

} // namespace velmora
