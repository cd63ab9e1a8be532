// SPDX-License-Identifier: GPL-2.0-or-later
// That painting over the last painting gives what painting anew gives.
#include "tableau/MelodyPainter.h"
#include "tableau/StrokePainter.h"
#include "tableau/TableauFixture.h"

#include <QPainter>

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
/// A painter and its picture, beside what another one makes of the same scene on a new picture.
class Repainting {
public:
    explicit Repainting(qreal scale, QSize size = {300, 200})
        : scale_(scale)
        , size_(size)
        , surface(surfaceOf(size.width(), size.height(), scale)) {}
    void paint() { painter.paint(surface, fixture.scene()); }
    [[nodiscard]] QImage anew() const {
        QImage other = surfaceOf(size_.width(), size_.height(), scale_);
        MelodyPainter().paint(other, fixture.scene());
        return other;
    }

private:
    qreal scale_;
    QSize size_;

public:
    TableauFixture fixture;
    MelodyPainter painter;
    QImage surface;
};

/// One thing that a user may do.
void change(TableauFixture& fixture, std::mt19937& random) {
    const auto any = [&](int first, int last) { return std::uniform_int_distribution(first, last)(random); };
    switch (any(0, 12)) {
    case 0:
        fixture.view.ViewFirstColumn = any(0, 30);
        fixture.view.ViewLastColumn = fixture.view.ViewFirstColumn + 24;
        break;
    case 1:
        fixture.view.ViewTopRow = any(35, 60);
        break;
    case 2:
        fixture.view.SelectStart = any(-1, 40);
        fixture.view.SelectEnd = any(-1, 50);
        break;
    case 3:
        fixture.view.PlayMark = any(0, 50);
        break;
    case 4:
        fixture.score.ActiveChannel = any(0, 12);
        break;
    case 5:
        fixture.setup.ChTreble = any(0, 1) == 1;
        fixture.view.Notationstyle = static_cast<std::int16_t>(any(0, 1));
        break;
    case 6:
        fixture.view.Line_Height = any(6, 12);
        break;
    case 7:
        fixture.manners = Manners::of(any(0, 1) == 1);
        break;
    default:
        fixture.draw(any(0, 7), any(0, 50), any(40, 80), any(1, 5), any(0, 1));
        fixture.score.NoteCell.set(any(0, 7), any(0, 50), kEmptyCell);
    }
}
} // namespace

/// Steps of scrolling, and between them now and then an edit or a change of what is marked.
void scrollOrChange(TableauFixture& fixture, std::mt19937& random) {
    const auto any = [&](int first, int last) { return std::uniform_int_distribution(first, last)(random); };
    ViewState& view = fixture.view;
    switch (any(0, 9)) {
    case 0:
        change(fixture, random);
        break;
    case 1:
        fixture.score.NotesPerMeasure = static_cast<std::int16_t>(any(0, 16));
        break;
    case 2:
        view.ViewTopRow = std::clamp(view.ViewTopRow + any(-3, 3), 0, 110);
        break;
    case 3:
        view.ViewTopRow = std::clamp(view.ViewTopRow + any(-1, 1), 0, 110);
        [[fallthrough]];
    default:
        view.ViewFirstColumn = std::max(0, view.ViewFirstColumn + any(-5, 5));
        view.ViewLastColumn = std::min(view.ViewFirstColumn + 26, 90); // of 100: as at a score's end
    }
}

class MelodyRepaint : public testing::TestWithParam<qreal> {};
INSTANTIATE_TEST_SUITE_P(Scales, MelodyRepaint, testing::Values(1.0, 1.2, 1.25, 1.5, 2.0));

TEST_P(MelodyRepaint, GivesWhatPaintingAnewGives) {
    Repainting repainting(GetParam());
    std::mt19937 random(7);
    for (int step = 0; step < 150; ++step) {
        change(repainting.fixture, random);
        repainting.paint();
        ASSERT_EQ(repainting.surface, repainting.anew()) << step;
    }
}

TEST_P(MelodyRepaint, ScrollsToWhatPaintingAnewGives) {
    for (const int style : {0, 1})
        for (const QSize size : {QSize(300, 200), QSize(307, 211)}) {
            Repainting repainting(GetParam(), size);
            repainting.fixture.manners = Manners::of(size.width() == 307);
            std::mt19937 random(11);
            for (int note = 0; note < 150; ++note)
                repainting.fixture.draw(note % 8, static_cast<int>(random() % 90), 40 + note % 45,
                                        1 + note % 9, note % 5 == 0 ? 1 : 0);
            repainting.fixture.view.Notationstyle = static_cast<std::int16_t>(style);
            for (int step = 0; step < 120; ++step) {
                scrollOrChange(repainting.fixture, random);
                repainting.paint();
                ASSERT_EQ(repainting.surface, repainting.anew())
                    << "style " << style << ", " << size.width() << " wide, step " << step;
            }
        }
}

TEST_P(MelodyRepaint, ScrollsWhatWasDrawnOverAway) {
    Repainting repainting(GetParam());
    repainting.paint();
    repainting.painter.drawOver(repainting.surface, QRect(59, 0, 3, 200),
                                [&] { paintPlayLine(repainting.surface, 5); });
    repainting.fixture.view.ViewFirstColumn += 2;
    repainting.fixture.view.ViewLastColumn += 2;
    repainting.paint();
    EXPECT_EQ(repainting.surface, repainting.anew());
}

TEST_P(MelodyRepaint, CoversWhatAStrangerDrew) {
    Repainting repainting(GetParam());
    repainting.paint();
    QPainter painter(&repainting.surface);
    painter.fillRect(20, 20, 100, 100, Qt::green);
    painter.end();
    repainting.paint();
    EXPECT_EQ(repainting.surface, repainting.anew());
}

TEST_P(MelodyRepaint, CoversWhatWasDrawnOver) {
    Repainting repainting(GetParam());
    repainting.paint();
    const QRect strip(0, 10 * 8 - 2, 300, 15);
    repainting.painter.drawOver(repainting.surface, strip, [&] {
        paintBand(repainting.surface, repainting.fixture.scene(), false, 10, 2, 9);
    });
    EXPECT_NE(repainting.surface, repainting.anew());
    repainting.paint();
    EXPECT_EQ(repainting.surface, repainting.anew());
}

TEST_P(MelodyRepaint, CoversWhatAStrangerDrewBeforeSomethingWasDrawnOver) {
    Repainting repainting(GetParam());
    repainting.paint();
    paintPlayLine(repainting.surface, 3);
    repainting.painter.drawOver(repainting.surface, QRect(0, 0, 20, 20),
                                [&] { paintPressBall(repainting.surface, 0, 0, 8); });
    repainting.paint();
    EXPECT_EQ(repainting.surface, repainting.anew());
}

TEST_P(MelodyRepaint, PaintsAnotherPictureWholly) {
    Repainting repainting(GetParam());
    repainting.fixture.draw(0, 3, 50, 4);
    repainting.paint();
    repainting.surface = surfaceOf(300, 200, GetParam());
    repainting.paint();
    EXPECT_EQ(repainting.surface, repainting.anew());
    QImage larger = surfaceOf(320, 210, GetParam());
    repainting.painter.paint(larger, repainting.fixture.scene());
    QImage other = surfaceOf(320, 210, GetParam());
    MelodyPainter().paint(other, repainting.fixture.scene());
    EXPECT_EQ(larger, other);
}
