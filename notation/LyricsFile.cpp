// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/LyricsFile.h"

#include "base/Text.h"
#include "base/TextCoding.h"
#include "notation/LyricsExtras.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora::notation {

namespace {

/// A value of a document: the key that the reader looks for, and what the writer puts behind it.
struct NumberRow {
    std::string_view key;
    std::string_view blank;
    void (*set)(LyricsFile&, double);
    std::optional<double> (*get)(const LyricsFile&);
};

int wholeNumber(double number) {
    return static_cast<int>(std::nearbyint(
        std::clamp<double>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max())));
}

template<auto member>
constexpr NumberRow number(std::string_view key, std::string_view blank = "") {
    return {key, blank, [](LyricsFile& file, double value) { file.*member = value; },
            [](const LyricsFile& file) -> std::optional<double> { return file.*member; }};
}
template<auto member>
constexpr NumberRow whole(std::string_view key, std::string_view blank = "") {
    return {key, blank, [](LyricsFile& file, double value) { file.*member = wholeNumber(value); },
            [](const LyricsFile& file) -> std::optional<double> {
                return file.*member ? std::optional<double>(*(file.*member)) : std::nullopt;
            }};
}

constexpr std::array kNumbers{
    number<&LyricsFile::width>("MDIScore.Width="),
    number<&LyricsFile::sheetWidth>("MDIScore.ActiveForm.Width="),
    number<&LyricsFile::SpacerHeight>("Label3="),
    number<&LyricsFile::BarWidth>("Lbar=", " "),
    number<&LyricsFile::HeaderHeight>("Label2=", " "),
    whole<&LyricsFile::key>("Combo1.ListIndex=", " "),
    whole<&LyricsFile::start>("text4="),
};
constexpr std::string_view kEnd = "\r\n";
constexpr std::string_view kTitle = "Title=";
constexpr std::string_view kText1 = "text1=";

constexpr std::string_view kPage = "Page :";
constexpr std::string_view kLeft = "Left:";
constexpr std::string_view kTop = "Top:";
constexpr std::string_view kY = "Pic1.CurrentY=";
constexpr std::string_view kSize = "Pic1.FontSize=";
constexpr std::string_view kFont = "Pic1.FontName=";
constexpr std::string_view kText = "Text=";

/// What is no number counts as 0.
double numberOf(std::string_view text) {
    text = trimmed(text, " \t");
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(value) ? value : 0;
}

/// UTF-8, whatever the bytes were.
std::string decoded(std::string_view bytes) {
    if (!isUtf8(bytes))
        return fromWindows1252(bytes);
    while (bytes.starts_with(kUtf8Mark))
        bytes.remove_prefix(kUtf8Mark.size());
    return std::string(bytes);
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.push_back(line);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return lines;
}

/// A line of words that a user typed: no key is looked for within them.
bool holdsWords(std::string_view line) {
    line = trimmed(line);
    return line.starts_with(kTitle) || line.starts_with(kText1);
}

/// Takes what stands up to @p key off the text, and the key; nothing where the key isn't there.
std::optional<std::string_view> upTo(std::string_view& text, std::string_view key) {
    const std::size_t at = text.find(key);
    if (at == text.npos)
        return std::nullopt;
    const std::string_view before = text.substr(0, at);
    text.remove_prefix(at + key.size());
    return before;
}

/// A line that has not all keys of an item, in their order, is none.
std::optional<LyricsItem> itemOf(std::string_view line) {
    std::string_view rest = line;
    if (holdsWords(line) || !upTo(rest, kPage))
        return std::nullopt;
    const auto page = upTo(rest, kLeft);
    const auto left = page ? upTo(rest, kTop) : std::nullopt;
    const auto top = left ? upTo(rest, ":") : std::nullopt;
    const auto upright = top ? upTo(rest, kSize) : std::nullopt;
    const auto size = upright ? upTo(rest, kFont) : std::nullopt;
    const auto font = size ? upTo(rest, kText) : std::nullopt;
    if (!font)
        return std::nullopt;
    LyricsItem item;
    item.page = wholeNumber(numberOf(*page));
    item.left = numberOf(*left);
    item.top = numberOf(*top);
    std::string_view y = *upright;
    item.y = upTo(y, kY) ? numberOf(y) : item.top;
    item.size = numberOf(*size);
    item.font = trimmed(*font);
    item.text = trimmed(rest);
    item.line = line;
    return item;
}

/// What stands behind the key in the first line that has it.
std::optional<std::string_view> valueOf(std::string_view key, const std::vector<std::string_view>& lines) {
    for (const std::string_view line : lines) {
        if (holdsWords(line) && !trimmed(line).starts_with(key))
            continue;
        if (const std::size_t at = line.find(key); at != line.npos)
            return line.substr(at + key.size());
    }
    return std::nullopt;
}

/// One line, whatever was typed.
std::string oneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return text;
}

} // namespace

std::string numberText(double number) {
    std::array<char, 512> text{}; // the longest numbers there are take some 330
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number == 0 ? 0 : number,
                                   std::chars_format::fixed);
    return {text.data(), end.ptr};
}

LyricsFile parseLyrics(std::string_view bytes) {
    const std::string text = decoded(bytes);
    LyricsFile file;
    std::vector<std::string_view> values;
    for (const std::string_view line : linesOf(text)) {
        if (isExtra(line))
            file.extras.append(line).append(kEnd);
        else if (auto item = itemOf(line))
            file.items.push_back(std::move(*item));
        else
            values.push_back(line);
    }
    file.title = valueOf(kTitle, values);
    for (const NumberRow& row : kNumbers)
        if (const auto value = valueOf(row.key, values))
            row.set(file, numberOf(*value));
    file.text1 = valueOf(kText1, values);
    return file;
}

std::string serializeLyrics(const LyricsFile& file) {
    std::string bytes;
    const auto add = [&](std::string_view key, std::string_view value) {
        bytes.append(key).append(value).append(kEnd);
    };
    if (file.title)
        add(kTitle, oneLine(*file.title));
    for (const NumberRow& row : kNumbers)
        if (const auto value = row.get(file))
            add(std::string(row.key).append(row.blank), numberText(*value));
    if (file.text1)
        add(kText1, oneLine(*file.text1));
    for (const LyricsItem& item : file.items)
        add(lineOf(item), "");
    return bytes + file.extras;
}

std::string lineOf(const LyricsItem& item) {
    if (!item.line.empty())
        return item.line;
    return oneLine(" Page : " + std::to_string(item.page) + " Left: " + numberText(item.left) +
                   " Top: " + numberText(item.top) + " : Pic1.CurrentY= " + numberText(item.y) +
                   " Pic1.FontSize= " + numberText(item.size) + " Pic1.FontName= " + item.font +
                   "  Text= " + item.text);
}

} // namespace velmora::notation
