// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/NoteGlyphs.h"
#include "parts/Stamp.h"
#include "tableau/GridRows.h"
#include "tableau/TableauScene.h"

#include <QImage>
#include <QRect>

#include <map>
#include <vector>

namespace velmora {

struct NoteSpan;
class PixelSurface;

/// Paints `MusicBox`. It keeps the grid and the shapes of notes, and remembers where it painted: the next
/// painting of the same picture renews only that.
///
/// A picture that someone else has written to since is painted wholly anew, which is slower and never wrong.
/// Who draws over the picture through `drawOver` says where, and the next painting stays fast.
class MelodyPainter {
public:
    MelodyPainter() = default;
    MelodyPainter(const MelodyPainter&) = delete;
    MelodyPainter& operator=(const MelodyPainter&) = delete;

    /// `DrawNoteArray`.
    /// @param surface Format_RGB32, of logical size times devicePixelRatio
    void paint(QImage& surface, const TableauScene& scene);

    /// Runs @p draw, which writes into the picture within @p rect, in logical pixels.
    template<typename Draw>
    void drawOver(QImage& surface, const QRect& rect, Draw draw) {
        const bool known = surface.cacheKey() == key_;
        draw();
        if (known)
            noteTouched(surface, rect);
    }

private:
    void noteTouched(const QImage& surface, const QRect& rect);
    void restoreGrid(PixelSurface& surface, const TableauScene& scene, bool ownPicture);
    void paintChannel(PixelSurface& surface, const TableauScene& scene, int channel);
    void paintNote(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span, QPoint at,
                   QRgb colour);
    void DrawRealNote(PixelSurface& surface, const TableauScene& scene, const NoteSpan& span, QPoint at);
    void paintSelection(PixelSurface& surface, const ViewState& view);
    void paintPlayMark(PixelSurface& surface, const ViewState& view);
    void put(PixelSurface& surface, const Stamp& stamp, QPoint logical);
    [[nodiscard]] const Stamp& ball(QRgb colour, qreal scale);
    [[nodiscard]] const Stamp& ring(QRgb colour, qreal scale);

    GridRows grid_;
    NoteGlyphs glyphs_;
    std::map<QRgb, Stamp> balls_, rings_;
    qreal stampScale_ = 0;
    int GlyphDrop_ = 0; ///< of the last note, without what its accidental adds

    // Where the picture differs from the grid, in pixels of the device.
    struct PutStamp {
        const Stamp* stamp;
        QPoint at;
    };
    std::vector<QRect> boxes_;
    std::vector<PutStamp> stamps_;

    qint64 key_ = -1; ///< of the picture as this left it
};

} // namespace velmora
