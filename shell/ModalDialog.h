// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

class QDialog;

namespace velmora {

/// Whose dialogs are shown where the platform has its own.
enum class DialogSource { Platform, Qt };

/// Set to "qt", it has Qt's own dialogs shown everywhere.
inline constexpr const char* kDialogsVariable = "VELMORA_DIALOGS";
[[nodiscard]] DialogSource dialogSourceFromEnvironment();

/// What keeps any dialog from being shown, in words; blank if nothing does.
[[nodiscard]] std::string whyNoDialogs();

/// From now on the dialog is cancelled when the window of its parent is closed.
void closeWithParent(QDialog& dialog);

enum class ModalEnd { Accepted, Cancelled, Destroyed };

/// Shows the dialog until it ends; one whose parent's window is closed is cancelled. `Destroyed` if it went
/// away with its parent: then nothing that may belong to that window is to be touched any more.
[[nodiscard]] ModalEnd runModally(QDialog& dialog);

} // namespace velmora
