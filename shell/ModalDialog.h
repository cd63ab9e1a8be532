// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

class QDialog;
class QWidget;

namespace velmora {

/// What keeps any dialog from being shown, in words; blank if nothing does.
[[nodiscard]] std::string whyNoDialogs();

/// From now on the dialog, or the window that stands for one, is closed when the window of its parent is.
void closeWithParent(QWidget& dialog);

enum class ModalEnd { Accepted, Cancelled, Destroyed };

/// Shows the dialog until it ends; one whose parent's window is closed is cancelled. `Destroyed` if it went
/// away with its parent: then nothing that may belong to that window is to be touched any more.
[[nodiscard]] ModalEnd runModally(QDialog& dialog);

} // namespace velmora
