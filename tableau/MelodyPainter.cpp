// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MelodyPainter.h"

#include "parts/PixelSurface.h"
#include "tableau/BallStamps.h"
#include "tableau/ColumnMarks.h"
#include "tableau/GuidePainter.h"
#include "tableau/TraditionalNote.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr QRgb kBlueBox = qRgb(0, 0, 255);
constexpr QRgb kRedBox = qRgb(255, 0, 0);
constexpr int kReach = 32; ///< no part of a note is further from its row, nor from its cells and its head
constexpr std::size_t kManyBoxes = 16;
constexpr int kRingOutside = 2; ///< how far a chord's ring reaches out of its cell
constexpr int kRingColumns = 2; ///< in how many columns a ring stands that is kept whole at the left edge
/// Of hundred columns: where more differ, painting all of it is quicker.
constexpr int kMostOfIt = 60;

/// Bars within their row; they begin 2 pixels into the first cell and end with the last.
struct BarForm {
    int top;
    int bottom;
};
constexpr BarForm kColourBar{4, 7};
constexpr BarForm kNotationBar{5, 6};

/// How far a picture moves, in pixels of the device, when the view goes by so many steps of @p length logical
/// pixels. None where the device has no whole pixels for a step: the steps are of uneven lengths then.
std::optional<int> moveOf(int steps, int length, qreal scale) {
    const double step = length * scale;
    if (steps != 0 && step != std::floor(step))
        return std::nullopt;
    return -steps * static_cast<int>(step);
}
} // namespace

/// Paints the parts of a note.
class MelodyPainter::Brush {
public:
    explicit Brush(PixelSurface& surface) : surface_(surface) {}
    void put(const Stamp& stamp, QPoint at) { surface_.put(stamp, at.x(), at.y()); }
    void bar(const QRect& box, QRgb colour) {
        surface_.fillBox(box.left(), box.top(), box.right(), box.bottom(), colour);
    }

private:
    PixelSurface& surface_;
};

/// Puts the bare grid in their place.
class MelodyPainter::Eraser {
public:
    Eraser(const GridRows& grid, PixelSurface& surface) : grid_(grid), surface_(surface) {}
    void put(const Stamp& stamp, QPoint at) { grid_.restore(surface_, stamp, at); }
    void bar(const QRect& box, QRgb /*colour*/) {
        grid_.restore(surface_, surface_.box(box.left(), box.top(), box.right(), box.bottom()));
    }

private:
    const GridRows& grid_;
    PixelSurface& surface_;
};

/// Marks the columns that shapes reach into. A bar stays in its own.
class MelodyPainter::Reach {
public:
    explicit Reach(ColumnMarks& marks) : marks_(marks) {}
    void put(const Stamp& stamp, QPoint at) {
        const QRect place = stamp.bounds().translated(at);
        if (!place.isEmpty())
            marks_.markPixels(place.left(), place.right() + 1);
    }
    void bar(const QRect& /*box*/, QRgb /*colour*/) {}

private:
    ColumnMarks& marks_;
};

void MelodyPainter::paint(QImage& image, const TableauScene& scene) {
    const bool own = image.cacheKey() == key_;
    PixelSurface surface(image);
    useScale(surface.scale());
    next_.take(scene, gridLook(surface, scene));
    if (!(own && next_.paintsAs(shown_) && paintMoved(surface))) {
        if (!grid_.renew(next_.look) && own && boxes_.size() <= kManyBoxes)
            takeInkOff(surface);
        else
            grid_.restore(surface, surface.rect());
        paintInk(surface);
    }
    keepGlyphDrop();
    std::swap(shown_, next_);
    boxes_.clear();
    key_ = image.cacheKey();
}

void MelodyPainter::noteTouched(const QImage& surface, const QRect& rect) {
    const qreal scale = surface.devicePixelRatio();
    const QPoint from(deviceEdge(rect.left(), scale), deviceEdge(rect.top(), scale));
    const QPoint to(deviceEdge(rect.right() + 1.0, scale), deviceEdge(rect.bottom() + 1.0, scale));
    const QRect box(from, to); // a pixel more to the right and below, for lines that are rounded up
    std::erase_if(boxes_, [&](const QRect& other) { return box.contains(other); });
    if (std::ranges::none_of(boxes_, [&](const QRect& other) { return other.contains(box); }))
        boxes_.push_back(box);
    key_ = surface.cacheKey();
}

