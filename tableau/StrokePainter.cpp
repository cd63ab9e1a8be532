// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/StrokePainter.h"

#include "parts/PixelSurface.h"
#include "tableau/BallStamps.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr QRgb kSelectEdge = qRgb(0, 0, 255);
constexpr QRgb kPlayLine = qRgb(255, 192, 192);
constexpr QRgb kBoldPlayLine = qRgb(176, 0, 80);

/// The box of a band within its row; it begins 1 pixel into its first cell and ends 1 before the next.
struct BandForm {
    int top;
    int bottom;
};
constexpr BandForm kColourBand{4, 7};
constexpr BandForm kNotationBand{5, 6};
constexpr BandForm kBeatBand{2, 10};

void putBall(PixelSurface& surface, int row, int column, int rowHeight) {
    surface.put(ballStamp(qRgb(0, 0, 0), surface.scale()), surface.edge(column * double{kColumnWidth}),
                surface.edge(row * static_cast<double>(rowHeight)));
}
} // namespace

void paintBand(QImage& surface, const TableauScene& scene, bool percussion, int row, int fromColumn,
               int toColumn) {
    const bool colourful = scene.view.Notationstyle == 0;
    const BandForm& form = percussion ? kBeatBand : colourful ? kColourBand : kNotationBand;
    const int rowHeight = percussion ? kBeatRowHeight : scene.view.Line_Height;
    const int y = row * rowHeight;
    PixelSurface pixels(surface);
    pixels.fillBox(fromColumn * kColumnWidth + 1, y + form.top, toColumn * kColumnWidth + 10, y + form.bottom,
                   toQRgb(colourOfChannel(scene.score, scene.score.ActiveChannel)));
    if (!percussion && colourful)
        putBall(pixels, row, fromColumn, rowHeight);
}

void paintPressBall(QImage& surface, int row, int column, int rowHeight) {
    PixelSurface pixels(surface);
    putBall(pixels, row, column, rowHeight);
}

void paintSelectEdge(QImage& surface, int column) {
    PixelSurface pixels(surface);
    const int x = column * kColumnWidth;
    pixels.fillBox(x, 0, x + 3, pixels.logicalHeight(), kSelectEdge);
}

void paintSelectDrag(QImage& surface, int fromColumn, int toColumn, const QColor& highlight) {
    PixelSurface pixels(surface);
    const auto [left, right] = std::minmax({fromColumn * kColumnWidth, toColumn * kColumnWidth + 3});
    pixels.fillBox(left, 0, right, pixels.logicalHeight(), highlight.rgb());
}

void blendStrip(QImage& surface, int x, int width, const QColor& source) {
    PixelSurface(surface).blendStrip(x, width, source.rgb());
}

void paintPlayLine(QImage& surface, int column, PlayLine how) {
    PixelSurface pixels(surface);
    const int x = column * kColumnWidth;
    if (how == PlayLine::Bold)
        pixels.fillBox(x, 0, x + 1, pixels.logicalHeight(), kBoldPlayLine);
    else
        pixels.verticalLine(x, kPlayLine);
}

} // namespace velmora
