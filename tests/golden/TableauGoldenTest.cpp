// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"
#include "parts/NoteGlyphs.h"
#include "tableau/BarPainter.h"
#include "tableau/BeatPainter.h"
#include "tableau/GuidePainter.h"
#include "tableau/MelodyPainter.h"
#include "tableau/StrokePainter.h"
#include "tableau/TableauFixture.h"

#include <QPainter>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr int kWidth = 400;
constexpr int kHeight = 344;

/// Two voices over both staves, with chords, accidentals, every length, a selection and a mark.
TableauFixture smallPiece() {
    TableauFixture piece;
    piece.view.ViewTopRow = 44;
    piece.draw(0, 0, 63, 2, 1);
    piece.draw(0, 2, 60, 2);
    piece.draw(0, 4, 54, 1);
    piece.draw(0, 5, 57, 1);
    piece.draw(0, 6, 56, 1);
    piece.draw(0, 7, 58, 1);
    piece.draw(0, 8, 55, 4);
    piece.draw(0, 12, 66, 4);
    piece.draw(0, 16, 53, 6, 3);
    piece.draw(0, 22, 61, 3);
    piece.draw(0, 25, 50, 8);
    piece.draw(1, 0, 74, 16);
    piece.draw(1, 16, 80, 8);
    piece.draw(1, 24, 73, 12);
    piece.draw(1, 36, 79, 4);
    piece.draw(4, 3, 70, 3);
    for (int column = 0; column < 40; column += 2)
        piece.draw(8, column, 44, 1);
    piece.draw(10, 4, 46, 3);
    piece.draw(11, 12, 120, 2);
    return piece;
}

class AtEachScale : public testing::TestWithParam<int> {
protected:
    void expectGolden(const char* what, const QImage& picture) const {
        const QString name = QStringLiteral("tableau-%1-x%2").arg(what).arg(GetParam());
        const QString wrong = checkAgainstGolden(name, picture, GetParam());
        EXPECT_TRUE(wrong.isEmpty()) << qPrintable(wrong);
    }
    [[nodiscard]] QImage melody(const TableauFixture& piece) const {
        QImage surface = surfaceOf(kWidth, kHeight, GetParam());
        MelodyPainter().paint(surface, piece.scene());
        return surface;
    }
};
INSTANTIATE_TEST_SUITE_P(Golden, AtEachScale, testing::Values(1, 2), testing::PrintToStringParamName());
} // namespace

TEST_P(AtEachScale, TheColorfulLineLooksAsKept) {
    expectGolden("colourful", melody(smallPiece()));
}

TEST_P(AtEachScale, TheTraditionalNotationLooksAsKept) {
    TableauFixture piece = smallPiece();
    piece.view.Notationstyle = 1;
    expectGolden("traditional", melody(piece));
}

TEST_P(AtEachScale, SelectionAndPlayMarkLookAsKept) {
    TableauFixture piece = smallPiece();
    piece.view.SelectStart = 6;
    piece.view.SelectEnd = 12;
    piece.view.PlayMark = 20;
    expectGolden("selection", melody(piece));
}

TEST_P(AtEachScale, TheBarsTheBeatsAndTheGuideLookAsKept) {
    const TableauFixture piece = smallPiece();
    QImage all = surfaceOf(kWidth, 448, GetParam());
    all.fill(Qt::white);
    QPainter painter(&all);
    QImage bar = surfaceOf(352, 18, GetParam());
    paintPolynoteBar(bar, piece.scene());
    painter.drawImage(48, 0, bar);
    QImage indicator = surfaceOf(352, 26, GetParam());
    paintIndicatorBar(indicator, piece.scene(), 16);
    painter.drawImage(48, 20, indicator);
    QImage beats = surfaceOf(352, 48, GetParam());
    BeatPainter().paint(beats, piece.scene());
    painter.drawImage(48, 48, beats);
    paintGuide(painter, QRect(0, 100, 48, 344), piece.view);
    QImage melody = surfaceOf(352, 344, GetParam());
    MelodyPainter().paint(melody, piece.scene());
    painter.drawImage(48, 100, melody);
    painter.end();
    expectGolden("strips", all);
}

TEST_P(AtEachScale, StrokesLookAsKept) {
    TableauFixture piece = smallPiece();
    QImage surface = melody(piece);
    paintBand(surface, piece.scene(), false, 3, 2, 7);
    paintPressBall(surface, 33, 3, piece.view.Line_Height);
    paintSelectEdge(surface, 12);
    paintSelectDrag(surface, 18, 20, QColor(49, 106, 197));
    blendStrip(surface, 288, 24, QColor(0, 0, 255));
    paintPlayLine(surface, 30);
    expectGolden("strokes", surface);
}

/// Every shape that the notation is made of, in its picture and from its outline.
TEST_P(AtEachScale, TheShapesOfNotesLookAsKept) {
    NoteGlyphs glyphs;
    QImage all = surfaceOf(kWidth, 170, GetParam());
    all.fill(Qt::white);
    QPainter painter(&all);
    const auto show = [&](const QPainterPath& path, const QRectF& stem, int x, int y) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(x, y);
        painter.scale(kStaffSpace, kStaffSpace);
        painter.fillPath(path, Qt::black);
        painter.fillRect(stem, Qt::black);
        painter.restore();
    };
    for (int shape = 0; shape < 7; ++shape)
        for (const Stem stem : {Stem::Up, Stem::Down})
            for (const bool dotted : {false, true}) {
                const NoteGlyph note{{static_cast<NoteShape>(shape), dotted}, stem};
                show(glyphs.noteOutline(note), NoteGlyphs::stemRect(note),
                     20 + shape * 40 + (dotted ? 18 : 0), stem == Stem::Up ? 40 : 60);
            }
    for (int sign = 0; sign < 3; ++sign)
        show(glyphs.accidentalOutline(static_cast<Accidental>(sign)), {}, 320 + sign * 25, 40);
    for (int clef = 0; clef < 2; ++clef)
        show(glyphs.clefOutline(static_cast<Clef>(clef)), {}, 320 + clef * 40, 130);
    painter.end();
    expectGolden("shapes", all);
}
