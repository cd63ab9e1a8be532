// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Capture.h"

#include <QWidget>

#include <array>

namespace velmora {

struct Appearance;

/// How loud a recording is, left and right: a bar in decibels, a line where the highest was, and over it a
/// lamp that is lit from the first clipped sample on. It paints itself anew only in the
/// rows where a pixel differs.
class LevelBars : public QWidget {
public:
    LevelBars(const Appearance& look, QWidget* parent);

    void showLevels(const Levels& levels);
    /// Dark, without a held line: nothing is recorded.
    void clear() { showLevels({}); }

    /// The share of the bar that a value of full scale fills: 0 at -60 dB and below, 1 at full scale.
    [[nodiscard]] static double shareOf(float value);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Side {
        int bar = 0; ///< pixels of the device
        int held = 0;
        bool clipped = false;
        bool operator==(const Side&) const = default;
    };
    [[nodiscard]] QRect column(int side) const;
    [[nodiscard]] QRect rows(int side, int one, int other) const;
    [[nodiscard]] int travel() const;
    void updateChanged(int side, const Side& before, const Side& now);

    const Appearance& look_;
    std::array<Side, 2> sides_;
};

} // namespace velmora
