// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/PrinterFields.h"

#include "base/DialogNames.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kPortrait = 1;
constexpr int kLandscape = 2;
} // namespace

std::optional<QPageSize::PageSizeId> paperOfCode(int code) {
    const auto row = std::ranges::find(kPaperCodes, code, &PaperCode::code);
    return row == kPaperCodes.end() ? std::nullopt : std::optional(row->paper);
}

int codeOfPaper(QPageSize::PageSizeId paper) {
    const auto row = std::ranges::find(kPaperCodes, paper, &PaperCode::paper);
    return row == kPaperCodes.end() ? 0 : row->code;
}

void setPrinterFields(QPrinter& printer, const CDLGProperties& properties) {
    const QString device = QString::fromStdString(properties.DeviceName);
    if (!device.isEmpty() && !QPrinterInfo::printerInfo(device).isNull())
        printer.setPrinterName(device);
    else if (device.isEmpty() && !properties.fileName.empty())
        printer.setOutputFileName(textOfBytes(properties.fileName));
    if (properties.Copies >= 1)
        printer.setCopyCount(properties.Copies);
    if (const auto paper = paperOfCode(properties.PaperSize))
        printer.setPageSize(QPageSize(*paper));
    if (properties.Orientation == kPortrait || properties.Orientation == kLandscape)
        printer.setPageOrientation(properties.Orientation == kLandscape ? QPageLayout::Landscape
                                                                        : QPageLayout::Portrait);
    if (properties.PrintQuality > 0)
        printer.setResolution(properties.PrintQuality);
}

void readPrinterFields(const QPrinter& printer, CDLGProperties& properties) {
    const bool intoFile = !printer.outputFileName().isEmpty();
    properties.DeviceName = intoFile ? std::string() : printer.printerName().toStdString();
    properties.fileName = intoFile ? bytesOfText(printer.outputFileName()) : std::string();
    properties.Copies = printer.copyCount();
    properties.Orientation =
        printer.pageLayout().orientation() == QPageLayout::Landscape ? kLandscape : kPortrait;
    properties.PaperSize = codeOfPaper(printer.pageLayout().pageSize().id());
    properties.PrintQuality = printer.resolution();
}

} // namespace velmora
