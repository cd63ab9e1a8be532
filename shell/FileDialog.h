// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/DialogNames.h"

#include <QFileDialog>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class FilePlaces;
class frmskins;
struct FileDesk;

/// What a name without an extension gets.
enum class ExtensionRule {
    OfType,          ///< the chosen type's, which its writer adds to any name that lacks it
    CallersThenType, ///< the caller's until another type with an extension is chosen
    Callers          ///< the caller's, whatever the type
};

struct FileRequest {
    QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    std::string title;
    std::vector<FileFilter> filters;
    int filterIndex = 1; ///< from 1; any other is the first
    StartPlace start;
    ExtensionRule rule = ExtensionRule::OfType;
    std::string extension; ///< the caller's, with its point; blank for the type's
};

/// Qt's file dialog with our filters, extensions, places and icons, which asks before it lets the file be
/// replaced that is really going to be written. It stands in a window of ours, `FileWindow`.
class FileDialog : public QFileDialog {
public:
    /// @param desk outlives the dialog
    FileDialog(FileDesk& desk, FileRequest request, QWidget* parent);

    /// Once it was accepted.
    [[nodiscard]] std::string chosenPath() const;
    /// From 1; 0 if there are no filters.
    [[nodiscard]] int filterIndex() const;

    void done(int result) override;

protected:
    void accept() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void arrangeParts(FileDesk& desk);
    void arrangeList();
    void showTypes(int selected);
    void followType();
    [[nodiscard]] bool saves() const { return request_.mode == AcceptSave; }
    [[nodiscard]] std::optional<std::filesystem::path> fileInTheWay() const;

    const FileRequest request_;
    const QStringList nameFilters_;
    std::string extension_;
    frmskins& skins_;
    FilePlaces* places_ = nullptr;
};

} // namespace velmora
