// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Dialogs.h"
#include "shell/FileWindow.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace velmora {

/// The full dialogs over a window. Those for files are ours, the others Qt's: a platform's tell nothing of
/// what goes on while they are open.
///
/// Every dialog raises `InitDialog` before it is shown and, however it ends, `DialogClose`; an accepted one
/// `ConfirmOK` between them. The others come from the file dialogs. If the parent is destroyed under a
/// dialog, that counts as cancelled, and since owner and properties may have gone with it they are left
/// alone.
///
/// The flags are not read: a file to open must exist, and one to be replaced is asked about, in any case.
class QtCommonDialogs final : public CDLG {
public:
    QtCommonDialogs(frmskins& skins, ExToolTip& tips, const ProgramFolders& folders,
                    QWidget* parent = nullptr)
        : desk_(skins, tips, folders)
        , parent_(parent) {}

    void setParent(QWidget* parent) { parent_ = parent; }
    /// What `ShowHelp` calls.
    void setHelp(std::function<void()> showHelp) { showHelp_ = std::move(showHelp); }

    DialogEnd ShowOpen(CDLGProperties& properties, CDLGEvents& owner) override;
    DialogEnd ShowSave(CDLGProperties& properties, CDLGEvents& owner) override;
    /// The custom colours are the object's own; a cancelled dialog leaves them as they were.
    DialogEnd ShowColor(CDLGProperties& properties, CDLGEvents& owner) override;
    DialogEnd ShowFont(CDLGProperties& properties, CDLGEvents& owner) override;
    /// Printing into a file, which is what is left without a printer, comes back as a blank `DeviceName` and
    /// the PDF's `fileName`; `setPrinterFields` makes a printer of either.
    DialogEnd ShowPrinter(CDLGProperties& properties, CDLGEvents& owner) override;
    DialogEnd ShowHelp(CDLGProperties& properties, CDLGEvents& owner) override;

private:
    FileDesk desk_;
    QPointer<QWidget> parent_;
    std::function<void()> showHelp_;
};

} // namespace velmora
