// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/PixelStrip.h"

#include <cmath>
#include <cstring>

namespace velmora {

namespace {
QRect devicePart(const QImage& picture, const QRect& part) {
    const qreal ratio = picture.devicePixelRatio();
    const QPoint from(static_cast<int>(std::floor(part.left() * ratio)),
                      static_cast<int>(std::floor(part.top() * ratio)));
    const QPoint to(static_cast<int>(std::ceil((part.right() + 1) * ratio)),
                    static_cast<int>(std::ceil((part.bottom() + 1) * ratio)));
    return QRect(from, QSize(to.x() - from.x(), to.y() - from.y())) & picture.rect();
}

std::size_t bytesOf(int pixels, const QImage& picture) {
    return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(picture.depth() / 8);
}
} // namespace

void PixelStrip::save(const QImage& picture, const QRect& part) {
    part_ = part;
    picture_ = picture.size();
    device_ = devicePart(picture, part);
    if (device_.isEmpty()) {
        forget();
        return;
    }
    if (pixels_.size() != device_.size() || pixels_.format() != picture.format())
        pixels_ = QImage(device_.size(), picture.format());
    for (int y = 0; y < device_.height(); ++y)
        std::memcpy(pixels_.scanLine(y),
                    picture.constScanLine(device_.top() + y) + bytesOf(device_.left(), picture),
                    bytesOf(device_.width(), picture));
}

QRect PixelStrip::restore(QImage& picture) const {
    if (!holds() || picture.size() != picture_ || picture.format() != pixels_.format())
        return {};
    for (int y = 0; y < device_.height(); ++y)
        std::memcpy(picture.scanLine(device_.top() + y) + bytesOf(device_.left(), picture),
                    pixels_.constScanLine(y), bytesOf(device_.width(), picture));
    return part_;
}

} // namespace velmora
