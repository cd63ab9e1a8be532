// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtFileDialogs.h"

#include "shell/FileDialog.h"
#include "shell/ModalDialog.h"

#include <QApplication>

namespace velmora {

namespace {
FileRequest requestOf(QFileDialog::AcceptMode mode, std::string_view title, std::string_view filterText,
                      std::string_view start) {
    FileRequest request;
    request.mode = mode;
    request.title = title;
    request.filters = splitFilters(filterText);
    request.start = startPlace(start, request.filters);
    return request;
}

/// The window that asks: over another one, a dialog would leave that before it.
QWidget* askingWindow(QWidget* otherwise) {
    QWidget* const active = QApplication::activeWindow();
    return active && active->windowType() == Qt::Window ? active : otherwise;
}
} // namespace

ChosenFile QtFileDialogs::choose(FileRequest request) {
    if (!whyNoDialogs().empty())
        return {};
    const QPointer window = new FileWindow(desk_, askingWindow(parent_), std::move(request));
    const ModalEnd end = window->run();
    if (end == ModalEnd::Destroyed)
        return {};
    ChosenFile chosen;
    if (end == ModalEnd::Accepted)
        chosen = {window->dialog().chosenPath(), window->dialog().filterIndex()};
    delete window;
    return chosen;
}

ChosenFile QtFileDialogs::OpenDialog(std::string_view title, std::string_view filterText,
                                     std::string_view startFolder) {
    return choose(requestOf(QFileDialog::AcceptOpen, title, filterText, startFolder));
}

ChosenFile QtFileDialogs::SaveDialog(std::string_view title, std::string_view filterText,
                                     std::string_view startFolder) {
    return choose(requestOf(QFileDialog::AcceptSave, title, filterText, startFolder));
}

ChosenFile QtFileDialogs::SaveDialog1(std::string_view title, std::string_view filterText,
                                      std::string_view startFolder, std::string_view extension) {
    FileRequest request = requestOf(QFileDialog::AcceptSave, title, filterText, startFolder);
    request.rule = ExtensionRule::Callers;
    request.extension = withPoint(extension);
    return choose(std::move(request));
}

} // namespace velmora
