// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>
#include <QPoint>

#include <vector>

namespace velmora {

/// A small picture that is put down many times. Its rows know where they begin and where they are solid, so
/// that most of a ball is copied and only its edge is blended. Everything is in pixels of the device.
class Stamp {
public:
    Stamp() = default;
    /// @param picture Format_ARGB32_Premultiplied
    /// @param anchor the pixel that lands on the place the stamp is put
    Stamp(const QImage& picture, QPoint anchor);

    /// The rectangle that is not empty, relative to the anchor.
    [[nodiscard]] QRect bounds() const { return bounds_; }

    /// One row: nothing before `first`, blended up to `solid`, copied up to `solidEnd`, blended up to `end`.
    struct Run {
        int first = 0, solid = 0, solidEnd = 0, end = 0;
    };
    [[nodiscard]] const Run& run(int row) const { return runs_[static_cast<std::size_t>(row)]; }
    /// Pixels of a row of `bounds`.
    [[nodiscard]] const QRgb* pixels(int row) const {
        return pixels_.data() + static_cast<std::ptrdiff_t>(row) * bounds_.width();
    }

private:
    QRect bounds_;
    std::vector<QRgb> pixels_;
    std::vector<Run> runs_;
};

} // namespace velmora
