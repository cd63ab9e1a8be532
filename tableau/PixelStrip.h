// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>
#include <QRect>

namespace velmora {

/// Pixels of a picture that something is about to be drawn over, to be put back: how rubber bands and the
/// play line come and go without the Score being painted again. Its memory is used again, so that saving a
/// part of the same size allocates nothing.
class PixelStrip {
public:
    /// @p part in logical pixels; what lies outside the picture is left out.
    void save(const QImage& picture, const QRect& part);
    /// Puts the pixels back where they were, if the picture is still of that size.
    /// @return the part that changed, in logical pixels; empty if there was nothing to put back
    QRect restore(QImage& picture) const;
    /// There is nothing to put back any more.
    void forget() { part_ = {}; }
    [[nodiscard]] bool holds() const { return !part_.isEmpty(); }

private:
    QImage pixels_;
    QSize picture_; ///< size in device pixels of the picture that they are from
    QRect device_;  ///< where they were, in device pixels
    QRect part_;
};

} // namespace velmora
