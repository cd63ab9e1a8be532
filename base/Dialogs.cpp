// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Dialogs.h"

#include "base/Text.h"

#include <algorithm>

namespace velmora {

namespace {
/// The text up to the next separator, which is taken off with it.
std::string_view takeField(std::string_view& rest) {
    const auto end = rest.find('|');
    const std::string_view field = rest.substr(0, end);
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    return field;
}

bool endsInAnyCase(std::string_view name, std::string_view lowerCaseEnd) {
    return name.size() >= lowerCaseEnd.size() &&
           std::equal(lowerCaseEnd.rbegin(), lowerCaseEnd.rend(), name.rbegin(),
                      [](char lower, char c) { return lower == toLower(c); });
}
} // namespace

std::vector<FileFilter> splitFilters(std::string_view filterText) {
    std::vector<FileFilter> filters;
    while (true) {
        const std::string_view label = takeField(filterText);
        const std::string_view pattern = takeField(filterText);
        if (label.empty() || pattern.empty())
            return filters;
        filters.push_back({std::string(label), std::string(pattern)});
    }
}

std::string tidyFileName(std::string_view name) {
    name = trimmed(name);
    if (name.ends_with('\0'))
        name.remove_suffix(1);
    return std::string(name);
}

std::string withExtension(std::string name, std::string_view extension) {
    if (!endsInAnyCase(name, extension))
        name += extension;
    return name;
}

} // namespace velmora
