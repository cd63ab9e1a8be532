// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Dialogs.h"

#include <QPageSize>

#include <array>
#include <optional>

class QPrinter;

namespace velmora {

/// A number of `CDLGProperties::PaperSize`, as printer drivers have long counted paper.
struct PaperCode {
    int code = 0;
    QPageSize::PageSizeId paper = QPageSize::A4;
};

inline constexpr std::array<PaperCode, 29> kPaperCodes{{
    {1, QPageSize::Letter},
    {3, QPageSize::Tabloid},
    {4, QPageSize::Ledger},
    {5, QPageSize::Legal},
    {6, QPageSize::Statement},
    {7, QPageSize::ExecutiveStandard},
    {8, QPageSize::A3},
    {9, QPageSize::A4},
    {11, QPageSize::A5},
    {12, QPageSize::JisB4},
    {13, QPageSize::JisB5},
    {15, QPageSize::Quarto},
    {16, QPageSize::Imperial10x14},
    {18, QPageSize::Note},
    {19, QPageSize::Envelope9},
    {20, QPageSize::Comm10E},
    {21, QPageSize::Envelope11},
    {22, QPageSize::Envelope12},
    {23, QPageSize::Envelope14},
    {27, QPageSize::DLE},
    {28, QPageSize::C5E},
    {30, QPageSize::EnvelopeC4},
    {31, QPageSize::EnvelopeC6},
    {33, QPageSize::EnvelopeB4},
    {34, QPageSize::EnvelopeB5},
    {37, QPageSize::EnvelopeMonarch},
    {42, QPageSize::B4},
    {66, QPageSize::A2},
    {70, QPageSize::A6},
}};

[[nodiscard]] std::optional<QPageSize::PageSizeId> paperOfCode(int code);
/// 0 for paper without a number.
[[nodiscard]] int codeOfPaper(QPageSize::PageSizeId paper);

/// Hands the printer fields over. Values that no printer has (copies below 1, a quality of 0, unknown paper
/// or device) leave the printer as it is. With a file name and no device, the printer writes that PDF file.
void setPrinterFields(QPrinter& printer, const CDLGProperties& properties);
/// Takes them back. Printing into a file leaves the device blank and names the file.
void readPrinterFields(const QPrinter& printer, CDLGProperties& properties);

} // namespace velmora
