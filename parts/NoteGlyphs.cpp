// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/NoteGlyphs.h"

#include "parts/PixelSurface.h"

#include <QFont>
#include <QPainter>
#include <QRawFont>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr const char* kFamily = "Noto Music";
constexpr qreal kFontSize = 1000;
constexpr qreal kFontSpace = 250; ///< of a staff at that size

/// Shapes of the font: where they stand in Unicode and what of them falls on the origin, in the font's units.
struct FontShape {
    char32_t character;
    qreal x, y;
    qreal size; ///< of the shape, where the font's is too large beside a head
};
// Heads are a little smaller than the font's, so that the picture's stem stands on whole pixels.
constexpr qreal kHeadSize = 9.0 / 8 / (297.0 / 250);
constexpr FontShape kBlackHead{0x1D158, 198.5, -134, kHeadSize};
constexpr FontShape kVoidHead{0x1D157, 198.5, -134, kHeadSize};
constexpr FontShape kWholeHead{0x1D15D, 257, -134, kHeadSize};
constexpr std::array<FontShape, 3> kAccidentals{
    {{0x266F, 276, -178, 0.78}, {0x266D, 173, -110, 0.95}, {0x266E, 178, -95, 0.95}}};
constexpr std::array<FontShape, 2> kClefs{{{0x1D11E, 50, -250, 1}, {0x1D122, 50, -750, 1}}};
/// Flags hang from the top of the stem, which is theirs to begin with.
constexpr std::array<FontShape, 4> kFlags{
    {{0x1D16E, 0, -1009, 1}, {0x1D16F, 0, -1009, 1}, {0x1D170, 0, -1154, 1}, {0x1D171, 0, -1330, 1}}};

constexpr qreal kHeadHalf = 4.5 / kStaffSpace;
constexpr qreal kStemWidth = 1.0 / kStaffSpace;
constexpr qreal kStemLength = 3; ///< as the picture has room
constexpr qreal kStemInHead = 0.12;
constexpr qreal kFlagsEnd = 0.55; ///< of a stem, that flags leave free
constexpr qreal kDotX = 1.15;
constexpr qreal kDotRadius = 0.2;
constexpr qreal kAccidentalGap = 0.2;
constexpr qreal kPixelMiddle = 0.5;

int flagsOf(NoteShape shape) {
    return std::max(0, static_cast<int>(shape) - static_cast<int>(NoteShape::Quarter));
}

QPainterPath drawnHead(NoteShape shape) {
    QPainterPath head;
    head.addEllipse(QPointF(), kHeadHalf, 0.5);
    if (shape == NoteShape::Whole || shape == NoteShape::Half) {
        QPainterPath hole;
        hole.addEllipse(QPointF(), kHeadHalf * 0.6, 0.3);
        head.addPath(hole.toReversed()); // empty by either rule of filling
    }
    return QTransform().rotate(-15).map(head);
}
QPainterPath drawnFlags(int count) {
    QPainterPath flags;
    for (int flag = 0; flag < count; ++flag) {
        const qreal y = flag * 0.6;
        flags.moveTo(0, y);
        flags.lineTo(0.9, y + 0.9);
        flags.lineTo(0.9, y + 1.1);
        flags.lineTo(0, y + 0.35);
        flags.closeSubpath();
    }
    return flags;
}
QPainterPath drawnAccidental(Accidental accidental) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    const auto bar = [&](qreal x, qreal y, qreal width, qreal height) { path.addRect(x, y, width, height); };
    if (accidental == Accidental::Flat) {
        bar(-0.4, -1.5, 0.12, 2);
        path.addEllipse(QPointF(-0.05, 0.1), 0.38, 0.4);
        return path;
    }
    const bool natural = accidental == Accidental::Natural;
    bar(-0.3, -1.2, 0.12, natural ? 1.8 : 2.4);
    bar(0.18, natural ? -0.6 : -1.2, 0.12, natural ? 1.8 : 2.4);
    for (const qreal y : {-0.55, 0.35})
        bar(natural ? -0.3 : -0.55, y, natural ? 0.6 : 1.1, 0.22);
    return path;
}
QPainterPath drawnClef(Clef clef) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (clef == Clef::Treble) {
        path.addRect(1.1, -4, 0.2, 6);
        path.addEllipse(QPointF(1.2, 0), 1, 1);
    } else {
        path.addEllipse(QPointF(0.6, 0), 0.5, 0.5);
        path.addRect(1, -1, 0.2, 3);
        for (const qreal y : {-0.5, 0.5})
            path.addEllipse(QPointF(1.8, y), 0.2, 0.2);
    }
    return path;
}
} // namespace

/// The font's shapes, or ours.
class NoteGlyphs::Outlines {
public:
    explicit Outlines(const char* family) {
        QFont font(QString::fromLatin1(family));
        font.setPixelSize(static_cast<int>(kFontSize));
        font.setStyleStrategy(QFont::NoFontMerging);
        font_ = QRawFont::fromFont(font);
        hasFont_ =
            font_.isValid() && font_.familyName() == QLatin1String(family) && !shape(kBlackHead).isEmpty();
    }
    [[nodiscard]] bool hasFont() const { return hasFont_; }

