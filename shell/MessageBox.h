// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

class QWidget;

namespace velmora {

class frmskins;

/// Says something to the user, who confirms it. The title is the program's unless given.
void tell(frmskins& skins, QWidget* parent, const QString& text,
          const QString& title = QStringLiteral("Velmora"));

enum class Answer : std::uint8_t {
    Yes,
    No,
    None ///< Esc, or the box was closed: nothing is to be lost by it
};
/// A question with a Yes and a No button. The keys Y and N answer, too.
[[nodiscard]] Answer askYesNo(frmskins& skins, QWidget* parent, const QString& text,
                              const QString& title = QStringLiteral("Velmora"));

enum class SaveAnswer : std::uint8_t {
    Save,
    Discard,
    Cancel ///< also Esc, and a box that was closed
};
/// A question with the buttons "Save", "Discard" and "Cancel". The keys S, D and Esc answer, too.
[[nodiscard]] SaveAnswer askSave(frmskins& skins, QWidget* parent, const QString& text);
/// The same for those who can't wait: both come back at once, and the box goes away with its parent, without
/// an answer then.
void showMessage(frmskins& skins, QWidget* parent, const QString& text);
/// @param enter Yes or No: what Enter answers
void ask(frmskins& skins, QWidget* parent, const QString& text, Answer enter,
         std::function<void(Answer)> answered);

} // namespace velmora
