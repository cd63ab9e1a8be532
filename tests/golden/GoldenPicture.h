// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>
#include <QString>

namespace velmora {

/// How far two pictures are apart.
///
/// A pixel differs if a channel does by more than 24: less is what compilers and versions of the font
/// renderer make of the same curve. Such pixels may be 0.2 % of a picture, since text and round corners are
/// everywhere. But a lost icon is less than that, so no tile of 16 by 16 logical pixels may have more than
/// an eighth of its pixels differ.
struct Difference {
    bool sameSize = true;
    qint64 pixels = 0; ///< that differ
    double share = 0;  ///< of all pixels
    double worst = 0;  ///< of the pixels of the tile with the most of them

    [[nodiscard]] bool isTolerable() const;
};
[[nodiscard]] Difference compare(const QImage& one, const QImage& other, int scale);

/// The second picture in pale grey, with what differs from the first in red.
[[nodiscard]] QImage differencePicture(const QImage& one, const QImage& other);
/// "old | new | difference", for whoever judges a change.
[[nodiscard]] QImage sideBySide(const QImage& old, const QImage& now);

/// Compares with the committed picture of that name. An empty string if it is like it; otherwise what is
/// wrong, with the path of the picture of the difference, which is then in the build folder.
/// If pictures are being made anew, stores it instead, and says on the standard output what has changed.
[[nodiscard]] QString checkAgainstGolden(const QString& name, const QImage& picture, int scale);
/// From now on `checkAgainstGolden` stores.
void remakeGolden();
[[nodiscard]] bool isRemakingGolden();

} // namespace velmora
