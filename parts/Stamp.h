// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>
#include <QPoint>

#include <vector>

namespace velmora {

/// A small picture that is put down many times. It is kept as the stretches of its rows that hold anything:
/// most of a ball is copied, only its edge is blended, and what is empty costs nothing. Everything is in
/// pixels of the device.
class Stamp {
public:
    Stamp() = default;
    /// @param picture Format_ARGB32_Premultiplied
    /// @param anchor the pixel that lands on the place the stamp is put
    Stamp(const QImage& picture, QPoint anchor);

    /// The rectangle that is not empty, relative to the anchor.
    [[nodiscard]] QRect bounds() const { return bounds_; }

    /// Pixels of one row that are all opaque and copied, or are blended.
    struct Stretch {
        int y, x, length; ///< from the upper left corner of `bounds`
        int at;           ///< of its first pixel in `pixels`
        bool opaque;
    };
    [[nodiscard]] const std::vector<Stretch>& stretches() const { return stretches_; }
    [[nodiscard]] const QRgb* pixels() const { return pixels_.data(); }

    /// Pixels of one row that hold all it writes there, small gaps included.
    struct Cover {
        int y, x, length;
    };
    [[nodiscard]] const std::vector<Cover>& covers() const { return covers_; }

private:
    void addRow(const QRgb* row, int width, int y);
    void cover(const Stretch& stretch);

    QRect bounds_;
    std::vector<QRgb> pixels_;
    std::vector<Stretch> stretches_;
    std::vector<Cover> covers_;
};

} // namespace velmora
