// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MelodyPainter.h"

#include "parts/PixelSurface.h"
#include "tableau/BallStamps.h"
#include "tableau/GuidePainter.h"
#include "tableau/NoteSpans.h"
#include "tableau/TraditionalNote.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr QRgb kBlueBox = qRgb(0, 0, 255);
constexpr QRgb kRedBox = qRgb(255, 0, 0);
constexpr int kMarkWidth = 3;
constexpr int kReach = 32; ///< no part of a note is further from its row
/// With more places than these to renew, all of it is renewed.
constexpr std::size_t kManyPlaces = 20000;

/// Bars within their row; they begin 2 pixels into the first cell and end with the last.
struct BarForm {
    int top;
    int bottom;
};
constexpr BarForm kColourBar{4, 7};
constexpr BarForm kNotationBar{5, 6};
} // namespace

void MelodyPainter::paint(QImage& image, const TableauScene& scene) {
    const bool ownPicture = image.cacheKey() == key_;
    PixelSurface surface(image);
    restoreGrid(surface, scene, ownPicture);
    const int active = scene.score.ActiveChannel;
    for (int channel = 0; channel < kMelodyChannels; ++channel)
        if (channel != active)
            paintChannel(surface, scene, channel);
    if (active >= 0 && active < kMelodyChannels) // last, so that it lies on top
        paintChannel(surface, scene, active);
    paintSelection(surface, scene.view);
    paintPlayMark(surface, scene.view);
    key_ = image.cacheKey();
}

void MelodyPainter::noteTouched(const QImage& surface, const QRect& rect) {
    const qreal scale = surface.devicePixelRatio();
    const QPoint from(deviceEdge(rect.left(), scale), deviceEdge(rect.top(), scale));
    const QPoint to(deviceEdge(rect.right() + 1.0, scale), deviceEdge(rect.bottom() + 1.0, scale));
    boxes_.push_back(QRect(from, to)); // a pixel more to the right and below, for lines that are rounded up
    key_ = surface.cacheKey();
}

void MelodyPainter::restoreGrid(PixelSurface& surface, const TableauScene& scene, bool ownPicture) {
    const bool another = grid_.renew(gridLook(surface, scene));
    if (another || !ownPicture || boxes_.size() > kManyPlaces) {
        grid_.restore(surface, surface.rect());
    } else {
        for (const QRect& box : boxes_)
            grid_.restore(surface, box);
        for (const PutStamp& put : stamps_)
            grid_.restore(surface, *put.stamp, put.at);
    }
    boxes_.clear();
    stamps_.clear();
    if (stampScale_ != surface.scale()) {
        stampScale_ = surface.scale();
        balls_.clear();
        rings_.clear();
    }
}

void MelodyPainter::paintChannel(PixelSurface& surface, const TableauScene& scene, int channel) {
    if (!isPainted(scene.score, channel))
        return;
    const QRgb colour = toQRgb(colourOfChannel(scene.score, channel));
    const int height = surface.logicalHeight();
    forEachSpan(scene.score, scene.view, channel, [&](const NoteSpan& span) {
        const int y = (span.row - scene.view.ViewTopRow) * scene.view.Line_Height;
        if (y > height + kReach || y < -kReach)
            return;
        const QPoint at((span.column - scene.view.ViewFirstColumn) * kColumnWidth, y);
        if (span.hasHead && scene.score.Polyphonics.valueOr(channel + 1, span.column, 0) >= 1)
            put(surface, ring(colour, surface.scale()), at);
        paintNote(surface, scene, span, at, colour);
    });
}

void MelodyPainter::paintNote(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span,
                              QPoint at, QRgb colour) {
    const bool colourful = scene.view.Notationstyle == 0;
    const BarForm& bar = colourful ? kColourBar : kNotationBar;
    const int end = at.x() + span.cells * kColumnWidth - 1;
    boxes_.push_back(surface.fillBox(at.x() + 2, at.y() + bar.top, end, at.y() + bar.bottom, colour));
    if (!span.hasHead)
        return;
    if (colourful)
        put(surface, ball(colour, surface.scale()), at);
    else
        DrawRealNote(surface, scene, span, at);
}

void MelodyPainter::DrawRealNote(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span,
                                 QPoint at) {
    const int measure = scene.score.NotesPerMeasure;
    GlyphDrop_ = glyphDrop(measure, span.cells).value_or(GlyphDrop_);
    const std::optional<NoteValue> value = noteValue(measure, span.cells);
    if (!value)
        return;
    const std::optional<Accidental> accidental = accidentalOf(span.row);
    const QPoint head = at + QPoint(headOffset(GlyphDrop_, accidental), kHeadInRow);
    const Stem stem = stemOf(head.y(), scene.view, scene.setup.ChBass);
    put(surface, glyphs_.note({*value, stem}, surface.scale()), head);
    if (accidental && scene.view.Accidentals)
        put(surface, glyphs_.accidental(*accidental, surface.scale()), head);
}

void MelodyPainter::paintSelection(PixelSurface& surface, const ViewState& view) {
    if (view.SelectStart < 0 || view.SelectStart > view.ViewLastColumn ||
        view.SelectEnd < view.ViewFirstColumn)
        return;
    const int left = std::max(0, (view.SelectStart - view.ViewFirstColumn) * kColumnWidth);
    const int right = view.SelectEnd > view.ViewLastColumn
                          ? surface.logicalWidth() - 1
                          : (view.SelectEnd - view.ViewFirstColumn) * kColumnWidth;
    boxes_.push_back(surface.blendStrip(left, right - left, kBlueBox));
}

void MelodyPainter::paintPlayMark(PixelSurface& surface, const ViewState& view) {
    if (view.PlayMark < view.ViewFirstColumn || view.PlayMark > view.ViewLastColumn)
        return;
    const int x = (view.PlayMark - view.ViewFirstColumn) * kColumnWidth - 2;
    if (x > 0 && view.PlayMark > 0)
        boxes_.push_back(surface.blendStrip(x, kMarkWidth, kRedBox));
}

void MelodyPainter::put(PixelSurface& surface, const Stamp& stamp, QPoint logical) {
    const QPoint at(surface.edge(logical.x()), surface.edge(logical.y()));
    surface.put(stamp, at.x(), at.y());
    stamps_.push_back({&stamp, at});
}

const Stamp& MelodyPainter::ball(QRgb colour, qreal scale) {
    const auto found = balls_.find(colour);
    return found != balls_.end() ? found->second
                                 : balls_.emplace(colour, ballStamp(colour, scale)).first->second;
}

const Stamp& MelodyPainter::ring(QRgb colour, qreal scale) {
    const auto found = rings_.find(colour);
    return found != rings_.end() ? found->second
                                 : rings_.emplace(colour, ringStamp(colour, scale)).first->second;
}

} // namespace velmora