void MelodyPainter::useScale(qreal scale) {
    if (stampScale_ == scale)
        return;
    stampScale_ = scale;
    balls_.clear();
    rings_.clear();
}

/// Moves what the view has moved by and paints the rest; false, and nothing done, if painting all of it is
/// quicker.
bool MelodyPainter::paintMoved(PixelSurface& surface) {
    const auto across =
        moveOf(next_.look.firstColumn - shown_.look.firstColumn, kColumnWidth, surface.scale());
    const auto down = moveOf(next_.look.topRow - shown_.look.topRow, next_.look.lineHeight, surface.scale());
    if (!across || !down || boxes_.size() > kManyBoxes)
        return false;
    const QPoint by(*across, *down);
    const std::vector<std::uint8_t> rowsBefore = grid_.kinds();
    const auto parts = changedParts(surface, by);
    if (!parts)
        return false;
    grid_.renew(next_.look);
    if (!by.isNull())
        surface.moveBy(by);
    for (const QRect& part : *parts)
        paintWithin(surface, part);
    for (const QRect& rows : grid_.rowsUnlike(rowsBefore, by.y()))
        paintWithin(surface, rows);
    return true;
}

std::optional<std::vector<QRect>> MelodyPainter::changedParts(const PixelSurface& surface, QPoint by) {
    ColumnMarks marks(surface.rect().width(), surface.scale());
    const int columnsBy = next_.look.firstColumn - shown_.look.firstColumn;
    if (std::abs(columnsBy) >= marks.columns() || std::abs(by.y()) >= surface.rect().height())
        return std::nullopt;
    markChangedNotes(marks, columnsBy);
    markSeams(marks, columnsBy, by.y() != 0);
    if (marks.marked() * 100 > marks.columns() * kMostOfIt)
        return std::nullopt;
    std::vector<QRect> parts;
    marks.appendRects(parts, surface.rect().height());
    for (const QRect& box : boxes_)
        parts.push_back(box.translated(by));
    return parts;
}

void MelodyPainter::markChangedNotes(ColumnMarks& marks, int columnsBy) {
    Reach reach(marks);
    for (int channel = 0; channel < kMelodyChannels; ++channel)
        for (int column = std::min(0, -columnsBy);
             column < std::max(next_.columns, shown_.columns - columnsBy); ++column) {
            const InkCell before = shown_.at(channel, column + columnsBy);
            const InkCell after = next_.at(channel, column);
            if (before == after)
                continue;
            marks.mark(column);
            for (const InkCell& cell : {before, after})
                lay(next_, {channel, column, 1, cell}, reach);
        }
    for (int column = 0; column < marks.columns(); ++column)
        if (shown_.selection.within(column + columnsBy) != next_.selection.within(column) ||
            shown_.playMark.within(column + columnsBy) != next_.playMark.within(column))
            marks.mark(column);
}

/// What comes in, what stands at the left edge whatever the view, and what had stood there.
void MelodyPainter::markSeams(ColumnMarks& marks, int columnsBy, bool rowsMove) const {
    if (columnsBy == 0 && !rowsMove)
        return;
    // The first has no line of a beat or a measure, and its rings may be moved into the picture.
    const int fixed = std::max(next_.headsWhole ? kRingColumns : 1, clefColumns(next_.look));
    marks.markRange(0, fixed);
    marks.markRange(-columnsBy, fixed - columnsBy);
    if (columnsBy > 0)
        marks.markRange(marks.wholeColumns() - columnsBy, marks.columns());
    else
        marks.markRange(0, -columnsBy);
}

void MelodyPainter::paintWithin(PixelSurface& surface, const QRect& part) {
    surface.clipTo(part);
    grid_.restore(surface, part);
    paintInk(surface);
    surface.clipTo(surface.rect());
}

void MelodyPainter::paintInk(PixelSurface& surface) {
    Brush brush(surface);
    const QRect clip = surface.clip();
    heads_.clear();
    for (const int channel : next_.order)
        forEachNote(next_, channel, [&](const InkNote& note) {
            const int left = note.column * kColumnWidth;
            const int most = std::max(note.cells, int{note.first.head}) * kColumnWidth;
            if (surface.edge(left - kReach) > clip.right() ||
                surface.edge(left + most + GlyphDrop_ + kReach) < clip.left())
                return;
            if (!next_.headsWhole)
                return lay(next_, note, brush);
            lay(next_, note, brush, Part::Bar);
            if (note.first.head != 0)
                heads_.push_back(note);
        });
    for (const InkNote& note : heads_)
        lay(next_, note, brush, Part::Head);
    surface.blendStrip(next_.selection.left, next_.selection.width, kBlueBox);
    surface.blendStrip(next_.playMark.left, next_.playMark.width, kRedBox);
}

