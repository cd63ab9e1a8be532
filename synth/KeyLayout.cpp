// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyLayout.h"

#include "keyboard/PianoKeys.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmora {

namespace {
constexpr double kBlackWidth = 0.7; ///< of a white key's
constexpr double kBlackHeight = 0.6;
constexpr double kBlackLeft = 8; ///< behind the left edge of the key before
constexpr double kBlackTop = -7; ///< keys that begin so far above the area are the black ones
constexpr double kOverlap = 1;   ///< of a white key over the one before
constexpr double kLabelInset = 1;
constexpr double kLabelHeight = 18;
constexpr double kWhiteFoot = 7; ///< under a label
constexpr double kBlackFoot = 4;

/// How many white keys stand before each key.
constexpr std::array<int, kPianoKeys> kWhiteBefore = [] {
    std::array<int, kPianoKeys> before{};
    for (int key = 1; key < kPianoKeys; ++key)
        before[static_cast<std::size_t>(key)] =
            before[static_cast<std::size_t>(key - 1)] + (isBlackKey(key - 1) ? 0 : 1);
    return before;
}();
static_assert(kWhiteBefore.back() == kWhiteKeys - 1);
} // namespace

QRectF KeyLayout::key(int key) const {
    const double white = inner_.width() / kWhiteKeys;
    if (isBlackKey(key)) {
        const double left = this->key(key - 1).left() + kBlackLeft;
        return {left, kBlackTop, white * kBlackWidth, inner_.height() * kBlackHeight - kBlackTop};
    }
    const int place = kWhiteBefore[static_cast<std::size_t>(key)];
    return {place * (white - kOverlap), 0, white, std::max(0.0, inner_.height() - 1)};
}

QRectF KeyLayout::label(int key) const {
    const QRectF face = this->key(key);
    const double foot = face.bottom() - (isBlackKey(key) ? kBlackFoot : kWhiteFoot);
    return {face.left() + kLabelInset, foot - kLabelHeight, face.width() - 2 * kLabelInset, kLabelHeight};
}

std::optional<int> KeyLayout::keyAt(QPointF at) const {
    if (at.y() < 0)
        return std::nullopt;
    for (const bool black : {true, false})                // the black ones lie above
        for (int key = kPianoKeys - 1; key >= 0; --key) { // and of two white ones the later
            const QRectF face = this->key(key);
            if (isBlackKey(key) == black && at.x() >= face.left() && at.x() < face.right() &&
                at.y() < face.bottom())
                return key;
        }
    return std::nullopt;
}

double KeyLayout::heightOn(int key, QPointF at) const {
    const double foot = this->key(key).bottom();
    return foot > 0 ? std::clamp(at.y() / foot, 0.0, 1.0) : 0;
}

} // namespace velmora
