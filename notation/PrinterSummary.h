// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PrintLayout.h"
#include "notation/Printers.h"

#include <array>
#include <optional>
#include <string_view>

namespace velmora::notation {

/// A printer's scale mode in words.
struct ScaleModeRow {
    int mode;
    std::string_view text;
};
/// The last is spelled so: meant.
inline constexpr std::array<ScaleModeRow, 5> kScaleModes{
    {{1, "Twips"}, {3, "Pixel"}, {5, "Inches"}, {6, "Millimeters"}, {7, "Centiimeters"}}};
/// Blank for a mode without words.
[[nodiscard]] std::string_view scaleModeText(int mode);

/// What a printer says of itself, as numbers of printer drivers; 0 for what it doesn't say.
struct PrinterProperties {
    int PaperSize = 0;
    int Orientation = 0; ///< 1 portrait, 2 landscape
    int quality = 0;     ///< dots an inch
};
/// From the options "media", "orientation-requested" and "printer-resolution".
[[nodiscard]] PrinterProperties propertiesOf(const Printer& printer);

[[nodiscard]] std::optional<PaperSize> paperOfCode(int code);
[[nodiscard]] std::optional<PaperTurn> turnOfCode(int code);
/// Blank for other paper, and for a turn that has no words.
[[nodiscard]] std::string_view paperText(int code);
[[nodiscard]] std::string_view turnText(int code);

} // namespace velmora::notation
