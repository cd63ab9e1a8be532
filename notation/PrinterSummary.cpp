// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrinterSummary.h"

#include <algorithm>
#include <charconv>

namespace velmora::notation {

namespace {

/// Names of paper in use beside those of `kPaperRows`, and the codes of others that are met often.
struct MediaRow {
    std::string_view name;
    int code;
};
constexpr std::array kMedia{
    MediaRow{"A4", 9},     MediaRow{"iso_a4", 9},
    MediaRow{"Letter", 1}, MediaRow{"na_letter", 1},
    MediaRow{"Legal", 5},  MediaRow{"na_legal_8.5x14in", 5},
    MediaRow{"A3", 8},     MediaRow{"iso_a3_297x420mm", 8},
    MediaRow{"A5", 11},    MediaRow{"iso_a5_148x210mm", 11},
};

std::string_view option(const Printer& printer, const char* name) {
    const auto at = printer.options.find(name);
    return at == printer.options.end() ? std::string_view() : std::string_view(at->second);
}

/// The number that a text begins with; 0 for none.
int leadingNumber(std::string_view text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

int codeOfMedia(std::string_view media) {
    media = media.substr(0, media.find(','));
    for (const PaperRow& row : kPaperRows)
        if (media == row.media)
            return row.code;
    const auto* const found = std::ranges::find(kMedia, media, &MediaRow::name);
    return found == kMedia.end() ? 0 : found->code;
}

} // namespace

std::string_view scaleModeText(int mode) {
    const auto* const found = std::ranges::find(kScaleModes, mode, &ScaleModeRow::mode);
    return found == kScaleModes.end() ? std::string_view() : found->text;
}

PrinterProperties propertiesOf(const Printer& printer) {
    PrinterProperties properties;
    std::string_view media = option(printer, "media");
    if (media.empty())
        media = option(printer, "PageSize");
    properties.PaperSize = codeOfMedia(media);
    constexpr int kUpright = 3; // as the printing protocol counts; 5 is landscape the other way round
    const int turn = leadingNumber(option(printer, "orientation-requested"));
    if (turn >= kUpright && turn <= 6)
        properties.Orientation = turn == 4 || turn == 5 ? 2 : 1;
    properties.quality = leadingNumber(option(printer, "printer-resolution"));
    return properties;
}

std::optional<PaperSize> paperOfCode(int code) {
    for (std::size_t i = 0; i < kPaperRows.size(); ++i)
        if (kPaperRows[i].code == code)
            return static_cast<PaperSize>(i);
    return std::nullopt;
}

std::optional<PaperTurn> turnOfCode(int code) {
    if (code != 1 && code != 2)
        return std::nullopt;
    return code == 1 ? PaperTurn::Portrait : PaperTurn::Landscape;
}

std::string_view paperText(int code) {
    const auto paper = paperOfCode(code);
    return paper ? rowOf(*paper).text : std::string_view();
}

std::string_view turnText(int code) {
    const auto turn = turnOfCode(code);
    if (!turn)
        return {};
    return *turn == PaperTurn::Portrait ? "Portrait" : "Landscape";
}

} // namespace velmora::notation