/// The grid is what it was, and what stood over it goes.
void MelodyPainter::takeInkOff(PixelSurface& surface) {
    Eraser eraser(grid_, surface);
    for (int channel = 0; channel < kMelodyChannels; ++channel)
        forEachNote(shown_, channel, [&](const InkNote& note) { lay(shown_, note, eraser); });
    for (const InkStrip& strip : {shown_.selection, shown_.playMark}) {
        const int left = surface.edge(strip.left);
        const int right = surface.edge(static_cast<double>(strip.left) + strip.width);
        if (right > left)
            grid_.restore(surface, QRect(left, 0, right - left, surface.rect().height()));
    }
    for (const QRect& box : boxes_)
        grid_.restore(surface, box);
}

namespace {
/// Where the ball of a note, and the ring behind it, are put: in the first column of the view a ring is moved
/// into the picture.
QPoint ballPlace(const MelodyInk& ink, const InkNote& note, QPoint at) {
    const int by = ink.headsWhole && note.column == 0 && note.first.chord ? kRingOutside : 0;
    return {deviceEdge(at.x() + by, ink.look.scale), deviceEdge(at.y(), ink.look.scale)};
}
} // namespace

template<typename Sink>
void MelodyPainter::lay(const MelodyInk& ink, const InkNote& note, Sink& sink, Part part) {
    const GridLook& look = ink.look;
    const int y = (note.first.row - look.topRow) * look.lineHeight;
    if (note.first.row < 0 || y > look.logicalHeight() + kReach || y < -kReach)
        return;
    const QPoint at(note.column * kColumnWidth, y);
    const QRgb colour = ink.colours[static_cast<std::size_t>(note.channel)];
    if (note.first.chord && part != Part::Bar)
        sink.put(ring(colour, look.scale), ballPlace(ink, note, at));
    if (part != Part::Head) {
        const BarForm& bar = ink.colourful ? kColourBar : kNotationBar;
        sink.bar(QRect(QPoint(at.x() + 2, at.y() + bar.top),
                       QPoint(at.x() + note.cells * kColumnWidth - 1, at.y() + bar.bottom)),
                 colour);
    }
    if (part == Part::Bar || note.first.head == 0)
        return;
    if (ink.colourful)
        sink.put(ball(colour, look.scale), ballPlace(ink, note, at));
    else
        DrawRealNote(ink, note, at, sink);
}

template<typename Sink>
void MelodyPainter::DrawRealNote(const MelodyInk& ink, const InkNote& note, QPoint at, Sink& sink) {
    const int measure = ink.look.notesPerMeasure;
    const int cells = note.first.head;
    const std::optional<NoteValue> value = noteValue(measure, cells);
    if (!value)
        return;
    const std::optional<Accidental> accidental = accidentalOf(note.first.row);
    const int drop = glyphDrop(measure, cells).value_or(GlyphDrop_);
    const QPoint head = at + QPoint(headOffset(drop, accidental), kHeadInRow);
    const QPoint device(deviceEdge(head.x(), ink.look.scale), deviceEdge(head.y(), ink.look.scale));
    const Stem stem = stemOf(head.y(), ink.look.topRow, ink.look.lineHeight, ink.look.bass);
    sink.put(glyphs_.note({*value, stem}, ink.look.scale), device);
    if (accidental && ink.accidentals)
        sink.put(glyphs_.accidental(*accidental, ink.look.scale), device);
}

/// Of the note that was painted last: where measures have too many cells, it stays.
void MelodyPainter::keepGlyphDrop() {
    if (next_.colourful || !glyphDrop(next_.look.notesPerMeasure, 1))
        return;
    for (std::size_t i = next_.order.size(); i-- > 0;)
        for (int column = next_.columns - 1; column >= 0; --column) {
            const InkCell cell = next_.at(next_.order[i], column);
            const int y = (cell.row - next_.look.topRow) * next_.look.lineHeight;
            if (cell.head == 0 || y > next_.look.logicalHeight() + kReach || y < -kReach)
                continue;
            GlyphDrop_ = *glyphDrop(next_.look.notesPerMeasure, cell.head);
            return;
        }
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
