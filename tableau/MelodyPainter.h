// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/NoteGlyphs.h"
#include "parts/Stamp.h"
#include "tableau/GridRows.h"
#include "tableau/MelodyInk.h"
#include "tableau/TableauScene.h"

#include <QImage>
#include <QRect>

#include <map>
#include <optional>
#include <vector>

namespace velmora {

class ColumnMarks;
class PixelSurface;

/// Paints `MusicBox`. It keeps the grid and the shapes of notes, and remembers what it painted: the next
/// painting of the same picture moves what has been scrolled, and paints no more than what differs.
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
    class Brush;
    class Eraser;
    class Reach;
    /// Which parts of a note are laid; a head has its ring.
    enum class Part : std::uint8_t { Bar, Head, Whole };

    void noteTouched(const QImage& surface, const QRect& rect);
    void useScale(qreal scale);
    /// Where the picture, moved by so many pixels of the device, is not what it is to be; nothing if that is
    /// most of it.
    [[nodiscard]] std::optional<std::vector<QRect>> changedParts(const PixelSurface& surface, QPoint by);
    void markChangedNotes(ColumnMarks& marks, int columnsBy);
    void markSeams(ColumnMarks& marks, int columnsBy, bool rowsMove) const;
    bool paintMoved(PixelSurface& surface);
    void paintWithin(PixelSurface& surface, const QRect& part);
    void paintInk(PixelSurface& surface);
    void takeInkOff(PixelSurface& surface);

    /// Gives @p sink the parts of a note from the lowest to the topmost.
    template<typename Sink>
    void lay(const MelodyInk& ink, const InkNote& note, Sink& sink, Part part = Part::Whole);
    template<typename Sink>
    void DrawRealNote(const MelodyInk& ink, const InkNote& note, QPoint at, Sink& sink);
    void keepGlyphDrop();
    [[nodiscard]] const Stamp& ball(QRgb colour, qreal scale);
    [[nodiscard]] const Stamp& ring(QRgb colour, qreal scale);

    GridRows grid_;
    NoteGlyphs glyphs_;
    std::map<QRgb, Stamp> balls_, rings_;
    qreal stampScale_ = 0;
    int GlyphDrop_ = 0; ///< of the last note, without what its accidental adds

    std::vector<InkNote> heads_; ///< of a painting, to be laid over its bars
    MelodyInk shown_;            ///< what the picture shows
    MelodyInk next_;             ///< what it is to show
    std::vector<QRect> boxes_;   ///< what was drawn over since, in pixels of the device
    qint64 key_ = -1;            ///< of the picture as this left it
};

} // namespace velmora
