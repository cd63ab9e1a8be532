// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QtGlobal>

class QObject;

namespace velmora {

struct Appearance;

/// Draws the characters and the icons that the composing window shows first, for the caches of both. While
/// the start window waits for its user there is time for that; when the user has pressed, there is none, so
/// it is done piece by piece, and what the user does comes between two.
/// @param window nothing is prepared any more once it is gone; @p look lasts as long
/// @param scale of the device, in its pixels to a logical one
void prepareFirstPicture(QObject& window, const Appearance& look, qreal scale);

} // namespace velmora
