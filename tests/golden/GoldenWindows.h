// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Settings.h"
#include "tests/support/TestDesk.h"

#include <QImage>
#include <QWidget>

namespace velmora {

/// Everything that a window of the program needs, in one skin and with settings of its own.
struct GoldenProgram : TestDesk {
    explicit GoldenProgram(int skinType, int buttonStyle = 1)
        : TestDesk([=](SettingsStore& store) {
            settings::save(store, settings::Classic, 0);
            settings::save(store, settings::Skin_type, static_cast<std::int16_t>(skinType));
            settings::save(store, settings::Skin_buttons, static_cast<std::int16_t>(buttonStyle));
        }) {}
};

/// The ground on which a window stands in a picture: what is outside its region shows.
inline constexpr QRgb kDesk = qRgb(208, 212, 220);

/// The widget as a screen of that scale factor shows it.
[[nodiscard]] inline QImage pictureOf(QWidget& widget, qreal scale) {
    QImage picture((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(kDesk);
    widget.render(&picture);
    return picture;
}

} // namespace velmora
