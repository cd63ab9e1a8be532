// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>
#include <QString>

#include <string>

class QComboBox;
class QLabel;
class QWidget;

namespace velmora {

struct Appearance;
struct Desk;
struct Tip;

/// What the panels of the Recording Studio are made with.
struct StudioParts {
    Desk& desk;
    const Appearance& look;
};

/// A list under the small words that name it.
struct ListRow {
    const char* name;
    const char* words; ///< over it
    const char* tip;   ///< title of its tool text
    const char* text;  ///< what that says besides
    QRect place;       ///< of the list
};
[[nodiscard]] QComboBox* addList(QWidget& parent, Desk& desk, const ListRow& row);

/// What the words of `TakeLoudness` mean.
[[nodiscard]] Tip loudnessTip();

/// A name without its folder.
[[nodiscard]] QString fileName(const std::string& path);

/// Shows a text where another stands, and does nothing where it stands already.
void showText(QLabel& label, const std::string& text);

} // namespace velmora
