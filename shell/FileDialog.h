// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/DialogNames.h"
#include "shell/ModalDialog.h"

#include <QFileDialog>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

class QMessageBox;

namespace velmora {

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

/// Qt's file dialog with our filters and extensions, which asks before it lets the file be replaced that is
/// really going to be written.
class FileDialog : public QFileDialog {
public:
    FileDialog(QWidget* parent, DialogSource source, FileRequest request);

    /// Lives until its parent goes, or until the caller deletes it.
    [[nodiscard]] ModalEnd run();

    /// After an accepted `run`.
    [[nodiscard]] std::string chosenPath() const;
    /// From 1; 0 if there are no filters.
    [[nodiscard]] int filterIndex() const;

protected:
    void done(int result) override;

private:
    void showWholeColumns();
    void showTypes(int selected);
    void followType();
    [[nodiscard]] bool saves() const { return request_.mode == AcceptSave; }
    [[nodiscard]] bool isOfPlatform() const;
    [[nodiscard]] std::optional<std::filesystem::path> fileInTheWay() const;
    [[nodiscard]] QMessageBox* question(const std::filesystem::path& file);

    const FileRequest request_;
    const QStringList nameFilters_;
    std::string extension_;
};

} // namespace velmora
