// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRectF>
#include <QSizeF>

#include <optional>

namespace velmora {

/// Where the keys stand in the key area: 26 white ones share its width, each overlapping the one before by a
/// pixel, so that a strip stays bare at the right end. A black key begins 8 pixels right of the left edge of
/// the key before it and lies above the white ones. Logical pixels, not rounded.
class KeyLayout {
public:
    KeyLayout() = default;
    /// @param inner of the key area
    explicit KeyLayout(QSizeF inner) : inner_(inner) {}

    /// The face of the key, `CmdKey`; a black one begins above the area.
    [[nodiscard]] QRectF key(int key) const;
    /// The box at its foot that its label stands in, `NoteX`.
    [[nodiscard]] QRectF label(int key) const;
    /// The key that a press there strikes: none beside the keys.
    [[nodiscard]] std::optional<int> keyAt(QPointF at) const;
    /// How far down the key's visible face a point lies, 0 at its top to 1 at its foot.
    [[nodiscard]] double heightOn(int key, QPointF at) const;

private:
    QSizeF inner_;
};

} // namespace velmora
