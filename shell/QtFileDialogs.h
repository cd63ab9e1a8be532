// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Dialogs.h"
#include "shell/FileWindow.h"

#include <QPointer>
#include <QWidget>

namespace velmora {

struct FileRequest;

/// The plain file dialogs, in the frame and skin of the windows: over the one that is active, else over a
/// given one.
///
/// A start may be a folder or the path of a file, which is then proposed; a folder that is gone stands for
/// its nearest parent. Before `SaveDialog` returns, the user has agreed to the loss of the file that the
/// caller will write, which is the returned path `withExtension` of the chosen filter. A name without an
/// extension comes back with it.
class QtFileDialogs final : public clsDialog {
public:
    QtFileDialogs(frmskins& skins, ExToolTip& tips, const ProgramFolders& folders, QWidget* parent = nullptr)
        : desk_(skins, tips, folders)
        , parent_(parent) {}

    void setParent(QWidget* parent) { parent_ = parent; }

    ChosenFile OpenDialog(std::string_view title, std::string_view filterText,
                          std::string_view startFolder) override;
    ChosenFile SaveDialog(std::string_view title, std::string_view filterText,
                          std::string_view startFolder) override;
    ChosenFile SaveDialog1(std::string_view title, std::string_view filterText, std::string_view startFolder,
                           std::string_view extension) override;

private:
    [[nodiscard]] ChosenFile choose(FileRequest request);

    FileDesk desk_;
    QPointer<QWidget> parent_;
};

} // namespace velmora
