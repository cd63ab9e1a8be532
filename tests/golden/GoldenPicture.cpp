// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/GoldenPicture.h"

#include <QDir>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace velmora {

namespace {
constexpr int kChannelTolerance = 24;
constexpr double kShareTolerance = 0.002;
constexpr double kTileTolerance = 0.125;
constexpr int kTile = 16; ///< logical pixels

bool remaking = false;

bool differs(QRgb one, QRgb other) {
    return std::abs(qRed(one) - qRed(other)) > kChannelTolerance ||
           std::abs(qGreen(one) - qGreen(other)) > kChannelTolerance ||
           std::abs(qBlue(one) - qBlue(other)) > kChannelTolerance;
}

QImage plain(const QImage& picture) {
    QImage result = picture.convertToFormat(QImage::Format_RGB888);
    result.setDevicePixelRatio(1);
    return result;
}

bool store(const QImage& picture, const QString& path) {
    return QDir().mkpath(QFileInfo(path).path()) && plain(picture).save(path, "PNG", 0); // most compressed
}
} // namespace

bool Difference::isTolerable() const {
    return sameSize && share <= kShareTolerance && worst <= kTileTolerance;
}

Difference compare(const QImage& one, const QImage& other, int scale) {
    Difference result;
    if (one.size() != other.size()) {
        result.sameSize = false;
        return result;
    }
    const int tile = kTile * scale;
    const int across = one.width() / tile + 1;
    std::vector<int> tiles(static_cast<std::size_t>(across) *
                           static_cast<std::size_t>(one.height() / tile + 1));
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (differs(one.pixel(x, y), other.pixel(x, y))) {
                ++result.pixels;
                ++tiles[static_cast<std::size_t>(y / tile * across + x / tile)];
            }
    result.share =
        static_cast<double>(result.pixels) / static_cast<double>(qint64{one.width()} * one.height());
    result.worst = static_cast<double>(*std::ranges::max_element(tiles)) / (tile * tile);
    return result;
}

QImage differencePicture(const QImage& one, const QImage& other) {
    QImage result(one.size().expandedTo(other.size()), QImage::Format_RGB888);
    result.fill(QColor(255, 0, 0)); // what only one of them has
    for (int y = 0; y < std::min(one.height(), other.height()); ++y)
        for (int x = 0; x < std::min(one.width(), other.width()); ++x) {
            const int grey = 160 + qGray(other.pixel(x, y)) * 3 / 8;
            result.setPixel(
                x, y, differs(one.pixel(x, y), other.pixel(x, y)) ? qRgb(255, 0, 0) : qRgb(grey, grey, grey));
        }
    return result;
}

QImage sideBySide(const QImage& old, const QImage& now) {
    const QImage difference = differencePicture(plain(old), plain(now));
    constexpr int kGap = 8;
    QImage all(old.width() + now.width() + difference.width() + 2 * kGap, difference.height(),
               QImage::Format_RGB888);
    all.fill(Qt::white);
    QPainter painter(&all);
    int x = 0;
    for (const QImage& picture : {plain(old), plain(now), difference}) {
        painter.drawImage(x, 0, picture);
        x += picture.width() + kGap;
    }
    return all;
}

QString checkAgainstGolden(const QString& name, const QImage& picture, int scale) {
    const QString path = QStringLiteral(VELMORA_GOLDEN_DIR "/pictures/%1.png").arg(name);
    const QString seen = QStringLiteral(VELMORA_GOLDEN_OUTPUT "/%1").arg(name);
    const QImage golden(path);
    const QImage now = plain(picture);
    if (remaking) {
        if (plain(golden) == now)
            return {};
        if (!golden.isNull() && !store(sideBySide(golden, now), seen + ".change.png"))
            return QStringLiteral("cannot write %1.change.png").arg(seen);
        std::printf("%s: %s\n", qPrintable(name), golden.isNull() ? "new" : qPrintable(seen + ".change.png"));
        return store(now, path) ? QString() : QStringLiteral("cannot write %1").arg(path);
    }
    if (golden.isNull())
        return QStringLiteral("there is no picture %1").arg(path);
    const Difference difference = compare(plain(golden), now, scale);
    if (difference.isTolerable())
        return {};
    const bool stored =
        store(now, seen + ".png") && store(differencePicture(plain(golden), now), seen + ".difference.png");
    return QStringLiteral(
               "%1: %2 pixels differ, %3 % of all, %4 % of the worst tile%5; see %6.difference.png%7")
        .arg(name)
        .arg(difference.pixels)
        .arg(100 * difference.share, 0, 'f', 2)
        .arg(100 * difference.worst, 0, 'f', 0)
        .arg(difference.sameSize ? QString() : QStringLiteral(", and the size is another"), seen,
             stored ? QString() : QStringLiteral(" (which cannot be written)"));
}

void remakeGolden() {
    remaking = true;
}

bool isRemakingGolden() {
    return remaking;
}

} // namespace velmora
