// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "base/Settings.h"
#include "base/VirtualLoop.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/QtFileDialogs.h"
#include "shell/frmskins.h"
#include "sound/DeviceChooser.h"
#include "support/RecordingPort.h"
#include "tests/support/MemorySettings.h"

#include <QImage>
#include <QTemporaryDir>
#include <QWidget>

namespace velmora {

/// Everything that a window of the program needs, in one skin and with settings of its own.
struct GoldenProgram {
    explicit GoldenProgram(int skinType, int buttonStyle = 1) {
        settings::save(settings, settings::Skin_type, static_cast<std::int16_t>(skinType));
        settings::save(settings, settings::Skin_buttons, static_cast<std::int16_t>(buttonStyle));
        skins.emplace(settings);
        workspace.emplace(settings, folders);
    }
    [[nodiscard]] Application application() {
        return {.settings = settings,
                .folders = folders,
                .skins = *skins,
                .menu = menu,
                .tips = tips,
                .dialogs = dialogs,
                .loop = loop,
                .port = port,
                .devices = devices,
                .workspace = *workspace,
                .openHelp = [](const QString& /*page*/) {},
                .setup = {.open = [] {},
                          .channelChanged = {},
                          .refresh = {},
                          .pickInstrument = {},
                          .showMapper = {}},
                .quit = [] {}};
    }

    QTemporaryDir home;
    MemorySettings settings;
    ProgramFolders folders{home.path().toStdString()};
    std::optional<frmskins> skins;
    Frmmenu menu;
    ExToolTip tips{settings};
    QtFileDialogs dialogs{nullptr, DialogSource::Qt};
    VirtualLoop loop;
    RecordingPort port{loop};
    DeviceChooser devices{port, {.read = [] { return std::nullopt; }, .write = [](int /*device*/) {}}};
    std::optional<Workspace> workspace;
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
