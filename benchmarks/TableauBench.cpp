// SPDX-License-Identifier: GPL-2.0-or-later
// How long painting the Tableau takes on a picture of 1900 by 700 logical pixels, at scale factors 1 and 2,
// and beside it what the same picture costs in other ways.
#include "shell/SkinPainter.h"
#include "tableau/BeatPainter.h"
#include "tableau/MelodyPainter.h"
#include "tableau/NoteSpans.h"
#include "tableau/StrokePainter.h"

#include <QGuiApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cstring>

using namespace velmora;

namespace {
constexpr int kWidth = 1900;
constexpr int kHeight = 700;

QImage pictureOf(int width, int height, benchmark::State& state) {
    const auto scale = static_cast<int>(state.range(0));
    QImage picture(width * scale, height * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::white);
    return picture;
}

/// Eight channels without a gap: notes of one to four positions, a chord on every eighth, all of them in
/// view.
struct DenseTableau {
    DenseTableau() {
        view.ViewColumns = (kWidth / kColumnWidth) - 1;
        view.ViewRows = kHeight / view.Line_Height;
        showFrom(0);
        score.ChannelShown.fill(true);
        score.ChannelInUse.fill(true);
        for (int channel = 0; channel < kMelodyChannels; ++channel)
            fill(channel, 44 + channel * 8);
        for (const int channel : {8, 10, 11, 12})
            fill(channel, 42 + channel % 6);
    }
    void fill(int channel, int row) {
        for (int column = 0, note = 0; column < 1000; ++note) {
            const int cells = 1 + (note + channel) % 4;
            const int at = row + note * 5 % 12;
            for (int cell = 0; cell < cells; ++cell)
                score.NoteCell.set(channel, column + cell,
                                   static_cast<std::int16_t>(cell == 0 ? at : 1000 + at));
            score.Polyphonics.set(channel + 1, column, note % 8 == 0 ? 1 : 0);
            column += cells;
        }
    }
    void showFrom(int column) {
        view.ViewFirstColumn = column;
        view.ViewLastColumn = column + view.ViewColumns;
    }
    [[nodiscard]] TableauScene scene() const { return {score, view, setup, manners}; }
    [[nodiscard]] int notes() const {
        int count = 0;
        for (int channel = 0; channel < kMelodyChannels; ++channel)
            forEachSpan(score, view, channel, [&](const NoteSpan& /*span*/) { ++count; });
        return count;
    }

    Score score;
    ViewState view;
    SetupState setup;
    Manners manners = Manners::careful();
};

/// The music font is looked up through it.
void needApplication() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 0;
    static const QGuiApplication application(count, nullptr);
}

void drawNoteArray(benchmark::State& state, int style, const Manners& manners) {
    needApplication();
    DenseTableau tableau;
    tableau.manners = manners;
    tableau.view.Notationstyle = static_cast<std::int16_t>(style);
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    painter.paint(surface, tableau.scene());
    int row = 0;
    for (auto _ : state) {
        row = row == 50 ? 51 : 50; // a note moves, as after an edit
        tableau.score.NoteCell.set(0, 0, static_cast<std::int16_t>(row));
        painter.paint(surface, tableau.scene());
    }
    state.counters["notes"] = tableau.notes();
}
BENCHMARK_CAPTURE(drawNoteArray, colourful, 0, Manners::careful())
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawNoteArray, channelByChannel, 0, Manners::classic())
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawNoteArray, traditional, 1, Manners::careful())
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond);

