// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/BarPainter.h"

#include "parts/PixelSurface.h"
#include "tableau/ColumnLines.h"
#include "tableau/NoteSpans.h"

#include <cstring>

namespace velmora {

namespace {
constexpr int kPolynoteTop = 1;
constexpr int kPolynoteBottom = 16;

void paintRuled(PixelSurface& surface, const TableauScene& scene) {
    if (surface.rect().isEmpty())
        return;
    const int width = surface.rect().width();
    const ColumnLines lines(
        width, surface.scale(), scene.view.ViewFirstColumn, [](int /*position*/) { return false; },
        [&](int position) { return isMultiple(position, scene.score.NotesPerMeasure); });
    QRgb* first = surface.row(0);
    std::fill_n(first, width, kPaper);
    writeLines(first, width, lines.cells, lines.thickness, kCellLine);
    writeLines(first, width, lines.measures, lines.thickness, kMeasureLine);
    for (int y = 1; y < surface.rect().height(); ++y)
        std::memcpy(surface.row(y), first, static_cast<std::size_t>(width) * sizeof(QRgb));
}

void fillColumn(PixelSurface& surface, const Score& score, int column, int top, int bottom) {
    const int x = column * kColumnWidth;
    surface.fillBox(x + 1, top, x + 11, bottom, toQRgb(colourOfChannel(score, score.ActiveChannel)));
}
} // namespace

void paintPolynoteBar(QImage& image, const TableauScene& scene) {
    PixelSurface surface(image);
    paintRuled(surface, scene);
    const int channel = scene.score.ActiveChannel;
    if (channel >= kMelodyChannels)
        return;
    forEachSpan(scene.score, scene.view, channel, [&](const NoteSpan& span) {
        if (span.hasHead && scene.score.Polyphonics.valueOr(channel + 1, span.column, 0) >= 1)
            fillColumn(surface, scene.score, span.column - scene.view.ViewFirstColumn, kPolynoteTop,
                       kPolynoteBottom);
    });
}

void markPolynoteColumn(QImage& image, const TableauScene& scene, int column) {
    PixelSurface surface(image);
    fillColumn(surface, scene.score, column, kPolynoteTop, kPolynoteBottom);
}

void paintIndicatorBar(QImage& image, const TableauScene& scene, std::optional<int> clickedColumn) {
    PixelSurface surface(image);
    paintRuled(surface, scene);
    if (clickedColumn)
        fillColumn(surface, scene.score, *clickedColumn, 0, surface.logicalHeight());
}

} // namespace velmora
