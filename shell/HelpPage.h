// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct HelpPage {
    std::string name;     ///< as links and windows call it: the file's name without ".md"
    std::string title;    ///< its first heading; its name if it has none
    std::string markdown; ///< without comments
    std::string plain;    ///< what follows the title, as read aloud: no marks, single blanks
};

/// Reads any text; what is no Markdown stands in the page as it is.
[[nodiscard]] HelpPage readHelpPage(std::string name, std::string_view text);

/// Where the links of a page lead to, in their order, as written.
[[nodiscard]] std::vector<std::string> linkTargets(std::string_view markdown);
/// The name of the page that a link such as "playing.md" or "playing.md#pause" leads to; blank if it leads
/// elsewhere.
[[nodiscard]] std::string linkedPage(std::string_view target);

} // namespace velmora
