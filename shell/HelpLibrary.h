// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/HelpPage.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A page that has all words of a search.
struct HelpHit {
    const HelpPage* page = nullptr; ///< the library's own; never null
    int titleWords = 0;             ///< of the searched words, how many the title has
    int count = 0;                  ///< how often any of them occurs
    std::string excerpt; ///< where the word typed first stands in `plain`; "…" where text is left out
};

/// The pages of a folder, read once. A folder that is missing has none; a file that is no text, or larger
/// than any page could be, is left out.
class HelpLibrary {
public:
    static constexpr std::string_view kHome = "index";
    static constexpr std::uintmax_t kLargestPage = std::uintmax_t{1} << 20; ///< bytes

    HelpLibrary() = default;
    explicit HelpLibrary(std::filesystem::path folder);

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
    /// Home first, then in the order in which it links to them, then the others by title.
    [[nodiscard]] const std::vector<HelpPage>& pages() const { return pages_; }
    /// Null if there is none of that name.
    [[nodiscard]] const HelpPage* find(std::string_view name) const;
    /// Pages in which each word of the query begins a word, whatever the case of A to Z: those with more of
    /// them in the title first, then those that have them more often. A query without words finds nothing.
    [[nodiscard]] std::vector<HelpHit> search(std::string_view query) const;

private:
    std::filesystem::path folder_;
    std::vector<HelpPage> pages_;
};

} // namespace velmora
