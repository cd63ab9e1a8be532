// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MelodyInk.h"

#include "parts/PixelSurface.h"
#include "tableau/NoteSpans.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kMarkWidth = 3;
} // namespace

InkStrip InkStrip::within(int column) const {
    const int edge = column * kColumnWidth;
    const int from = std::max(left, edge);
    const int to = std::min(left + width, edge + kColumnWidth);
    return to > from ? InkStrip{from - edge, to - from} : InkStrip{};
}

void MelodyInk::take(const TableauScene& scene, const GridLook& of) {
    look = of;
    colourful = scene.view.Notationstyle == 0;
    accidentals = scene.view.Accidentals;
    headsWhole = scene.manners.showsHeadsWhole;
    columns = std::max(0, scene.view.ViewLastColumn - scene.view.ViewFirstColumn + 1);
    cells.assign(static_cast<std::size_t>(columns) * kMelodyChannels, {});
    auto place = order.begin();
    const int active = scene.score.ActiveChannel;
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        colours[static_cast<std::size_t>(channel)] = toQRgb(colourOfChannel(scene.score, channel));
        if (channel != active)
            *place++ = channel;
        takeChannel(scene, channel);
    }
    if (place != order.end())
        *place = active; // so that it lies on top
    takeStrips(scene.view);
}

void MelodyInk::takeChannel(const TableauScene& scene, int channel) {
    if (!isPainted(scene.score, channel))
        return;
    forEachSpan(scene.score, scene.view, channel, [&](const NoteSpan& span) {
        const int column = span.column - look.firstColumn;
        InkCell* cell = &cells[index(channel, column)];
        std::fill_n(cell, span.cells, InkCell{.row = static_cast<std::int16_t>(span.row)});
        cell->begins = true;
        if (!span.hasHead)
            return;
        // How long a note is decides how its head is written, but not how a ball looks.
        cell->head = static_cast<std::int16_t>(colourful ? 1 : span.cells);
        cell->chord = scene.score.Polyphonics.valueOr(channel + 1, span.column, 0) >= 1;
    });
}

void MelodyInk::takeStrips(const ViewState& view) {
    selection = playMark = {};
    const int first = view.ViewFirstColumn;
    if (view.SelectStart >= 0 && view.SelectStart <= view.ViewLastColumn && view.SelectEnd >= first) {
        const int left = std::max(0, (view.SelectStart - first) * kColumnWidth);
        const int right = view.SelectEnd > view.ViewLastColumn ? look.logicalWidth() - 1
                                                               : (view.SelectEnd - first) * kColumnWidth;
        selection = {left, std::max(0, right - left)};
    }
    const int mark = (view.PlayMark - first) * kColumnWidth - 2;
    if (view.PlayMark >= first && view.PlayMark <= view.ViewLastColumn && mark > 0 && view.PlayMark > 0)
        playMark = {mark, kMarkWidth};
}

bool MelodyInk::paintsAs(const MelodyInk& other) const {
    GridLook moved = other.look;
    moved.firstColumn = look.firstColumn;
    moved.topRow = look.topRow;
    moved.bottomRow = look.bottomRow;
    return look == moved && colourful == other.colourful && accidentals == other.accidentals &&
           headsWhole == other.headsWhole && colours == other.colours && order == other.order;
}

} // namespace velmora
