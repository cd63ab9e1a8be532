// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtCommonDialogs.h"

#include "shell/FileDialog.h"
#include "shell/PrinterFields.h"

#include <QColorDialog>
#include <QFileSystemModel>
#include <QFontDatabase>
#include <QFontDialog>
#include <QPrintDialog>
#include <QPrinter>

#include <concepts>
#include <filesystem>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr const char* kCancelError = "Cancel was selected.";

DialogEnd failed(std::string words) {
    return {.accepted = false, .error = std::move(words)};
}

DialogEnd cancelled(CDLGProperties& properties) {
    properties.fileName.clear();
    return failed(properties.errorOnCancel ? kCancelError : "");
}

/// Between the events that all dialogs raise, runs one by @p run; if accepted, lets @p takeOver read it.
template<class Dialog, class Run, class TakeOver>
DialogEnd show(Dialog* dialog, CDLGProperties& properties, CDLGEvents& owner, Run run, TakeOver takeOver) {
    const bool errorOnCancel = properties.errorOnCancel;
    if (!properties.title.empty())
        dialog->setWindowTitle(QString::fromStdString(properties.title));
    if constexpr (std::derived_from<Dialog, QDialog>)
        QObject::connect(dialog, &QDialog::accepted, dialog, [&owner] { owner.ConfirmOK(); });
    owner.InitDialog();
    const ModalEnd end = run(*dialog);
    if (end == ModalEnd::Destroyed)
        return failed(errorOnCancel ? kCancelError : "");
    if (end == ModalEnd::Accepted)
        takeOver(*dialog);
    delete dialog;
    owner.DialogClose();
    return end == ModalEnd::Accepted ? DialogEnd{.accepted = true, .error = {}} : cancelled(properties);
}

StartPlace startOf(const CDLGProperties& properties) {
    const fs::path file(properties.fileName);
    const fs::path path = fs::path(properties.initialFolder) / file;
    return file.has_filename() ? StartPlace{path.parent_path(), file.filename().string()}
                               : StartPlace{path, std::string()};
}

void raiseFileEvents(FileDialog& dialog, CDLGEvents& owner) {
    QObject::connect(&dialog, &QFileDialog::currentChanged, &dialog,
                     [&owner](const QString& path) { owner.FileChange(path.toStdString()); });
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&] { owner.TypeChange(dialog.filterIndex()); });
    // The dialog's own signal misses folders that are typed; its model sees every one.
    if (auto* model = dialog.findChild<QFileSystemModel*>())
        QObject::connect(model, &QFileSystemModel::rootPathChanged, &dialog,
                         [&owner](const QString& folder) { owner.FolderChange(folder.toStdString()); });
}

DialogEnd showFileDialog(FileDesk& desk, QWidget* parent, QFileDialog::AcceptMode mode,
                         CDLGProperties& properties, CDLGEvents& owner) {
    if (const std::string why = whyNoDialogs(); !why.empty())
        return failed(why);
    auto* window = new FileWindow(desk, parent,
                                  {.mode = mode,
                                   .title = properties.title,
                                   .filters = splitFilters(properties.filterText),
                                   .filterIndex = properties.filterIndex,
                                   .start = startOf(properties),
                                   .rule = ExtensionRule::CallersThenType,
                                   .extension = withPoint(properties.defaultExtension)});
    raiseFileEvents(window->dialog(), owner);
    QObject::connect(&window->dialog(), &QDialog::accepted, window, [&owner] { owner.ConfirmOK(); });
    const auto run = [](FileWindow& shown) { return shown.run(); };
    return show(window, properties, owner, run, [&](const FileWindow& shown) {
        properties.fileName = shown.dialog().chosenPath();
        properties.filterIndex = shown.dialog().filterIndex();
    });
}

QFont fontOf(const CDLGProperties& properties) {
    QFont font;
    if (!properties.fontName.empty())
        font.setFamily(QString::fromStdString(properties.fontName));
    if (properties.fontSize > 0)
        font.setPointSizeF(properties.fontSize);
    font.setBold(properties.bold);
    font.setItalic(properties.italic);
    font.setUnderline(properties.underline);
    font.setStrikeOut(properties.strikeThrough);
    return font;
}

void takeFont(const QFont& font, CDLGProperties& properties) {
    // The dialog knows whole sizes only; one that was not touched keeps its fraction.
    if (font.pointSize() != fontOf(properties).pointSize() || properties.fontSize <= 0)
        properties.fontSize = static_cast<float>(font.pointSizeF());
    properties.fontName = font.family().toStdString();
    properties.bold = font.bold();
    properties.italic = font.italic();
    properties.underline = font.underline();
    properties.strikeThrough = font.strikeOut();
}
} // namespace

DialogEnd QtCommonDialogs::ShowOpen(CDLGProperties& properties, CDLGEvents& owner) {
    return showFileDialog(desk_, parent_, QFileDialog::AcceptOpen, properties, owner);
}

DialogEnd QtCommonDialogs::ShowSave(CDLGProperties& properties, CDLGEvents& owner) {
    return showFileDialog(desk_, parent_, QFileDialog::AcceptSave, properties, owner);
}

DialogEnd QtCommonDialogs::ShowColor(CDLGProperties& properties, CDLGEvents& owner) {
    if (const std::string why = whyNoDialogs(); !why.empty())
        return failed(why);
    for (int i = 0; i < static_cast<int>(properties.customColours.size()); ++i)
        QColorDialog::setCustomColor(i, QColor::fromRgb(properties.customColours[i]));
    auto* dialog = new QColorDialog(QColor::fromRgb(properties.colour), parent_);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    return show(dialog, properties, owner, runModally, [&](const QColorDialog& shown) {
        properties.colour = shown.selectedColor().rgb() & RGB_MASK;
        for (int i = 0; i < static_cast<int>(properties.customColours.size()); ++i)
            properties.customColours[i] = QColorDialog::customColor(i).rgb() & RGB_MASK;
    });
}

DialogEnd QtCommonDialogs::ShowFont(CDLGProperties& properties, CDLGEvents& owner) {
    if (const std::string why = whyNoDialogs(); !why.empty())
        return failed(why);
    if (QFontDatabase::families().isEmpty())
        return failed("No fonts are installed.");
    auto* dialog = new QFontDialog(fontOf(properties), parent_);
    dialog->setOption(QFontDialog::DontUseNativeDialog);
    return show(dialog, properties, owner, runModally,
                [&](const QFontDialog& shown) { takeFont(shown.selectedFont(), properties); });
}

DialogEnd QtCommonDialogs::ShowPrinter(CDLGProperties& properties, CDLGEvents& owner) {
    if (const std::string why = whyNoDialogs(); !why.empty())
        return failed(why);
    QPrinter printer(QPrinter::HighResolution);
    setPrinterFields(printer, properties);
    if (!printer.isValid())
        return failed("The printer \"" + printer.printerName().toStdString() + "\" can't be used.");
    auto* dialog = new QPrintDialog(&printer, parent_);
    return show(dialog, properties, owner, runModally,
                [&](const QPrintDialog&) { readPrinterFields(printer, properties); });
}

DialogEnd QtCommonDialogs::ShowHelp(CDLGProperties& /*properties*/, CDLGEvents& owner) {
    if (!showHelp_)
        return failed("There is no help to show.");
    owner.InitDialog();
    const auto showHelp = showHelp_;
    showHelp();
    owner.DialogClose();
    return {.accepted = true, .error = {}};
}

} // namespace velmora
