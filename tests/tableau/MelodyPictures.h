// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/MelodyPainter.h"
#include "tableau/TableauFixture.h"

namespace velmora {

inline constexpr QRgb kWhitePaper = qRgb(255, 255, 255);
inline constexpr QRgb kBlackInk = qRgb(0, 0, 0);
inline constexpr QRgb kCell = qRgb(237, 237, 237);
inline constexpr QRgb kMeasure = qRgb(68, 204, 255);
inline constexpr QRgb kBeat = qRgb(201, 204, 216);
inline constexpr QRgb kBand = qRgb(248, 241, 231);
inline constexpr QRgb kRed = qRgb(255, 0, 0);
inline constexpr int kDark = 80; ///< of what is nearly black
inline constexpr QRgb kClefColour = qRgb(237, 234, 233);

/// Paper with cell lines and nothing else.
[[nodiscard]] inline TableauFixture blank() {
    TableauFixture fixture;
    fixture.view.Show_Sharp_guides = false;
    fixture.setup.ChTreble = fixture.setup.ChBass = false;
    fixture.score.NotesPerMeasure = 0;
    return fixture;
}
[[nodiscard]] inline QImage painted(const TableauFixture& fixture, qreal scale = 1, int width = 400,
                                    int height = 344) {
    QImage surface = surfaceOf(width, height, scale);
    MelodyPainter().paint(surface, fixture.scene());
    return surface;
}
/// Where the row begins on a surface that shows @p fixture.
[[nodiscard]] inline int rowTop(const TableauFixture& fixture, int row) {
    return (row - fixture.view.ViewTopRow) * fixture.view.Line_Height;
}
[[nodiscard]] inline QRgb colour(Rgb of) {
    return qRgb(of.red, of.green, of.blue);
}
[[nodiscard]] inline int count(const QImage& image, QRgb wanted) {
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            pixels += image.pixel(x, y) == wanted ? 1 : 0;
    return pixels;
}

} // namespace velmora
