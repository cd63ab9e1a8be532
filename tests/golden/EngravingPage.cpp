// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/EngravingPage.h"

#include "golden/EngravingRules.h"

namespace velmora {

namespace {
constexpr const char* kOpening =
    R"(<!-- SPDX-License-Identifier: GPL-2.0-or-later -->
<!-- Made by tests/golden/remake from tests/golden/EngravingRules.cpp. -->
# How the clean page engraves

The rules that the clean page keeps, one small picture each, and why musicians want it so. Who changes the engraving
and doesn't read music sees here what a picture must still show.

The line below a picture is the music as it is read, before anything is placed: name and value of each note, `^`
for a stem up and `v` for one down; `#`, `b` or `n` before a name is a sign that is drawn, in brackets one that only
reminds; `~` is a tie, `[` and `]` stand round what is under one beam, round brackets mark rests, `|` parts bars and
`/` staves or voices.
)";
} // namespace

std::string engravingPage() {
    std::string page = kOpening;
    int number = 0;
    const auto add = [&page](auto... parts) { ((page += std::string_view(parts)), ...); };
    for (const EngravingRule& rule : engravingRules()) {
        add("\n## ", std::to_string(++number), ". ", rule.rule, "\n\n");
        add("![", rule.rule, "](../tests/golden/rules/", rule.name, ".png)\n\n");
        add(rule.reason, "\n\n`", rule.reads, "`\n\n*", rule.source, "*\n");
    }
    return page;
}

} // namespace velmora
