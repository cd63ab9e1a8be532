// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MelodyPainter.h"

#include "tableau/BallStamps.h"
#include "tableau/GuidePainter.h"
#include "tableau/NoteSpans.h"
#include "tableau/PixelSurface.h"
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

struct Place {
    int x0, y0, x1;
};
Place placeOf(const NoteSpan& span, const ViewState& view) {
    const int x0 = (span.column - view.ViewFirstColumn) * kColumnWidth;
    return {x0, (span.row - view.ViewTopRow) * view.Line_Height, x0 + (span.cells - 1) * kColumnWidth};
}
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
    dirty_.push_back(QRect(from, to)); // a pixel more to the right and below, for lines that are rounded up
    key_ = surface.cacheKey();
}

void MelodyPainter::restoreGrid(PixelSurface& surface, const TableauScene& scene, bool ownPicture) {
    const bool another = grid_.renew(gridLook(surface, scene));
    if (another || !ownPicture || dirty_.size() > kManyPlaces)
        grid_.restore(surface, surface.rect());
    else
        for (const QRect& rect : dirty_)
            grid_.restore(surface, rect);
    dirty_.clear();
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
        const Place at = placeOf(span, scene.view);
        if (at.y0 > height + kReach || at.y0 < -kReach)
            return;
        if (span.hasHead && scene.score.Polyphonics.valueOr(channel + 1, span.column, 0) >= 1)
            dirty_.push_back(
                surface.put(ring(colour, surface.scale()), surface.edge(at.x0), surface.edge(at.y0)));
        if (scene.view.Notationstyle == 0)
            paintColourful(surface, scene, span, colour);
        else
            paintTraditional(surface, scene, span, colour);
    });
}

void MelodyPainter::paintColourful(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span,
                                   QRgb colour) {
    const Place at = placeOf(span, scene.view);
    dirty_.push_back(
        surface.fillBox(at.x0 + 2, at.y0 + kColourBar.top, at.x1 + 11, at.y0 + kColourBar.bottom, colour));
    if (span.hasHead)
        dirty_.push_back(
            surface.put(ball(colour, surface.scale()), surface.edge(at.x0), surface.edge(at.y0)));
}

void MelodyPainter::paintTraditional(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span,
                                     QRgb colour) {
    const Place at = placeOf(span, scene.view);
    dirty_.push_back(surface.fillBox(at.x0 + 2, at.y0 + kNotationBar.top, at.x1 + 11,
                                     at.y0 + kNotationBar.bottom, colour));
    if (span.hasHead)
        DrawRealNote(surface, scene, span, at.x0, at.y0);
}

void MelodyPainter::DrawRealNote(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span,
                                 int x, int y) {
    const int measure = scene.score.NotesPerMeasure;
    GlyphDrop_ = glyphDrop(measure, span.cells).value_or(GlyphDrop_);
    const std::optional<NoteValue> value = noteValue(measure, span.cells);
    if (!value)
        return;
    const std::optional<Accidental> accidental = accidentalOf(span.row);
    const int headX = x + headOffset(GlyphDrop_, accidental);
    const auto put = [&](const Stamp& stamp) {
        dirty_.push_back(surface.put(stamp, surface.edge(headX), surface.edge(y + kHeadInRow)));
    };
    put(glyphs_.note({*value, stemOf(y + kHeadInRow, scene.view, scene.setup.ChBass)}, surface.scale()));
    if (accidental && scene.view.Accidentals)
        put(glyphs_.accidental(*accidental, surface.scale()));
}

void MelodyPainter::paintSelection(PixelSurface& surface, const ViewState& view) {
    if (view.SelectStart < 0 || view.SelectStart > view.ViewLastColumn ||
        view.SelectEnd < view.ViewFirstColumn)
        return;
    const int left = std::max(0, (view.SelectStart - view.ViewFirstColumn) * kColumnWidth);
    const int right = view.SelectEnd > view.ViewLastColumn
                          ? surface.logicalWidth() - 1
                          : (view.SelectEnd - view.ViewFirstColumn) * kColumnWidth;
    dirty_.push_back(surface.blendStrip(left, right - left, kBlueBox));
}

void MelodyPainter::paintPlayMark(PixelSurface& surface, const ViewState& view) {
    if (view.PlayMark < view.ViewFirstColumn || view.PlayMark > view.ViewLastColumn)
        return;
    const int x = (view.PlayMark - view.ViewFirstColumn) * kColumnWidth - 2;
    if (x > 0 && view.PlayMark > 0)
        dirty_.push_back(surface.blendStrip(x, kMarkWidth, kRedBox));
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
