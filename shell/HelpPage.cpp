// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpPage.h"

#include "base/Text.h"

#include <algorithm>
#include <optional>

namespace velmora {

namespace {

constexpr std::size_t kLongestTarget = 256; ///< bytes; so that rubbish is read in linear time

std::string withoutComments(std::string_view text) {
    std::string kept;
    while (true) {
        const auto begin = text.find("<!--");
        kept += text.substr(0, begin);
        if (begin == text.npos)
            return kept;
        const auto end = text.find("-->", begin);
        if (end == text.npos)
            return kept;
        text.remove_prefix(end + 3);
    }
}

/// Calls @p take with each line, without its end.
template<typename Take>
void eachLine(std::string_view text, Take take) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        take(trimmed(text.substr(0, end), " \t\r"));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
}

std::optional<std::string_view> headingOf(std::string_view line) {
    const auto marks = line.find_first_not_of('#');
    if (marks == 0 || marks == line.npos || marks > 6 || line[marks] != ' ')
        return std::nullopt;
    return trimmed(line.substr(marks));
}

/// The position after the target of a link whose text ends at @p at with "](", else @p at.
std::size_t afterTarget(std::string_view text, std::size_t at) {
    if (text.substr(at, 2) != "](")
        return at;
    const auto end = text.substr(at, kLongestTarget).find_first_of(")\n");
    return end == text.npos || text[at + end] != ')' ? at : at + end + 1;
}

/// As it is read: marks of headings, emphasis and links are gone, and blanks are single.
void appendPlain(std::string& plain, std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (const auto after = afterTarget(line, i); after > i) {
            i = after - 1;
            continue;
        }
        const char c = line[i];
        const bool blank = c == ' ' || c == '\t';
        if (blank && !plain.empty() && plain.back() != ' ')
            plain += ' ';
        else if (!blank && std::string_view("#*`[]").find(c) == std::string_view::npos)
            plain += c;
    }
}

/// A row of a table as a list: "one, two;".
void appendRow(std::string& plain, std::string_view row) {
    std::string_view between;
    while (!row.empty()) {
        const auto end = std::min(row.find('|'), row.size());
        if (const auto cell = trimmed(row.substr(0, end)); !cell.empty()) {
            plain += between;
            appendPlain(plain, cell);
            between = ", ";
        }
        row.remove_prefix(std::min(end + 1, row.size()));
    }
    plain += ';';
}

bool isTableRule(std::string_view line) {
    return line.starts_with('|') && line.find_first_not_of("|-: ") == line.npos;
}

/// Gathers the lines of a page.
struct PageReader {
    HelpPage page;
    std::size_t lineStart = 0; ///< where the last line of text begins

    void read(std::string_view line) {
        const auto heading = headingOf(line);
        if (heading && page.title.empty())
            appendPlain(page.title, *heading);
        else if (isTableRule(line))
            page.plain.resize(lineStart); // what stood over it were headings of columns
        else if (!line.empty())
            append(line, heading.has_value());
    }
    void append(std::string_view line, bool heading) {
        const bool item = line.starts_with("- ");
        if (item || heading)
            endSentence(';');
        if (!page.plain.empty() && page.plain.back() != ' ')
            page.plain += ' ';
        lineStart = page.plain.size();
        if (line.starts_with('|'))
            appendRow(page.plain, line);
        else
            appendPlain(page.plain, line.substr(item ? 2 : 0));
        if (heading)
            endSentence(':');
    }
    /// What stands in a line of its own is parted from what follows it.
    void endSentence(char mark) {
        if (!page.plain.empty() &&
            std::string_view(".:;?! ").find(page.plain.back()) == std::string_view::npos)
            page.plain += mark;
    }
};

} // namespace

HelpPage readHelpPage(std::string name, std::string_view text) {
    const std::string markdown = withoutComments(text);
    PageReader reader{.page = {.name = std::move(name), .title = {}, .markdown = {}, .plain = {}}};
    eachLine(markdown, [&reader](std::string_view line) { reader.read(line); });
    reader.page.markdown = markdown;
    if (reader.page.title.empty())
        reader.page.title = reader.page.name;
    return std::move(reader.page);
}

std::vector<std::string> linkTargets(std::string_view markdown) {
    std::vector<std::string> targets;
    for (auto at = markdown.find("]("); at != markdown.npos; at = markdown.find("](", at + 2))
        if (const auto after = afterTarget(markdown, at); after > at)
            targets.emplace_back(markdown.substr(at + 2, after - at - 3));
    return targets;
}

std::string linkedPage(std::string_view target) {
    target = target.substr(0, target.find('#'));
    constexpr std::string_view ending = ".md";
    if (!target.ends_with(ending) || target.find_first_of("/:\\") != target.npos)
        return {};
    return std::string(target.substr(0, target.size() - ending.size()));
}

} // namespace velmora
