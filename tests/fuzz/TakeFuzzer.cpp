// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of kept takes: any bytes, with a checksum of their own or with the right one.
#include "keyboard/TakeText.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace velmora;

namespace {
void expect(bool holds) {
    if (!holds)
        std::abort();
}

void check(std::string_view text) {
    const auto kept = parseTakeText(text);
    if (!kept)
        return;
    expect(kept->take.List1.size() == kept->take.List3.size() && kept->take.size() <= kMostTakeTicks);
    TakeRuns runs;
    runs.extend(kept->take);
    expect(runs.ticks() == kept->take.size());
    expect(parseTakeText(takeText(kept->when, kept->length, runs)) == kept);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    check(text);
    check(text + takeChecksumLine(text));
    return 0;
}
