// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "shell/FileIcons.h"
#include "shell/ModalDialog.h"
#include "shell/SkinnedWindow.h"

#include <QSize>

namespace velmora {

class FileDialog;
struct FileRequest;

/// What the file dialogs of a run share.
struct FileDesk {
    FileDesk(frmskins& theSkins, ExToolTip& theTips, ProgramFolders theFolders)
        : skins(theSkins)
        , tips(theTips)
        , folders(std::move(theFolders))
        , icons(theSkins.look()) {}

    frmskins& skins;
    ExToolTip& tips;
    ProgramFolders folders;
    FileIcons icons;
    QSize size{720, 480}; ///< of the next dialog: that of the last one
};

/// The window in which a file is chosen. `FileDialog` is all that stands in it.
class FileWindow : public SkinnedWindow {
public:
    /// @param desk outlives the window
    FileWindow(FileDesk& desk, QWidget* parent, FileRequest request);
    ~FileWindow() override;

    [[nodiscard]] FileDialog& dialog() const { return *dialog_; }

    /// Until a file is chosen or the dialog is cancelled, which it also is when the parent is closed.
    [[nodiscard]] ModalEnd run();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void nameParts();
    void place();

    FileDesk& desk_;
    FileDialog* dialog_;
};

} // namespace velmora
