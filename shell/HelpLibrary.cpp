// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpLibrary.h"

#include "base/Files.h"
#include "base/Text.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace velmora {

namespace {

constexpr std::string_view kEllipsis = "…";
constexpr std::size_t kExcerptLength = 110; ///< bytes, give or take a word
constexpr std::size_t kExcerptLead = 24;    ///< of them before the word that was found

/// Letters, digits and all that is not ASCII; "+" as well, so that "Ctrl+O" is one word.
bool isWordByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '+' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

struct Word {
    std::size_t at = 0;
    std::string_view text;
};

/// The next word at or after @p from; a blank one at the end of the text.
Word nextWord(std::string_view text, std::size_t from) {
    while (from < text.size() && !isWordByte(text[from]))
        ++from;
    std::size_t end = from;
    while (end < text.size() && isWordByte(text[end]))
        ++end;
    return {.at = from, .text = text.substr(from, end - from)};
}

std::vector<std::string> wordsOf(std::string_view query) {
    const std::string lower = toLower(std::string(query));
    std::vector<std::string> words;
    for (Word word = nextWord(lower, 0); !word.text.empty();
         word = nextWord(lower, word.at + word.text.size()))
        if (std::ranges::find(words, word.text) == words.end())
            words.emplace_back(word.text);
    return words;
}

bool isText(std::string_view bytes) {
    return bytes.find('\0') == bytes.npos;
}

std::vector<HelpPage> readPages(const std::filesystem::path& folder) {
    std::vector<HelpPage> pages;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        const auto size = entry->file_size(unknown);
        if (entry->path().extension() != ".md" || unknown || size > HelpLibrary::kLargestPage)
            continue;
        const auto text = readWholeFile(entry->path());
        if (text && isText(*text))
            pages.push_back(readHelpPage(entry->path().stem().string(), *text));
    }
    return pages;
}

/// How often a word of the text begins with @p word, and where the first stands.
struct Found {
    int count = 0;
    std::size_t first = std::string_view::npos;
};
Found findWord(std::string_view lowerText, std::string_view word) {
    Found found;
    for (auto at = lowerText.find(word); at != lowerText.npos; at = lowerText.find(word, at + word.size())) {
        if (at > 0 && isWordByte(lowerText[at - 1]))
            continue;
        found.first = std::min(found.first, at);
        ++found.count;
    }
    return found;
}

bool isInsideCharacter(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

/// Some words around @p at; from the beginning if that is npos.
std::string excerptOf(std::string_view text, std::size_t at) {
    std::size_t begin = at == text.npos || at < kExcerptLead ? 0 : at - kExcerptLead;
    if (begin > 0)
        if (const auto blank = text.find(' ', begin); blank < at)
            begin = blank + 1;
    std::size_t end = std::min(text.size(), begin + kExcerptLength);
    if (end < text.size())
        if (const auto blank = text.rfind(' ', end); blank != text.npos && blank > std::max(begin, end - 30))
            end = blank;
    while (isInsideCharacter(text, begin))
        ++begin;
    while (isInsideCharacter(text, end))
        ++end;
    std::string excerpt(begin > 0 ? kEllipsis : "");
    excerpt += trimmed(text.substr(begin, end - begin));
    excerpt += end < text.size() ? kEllipsis : "";
    return excerpt;
}

std::optional<HelpHit> hitOf(const HelpPage& page, const std::vector<std::string>& words) {
    const std::string title = toLower(page.title);
    const std::string plain = toLower(page.plain);
    HelpHit hit{.page = &page, .titleWords = 0, .count = 0, .excerpt = {}};
    std::size_t first = std::string::npos;
    for (const auto& word : words) {
        const Found inTitle = findWord(title, word);
        const Found inText = findWord(plain, word);
        if (inTitle.count + inText.count == 0)
            return std::nullopt;
        hit.titleWords += inTitle.count > 0 ? 1 : 0;
        hit.count += inTitle.count + inText.count;
        if (first == std::string::npos)
            first = inText.first; // of the word that was typed first
    }
    hit.excerpt = excerptOf(page.plain, first);
    return hit;
}

} // namespace

HelpLibrary::HelpLibrary(std::filesystem::path folder)
    : folder_(std::move(folder))
    , pages_(readPages(folder_)) {
    std::vector<std::string> order{std::string(kHome)};
    if (const HelpPage* home = find(kHome))
        for (const auto& target : linkTargets(home->markdown))
            order.push_back(linkedPage(target));
    std::ranges::sort(pages_, {}, [&order](const HelpPage& page) {
        return std::tuple(std::ranges::find(order, page.name) - order.begin(), page.title, page.name);
    });
}

const HelpPage* HelpLibrary::find(std::string_view name) const {
    const auto page = std::ranges::find(pages_, name, &HelpPage::name);
    return page == pages_.end() ? nullptr : &*page;
}

std::vector<HelpHit> HelpLibrary::search(std::string_view query) const {
    const auto words = wordsOf(query);
    std::vector<HelpHit> hits;
    if (words.empty())
        return hits;
    for (const auto& page : pages_)
        if (auto hit = hitOf(page, words))
            hits.push_back(*std::move(hit));
    std::ranges::stable_sort(hits, [](const HelpHit& one, const HelpHit& other) {
        return std::tuple(other.titleWords, other.count) < std::tuple(one.titleWords, one.count);
    });
    return hits;
}

} // namespace velmora
