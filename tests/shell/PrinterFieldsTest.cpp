// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/PrinterFields.h"

#include <QPrinter>

#include <gmock/gmock.h>

using namespace velmora;

TEST(PrinterFieldsTest, EveryPaperCodeIsTheOneThatQtKnows) {
    for (const auto& [code, paper] : kPaperCodes) {
        EXPECT_EQ(QPageSize::id(code), paper) << code;
        EXPECT_EQ(paperOfCode(code), paper) << code;
        EXPECT_EQ(paperOfCode(codeOfPaper(paper)), paper) << code;
    }
    EXPECT_EQ(codeOfPaper(QPageSize::A4), 9);
    EXPECT_EQ(codeOfPaper(QPageSize::Custom), 0);
    EXPECT_EQ(paperOfCode(0), std::nullopt);
}

TEST(PrinterFieldsTest, WhatIsSetComesBack) {
    QPrinter printer;
    CDLGProperties properties;
    properties.fileName = "/tmp/score.pdf";
    properties.Copies = 3;
    properties.Orientation = 2;
    properties.PaperSize = 11;
    properties.PrintQuality = 600;
    setPrinterFields(printer, properties);
    EXPECT_EQ(printer.outputFormat(), QPrinter::PdfFormat);
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(printer.pageLayout().pageSize().id(), QPageSize::A5);
    EXPECT_EQ(printer.resolution(), 600);

    CDLGProperties read;
    readPrinterFields(printer, read);
    EXPECT_EQ(read.fileName, "/tmp/score.pdf");
    EXPECT_EQ(read.DeviceName, "");
    EXPECT_EQ(read.Copies, 3);
    EXPECT_EQ(read.Orientation, 2);
    EXPECT_EQ(read.PaperSize, 11);
    EXPECT_EQ(read.PrintQuality, 600);
}

TEST(PrinterFieldsTest, WhatNoPrinterHasChangesNothing) {
    QPrinter printer;
    printer.setOutputFileName("/tmp/score.pdf");
    printer.setPageSize(QPageSize(QPageSize::A3));
    const int resolution = printer.resolution();
    CDLGProperties properties;
    properties.DeviceName = "no such printer";
    properties.Copies = 0;
    properties.Orientation = 7;
    properties.PaperSize = 9999;
    properties.PrintQuality = 0;
    setPrinterFields(printer, properties);
    EXPECT_EQ(printer.outputFileName(), "/tmp/score.pdf");
    EXPECT_EQ(printer.copyCount(), 1);
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Portrait);
    EXPECT_EQ(printer.pageLayout().pageSize().id(), QPageSize::A3);
    EXPECT_EQ(printer.resolution(), resolution);
}