void drawNoteArrayAfterForeignHand(benchmark::State& state) {
    const DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    for (auto _ : state) {
        paintPlayLine(surface, 20);
        painter.paint(surface, tableau.scene());
    }
}
BENCHMARK(drawNoteArrayAfterForeignHand)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void scrollByAColumn(benchmark::State& state) {
    DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    int column = 0;
    for (auto _ : state) {
        tableau.showFrom(column = (column + 1) % 800);
        painter.paint(surface, tableau.scene());
    }
}
BENCHMARK(scrollByAColumn)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void scrollByARow(benchmark::State& state) {
    DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    for (auto _ : state) {
        tableau.view.ViewTopRow = 40 + (tableau.view.ViewTopRow + 1) % 20;
        painter.paint(surface, tableau.scene());
    }
}
BENCHMARK(scrollByARow)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// Another channel becomes the active one: every note may change its colour and what lies on top.
void selectChannel(benchmark::State& state) {
    DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    for (auto _ : state) {
        tableau.score.ActiveChannel = (tableau.score.ActiveChannel + 1) % kMelodyChannels;
        painter.paint(surface, tableau.scene());
    }
}
BENCHMARK(selectChannel)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void firstPaint(benchmark::State& state, int style) {
    needApplication();
    DenseTableau tableau;
    tableau.view.Notationstyle = static_cast<std::int16_t>(style);
    for (auto _ : state) {
        QImage surface = pictureOf(kWidth, kHeight, state);
        MelodyPainter painter;
        painter.paint(surface, tableau.scene());
        benchmark::DoNotOptimize(surface.constBits());
    }
}
BENCHMARK_CAPTURE(firstPaint, colourful, 0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstPaint, traditional, 1)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// A step of a drag: the strip is put back, and the band drawn one column longer.
void rubberBand(benchmark::State& state) {
    const DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    MelodyPainter painter;
    painter.paint(surface, tableau.scene());
    const int scale = static_cast<int>(state.range(0));
    const QRect strip(0, 30 * 8 - 2, kWidth, 15);
    const QRect device(QPoint(0, strip.top() * scale), strip.size() * scale);
    const QImage kept = surface.copy(device);
    int column = 0;
    for (auto _ : state) {
        column = (column + 1) % 150;
        painter.drawOver(surface, strip, [&] {
            uchar* to = surface.scanLine(device.top());
            std::memcpy(to, kept.constBits(), static_cast<std::size_t>(kept.sizeInBytes()));
            paintBand(surface, tableau.scene(), false, 30, 2, 2 + column);
        });
    }
}
BENCHMARK(rubberBand)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// A step of the play line: the column it leaves is put back, the next one is kept and painted.
void playLineStep(benchmark::State& state) {
    const DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    const int scale = static_cast<int>(state.range(0));
    MelodyPainter().paint(surface, tableau.scene());
    QImage kept;
    int column = 0;
    for (auto _ : state) {
        for (int y = 0; !kept.isNull() && y < kept.height(); ++y)
            std::memcpy(surface.scanLine(y) + static_cast<std::ptrdiff_t>(column) * 12 * scale * 4,
                        kept.constScanLine(y), static_cast<std::size_t>(kept.width()) * 4);
        column = (column + 1) % 150;
        kept = surface.copy(column * 12 * scale, 0, 12 * scale, surface.height());
        paintPlayLine(surface, column);
    }
}
BENCHMARK(playLineStep)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void drawBeatArray(benchmark::State& state) {
    const DenseTableau tableau;
    QImage surface = pictureOf(kWidth, 72, state);
    BeatPainter painter;
    for (auto _ : state)
        painter.paint(surface, tableau.scene());
}
BENCHMARK(drawBeatArray)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The floor of every way that begins with a copy of the whole grid.
void copyOfThePicture(benchmark::State& state) {
    const QImage from = pictureOf(kWidth, kHeight, state);
    QImage to = from.copy();
    for (auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), static_cast<std::size_t>(from.sizeInBytes()));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copyOfThePicture)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The same notes and lines by anti-aliased shapes, everything anew.
void everythingBySmoothShapes(benchmark::State& state) {
    const DenseTableau tableau;
    QImage surface = pictureOf(kWidth, kHeight, state);
    for (auto _ : state) {
        surface.fill(Qt::white);
        QPainter painter(&surface);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor(237, 237, 237));
        for (int x = 0; x < kWidth; x += kColumnWidth)
            painter.drawLine(QPointF(x + 0.5, 0), QPointF(x + 0.5, kHeight));
        painter.setPen(Qt::black);
        for (const int row : {50, 53, 56, 60, 63, 70, 74, 77, 80, 84})
            painter.drawLine(QPointF(0, (row - 42) * 8 + 5.5), QPointF(kWidth, (row - 42) * 8 + 5.5));
        for (int channel = 0; channel < kMelodyChannels; ++channel) {
            painter.setBrush(toQColor(colourOfChannel(tableau.score, channel)));
            forEachSpan(tableau.score, tableau.view, channel, [&](const NoteSpan& span) {
                const QPointF at(span.column * 12, (span.row - 42) * 8);
                painter.fillRect(QRectF(at + QPointF(2, 4), QSizeF(span.cells * 12 - 2, 4)), painter.brush());
                painter.drawEllipse(at + QPointF(5.5, 5.5), 5, 5);
            });
        }
    }
}
BENCHMARK(everythingBySmoothShapes)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace
