// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::notation {

/// A text that was placed on a page.
struct LyricsItem {
    int page = 1;    ///< from 1
    double left = 0; ///< pixels of the page
    double top = 0;
    double y = 0;     ///< `CurrentY` of `Pic1` when it was drawn
    double size = 12; ///< `FontSize`
    std::string font = "Times New Roman";
    std::string text{};
    std::string line{}; ///< as it was read, without its end; blank for a new one
};

/// What a lyrics file holds, all of it optional.
struct LyricsFile {
    std::optional<std::string> title{};
    std::optional<double> width{};      ///< `MDIScore.Width`
    std::optional<double> sheetWidth{}; ///< `MDIScore.ActiveForm.Width`
    std::optional<double> SpacerHeight{};
    std::optional<double> BarWidth{};
    std::optional<double> HeaderHeight{};
    std::optional<int> key{};   ///< `Combo1.ListIndex`
    std::optional<int> start{}; ///< `Text4`
    std::optional<std::string> text1{};
    std::vector<LyricsItem> items{}; ///< in the file's order
    std::string extras{};            ///< the lines of `LyricsExtras`, each with CR LF
};

/// Reads what can be found. Lines end with CR LF or LF; bytes that are not valid UTF-8 are Windows-1252.
[[nodiscard]] LyricsFile parseLyrics(std::string_view bytes);

/// The file's bytes, with CR LF: the title's line if there is a title, the values, the items as they stand,
/// each as it was read, the extras.
[[nodiscard]] std::string serializeLyrics(const LyricsFile& file);

/// The line of an item: as it was read, or as it is written anew.
[[nodiscard]] std::string lineOf(const LyricsItem& item);

/// The number in its shortest form, without an exponent.
[[nodiscard]] std::string numberText(double number);

} // namespace velmora::notation
