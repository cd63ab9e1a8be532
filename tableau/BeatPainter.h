// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScene.h"

#include <QImage>

namespace velmora {

/// Paints `Beatbox`. It is small enough to be painted anew each time.
class BeatPainter {
public:
    /// `DrawBeatArray`. Neither selection nor play mark shows here, on purpose.
    /// @param surface Format_RGB32, of logical size times devicePixelRatio
    void paint(QImage& surface, const TableauScene& scene);
};

} // namespace velmora
