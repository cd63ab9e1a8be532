// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/BeatPainter.h"

#include "parts/PixelSurface.h"
#include "tableau/ColumnLines.h"
#include "tableau/NoteSpans.h"

#include <cstring>
#include <vector>

namespace velmora {

namespace {
constexpr int kFirstGridLine = kBeatRowHeight - 1; ///< the one at -1 is outside of every picture

void paintGrid(PixelSurface& surface, const TableauScene& scene) {
    const int width = surface.rect().width();
    // Unlike on `MusicBox`, a beat is a multiple of the meter itself.
    const ColumnLines lines(
        width, surface.scale(), scene.view.ViewFirstColumn,
        [&](int position) { return isMultiple(position, scene.setup.TxtMeter); },
        [&](int position) { return isMultiple(position, scene.score.NotesPerMeasure); });
    std::vector<QRgb> plain(static_cast<std::size_t>(width), kPaper);
    std::vector<QRgb> ruled(plain.size(), kCellLine);
    for (std::vector<QRgb>* row : {&plain, &ruled}) {
        writeLines(row->data(), width, lines.cells, lines.thickness, kCellLine);
        writeLines(row->data(), width, lines.beats, lines.thickness, kBeatLine);
        writeLines(row->data(), width, lines.measures, lines.thickness, kInk);
    }
    const std::size_t bytes = plain.size() * sizeof(QRgb);
    for (int y = 0; y < surface.rect().height(); ++y)
        std::memcpy(surface.row(y), plain.data(), bytes);
    for (int line = kFirstGridLine; surface.edge(line) < surface.rect().height(); line += kBeatRowHeight)
        for (int y = surface.edge(line);
             y < std::min(surface.edge(line) + surface.lineWidth(), surface.rect().height()); ++y)
            std::memcpy(surface.row(y), ruled.data(), bytes);
}
} // namespace

void BeatPainter::paint(QImage& image, const TableauScene& scene) {
    PixelSurface surface(image);
    paintGrid(surface, scene);
    const ViewState& view = scene.view;
    const int lastLine = surface.logicalHeight() - kBeatRowHeight;
    for (int channel = kFirstPercussion; channel < kUsedChannels; ++channel) {
        if (!isPainted(scene.score, channel))
            continue;
        const QRgb colour = toQRgb(colourOfChannel(scene.score, channel));
        forEachSpan(scene.score, view, channel, [&](const NoteSpan& span) {
            const int x = (span.column - view.ViewFirstColumn) * kColumnWidth;
            // What lies lower is drawn on the last line, so that no beat is lost off the bottom.
            const int y = std::min((span.row - view.ViewTopRow) * kBeatRowHeight, lastLine);
            surface.fillBox(x + 2, y + 2, x + (span.cells - 1) * kColumnWidth + 11, y + 9, colour);
        });
    }
}

} // namespace velmora
