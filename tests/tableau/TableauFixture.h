// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScene.h"

#include <QImage>

namespace velmora {

/// A score, a view of its beginning and a meter of four quarters on 16 cells, for painters.
struct TableauFixture {
    TableauFixture() {
        view.ViewRows = 60;
        view.ViewColumns = view.ViewLastColumn = 40;
        score.ChannelShown.fill(true);
    }
    /// A head and its continuations.
    void draw(int channel, int column, int row, int cells, int chord = 0) {
        score.ChannelInUse[channel] = true;
        score.NoteCell.set(channel, column, static_cast<std::int16_t>(row));
        for (int at = column + 1; at < column + cells; ++at)
            score.NoteCell.set(channel, at, static_cast<std::int16_t>(1000 + row));
        score.Polyphonics.set(channel + 1, column, static_cast<std::int16_t>(chord));
    }
    [[nodiscard]] TableauScene scene() const { return {score, view, setup, manners}; }

    Score score{100};
    ViewState view;
    SetupState setup;
    Manners manners;
};

/// A picture as a window makes it for a painter, filled with what no painter paints.
[[nodiscard]] inline QImage surfaceOf(int width, int height, qreal scale = 1) {
    QImage surface((QSizeF(width, height) * scale).toSize(), QImage::Format_RGB32);
    surface.setDevicePixelRatio(scale);
    surface.fill(qRgb(1, 2, 3));
    return surface;
}

} // namespace velmora
