// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <string_view>
#include <vector>

namespace velmora {

/// A program that shows the volumes of the desktop.
struct Mixer {
    QString program;
    QStringList words;
    bool operator==(const Mixer&) const = default;
};

/// What may be there, in the order in which it is tried: what belongs to this desktop first, then what runs
/// everywhere, then what belongs to others.
/// @param desktop as XDG_CURRENT_DESKTOP has it: names, parted by colons
[[nodiscard]] std::vector<Mixer> mixersFor(std::string_view desktop);

/// Starts the first of them that is installed and can be started. False if none can.
[[nodiscard]] bool startVolumeControl();

} // namespace velmora