    [[nodiscard]] QPainterPath head(NoteShape value) const {
        if (!hasFont_)
            return drawnHead(value);
        return shape(value == NoteShape::Whole  ? kWholeHead
                     : value == NoteShape::Half ? kVoidHead
                                                : kBlackHead);
    }
    /// Of a stem that points up, from its top.
    [[nodiscard]] QPainterPath flags(int count) const {
        if (count == 0)
            return {};
        if (!hasFont_)
            return drawnFlags(count);
        return shape(kFlags[static_cast<std::size_t>(count) - 1]);
    }
    [[nodiscard]] QPainterPath accidental(Accidental accidental) const {
        return hasFont_ ? shape(kAccidentals[static_cast<std::size_t>(accidental)])
                        : drawnAccidental(accidental);
    }
    [[nodiscard]] QPainterPath clef(Clef clef) const {
        return hasFont_ ? shape(kClefs[static_cast<std::size_t>(clef)]) : drawnClef(clef);
    }

private:
    [[nodiscard]] QPainterPath shape(const FontShape& of) const {
        const auto indexes = font_.glyphIndexesForString(QString::fromUcs4(&of.character, 1));
        if (indexes.isEmpty() || indexes.first() == 0)
            return {};
        const qreal unit = of.size / kFontSpace;
        return QTransform::fromScale(unit, unit)
            .translate(-of.x, -of.y)
            .map(font_.pathForGlyph(indexes.first()));
    }

    QRawFont font_;
    bool hasFont_ = false;
};

NoteGlyphs::NoteGlyphs() : NoteGlyphs(kFamily) {}
NoteGlyphs::NoteGlyphs(const char* family) : family_(family) {}
NoteGlyphs::~NoteGlyphs() = default;

NoteGlyphs::Outlines& NoteGlyphs::outlines() {
    if (!outlines_)
        outlines_ = std::make_unique<Outlines>(family_);
    return *outlines_;
}

bool NoteGlyphs::hasFont() {
    return outlines().hasFont();
}

QRectF NoteGlyphs::stemRect(const NoteGlyph& note) {
    if (note.value.shape == NoteShape::Whole)
        return {};
    if (note.stem == Stem::Up)
        return {kHeadHalf - kStemWidth, -kStemLength, kStemWidth, kStemLength - kStemInHead};
    return {-kHeadHalf, kStemInHead, kStemWidth, kStemLength - kStemInHead};
}

QPainterPath NoteGlyphs::noteOutline(const NoteGlyph& note) {
    QPainterPath path = outlines().head(note.value.shape);
    path.setFillRule(Qt::WindingFill);
    if (QPainterPath flags = outlines().flags(flagsOf(note.value.shape)); !flags.isEmpty()) {
        const qreal room = kStemLength - kFlagsEnd;
        const qreal squeezed = std::min(1.0, room / flags.boundingRect().bottom());
        const QRectF stem = stemRect(note);
        const bool up = note.stem == Stem::Up;
        path.addPath(QTransform()
                         .translate(stem.left(), up ? stem.top() : stem.bottom())
                         .scale(std::max(squeezed, 0.8), up ? squeezed : -squeezed)
                         .map(flags));
    }
    if (note.value.dotted)
        path.addEllipse(QPointF(kDotX, 0), kDotRadius, kDotRadius);
    return path;
}

QPainterPath NoteGlyphs::accidentalOutline(Accidental accidental) {
    return outlines().accidental(accidental);
}

QPainterPath NoteGlyphs::clefOutline(Clef clef) {
    return outlines().clef(clef);
}

void NoteGlyphs::useScale(qreal scale) {
    if (scale_ == scale)
        return;
    scale_ = scale;
    notes_.clear();
    accidentals_.clear();
}

namespace {
/// Paints in staff spaces from the middle of the pixel that the head falls on.
template<typename Paint>
Stamp stampOf(qreal scale, QPoint head, Paint paint) {
    const QPoint anchor(deviceEdge(head.x(), scale), deviceEdge(head.y(), scale));
    const int size = static_cast<int>(std::ceil(kGlyphSize * scale));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.translate(anchor);
    painter.scale(scale, scale);
    painter.translate(kPixelMiddle, kPixelMiddle);
    painter.scale(kStaffSpace, kStaffSpace);
    paint(painter);
    painter.end();
    return {picture, anchor};
}

/// A stem on whole pixels, one or more wide.
void paintStem(QPainter& painter, const QRectF& stem) {
    const QRectF device = painter.transform().mapRect(stem);
    const int width = std::max(1, static_cast<int>(std::lround(device.width())));
    painter.save();
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(
        QRectF(std::round(device.left()), std::round(device.top()), width, std::round(device.height())),
        Qt::black);
    painter.restore();
}
} // namespace

const Stamp& NoteGlyphs::note(const NoteGlyph& note, qreal scale) {
    useScale(scale);
    if (const auto found = notes_.find(note); found != notes_.end())
        return found->second;
    const QPoint head(kHeadX, note.stem == Stem::Up ? kHeadYUp : kHeadYDown);
    const Stamp stamp = stampOf(scale, head, [&](QPainter& painter) {
        painter.drawPath(noteOutline(note));
        if (const QRectF stem = stemRect(note); !stem.isNull())
            paintStem(painter, stem);
    });
    return notes_.emplace(note, stamp).first->second;
}

const Stamp& NoteGlyphs::accidental(Accidental accidental, qreal scale) {
    useScale(scale);
    if (const auto found = accidentals_.find(accidental); found != accidentals_.end())
        return found->second;
    const Stamp stamp = stampOf(scale, QPoint(kGlyphSize - 9, kGlyphSize / 2), [&](QPainter& painter) {
        const QPainterPath path = accidentalOutline(accidental);
        painter.translate(-kHeadHalf - kAccidentalGap - path.boundingRect().right(), 0);
        painter.drawPath(path);
    });
    return accidentals_.emplace(accidental, stamp).first->second;
}

} // namespace velmora
